#include "ui/paint/images.h"

#include <vector>

#include "platform/aygshell.h"
#include "platform/drawing.h"
#include "text/pack/resource_checks.h"
#include "text/resources.h"
#include "ui/paint/paint.h"
#include "ui/window/window.h"

namespace ui {

namespace {

using platform::Selected;
using platform::UniqueBitmap;
using platform::UniqueMemoryDC;

// A 24-bit copy of a bitmap whose pixels can be replaced.
struct PixelCopy {
    UniqueBitmap bitmap;
    uint8_t* pixels = nullptr;
    int width = 0;
    int height = 0;
    int Stride() const { return (3 * width + 3) & ~3; }
};

PixelCopy CopyPixels(HDC compatible, HBITMAP source) {
    PixelCopy copy;
    BITMAP description;
    if (!source || !GetObjectW(source, sizeof description, &description)) {
        return copy;
    }
    copy.width = description.bmWidth;
    copy.height = description.bmHeight;
    BITMAPINFO info = {};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = copy.width;
    info.bmiHeader.biHeight = -copy.height;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 24;
    void* pixels = nullptr;
    copy.bitmap =
        UniqueBitmap(CreateDIBSection(compatible, &info, DIB_RGB_COLORS, &pixels, nullptr, 0));
    const UniqueMemoryDC from(CreateCompatibleDC(compatible));
    const UniqueMemoryDC to(CreateCompatibleDC(compatible));
    if (copy.bitmap && from && to) {
        const Selected sourceSelected(from.Get(), source);
        const Selected targetSelected(to.Get(), copy.bitmap.Get());
        if (BitBlt(to.Get(), 0, 0, copy.width, copy.height, from.Get(), 0, 0, SRCCOPY)) {
            platform::FlushDrawing();
            copy.pixels = static_cast<uint8_t*>(pixels);
        }
    }
    return copy;
}

// Gives every pixel the color that `choose` answers for it.
template <typename Choose>
UniqueBitmap MapPixels(HDC compatible, HBITMAP source, Choose choose) {
    PixelCopy copy = CopyPixels(compatible, source);
    if (!copy.pixels) {
        return UniqueBitmap();
    }
    for (int y = 0; y < copy.height; ++y) {
        uint8_t* pixel = copy.pixels + static_cast<ptrdiff_t>(y) * copy.Stride();
        for (int x = 0; x < copy.width; ++x, pixel += 3) {
            const COLORREF color = choose(RGB(pixel[2], pixel[1], pixel[0]));
            pixel[0] = GetBValue(color);
            pixel[1] = GetGValue(color);
            pixel[2] = GetRValue(color);
        }
    }
    return std::move(copy.bitmap);
}

COLORREF FirstPixel(HDC compatible, HBITMAP bitmap) {
    const UniqueMemoryDC dc(CreateCompatibleDC(compatible));
    const Selected selected(dc.Get(), bitmap);
    return GetPixel(dc.Get(), 0, 0);
}

// A screen of 16 bits keeps so much of a color, whatever it fills the rest with.
bool IsStatusKey(COLORREF pixel) {
    constexpr COLORREF kept = RGB(0xF8, 0xFC, 0xF8);
    return (pixel & kept) == (statusKeyColor & kept);
}

}  // namespace

std::optional<uint32_t> StripHeight(HINSTANCE module, UINT id) {
    // Kept on purpose: docs/compatibility.md#png-as-gif
    return text::PictureHeight(text::ResourceBytes(module, id, L"GIF"));
}

UINT ChooseStrip(HINSTANCE module, StripFamily family, unsigned iconSize) {
    for (UINT id = family.largest; id > family.smallest; --id) {
        const std::optional<uint32_t> height = StripHeight(module, id);
        if (height && *height <= iconSize) {
            return id;
        }
    }
    return family.smallest;
}

ImageStrip::ImageStrip(UniqueBitmap bitmap, COLORREF transparent)
    : bitmap_(std::move(bitmap)), transparent_(transparent) {
    BITMAP description;
    if (bitmap_ && GetObjectW(bitmap_.Get(), sizeof description, &description) &&
        description.bmHeight > 0) {
        iconSize_ = description.bmHeight;
        count_ = description.bmWidth / description.bmHeight;
    }
}

bool ImageStrip::Draw(HDC dc, int x, int y, int index) const {
    if (index < 0 || index >= count_) {
        return false;
    }
    if (!source_) {
        source_.Reset(CreateCompatibleDC(dc));
    }
    if (!source_) {
        return false;
    }
    const Selected selected(source_.Get(), bitmap_.Get());
    return TransparentBlt(dc, x, y, iconSize_, iconSize_, source_.Get(), index * iconSize_, 0,
                          iconSize_, iconSize_, transparent_) != FALSE;
}

ImageStrip ImageStrip::Recolored(HDC compatible, COLORREF color) const {
    return ImageStrip(
        MapPixels(compatible, bitmap_.Get(),
                  [this, color](COLORREF pixel) { return pixel == transparent_ ? pixel : color; }),
        transparent_);
}

HINSTANCE StripModule(StripFamily family, unsigned iconSize) {
    const HINSTANCE pack = text::ResourceModule();
    return StripHeight(pack, ChooseStrip(pack, family, iconSize)) ? pack : text::ProgramModule();
}

ImageStrip LoadStrip(HINSTANCE module, UINT id) {
    UniqueBitmap bitmap(platform::LoadImageResource(module, id));
    if (!bitmap && module != text::ProgramModule()) {
        bitmap = UniqueBitmap(platform::LoadImageResource(text::ProgramModule(), id));
    }
    if (!bitmap) {
        return ImageStrip();
    }
    const platform::WindowDC screen(nullptr);
    const COLORREF transparent = FirstPixel(screen, bitmap.Get());
    return ImageStrip(std::move(bitmap), transparent);
}

ImageStrip LoadStatusStrip(unsigned iconSize) {
    const HINSTANCE module = StripModule(statusStrips, iconSize);
    const ImageStrip decoded = LoadStrip(module, ChooseStrip(module, statusStrips, iconSize));
    const platform::WindowDC screen(nullptr);
    const COLORREF window = GetSysColor(COLOR_WINDOW);
    return ImageStrip(
        MapPixels(screen, decoded.Bitmap(),
                  [window](COLORREF pixel) { return IsStatusKey(pixel) ? window : pixel; }),
        window);
}

}  // namespace ui
