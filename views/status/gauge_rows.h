// How the gauges look in a list.
#pragma once

#include "views/status/gauges.h"

namespace views {

class GaugeRows {
 public:
    // Measures fonts and icons.
    void Layout(HDC dc);

    // The height of a gauge's row in pixels.
    int Height() const { return height_; }
    void Draw(const DRAWITEMSTRUCT& row, const Gauge& gauge) const;

 private:
    void DrawContent(const DRAWITEMSTRUCT& row, const Gauge& gauge) const;

    int textHeight_ = 0;
    int smallTextHeight_ = 0;
    int barHeight_ = 0;
    int iconSize_ = 0;
    // The space between the parts of a row.
    int margin_ = 0;
    int height_ = 0;
};

}  // namespace views
