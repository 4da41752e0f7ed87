#include "ui/paint/paint.h"

#include <algorithm>

#include "platform/drawing.h"
#include "ui/paint/drawing_resources.h"
#include "ui/window/window.h"

namespace ui {

using platform::UniqueBitmap;
using platform::UniqueMemoryDC;

OffscreenBitmap::OffscreenBitmap(HDC target, const RECT& area)
    : target_(target),
      area_(area),
      bitmap_(CreateCompatibleBitmap(target, Width(area), Height(area))),
      dc_(CreateCompatibleDC(target)) {
    if (bitmap_ && dc_) {
        previous_ = SelectObject(dc_.Get(), bitmap_.Get());
        SetViewportOrgEx(dc_.Get(), -area.left, -area.top, nullptr);
    }
}

OffscreenBitmap::~OffscreenBitmap() {
    if (previous_) {
        SelectObject(dc_.Get(), previous_);
    }
}

void OffscreenBitmap::Show() const {
    BitBlt(target_, area_.left, area_.top, Width(area_), Height(area_), dc_.Get(), area_.left,
           area_.top, SRCCOPY);
}

BlendSurface::BlendSurface(HDC compatible, int width, int height)
    : width_(width),
      height_(height),
      stride_((3 * width + 3) & ~3),
      dc_(CreateCompatibleDC(compatible)) {
    BITMAPINFO info = {};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = width;
    info.bmiHeader.biHeight = -height;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 24;
    void* pixels = nullptr;
    bitmap_ =
        UniqueBitmap(CreateDIBSection(compatible, &info, DIB_RGB_COLORS, &pixels, nullptr, 0));
    if (bitmap_ && dc_ && pixels) {
        pixels_ = static_cast<uint8_t*>(pixels);
        previous_ = SelectObject(dc_.Get(), bitmap_.Get());
    }
}

BlendSurface::~BlendSurface() {
    if (previous_) {
        SelectObject(dc_.Get(), previous_);
    }
}

void BlendSurface::BlendPixel(int x, int y, COLORREF color, uint32_t opacity) {
    BlendSpan(x, x + 1, y, color, opacity);
}

void BlendSurface::BlendSpan(int left, int right, int y, COLORREF color, uint32_t opacity) {
    left = std::max(left, 0);
    right = std::min(right, width_);
    if (!pixels_ || y < 0 || y >= height_) {
        return;
    }
    uint8_t* pixel =
        pixels_ + static_cast<ptrdiff_t>(y) * stride_ + static_cast<ptrdiff_t>(left) * 3;
    for (int x = left; x < right; ++x, pixel += 3) {
        pixel[0] = BlendChannel(GetBValue(color), pixel[0], opacity);
        pixel[1] = BlendChannel(GetGValue(color), pixel[1], opacity);
        pixel[2] = BlendChannel(GetRValue(color), pixel[2], opacity);
    }
}

void BlendSurface::BlendRoundedRectangle(int radius, COLORREF color, uint32_t opacity) {
    constexpr int largestRadius = 64;
    radius = std::min({radius, width_ / 2, height_ / 2, largestRadius});
    // How far the circle reaches sideways, for each distance of a line from its centre.
    int reach[largestRadius + 1] = {};
    int x = 0;
    int y = radius;
    int decision = 1 - radius;
    while (x <= y) {
        reach[y] = std::max(reach[y], x);
        reach[x] = std::max(reach[x], y);
        ++x;
        if (decision < 0) {
            decision += 2 * x + 1;
        } else {
            --y;
            decision += 2 * (x - y) + 1;
        }
    }
    platform::FlushDrawing();
    for (int line = 0; line < height_; ++line) {
        const int fromEdge = std::min(line, height_ - 1 - line);
        const int inset = fromEdge < radius ? radius - reach[radius - fromEdge] : 0;
        BlendSpan(inset, width_ - inset, line, color, opacity);
    }
}

void FillWithSystemColor(HDC dc, const RECT& area, int systemColor) {
    FillRect(dc, &area, GetSysColorBrush(systemColor));
}

void FillWithColor(HDC dc, const RECT& area, COLORREF color) {
    FillRect(dc, &area, Resources().brushes.Of(color));
}

}  // namespace ui
