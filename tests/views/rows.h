// What tests do with the rows of a view's list.
#pragma once

#include "ui/list/row_list.h"

namespace test {

// The height of a row in pixels.
inline int HeightOf(const ui::RowListWindow& list, unsigned row) {
    return static_cast<int>(list.Measure(row, 1, 1, list.GetItemData(row)).cy);
}

// What a finger's tap does when it has been recognised.
inline void Tap(ui::RowListWindow& list, unsigned row) {
    list.OnTap(row, ui::GestureTap);
}

}  // namespace test
