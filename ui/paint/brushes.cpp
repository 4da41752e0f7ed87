#include "ui/paint/brushes.h"

namespace ui {

HBRUSH SolidBrushes::Of(COLORREF color) {
    for (const Kept& kept : kept_) {
        if (kept.brush && kept.color == color) {
            return kept.brush.Get();
        }
    }
    platform::UniqueBrush brush(CreateSolidBrush(color));
    if (!brush) {
        return nullptr;
    }
    Kept& place = kept_[oldest_];
    oldest_ = (oldest_ + 1) % most;
    place = Kept{color, std::move(brush)};
    return place.brush.Get();
}

void SolidBrushes::Free() {
    for (Kept& kept : kept_) {
        kept.brush.Reset();
    }
}

}  // namespace ui
