#include "tests/ui/canvas.h"

#include <gtest/gtest.h>

namespace test {

Canvas::Canvas(int width, int height, COLORREF background)
    : width_(width), height_(height), dc_(CreateCompatibleDC(nullptr)) {
    BITMAPINFO info = {};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = width;
    info.bmiHeader.biHeight = -height;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    bitmap_ = platform::UniqueBitmap(
        CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits_, nullptr, 0));
    EXPECT_TRUE(dc_ && bitmap_);
    previous_ = SelectObject(dc_.Get(), bitmap_.Get());
    Fill(RECT{0, 0, width, height}, background);
}

Canvas::~Canvas() {
    SelectObject(dc_.Get(), previous_);
}

void Canvas::Fill(const RECT& area, COLORREF color) {
    const platform::UniqueBrush brush(CreateSolidBrush(color));
    FillRect(dc_.Get(), &area, brush.Get());
}

COLORREF Canvas::At(int x, int y) const {
    EXPECT_TRUE(x >= 0 && x < width_ && y >= 0 && y < height_);
    GdiFlush();
    const uint32_t word = static_cast<const uint32_t*>(bits_)[y * width_ + x];
    return RGB(word >> 16 & 0xFF, word >> 8 & 0xFF, word & 0xFF);
}

std::vector<COLORREF> Canvas::Pixels() const {
    std::vector<COLORREF> pixels;
    for (int y = 0; y < height_; ++y) {
        for (int x = 0; x < width_; ++x) {
            pixels.push_back(At(x, y));
        }
    }
    return pixels;
}

}  // namespace test
