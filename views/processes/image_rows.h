// How processes and modules look in their lists.
#pragma once

#include <string>

#include "views/processes/image_item.h"

namespace views {

// Which lines stand below the name.
struct ImageLines {
    bool path = false;
    bool base = false;
    bool size = false;
};

class ImageRows {
 public:
    // Measures fonts and the system's large icons.
    void Layout(HDC dc);
    // The height of every row, in pixels.
    int Height(const ImageLines& lines) const;
    void Draw(const DRAWITEMSTRUCT& row, const ImageItem& item, const std::wstring& name,
              const ImageLines& lines) const;

 private:
    // Draws the lines below the name upwards from `bottom` and returns where they begin.
    int DrawLines(HDC dc, RECT area, const ImageItem& item, const ImageLines& lines) const;

    // The system's large icons, borrowed.
    HIMAGELIST icons_ = nullptr;
    int iconWidth_ = 0;
    int iconHeight_ = 0;
    int textHeight_ = 0;
    int smallTextHeight_ = 0;
};

// An address in lower-case hexadecimal digits.
std::wstring FormatAddress(ULONG_PTR address);

}  // namespace views
