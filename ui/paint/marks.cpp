#include "ui/paint/marks.h"

#include <algorithm>

#include "ui/paint/drawing_resources.h"
#include "ui/paint/paint.h"
#include "ui/paint/reading.h"
#include "ui/paint/theme.h"
#include "ui/window/window.h"

namespace ui {

namespace {

// A filled circle, line by line: it looks the same on every device, which Ellipse does not.
void FillCircle(HDC dc, int centerX, int centerY, int radius, COLORREF color) {
    const HBRUSH brush = Resources().brushes.Of(color);
    for (int y = -radius; y <= radius; ++y) {
        int reach = radius;
        while (reach > 0 && reach * reach + y * y > radius * radius + radius / 2) {
            --reach;
        }
        const RECT line = {centerX - reach, centerY + y, centerX + reach + 1, centerY + y + 1};
        FillRect(dc, &line, brush);
    }
}

}  // namespace

void DrawCheckMark(HDC dc, const RECT& area, COLORREF color) {
    if (ReadMark(true)) {
        return;
    }
    const int size = Height(area);
    const int thickness = std::max(2, size / 7);
    const int arm = size / 4;
    const int left = area.left + (Width(area) - 3 * arm) / 2;
    const int bottom = area.top + size / 2 + arm;
    const HBRUSH brush = Resources().brushes.Of(color);
    for (int x = 0; x <= 3 * arm; ++x) {
        const int y = x <= arm ? bottom - (arm - x) : bottom - (x - arm);
        const RECT column = {left + x, y - thickness, left + x + 1, y};
        FillRect(dc, &column, brush);
    }
}

void DrawCheckBox(HDC dc, const RECT& area, bool checked, COLORREF color) {
    const int size = Height(area) * 7 / 8;
    const int left = area.left + (Width(area) - size) / 2;
    const int top = area.top + (Height(area) - size) / 2;
    const RECT box = {left, top, left + size, top + size};
    DrawFrame(dc, box, std::max(1, size / 12), color);
    if (checked) {
        DrawCheckMark(dc, box, color);
    }
}

void DrawChoiceMark(HDC dc, const RECT& area, bool taken, COLORREF color) {
    if (ReadMark(taken)) {
        return;
    }
    const int radius = Height(area) * 7 / 16;
    const int centerX = (area.left + area.right) / 2;
    const int centerY = (area.top + area.bottom) / 2;
    const COLORREF inside = GetPixel(dc, centerX, centerY);
    FillCircle(dc, centerX, centerY, radius, color);
    FillCircle(dc, centerX, centerY, radius - std::max(1, radius / 6), inside);
    if (taken) {
        FillCircle(dc, centerX, centerY, radius / 2, color);
    }
}

void DrawSubmenuArrow(HDC dc, const RECT& area, COLORREF color) {
    const int reach = std::max(3, Height(area) / 4);
    const int middle = (area.top + area.bottom) / 2;
    const int left = area.left + (Width(area) - reach) / 2;
    const HBRUSH brush = Resources().brushes.Of(color);
    for (int x = 0; x < reach; ++x) {
        const RECT column = {left + x, middle - (reach - x) + 1, left + x + 1, middle + reach - x};
        FillRect(dc, &column, brush);
    }
}

}  // namespace ui
