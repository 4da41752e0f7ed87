// A bar that is filled to a percentage.
#pragma once

#include "platform/windows.h"

namespace ui {

// The height of a percentage bar in pixels, by the width of a border (SM_CXBORDER).
constexpr int PercentageBarHeight(int border) {
    return (5 * border + 1) * 2;
}

// The width of the filled part of an inside of `width` pixels; more than 100 percent are 100.
constexpr int FilledWidth(int width, unsigned percent) {
    return static_cast<int>(static_cast<int64_t>(width) * (percent < 100 ? percent : 100) / 100);
}

// Draws the bar with a quiet frame into `area`.
void DrawPercentageBar(HDC dc, const RECT& area, unsigned percent, COLORREF color);

}  // namespace ui
