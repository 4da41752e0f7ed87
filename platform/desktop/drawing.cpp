#include "platform/drawing.h"

#include "platform/desktop/screen.h"
#include "platform/handles.h"

namespace platform {

void FlushDrawing() {
    GdiFlush();
}

HFONT SystemFont() {
    static UniqueFont font;
    static int dots = 0;
    if (const int now = desktop::DotsPerInch(); now != dots) {
        font.Reset(desktop::CreateSystemFont());
        dots = now;
    }
    return font ? font.Get() : static_cast<HFONT>(GetStockObject(SYSTEM_FONT));
}

bool ScreenRectangle(RECT* rectangle) {
    return desktop::ScreenRectangle(rectangle);
}

}  // namespace platform
