#include "ui/bar/progress_band.h"

#include <algorithm>
#include <utility>

#include "platform/handles.h"
#include "res/resource.h"
#include "text/resources.h"
#include "ui/bar/command_bar.h"
#include "ui/paint/clipped_text.h"
#include "ui/paint/drawing_resources.h"
#include "ui/paint/paint.h"
#include "ui/paint/spacing.h"
#include "ui/paint/theme.h"
#include "ui/window/gesture.h"

namespace ui {

ProgressBand::~ProgressBand() {
    Destroy();
}

bool ProgressBand::Show(HWND parent, std::wstring work, std::wstring done) {
    work_ = std::move(work);
    done_ = std::move(done);
    RECT client = {};
    GetClientRect(parent, &client);
    const platform::WindowDC dc(parent);
    const int line = TextHeight(dc, Fonts().Base());
    RECT bounds = client;
    bounds.top = std::max<LONG>(client.top, client.bottom - 2 * BandHeight(line));
    if (!Handle() && !Create(className, L"", childStyle, bounds, parent)) {
        return false;
    }
    SetWindowPos(Handle(), HWND_TOP, bounds.left, bounds.top, Width(bounds), Height(bounds),
                 SWP_NOACTIVATE);
    InvalidateRect(Handle(), nullptr, FALSE);
    UpdateWindow(Handle());
    return true;
}

bool ProgressBand::AsksToStop() {
    constexpr struct {
        UINT first;
        UINT last;
    } ranges[] = {{WM_KEYFIRST, WM_KEYLAST}, {WM_MOUSEFIRST, WM_MOUSELAST}, {WM_HOTKEY, WM_HOTKEY}};
    bool stop = false;
    for (const auto& range : ranges) {
        MSG message;
        while (PeekInput(&message, nullptr, range.first, range.last, PM_REMOVE)) {
            stop = IsStop(message) || stop;
        }
    }
    return stop;
}

bool ProgressBand::IsStop(const MSG& message) {
    const bool onKey = [&] {
        const RECT key = KeyBounds();
        return message.hwnd == Handle() && PtInRect(&key, PointOf(message.lParam));
    }();
    switch (message.message) {
        case WM_KEYDOWN:
            return message.wParam == VK_ESCAPE;
        case WM_KEYUP:
            return message.wParam == VK_F2;
        case WM_HOTKEY:
            return HIWORD(message.lParam) == VK_ESCAPE && (LOWORD(message.lParam) & MOD_KEYUP);
        case WM_LBUTTONDOWN:
        case WM_LBUTTONDBLCLK:
            SetPressed(onKey);
            return false;
        case WM_LBUTTONUP: {
            const bool pressed = pressed_;
            SetPressed(false);
            return pressed && onKey;
        }
        default:
            return false;
    }
}

void ProgressBand::SetPressed(bool pressed) {
    if (std::exchange(pressed_, pressed) != pressed) {
        InvalidateRect(Handle(), nullptr, FALSE);
        UpdateWindow(Handle());
    }
}

// Where the bar's right key is.
RECT ProgressBand::KeyBounds() const {
    RECT bar = ClientRectangle();
    bar.top += Height(bar) / 2;
    return BarButtonBounds(bar, 2, 1);
}

void ProgressBand::Paint(HDC dc, const RECT& client) const {
    FillWithColor(dc, client, barColor);
    const int border = GetSystemMetrics(SM_CYBORDER);
    FillWithColor(dc, RECT{client.left, client.top, client.right, client.top + border},
                  barRuleColor);
    const platform::Selected font(dc, Fonts().Base());
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, barTextColor);
    const RECT key = KeyBounds();
    const int margin = Height(key) / 4;
    DrawClippedLine(dc, RECT{client.left + margin, client.top, client.right - margin, key.top},
                    work_);
    const RECT beside = {client.left + margin, key.top, key.left - margin, key.bottom};
    {
        // Large letters on a small screen leave too little room for a count.
        const bool fits = TextWidth(dc, done_) <= Width(beside);
        const platform::Selected smaller(dc, fits ? Fonts().Base() : Fonts().Small());
        DrawClippedLine(dc, beside, done_);
    }
    if (pressed_) {
        FillWithColor(dc, key, barPressedColor);
    }
    const int inset = Height(key) / 4;
    FillWithColor(dc, RECT{key.left, key.top + inset, key.left + border, key.bottom - inset},
                  barRuleColor);
    DrawClippedLine(dc, key, text::LoadText(IDS_BUTTON_CANCEL), TextAlignment::Centered);
}

LRESULT ProgressBand::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_PAINT:
            PaintWindow(Handle(), [this](HDC dc, const RECT& client) { Paint(dc, client); });
            return 0;
        case WM_ERASEBKGND:
            return 1;
        default:
            return Default(message, wParam, lParam);
    }
}

}  // namespace ui
