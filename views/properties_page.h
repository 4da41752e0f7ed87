// The page that describes one file, folder or shortcut, for every view; Files has its code.
#pragma once

#include <string>

#include "platform/windows.h"

namespace views {

// Shows the page of the entry with this full path until it is closed.
void ShowProperties(HWND owner, const std::wstring& path);

}  // namespace views
