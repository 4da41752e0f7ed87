// Drawing, and the screen that is drawn on.
#pragma once

#include "platform/windows.h"

namespace platform {

// Completes drawing into bitmap sections before their pixels are read or written (GdiFlush; a
// handheld draws at once).
void FlushDrawing();

// The stock system font (GetStockObject(SYSTEM_FONT)), never deleted by the caller. A PC gets a
// readable sans-serif of a handheld's proportions in its place, another one after AdoptScale.
HFONT SystemFont();

// The rectangle of the device's screen in pixels (MonitorFromWindow, GetMonitorInfo). On a large
// PC screen it is a handheld's screen at the same resolution. False when it cannot be read.
bool ScreenRectangle(RECT* rectangle);

}  // namespace platform
