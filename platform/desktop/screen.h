// What a PC's screen is to the program: a small one is a handheld's, a large one holds a window
// of a handheld's proportions.
#pragma once

#include "platform/windows.h"

namespace platform::desktop {

// The font in the role of the handheld's stock system font; the caller owns it.
HFONT CreateSystemFont();

// The resolution of the screen (GetDeviceCaps, LOGPIXELSY), 96 when it cannot be read.
int DotsPerInch();

bool ScreenRectangle(RECT* rectangle);

// Where the main window goes inside the work area: all of a small one, a centred upright
// rectangle of 3:4 in a large one.
RECT WindowPlace(const RECT& workArea, int dotsPerInch);

}  // namespace platform::desktop
