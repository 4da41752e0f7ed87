#include "platform/drawing.h"

#include "platform/desktop/screen.h"
#include "platform/handles.h"

namespace platform {

void FlushDrawing() {
    GdiFlush();
}

HFONT SystemFont() {
    static const UniqueFont font(desktop::CreateSystemFont());
    return font ? font.Get() : static_cast<HFONT>(GetStockObject(SYSTEM_FONT));
}

bool ScreenRectangle(RECT* rectangle) {
    return desktop::ScreenRectangle(rectangle);
}

}  // namespace platform
