// The mark of a selected row: an arrow without a shaft, pointing right.
#pragma once

#include "ui/paint/paint.h"

namespace views {

// The width of the mark's area in a row, in pixels.
constexpr int ChevronWidth(int rowHeight) {
    return (rowHeight - rowHeight / 2) | 1;
}

// Blends the mark into a surface of the given size; nothing when it has no room.
void BlendChevron(ui::BlendSurface& surface, int width, int height, COLORREF color);

}  // namespace views
