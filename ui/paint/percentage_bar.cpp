#include "ui/paint/percentage_bar.h"

#include "ui/paint/paint.h"
#include "ui/paint/theme.h"
#include "ui/window/window.h"

namespace ui {

void DrawPercentageBar(HDC dc, const RECT& area, unsigned percent, COLORREF color) {
    constexpr unsigned frameShare = 110;
    constexpr unsigned emptyShare = 16;
    const COLORREF text = GetSysColor(COLOR_WINDOWTEXT);
    const COLORREF window = GetSysColor(COLOR_WINDOW);
    const int border = GetSystemMetrics(SM_CXBORDER);
    FillWithColor(dc, area, MixColors(text, window, emptyShare));
    DrawFrame(dc, area, border, MixColors(text, window, frameShare));
    RECT filled = area;
    InflateRect(&filled, -border, -border);
    filled.right = filled.left + FilledWidth(Width(filled), percent);
    if (filled.right > filled.left) {
        FillWithColor(dc, filled, color);
    }
}

}  // namespace ui
