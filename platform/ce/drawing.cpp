#include "platform/drawing.h"

namespace platform {

void FlushDrawing() {}

HFONT SystemFont() {
    return static_cast<HFONT>(GetStockObject(SYSTEM_FONT));
}

bool ScreenRectangle(RECT* rectangle) {
    MONITORINFO monitor = {};
    monitor.cbSize = sizeof monitor;
    if (!GetMonitorInfoW(MonitorFromWindow(nullptr, MONITOR_DEFAULTTONEAREST), &monitor)) {
        return false;
    }
    *rectangle = monitor.rcMonitor;
    return true;
}

}  // namespace platform
