// Lists of files on the clipboard as other programs put and read them.
#pragma once

#include <string>
#include <vector>

#include "platform/windows.h"
// Behind the system's own declarations.
#include <shlobj.h>

namespace test {

// OpenClipboard, waiting until another process that has it open for a moment closes it.
bool OpenClipboardInTurn(HWND owner = nullptr);

// Empties the clipboard, waiting until whoever has it open closes it.
void ClearClipboard();

// The paths, as the platform's own shell reads them (DragQueryFileW). `owner` opens the clipboard
// and may be null. None while another process has the clipboard open.
std::vector<std::wstring> PathsOnClipboard(HWND owner);

// Puts a block of the format CF_HDROP on the clipboard as other programs do, with the effect that
// they prefer (1 a copy, 2 a move). `size` bytes are put there: the header, then zeros.
void PutOnClipboard(const DROPFILES& header, size_t size, DWORD effect);
// The same for one path.
void PutOnClipboard(const std::wstring& path, DWORD effect);

}  // namespace test
