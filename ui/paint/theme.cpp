#include "ui/paint/theme.h"

#include <algorithm>

#include "ui/paint/paint.h"

namespace ui {

COLORREF MixColors(COLORREF first, COLORREF second, unsigned share) {
    return RGB(BlendChannel(GetRValue(first), GetRValue(second), share),
               BlendChannel(GetGValue(first), GetGValue(second), share),
               BlendChannel(GetBValue(first), GetBValue(second), share));
}

namespace {

// How light a color is, of 65025. A screen's light grows with the square of the value, nearly.
unsigned Light(COLORREF color) {
    const auto light = [](unsigned value) { return value * value; };
    return (21 * light(GetRValue(color)) + 72 * light(GetGValue(color)) +
            7 * light(GetBValue(color))) /
           100;
}

}  // namespace

COLORREF ReadableOn(COLORREF background, COLORREF color, COLORREF otherwise, Contrast least) {
    // What no screen is darker than: a twentieth of white.
    constexpr unsigned blackest = 65025 / 20;
    const unsigned one = Light(background) + blackest;
    const unsigned other = Light(color) + blackest;
    const unsigned times = static_cast<unsigned>(least);
    return std::max(one, other) >= times * std::min(one, other) ? color : otherwise;
}

void DrawRowRule(HDC dc, const RECT& row) {
    constexpr unsigned textShare = 32;
    const COLORREF color =
        MixColors(GetSysColor(COLOR_WINDOWTEXT), GetSysColor(COLOR_WINDOW), textShare);
    FillWithColor(dc,
                  RECT{row.left, row.bottom - GetSystemMetrics(SM_CYBORDER), row.right, row.bottom},
                  color);
}

void DrawRowBackground(HDC dc, const RECT& row, bool selected) {
    if (selected) {
        FillWithSystemColor(dc, row, COLOR_HIGHLIGHT);
    } else {
        DrawRowRule(dc, row);
    }
}

void SetRowTextColor(HDC dc, bool selected) {
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, GetSysColor(selected ? COLOR_HIGHLIGHTTEXT : COLOR_WINDOWTEXT));
}

void DrawFrame(HDC dc, const RECT& area, int thickness, COLORREF color) {
    FillWithColor(dc, RECT{area.left, area.top, area.right, area.top + thickness}, color);
    FillWithColor(dc, RECT{area.left, area.bottom - thickness, area.right, area.bottom}, color);
    FillWithColor(dc, RECT{area.left, area.top, area.left + thickness, area.bottom}, color);
    FillWithColor(dc, RECT{area.right - thickness, area.top, area.right, area.bottom}, color);
}

}  // namespace ui
