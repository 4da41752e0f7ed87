#include "ui/paint/drawing_resources.h"

#include "ui/paint/screen_metrics.h"

namespace ui {

void DrawingResources::Load() {
    Free();
    fonts.Load();
    mainStripId_ = ChooseStrip(mainStrips, GetScreenMetrics().iconSize);
    mainStrip = LoadStrip(*mainStripId_);
}

void DrawingResources::Free() {
    mainStrip = ImageStrip();
    mainStripId_.reset();
    secondStrip_.reset();
    statusStrip_.reset();
    fonts.Free();
}

const ImageStrip& DrawingResources::SecondStrip() {
    if (!secondStrip_) {
        const bool larger = mainStripId_ && *mainStripId_ < mainStrips.largest;
        secondStrip_ = larger ? LoadStrip(*mainStripId_ + 1) : ImageStrip();
    }
    return *secondStrip_;
}

int DrawingResources::StatusIconSize() const {
    if (statusStrip_) {
        return statusStrip_->IconSize();
    }
    const UINT id = ChooseStrip(statusStrips, GetScreenMetrics().iconSize);
    return static_cast<int>(StripHeight(StripModule(id), id).value_or(0));
}

const ImageStrip& DrawingResources::StatusStrip() {
    if (!statusStrip_) {
        statusStrip_ = mainStripId_ ? LoadStatusStrip(GetScreenMetrics().iconSize) : ImageStrip();
    }
    return *statusStrip_;
}

DrawingResources& Resources() {
    static DrawingResources resources;
    return resources;
}

}  // namespace ui
