// The built-in image strips: square icons side by side in one bitmap.
#pragma once

#include <optional>

#include "platform/handles.h"

namespace ui {

// A strip's resources from the smallest to the largest.
struct StripFamily {
    UINT smallest;
    UINT largest;
};
inline constexpr StripFamily mainStrips = {1000, 1002};
inline constexpr StripFamily statusStrips = {1005, 1006};

// The color that stands for "nothing" in the status strip's picture.
inline constexpr COLORREF statusKeyColor = RGB(0xC8, 0xC8, 0xC8);

// The height of a PNG picture kept as a resource of type "GIF", in pixels; none when the module
// has no such resource (FindResourceW, LoadResource).
std::optional<uint32_t> StripHeight(HINSTANCE module, UINT id);

// The resource to use for icons of `iconSize` pixels: the largest that is not larger, else the
// smallest of the family.
UINT ChooseStrip(HINSTANCE module, StripFamily family, unsigned iconSize);

// Icons of one size; empty until loaded.
class ImageStrip {
 public:
    ImageStrip() = default;
    // Takes over the bitmap; the icons are as wide as it is high.
    ImageStrip(platform::UniqueBitmap bitmap, COLORREF transparent);

    explicit operator bool() const { return static_cast<bool>(bitmap_); }
    HBITMAP Bitmap() const { return bitmap_.Get(); }
    int IconSize() const { return iconSize_; }
    int Count() const { return count_; }
    COLORREF Transparent() const { return transparent_; }
    // Draws an icon with its upper left corner at (x, y) (TransparentBlt; a handheld's
    // TransparentImage). False when the strip
    // has no such icon or the platform fails.
    bool Draw(HDC dc, int x, int y, int index) const;
    // A copy in which every pixel that is not transparent has the given color.
    ImageStrip Recolored(HDC compatible, COLORREF color) const;

 private:
    platform::UniqueBitmap bitmap_;
    // What its icons are drawn from, made with the first one.
    mutable platform::UniqueMemoryDC source_;
    int iconSize_ = 0;
    int count_ = 0;
    COLORREF transparent_ = 0;
};

// Loads one strip of a family from a module, else from the program (SHLoadImageResource). The
// color of its first pixel is the transparent one.
ImageStrip LoadStrip(HINSTANCE module, UINT id);

// The module whose picture of a family is to be used for icons of `iconSize` pixels: the language
// pack if it has one to use, else the program.
HINSTANCE StripModule(StripFamily family, unsigned iconSize);

// Replaces the status strip's key color by the system's window color, which becomes the
// transparent one.
ImageStrip LoadStatusStrip(unsigned iconSize);

}  // namespace ui
