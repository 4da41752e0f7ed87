#include "ui/paint/drawing_resources.h"

#include "ui/paint/screen_metrics.h"

namespace ui {

namespace {

// Made before the program begins, so that nobody has to look whether it has been made.
constinit DrawingResources resources;

}  // namespace

void DrawingResources::Load() {
    Free();
    fonts.Load();
    const unsigned iconSize = GetScreenMetrics().iconSize;
    const HINSTANCE module = StripModule(mainStrips, iconSize);
    mainStripId_ = ChooseStrip(module, mainStrips, iconSize);
}

void DrawingResources::Free() {
    mainStrip_.reset();
    mainStripId_.reset();
    secondStrip_.reset();
    statusStrip_.reset();
    brushes.Free();
    fonts.Free();
}

ImageStrip& DrawingResources::MainStrip() {
    if (!mainStrip_) {
        mainStrip_ = mainStripId_ ? LoadStrip(StripModule(mainStrips, GetScreenMetrics().iconSize),
                                              *mainStripId_)
                                  : ImageStrip();
    }
    return *mainStrip_;
}

int DrawingResources::MainIconSize() const {
    if (mainStrip_ || !mainStripId_) {
        return mainStrip_ ? mainStrip_->IconSize() : 0;
    }
    const HINSTANCE module = StripModule(mainStrips, GetScreenMetrics().iconSize);
    return static_cast<int>(StripHeight(module, *mainStripId_).value_or(0));
}

const ImageStrip& DrawingResources::SecondStrip() {
    if (!secondStrip_) {
        const bool larger = mainStripId_ && *mainStripId_ < mainStrips.largest;
        const HINSTANCE module = StripModule(mainStrips, GetScreenMetrics().iconSize);
        secondStrip_ = larger ? LoadStrip(module, *mainStripId_ + 1) : ImageStrip();
    }
    return *secondStrip_;
}

int DrawingResources::StatusIconSize() const {
    if (statusStrip_) {
        return statusStrip_->IconSize();
    }
    const unsigned iconSize = GetScreenMetrics().iconSize;
    const HINSTANCE module = StripModule(statusStrips, iconSize);
    return static_cast<int>(
        StripHeight(module, ChooseStrip(module, statusStrips, iconSize)).value_or(0));
}

const ImageStrip& DrawingResources::StatusStrip() {
    if (!statusStrip_) {
        statusStrip_ = mainStripId_ ? LoadStatusStrip(GetScreenMetrics().iconSize) : ImageStrip();
    }
    return *statusStrip_;
}

DrawingResources& Resources() {
    return resources;
}

}  // namespace ui
