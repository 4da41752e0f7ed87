#include "views/files/paint_progress.h"

#include "ui/window/gesture.h"
#include "ui/window/held_fault.h"

namespace views {

void PaintProgress::OnProgress() {
    // How long the screen may wait to be drawn, in milliseconds.
    constexpr DWORD paintPeriod = 100;
    const DWORD now = GetTickCount();
    if (now - lastPainted_ < paintPeriod) {
        return;
    }
    lastPainted_ = now;
    // A window that cannot be painted, for want of memory, asks for it again and again.
    constexpr int mostPaints = 16;
    MSG message;
    for (int paints = 0;
         paints < mostPaints && ui::PeekInput(&message, nullptr, WM_PAINT, WM_PAINT, PM_REMOVE);
         ++paints) {
        ui::Dispatch(message);
    }
}

}  // namespace views
