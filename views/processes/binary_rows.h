// How processes and modules look in their lists.
#pragma once

#include <string>
#include <string_view>

#include "views/kept_texts.h"
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
    void Draw(const DRAWITEMSTRUCT& row, const BinaryItem& item, const BinaryLines& lines) const;

 private:
    // Draws the lines below the name of a row (from 0) upwards from the area's bottom and returns
    // where they begin.
    int DrawLines(HDC dc, RECT area, unsigned row, const BinaryItem& item,
                  const BinaryLines& lines) const;

    SystemIcons icons_;
    mutable KeptTexts<uint64_t> sizes_;
    int textHeight_ = 0;
    int smallTextHeight_ = 0;
};

// An address in lower-case hexadecimal digits.
class AddressText {
 public:
    explicit AddressText(ULONG_PTR address);
    std::wstring_view View() const { return std::wstring_view(first_, end_); }

 private:
    wchar_t digits_[2 * sizeof(ULONG_PTR)];
    wchar_t* const end_ = digits_ + 2 * sizeof(ULONG_PTR);
    wchar_t* first_ = end_;
};
std::wstring FormatAddress(ULONG_PTR address);

}  // namespace views
