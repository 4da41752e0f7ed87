// The shell's calls that take or give paths, as a handheld writes them.
#pragma once

#include <string>

#include "platform/windows.h"

namespace platform {

#ifdef UNDER_CE
static_assert(sizeof(SHELLEXECUTEINFOW) == 60);
#endif

// Hands a file to the program that opens it, or starts a program (ShellExecuteEx without a user
// interface of its own). `argument` is a path given to the program unquoted, null for none. False
// on failure, with the thread's last error.
bool OpenFile(const wchar_t* path, const wchar_t* argument);

enum class MissingFolder { Leave, Create };

// One of the system's folders by its CSIDL (SHGetSpecialFolderPath). Empty when there is none.
std::wstring SpecialFolder(HWND owner, int folder, MissingFolder missing = MissingFolder::Leave);

// SHGetFileInfo (cbFileInfo = sizeof *info) for a path as a handheld writes it.
DWORD_PTR FileInfo(const wchar_t* path, DWORD attributes, SHFILEINFOW* info, UINT flags);

// The system's list of icons of a size (SHGetFileInfo without a path): SHGFI_SMALLICON, or 0 for
// the large ones. Borrowed; null when there is none.
inline HIMAGELIST SystemImageList(UINT size) {
    SHFILEINFOW info = {};
    return reinterpret_cast<HIMAGELIST>(FileInfo(nullptr, 0, &info, SHGFI_SYSICONINDEX | size));
}

// The window of the shell's desktop, whose process is the shell (FindWindowW; GetShellWindow on a
// PC, else GetDesktopWindow). Null when there is none.
HWND ShellDesktopWindow();

}  // namespace platform
