// One row of a view drawn apart from the screen: the texts and icons that were asked for, and the
// pixels.
#pragma once

#include <string>
#include <vector>

#include "ui/list/row_list.h"

namespace test {

struct DrawnText {
    std::wstring text;
    int x;
    int y;
    RECT area;
    COLORREF color;
    // Width and height of the text in its font, in pixels.
    SIZE size;
};

class DrawnRow {
 public:
    // Draws a row of the list in the given size, on the background of a window.
    DrawnRow(ui::RowListWindow& list, unsigned row, SIZE size, bool selected = false);

    const std::vector<DrawnText>& Texts() const { return texts_; }
    // The indices of the icons that were drawn into the row.
    const std::vector<int>& Icons() const { return icons_; }
    // Coordinates count from the row's upper left corner.
    COLORREF At(int x, int y) const { return pixels_.at(static_cast<size_t>(y * size_.cx + x)); }
    // Whether any pixel of an area differs from the row's upper right corner.
    bool HasMarks(const RECT& area) const;

 private:
    SIZE size_;
    std::vector<DrawnText> texts_;
    std::vector<int> icons_;
    std::vector<COLORREF> pixels_;
};

}  // namespace test
