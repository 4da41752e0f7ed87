#include "app/view_pane.h"

#include "ui/paint/paint.h"

namespace app {

LRESULT ViewPane::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_SIZE:
            owner_.ArrangeView(ClientRectangle());
            return 0;
        case WM_TIMER:
            owner_.TimerOfView(wParam);
            return 0;
        case WM_PAINT:
            ui::PaintWindow(Handle(), [](HDC dc, const RECT& client) {
                ui::FillWithSystemColor(dc, client, COLOR_WINDOW);
            });
            return 0;
        case WM_ERASEBKGND:
            return 1;
        default:
            return Default(message, wParam, lParam);
    }
}

}  // namespace app
