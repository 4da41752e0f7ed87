// The page that describes an application's window.
#pragma once

#include "platform/windows.h"

namespace views {

// Shows the page until it is closed. Throws W32Fault when the window's process cannot be found.
void ShowWindowInformation(HWND owner, HWND window);

}  // namespace views
