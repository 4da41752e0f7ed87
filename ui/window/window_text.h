// The text of a window of this program.
#pragma once

#include <string>

#include "platform/windows.h"

namespace ui {

// The whole text (WM_GETTEXTLENGTH, WM_GETTEXT).
std::wstring WindowText(HWND window);

}  // namespace ui
