// What a PC's window can do and a handheld's cannot: be sized and minimised, and go to a monitor of
// another scale.
#pragma once

#include "platform/windows.h"

namespace platform {

// Gives the main window, on a large screen, a frame to size, minimise and close it by. Nothing on a
// handheld.
void AdaptMainWindow(HWND window);

// Gives the main window the program's icon, a resource of the executable (WM_SETICON). Nothing on a
// handheld.
void ShowMainWindowIcon(HWND window, UINT icon);

// Takes over the scale of the monitor that shows the window (GetDpiForWindow) for SystemFont and
// ScreenRectangle. True when it is another than before: all that has been measured is stale, and
// `place` is where the window is to be now, in screen pixels. Never true on a handheld, and on a PC
// whose windows all have one scale.
bool AdoptScale(HWND window, RECT* place);

// Brings back a window that is minimised (ShowWindow with SW_RESTORE). A handheld minimises none.
void RestoreWindow(HWND window);

}  // namespace platform
