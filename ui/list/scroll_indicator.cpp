#include "ui/list/scroll_indicator.h"

#include "ui/list/list_layout.h"
#include "ui/paint/paint.h"
#include "ui/window/window.h"

namespace ui {

namespace {

constexpr COLORREF indicatorColor = 0x808080;
constexpr uint32_t indicatorOpacity = 200;

}  // namespace

void DrawScrollIndicator(HDC dc, const RECT& client, int totalHeight, unsigned top,
                         unsigned count) {
    const int border = GetSystemMetrics(SM_CXBORDER);
    const int width = 3 * border;
    const RECT thumb = ScrollThumb(client, totalHeight, top, count, width, 9 * border);
    if (thumb.top >= thumb.bottom || Width(client) <= 2 * width || thumb.bottom <= client.top) {
        return;
    }
    // A shape twice as wide as what is shown, so that only its left side is rounded.
    const int length = Height(thumb);
    BlendSurface surface(dc, 2 * width, length);
    if (!surface) {
        return;
    }
    BitBlt(surface.DC(), 0, 0, width, length, dc, thumb.left, thumb.top, SRCCOPY);
    surface.BlendRoundedRectangle(width, indicatorColor, indicatorOpacity);
    BitBlt(dc, thumb.left, thumb.top, width, length, surface.DC(), 0, 0, SRCCOPY);
}

}  // namespace ui
