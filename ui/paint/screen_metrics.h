// Sizes that follow from the device's screen, in pixels; measured once and kept until the screen
// has another scale.
#pragma once

namespace ui {

struct ScreenMetrics {
    // The shorter side of the screen.
    unsigned shortSide = 0;
    // A sixth of it: the largest icon of an image strip that fits.
    unsigned iconSize = 0;
    // Fifths of it.
    unsigned touchWidth = 0;
    unsigned touchHeight = 0;
    unsigned touchSize = 0;
};

// The metrics of a screen whose shorter side is `shortSide` pixels.
ScreenMetrics MetricsForShortSide(unsigned shortSide);

// The metrics of this device's screen; all 0 when the screen cannot be read.
const ScreenMetrics& GetScreenMetrics();

// The screen has another scale: it is measured anew when the metrics are next asked for.
void ForgetScreenMetrics();

}  // namespace ui
