#include "ui/bar/buttons_bar.h"

#include <algorithm>

#include "platform/scope_exit.h"
#include "text/resources.h"
#include "ui/paint/clipped_text.h"
#include "ui/paint/drawing_resources.h"
#include "ui/paint/paint.h"
#include "ui/paint/spacing.h"
#include "ui/paint/theme.h"
#include "ui/window/modal_loop.h"

namespace ui {

namespace {

constexpr unsigned noButton = ~0u;

// Notices a stylus that has left the bar.
constexpr UINT_PTR hotTimer = 1;
constexpr UINT hotPeriod = 300;

}  // namespace

RECT ButtonsLayout::Bounds(unsigned index) const {
    const int x = left + static_cast<int>(index) * (width + gap);
    return RECT{x, top, x + width, top + height};
}

ButtonsLayout LayOutButtons(int clientWidth, int clientHeight, unsigned count, int rowHeight) {
    ButtonsLayout layout;
    if (count == 0) {
        return layout;
    }
    const int number = static_cast<int>(count);
    layout.height = std::min(rowHeight, clientHeight);
    layout.gap = layout.height / 4;
    layout.width = std::max(0, (clientWidth - (number + 1) * layout.gap) / number);
    const int row = number * (layout.width + layout.gap) - layout.gap;
    layout.left = clientWidth > row ? (clientWidth - row) / 2 : 0;
    layout.top = clientHeight > layout.height ? (clientHeight - layout.height) / 2 : 0;
    return layout;
}

ButtonStep StepButton(unsigned focused, unsigned count, bool forward) {
    if (count > 0 && focused >= count) {
        return ButtonStep{forward ? 0 : count - 1, false};
    }
    if (forward) {
        return focused + 1 < count ? ButtonStep{focused + 1, false} : ButtonStep{0, true};
    }
    return focused > 0 ? ButtonStep{focused - 1, false}
                       : ButtonStep{count > 0 ? count - 1 : 0, true};
}

ButtonsBar::~ButtonsBar() {
    Destroy();
}

bool ButtonsBar::Open(HWND parent) {
    return Create(L"kx::MBButtonsBar", L"", childStyle | WS_TABSTOP, RECT{}, parent);
}

void ButtonsBar::AddButton(UINT id) {
    buttons_.push_back(Button{id, text::TextOf(id)});
    Measure();
}

void ButtonsBar::FocusButton(unsigned index) {
    if (index < buttons_.size() || index == noButton) {
        focused_ = index;
        InvalidateRect(Handle(), nullptr, FALSE);
    }
}

void ButtonsBar::Measure() {
    const platform::WindowDC dc(Handle());
    const platform::Selected font(dc, Fonts().Base());
    const int height = TextHeight(dc, Fonts().Base());
    rowHeight_ = BandHeight(height);
    int widest = 0;
    for (const Button& button : buttons_) {
        widest = std::max(widest, TextWidth(dc, button.label));
    }
    const int count = static_cast<int>(buttons_.size());
    naturalWidth_ = count * (widest + height) + (count + 1) * (rowHeight_ / 4);
}

bool ButtonsBar::Describe(unsigned part, platform::AccessiblePart* description) {
    if (!platform::hasAssistiveTechnology || part > buttons_.size()) {
        return false;
    }
    description->role = platform::PartRole::Bar;
    if (part > 0) {
        description->role = platform::PartRole::Button;
        description->name = buttons_[part - 1].label;
        description->bounds = CurrentLayout().Bounds(part - 1);
    }
    return true;
}

ButtonsLayout ButtonsBar::CurrentLayout() const {
    const RECT client = ClientRectangle();
    return LayOutButtons(Width(client), Height(client), static_cast<unsigned>(buttons_.size()),
                         rowHeight_);
}

unsigned ButtonsBar::ButtonAt(POINT point) const {
    const ButtonsLayout layout = CurrentLayout();
    for (unsigned index = 0; index < buttons_.size(); ++index) {
        const RECT bounds = layout.Bounds(index);
        if (PtInRect(&bounds, point)) {
            return index;
        }
    }
    return noButton;
}

ButtonsBar::State ButtonsBar::StateOf(unsigned index) const {
    if (index == pressed_) {
        return State::Pressed;
    }
    return index == hot_ ? State::Hot : State::Normal;
}

void ButtonsBar::Paint(HDC dc, const RECT& client) {
    FillWithSystemColor(dc, client, COLOR_WINDOW);
    const platform::Selected font(dc, Fonts().Base());
    SetBkMode(dc, TRANSPARENT);
    const ButtonsLayout layout = CurrentLayout();
    for (unsigned index = 0; index < buttons_.size(); ++index) {
        DrawButton(dc, layout.Bounds(index), index);
    }
}

void ButtonsBar::DrawButton(HDC dc, const RECT& bounds, unsigned index) {
    const int border = GetSystemMetrics(SM_CXBORDER);
    const State state = StateOf(index);
    const bool focused = index == focused_;
    const COLORREF accent = GetSysColor(COLOR_HIGHLIGHT);
    const COLORREF face = GetSysColor(COLOR_BTNFACE);
    COLORREF fill = face;
    COLORREF label = GetSysColor(COLOR_BTNTEXT);
    if (state == State::Pressed) {
        fill = accent;
        label = GetSysColor(COLOR_HIGHLIGHTTEXT);
    } else if (state == State::Hot) {
        fill = MixColors(accent, face, 64);
    }
    FillWithColor(dc, bounds, fill);
    if (focused) {
        DrawFrame(dc, bounds, 2 * border, accent);
    } else {
        DrawFrame(dc, bounds, border, GetSysColor(COLOR_BTNSHADOW));
    }
    SetTextColor(dc, label);
    RECT area = bounds;
    area.left += 2 * border;
    area.right -= 2 * border;
    DrawClippedLine(dc, area, buttons_[index].label, TextAlignment::Centered);
}

void ButtonsBar::SetHot(unsigned index) {
    if (index == hot_) {
        return;
    }
    hot_ = index;
    if (index == noButton) {
        KillTimer(Handle(), hotTimer);
    } else {
        SetTimer(Handle(), hotTimer, hotPeriod, nullptr);
    }
    InvalidateRect(Handle(), nullptr, FALSE);
}

void ButtonsBar::UpdateHotFromCursor() {
    POINT cursor;
    if (GetCursorPos(&cursor) && ScreenToClient(Handle(), &cursor)) {
        SetHot(ButtonAt(cursor));
    } else {
        SetHot(noButton);
    }
}

void ButtonsBar::TrackPress(unsigned index) {
    if (FollowPress(index)) {
        SendCommand(buttons_[index].id);
    }
    if (Handle()) {
        InvalidateRect(Handle(), nullptr, FALSE);
        UpdateHotFromCursor();
    }
}

bool ButtonsBar::FollowPress(unsigned index) {
    // A bar that is destroyed meanwhile has no handle, as nobody has the capture.
    const HWND window = Handle();
    const platform::ScopeExit release([this] {
        pressed_ = noButton;
        if (Handle() && GetCapture() == Handle()) {
            ReleaseCapture();
        }
    });
    pressed_ = index;
    SetCapture(window);
    InvalidateRect(window, nullptr, FALSE);
    UpdateWindow(window);
    bool pressed = false;
    const auto follow = [this, index, &pressed](const MSG& message) {
        const auto overButton = [&] { return ButtonAt(PointOf(message.lParam)) == index; };
        switch (message.message) {
            case WM_LBUTTONUP:
                pressed = overButton();
                return LoopStep::End;
            // While a finger is down the keys act on nothing else; Escape gives the press up.
            case WM_KEYDOWN:
                return message.wParam == VK_ESCAPE ? LoopStep::End : LoopStep::Skip;
            case WM_MOUSEMOVE:
                if (const unsigned under = overButton() ? index : noButton; under != pressed_) {
                    pressed_ = under;
                    InvalidateRect(Handle(), nullptr, FALSE);
                }
                return LoopStep::Skip;
            default:
                return LoopStep::Dispatch;
        }
    };
    RunModalLoop([window] { return GetCapture() == window; }, follow);
    return pressed;
}

bool ButtonsBar::OnKey(WPARAM key) {
    bool forward = true;
    switch (key) {
        case VK_RETURN:
            if (focused_ < buttons_.size()) {
                SendCommand(buttons_[focused_].id);
            }
            return true;
        case VK_ESCAPE:
            SendCommand(IDCANCEL);
            return true;
        case VK_LEFT:
        case VK_UP:
            forward = false;
            break;
        case VK_RIGHT:
        case VK_DOWN:
            break;
        case VK_TAB:
            forward = GetAsyncKeyState(VK_SHIFT) >= 0;
            break;
        default:
            return false;
    }
    const ButtonStep step = StepButton(focused_, static_cast<unsigned>(buttons_.size()), forward);
    focused_ = step.index;
    InvalidateRect(Handle(), nullptr, FALSE);
    if (step.wrapped && key == VK_TAB) {
        PostMessageW(GetParent(Handle()), WM_NEXTDLGCTL, forward ? 1 : 0, 0);
    }
    return !step.wrapped;
}

void ButtonsBar::SendCommand(UINT id) {
    Send(GetParent(Handle()), WM_COMMAND, MAKEWPARAM(id, 0), reinterpret_cast<LPARAM>(Handle()));
}

LRESULT ButtonsBar::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_PAINT:
            PaintWindow(Handle(), [this](HDC dc, const RECT& client) { Paint(dc, client); });
            return 0;
        case WM_ERASEBKGND:
            return 1;
        case WM_MOUSEMOVE:
            SetHot(ButtonAt(PointOf(lParam)));
            return 0;
        case WM_TIMER:
            if (wParam == hotTimer) {
                UpdateHotFromCursor();
                return 0;
            }
            break;
        case WM_LBUTTONDOWN:
        case WM_LBUTTONDBLCLK: {
            const unsigned button = ButtonAt(PointOf(lParam));
            if (button != noButton) {
                TrackPress(button);
            }
            return 0;
        }
        case WM_GETDLGCODE:
            return DLGC_WANTALLKEYS;
        case WM_KEYDOWN:
            if (OnKey(wParam)) {
                return 0;
            }
            break;
        case WM_SETFOCUS:
        case WM_KILLFOCUS:
            InvalidateRect(Handle(), nullptr, FALSE);
            break;
        default:
            break;
    }
    return Default(message, wParam, lParam);
}

}  // namespace ui
