// The arithmetic of a scrolling list: what fits, what lies under a finger, where a drag and its
// release take the rows. Functions of values, apart from the window that uses them.
#pragma once

#include <vector>

#include "platform/windows.h"

namespace ui {

// One row: measured size in pixels and a machine word that its owner supplies.
struct ItemRecord {
    int width = 0;
    int height = 0;
    ULONG_PTR data = 0;
};

using ItemRecords = std::vector<ItemRecord>;

// No row.
inline constexpr unsigned noRow = ~0u;

// Which row a point falls on, and from where to where the row reaches below the list's top.
struct RowHit {
    unsigned index = noRow;
    int top = 0;
    int bottom = 0;
};

// How far a list is scrolled while a finger holds it: row `top` is drawn `offset` pixels above
// the upper edge (below it when negative).
struct DragPosition {
    unsigned top = 0;
    int offset = 0;
};

// How the rows slide to rest: the first frame draws row `DragPosition::top` at `first`, each
// further one `step` lower, until it lies at `target`; then `newTop` is the top row.
struct SlideToRest {
    int first = 0;
    int step = 0;
    int target = 0;
    unsigned newTop = 0;
};

// The largest top row: the first from which the remaining rows no longer fill the client height.
// Only for rows that do not fit.
unsigned LargestTop(const ItemRecords& items, int clientHeight);

// The row `distance` pixels below the top of row `start`.
RowHit RowBelow(const ItemRecords& items, unsigned start, int distance);

// The smallest top row with which `row` is fully visible.
unsigned TopToShow(const ItemRecords& items, unsigned row, int clientHeight);

// The row reached by a page upwards from `row`.
unsigned PageUp(const ItemRecords& items, unsigned row, int clientHeight);

// The row reached by a page downwards from `row`.
unsigned PageDown(const ItemRecords& items, unsigned row, int clientHeight);

// The scroll state after the finger has moved up by `distance` pixels. Beyond either end the rows
// follow for at most half the client height.
DragPosition FollowFinger(const ItemRecords& items, unsigned maxTop, int clientHeight,
                          DragPosition position, int distance);

// The slide after the finger has been lifted.
SlideToRest PlanSlide(const ItemRecords& items, unsigned maxTop, int totalHeight,
                      DragPosition position);

// The thumb of the scroll indicator in client coordinates, its width being `width` at the right
// edge. Empty when the rows fit.
RECT ScrollThumb(const RECT& client, int totalHeight, unsigned top, unsigned count, int width,
                 int shortest);

}  // namespace ui
