#include "ui/drawing_resources.h"

#include "ui/screen_metrics.h"

namespace ui {

void DrawingResources::Load() {
    fonts.Load();
    const unsigned iconSize = GetScreenMetrics().iconSize;
    const UINT chosen = ChooseStrip(StripModule(mainStrips), mainStrips, iconSize);
    mainStrip = LoadStrip(chosen);
    secondStrip = chosen < mainStrips.largest ? LoadStrip(chosen + 1) : ImageStrip();
    statusStrip = LoadStatusStrip(iconSize);
}

void DrawingResources::Free() {
    mainStrip = ImageStrip();
    secondStrip = ImageStrip();
    statusStrip = ImageStrip();
    fonts.Free();
}

DrawingResources& Resources() {
    static DrawingResources resources;
    return resources;
}

}  // namespace ui
