// How processes and modules look in their lists.
#pragma once

#include <string>

#include "views/processes/binary_item.h"
#include "views/system_icons.h"

namespace views {

// Which lines stand below the name.
struct BinaryLines {
    bool path = false;
    bool base = false;
    bool size = false;
};

class BinaryRows {
 public:
    // Measures fonts and the system's large icons.
    void Layout(HDC dc);
    // The height of every row, in pixels.
    int Height(const BinaryLines& lines) const;
    void Draw(const DRAWITEMSTRUCT& row, const BinaryItem& item, const std::wstring& name,
              const BinaryLines& lines) const;

 private:
    // Draws the lines below the name upwards from `bottom` and returns where they begin.
    int DrawLines(HDC dc, RECT area, const BinaryItem& item, const BinaryLines& lines) const;

    SystemIcons icons_;
    int textHeight_ = 0;
    int smallTextHeight_ = 0;
};

// An address in lower-case hexadecimal digits.
std::wstring FormatAddress(ULONG_PTR address);

}  // namespace views
