// Where a popup menu opens beside its anchor.
#pragma once

#include "platform/windows.h"

namespace ui {

// The rectangle of a menu of `size` next to `anchor` inside `workArea`, all in screen pixels:
// upwards if it fits, else downwards, else in the larger space, where its rows scroll.
RECT PlacePopup(const RECT& anchor, SIZE size, const RECT& workArea);

}  // namespace ui
