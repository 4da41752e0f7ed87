// A bitmap in memory whose pixels a test can read.
#pragma once

#include <cstdint>
#include <vector>

#include "platform/handles.h"

namespace test {

class Canvas {
 public:
    Canvas(int width, int height, COLORREF background = RGB(255, 255, 255));
    ~Canvas();
    Canvas(const Canvas&) = delete;
    Canvas& operator=(const Canvas&) = delete;

    HDC DC() const { return dc_.Get(); }
    int Width() const { return width_; }
    int Height() const { return height_; }
    COLORREF At(int x, int y) const;
    // All pixels, line by line.
    std::vector<COLORREF> Pixels() const;
    void Fill(const RECT& area, COLORREF color);

 private:
    int width_;
    int height_;
    void* bits_ = nullptr;
    platform::UniqueMemoryDC dc_;
    platform::UniqueBitmap bitmap_;
    HGDIOBJ previous_ = nullptr;
};

}  // namespace test
