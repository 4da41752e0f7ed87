// What a PC's screen is to the program: a small one is a handheld's, a large one holds a window
// of a handheld's proportions.
#pragma once

#include "platform/windows.h"

namespace platform::desktop {

// The font in the role of the handheld's stock system font; the caller owns it.
HFONT CreateSystemFont();

// The resolution that sizes follow: that of the monitor that TakeScaleOf was last told of, before
// that the system's (GetDeviceCaps, LOGPIXELSY), 96 when it cannot be read.
int DotsPerInch();

// Makes it that of the monitor that shows the window (GetDpiForWindow, of Windows 10 and later).
// False when it is the same, or the system knows only one.
bool TakeScaleOf(HWND window);

// The part of the window's monitor that windows may cover (GetMonitorInfoW).
bool WorkArea(HWND window, RECT* area);

// Whether the main window fills a work area.
bool IsSmall(const RECT& workArea);

bool ScreenRectangle(RECT* rectangle);

// Where the main window goes inside the work area: all of a small one, a centred upright
// rectangle of 3:4 in a large one.
RECT WindowPlace(const RECT& workArea, int dotsPerInch);

// Where a window of one scale goes in another: about the same middle, no larger than the work area,
// and inside it. All of a small work area.
RECT RescaledPlace(const RECT& place, const RECT& workArea, int dotsBefore, int dotsNow);

}  // namespace platform::desktop
