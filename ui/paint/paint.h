// Painting through off-screen bitmaps, and translucent shapes blended into them.
#pragma once

#include <cstdint>
#include <new>

#include "platform/handles.h"
#include "platform/scope_exit.h"

namespace ui {

// A bitmap to compose one frame in; client coordinates can be used as they are. Empty when the
// platform cannot give a device context or a bitmap: the frame is then skipped.
class OffscreenBitmap {
 public:
    // Compatible with `target` (CreateCompatibleDC, CreateCompatibleBitmap); `area` is the part
    // of the target that the bitmap stands for.
    OffscreenBitmap(HDC target, const RECT& area);
    ~OffscreenBitmap();
    OffscreenBitmap(const OffscreenBitmap&) = delete;
    OffscreenBitmap& operator=(const OffscreenBitmap&) = delete;

    explicit operator bool() const { return previous_ != nullptr; }
    HDC DC() const { return dc_.Get(); }
    // Copies the frame to the target (BitBlt, SRCCOPY).
    void Show() const;

 private:
    HDC target_;
    RECT area_;
    platform::UniqueBitmap bitmap_;
    platform::UniqueMemoryDC dc_;
    HGDIOBJ previous_ = nullptr;
};

// Lets `paint(dc, area)` draw off-screen and shows it with one copy. A frame for which there is no
// memory is skipped: what stands there stays, and the next one is right.
template <typename Paint>
void ShowFrame(HDC target, const RECT& area, Paint paint) {
    const OffscreenBitmap frame(target, area);
    if (!frame) {
        return;
    }
    try {
        paint(frame.DC(), area);
    } catch (const std::bad_alloc&) {
        return;
    }
    frame.Show();
}

// Answers WM_PAINT: `paint(dc, client)` draws the whole client area off-screen, one copy shows it.
template <typename Paint>
void PaintWindow(HWND window, Paint paint) {
    PAINTSTRUCT structure;
    const HDC dc = BeginPaint(window, &structure);
    if (!dc) {
        return;
    }
    const platform::ScopeExit end([window, &structure] { EndPaint(window, &structure); });
    RECT client;
    if (GetClientRect(window, &client) && client.right > client.left &&
        client.bottom > client.top) {
        ShowFrame(dc, client, paint);
    }
}

// One channel of a blend: `color` over `old` with `opacity` of 255.
constexpr uint8_t BlendChannel(uint32_t color, uint32_t old, uint32_t opacity) {
    const uint32_t sum = color * opacity + old * (255 - opacity) + 128;
    return static_cast<uint8_t>((sum + (sum >> 8)) >> 8);
}

// A 24-bit top-down bitmap section whose pixels are blended directly (CreateDIBSection).
class BlendSurface {
 public:
    BlendSurface(HDC compatible, int width, int height);
    ~BlendSurface();
    BlendSurface(const BlendSurface&) = delete;
    BlendSurface& operator=(const BlendSurface&) = delete;

    explicit operator bool() const { return previous_ != nullptr; }
    HDC DC() const { return dc_.Get(); }
    void BlendPixel(int x, int y, COLORREF color, uint32_t opacity);
    // Blends the pixels from `left` up to but not including `right` of one line.
    void BlendSpan(int left, int right, int y, COLORREF color, uint32_t opacity);
    // A filled rounded rectangle over the whole surface, span by span; the corners by the
    // midpoint circle method.
    void BlendRoundedRectangle(int radius, COLORREF color, uint32_t opacity);

 private:
    int width_;
    int height_;
    int stride_;
    uint8_t* pixels_ = nullptr;
    platform::UniqueBitmap bitmap_;
    platform::UniqueMemoryDC dc_;
    HGDIOBJ previous_ = nullptr;
};

// Fills with one of the system's colours (GetSysColorBrush, FillRect).
void FillWithSystemColor(HDC dc, const RECT& area, int systemColor);
void FillWithColor(HDC dc, const RECT& area, COLORREF color);

}  // namespace ui
