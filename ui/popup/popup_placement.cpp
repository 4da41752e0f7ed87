#include "ui/popup/popup_placement.h"

#include <algorithm>

namespace ui {

RECT PlacePopup(const RECT& anchor, SIZE size, const RECT& workArea) {
    RECT place;
    place.left = anchor.left;
    place.right = place.left + size.cx;
    if (place.right > workArea.right) {
        place.right = anchor.right;
        place.left = place.right - size.cx;
        if (place.left < workArea.left) {
            place.left = workArea.left;
            place.right = std::min(place.left + size.cx, workArea.right);
        }
    }
    place.bottom = anchor.top;
    place.top = place.bottom - size.cy;
    if (place.top < workArea.top) {
        place.top = anchor.bottom;
        place.bottom = place.top + size.cy;
        if (place.bottom > workArea.bottom) {
            const LONG above = anchor.top - workArea.top;
            const LONG below = workArea.bottom - anchor.bottom;
            if (above > below) {
                place.top = workArea.top;
                place.bottom = anchor.top;
            } else {
                place.top = anchor.bottom;
                place.bottom = workArea.bottom;
            }
        }
    }
    return place;
}

}  // namespace ui
