// What other programs read of a list of files on the clipboard.
#pragma once

#include <string>
#include <vector>

#include "platform/windows.h"

namespace test {

// The paths, as the platform's own shell reads them (DragQueryFileW). `owner` opens the clipboard
// and may be null.
std::vector<std::wstring> PathsOnClipboard(HWND owner);

}  // namespace test
