// Brushes of one color, which are made once and not for every line of every row.
#pragma once

#include <array>

#include "platform/handles.h"

namespace ui {

class SolidBrushes {
 public:
    // More colors than these stand in no window of the program.
    static constexpr size_t most = 8;

    // Borrowed, until so many other colors have been asked for. Null when there is none to be had
    // (CreateSolidBrush).
    HBRUSH Of(COLORREF color);
    void Free();

 private:
    struct Kept {
        COLORREF color = 0;
        platform::UniqueBrush brush;
    };
    std::array<Kept, most> kept_;
    // The one that goes next.
    size_t oldest_ = 0;
};

}  // namespace ui
