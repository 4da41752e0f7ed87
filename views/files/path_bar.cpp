#include "views/files/path_bar.h"

#include <cstdlib>
#include <utility>

#include "ui/paint/clipped_text.h"
#include "ui/paint/drawing_resources.h"
#include "ui/paint/paint.h"
#include "ui/paint/theme.h"
#include "ui/window/gesture.h"

namespace views {

bool PathBar::Open(HWND parent, std::function<void()> onUp) {
    onUp_ = std::move(onUp);
    return Create(L"kx::PathBar", L"", ui::childStyle & ~static_cast<DWORD>(WS_VISIBLE), RECT{},
                  parent);
}

void PathBar::SetText(std::wstring text) {
    path_ = std::move(text);
    SetWindowTextW(Handle(), path_.c_str());
    InvalidateRect(Handle(), nullptr, FALSE);
}

void PathBar::OnPress(POINT point) {
    ui::GestureInfo gesture;
    gesture.startX = point.x;
    gesture.startY = point.y;
    if (ui::TrackGesture(Handle(), gesture, ui::gestureTimeout) != ui::GestureDrag) {
        return;
    }
    const int left = gesture.startX - gesture.x;
    if (left > std::abs(gesture.y - gesture.startY)) {
        onUp_();
    }
}

void PathBar::Paint(HDC dc, const RECT& client) {
    constexpr unsigned textShare = 24;
    const COLORREF window = GetSysColor(COLOR_WINDOW);
    const COLORREF text = GetSysColor(COLOR_WINDOWTEXT);
    ui::FillWithColor(dc, client, ui::MixColors(text, window, textShare));
    ui::DrawRowRule(dc, client);
    const platform::Selected font(dc, ui::Fonts().Bold());
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, text);
    const int height = ui::TextHeight(dc, ui::Fonts().Bold());
    RECT area = client;
    area.left += height / 2;
    area.right -= height / 2;
    area.top += (ui::Height(client) - height) / 2;
    ui::DrawPathText(dc, area, path_);
}

LRESULT PathBar::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_PAINT:
            ui::PaintWindow(Handle(), [this](HDC dc, const RECT& client) { Paint(dc, client); });
            return 0;
        case WM_ERASEBKGND:
            return 1;
        case WM_LBUTTONDOWN:
        case WM_LBUTTONDBLCLK:
            OnPress(ui::PointOf(lParam));
            return 0;
        case WM_XBUTTONDOWN:
        case WM_XBUTTONDBLCLK:
            backPressed_ = HIWORD(wParam) == XBUTTON1;
            return TRUE;
        case WM_XBUTTONUP:
            if (std::exchange(backPressed_, false) && HIWORD(wParam) == XBUTTON1) {
                onUp_();
            }
            return TRUE;
        default:
            return Default(message, wParam, lParam);
    }
}

}  // namespace views
