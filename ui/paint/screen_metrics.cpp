#include "ui/paint/screen_metrics.h"

#include <algorithm>

#include "platform/drawing.h"
#include "ui/window/window.h"

namespace ui {

ScreenMetrics MetricsForShortSide(unsigned shortSide) {
    ScreenMetrics metrics;
    metrics.shortSide = shortSide;
    metrics.iconSize = shortSide / 6;
    metrics.touchWidth = metrics.touchHeight = metrics.touchSize = shortSide / 5;
    return metrics;
}

namespace {

ScreenMetrics kept;
bool measured = false;

ScreenMetrics MeasureScreen() {
    RECT screen;
    if (!platform::ScreenRectangle(&screen)) {
        return ScreenMetrics();
    }
    return MetricsForShortSide(
        static_cast<unsigned>(std::max(0, std::min(Width(screen), Height(screen)))));
}

}  // namespace

const ScreenMetrics& GetScreenMetrics() {
    if (!measured) {
        kept = MeasureScreen();
        measured = true;
    }
    return kept;
}

void ForgetScreenMetrics() {
    measured = false;
}

}  // namespace ui
