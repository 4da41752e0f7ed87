// The translucent bar at a list's right edge that shows where the visible rows lie.
#pragma once

#include "platform/windows.h"

namespace ui {

// Draws the indicator into an off-screen frame of the client area, for `count` rows of
// `totalHeight` pixels of which row `top` is the first shown. Nothing when the rows fit.
void DrawScrollIndicator(HDC dc, const RECT& client, int totalHeight, unsigned top, unsigned count);

}  // namespace ui
