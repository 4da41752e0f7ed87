#include "ui/bar/command_bar.h"

#include <algorithm>
#include <new>
#include <utility>

#include "platform/scope_exit.h"
#include "text/resources.h"
#include "ui/paint/clipped_text.h"
#include "ui/paint/drawing_resources.h"
#include "ui/paint/paint.h"
#include "ui/paint/theme.h"
#include "ui/popup/menu_items.h"
#include "ui/popup/popup_menu.h"
#include "ui/window/modal_loop.h"

namespace ui {

namespace {

constexpr unsigned noButton = ~0u;

// How long a press may last to be a quick tap, in milliseconds.
constexpr DWORD quickTap = 350;

COLORREF DisabledColor() {
    return ReadableOn(barColor, GetSysColor(COLOR_GRAYTEXT), MixColors(barTextColor, barColor, 128),
                      Contrast::Disabled);
}

}  // namespace

RECT BarButtonBounds(const RECT& bar, unsigned count, unsigned index) {
    // Kept on purpose: docs/compatibility.md#half-bar
    const int slot = Width(bar) / static_cast<int>(std::max(2u, count));
    const int left = bar.left + static_cast<int>(index) * slot;
    return RECT{left, bar.top, left + slot, bar.bottom};
}

CommandBar::~CommandBar() {
    Destroy();
}

bool CommandBar::Open(HWND parent, const RECT& bounds) {
    return Create(className, L"", childStyle, bounds, parent);
}

void CommandBar::SetMenu(HMENU menu) {
    if (menu == Menu()) {
        buttons_.menu.Detach();
    }
    Show(ButtonsOf(platform::UniqueMenu(menu)));
    covered_ = Buttons();
}

bool CommandBar::Load(UINT resourceId, Buttons* buttons) {
    platform::UniqueMenu menu(text::LoadMenuResource(resourceId));
    if (!ClearMenuImages(menu.Get())) {
        return false;
    }
    try {
        *buttons = ButtonsOf(std::move(menu));
    } catch (const std::bad_alloc&) {
        return false;
    }
    return !buttons->positions.empty();
}

bool CommandBar::LoadBar(UINT resourceId) {
    Buttons loaded;
    if (!Load(resourceId, &loaded)) {
        return false;
    }
    Show(std::move(loaded));
    covered_ = Buttons();
    return true;
}

bool CommandBar::Cover(UINT resourceId) {
    Buttons above;
    if (!Load(resourceId, &above)) {
        return false;
    }
    if (!covered_.menu) {
        covered_ = std::move(buttons_);
    }
    Show(std::move(above));
    return true;
}

void CommandBar::Uncover() {
    if (covered_.menu) {
        Show(std::exchange(covered_, Buttons()));
    }
}

CommandBar::Buttons CommandBar::ButtonsOf(platform::UniqueMenu menu) {
    Buttons buttons;
    buttons.menu = std::move(menu);
    const UINT count = MenuItemCount(buttons.menu.Get());
    for (UINT position = 0; position < count; ++position) {
        MenuEntry item;
        if (ReadMenuEntry(buttons.menu.Get(), position, &item) && !item.Separator()) {
            buttons.positions.push_back(position);
            buttons.haveCommands = buttons.haveCommands || !item.submenu;
        }
    }
    return buttons;
}

void CommandBar::Show(Buttons buttons) {
    buttons_ = std::move(buttons);
    focused_ = 0;
    InvalidateRect(Handle(), nullptr, TRUE);
}

bool CommandBar::Describe(unsigned part, platform::AccessiblePart* description) {
    if (!platform::hasAssistiveTechnology) {
        return false;
    }
    MenuItem item;
    if (part == 0) {
        description->role = platform::PartRole::Bar;
        return true;
    }
    if (part > ButtonCount() || !ReadMenuItem(Menu(), buttons_.positions[part - 1], &item)) {
        return false;
    }
    description->role = platform::PartRole::Button;
    description->name = item.Text();
    description->disabled = item.Disabled();
    description->opensMenu = item.submenu != nullptr;
    description->bounds = BarButtonBounds(ClientRectangle(), ButtonCount(), part - 1);
    return true;
}

unsigned CommandBar::ButtonAt(POINT point) const {
    const RECT client = ClientRectangle();
    for (unsigned button = 0; button < ButtonCount(); ++button) {
        const RECT bounds = BarButtonBounds(client, ButtonCount(), button);
        if (PtInRect(&bounds, point)) {
            return button;
        }
    }
    return noButton;
}

void CommandBar::ActivateButton(unsigned index) {
    MenuEntry item;
    const HWND parent = GetParent(Handle());
    if (!parent || index >= ButtonCount() ||
        !ReadMenuEntry(Menu(), buttons_.positions[index], &item) || item.Disabled()) {
        return;
    }
    if (item.submenu) {
        OpenPopup(index, item.submenu);
    } else {
        Send(parent, WM_COMMAND, MAKEWPARAM(item.id, 0), reinterpret_cast<LPARAM>(Handle()));
    }
}

void CommandBar::OpenPopupAt(unsigned index, const RECT& anchor) {
    MenuEntry item;
    if (GetParent(Handle()) && index < ButtonCount() &&
        ReadMenuEntry(Menu(), buttons_.positions[index], &item) && !item.Disabled() &&
        item.submenu) {
        OpenPopup(index, item.submenu, &anchor);
    }
}

void CommandBar::OpenPopup(unsigned button, HMENU submenu, const RECT* elsewhere) {
    const HWND parent = GetParent(Handle());
    Send(parent, WM_INITMENUPOPUP, reinterpret_cast<WPARAM>(submenu), button);
    InvalidateRect(parent, nullptr, FALSE);
    UpdateWindow(parent);
    RECT client;
    POINT corner = {};
    if (!GetClientRect(Handle(), &client) || !ClientToScreen(Handle(), &corner)) {
        return;
    }
    // A tap on the button that has opened the popup only closes it.
    const RECT bounds = elsewhere ? RECT{} : BarButtonBounds(client, ButtonCount(), button);
    RECT anchor = bounds;
    OffsetRectangle(&anchor, corner.x, corner.y);
    MSG lastMessage;
    int command = noCommand;
    {
        const platform::ScopeExit release([this] { SetPressed(noButton); });
        SetPressed(elsewhere ? noButton : button);
        command = TrackPopup(parent, elsewhere ? *elsewhere : anchor, submenu, 0, &lastMessage);
    }
    if (!Handle()) {
        return;
    }
    if (command != noCommand) {
        Send(parent, WM_COMMAND, MAKEWPARAM(command, 0), reinterpret_cast<LPARAM>(Handle()));
        return;
    }
    const bool tapOnBar = lastMessage.hwnd == Handle() && (lastMessage.message == WM_LBUTTONDOWN ||
                                                           lastMessage.message == WM_LBUTTONDBLCLK);
    if (tapOnBar && !PtInRect(&bounds, PointOf(lastMessage.lParam))) {
        // By the loop around: taps from one button to the other must not pile up on the stack.
        PostMessageW(lastMessage.hwnd, lastMessage.message, lastMessage.wParam, lastMessage.lParam);
    }
}

void CommandBar::OnPress(POINT point) {
    unsigned button = ButtonAt(point);
    if (button == noButton) {
        return;
    }
    if (!WaitForQuickTap()) {
        button = TrackPress(button);
    }
    ActivateButton(button);
}

bool CommandBar::WaitForQuickTap() {
    const DWORD start = GetTickCount();
    for (;;) {
        MSG message;
        if (PeekInput(&message, nullptr, WM_LBUTTONUP, WM_LBUTTONUP, PM_REMOVE)) {
            return true;
        }
        const DWORD elapsed = GetTickCount() - start;
        if (elapsed >= quickTap) {
            return false;
        }
        // Any other press of a button is for the tracking loop to judge.
        if (PeekMessageW(&message, nullptr, WM_LBUTTONDOWN, WM_MBUTTONDBLCLK, PM_NOREMOVE) &&
            message.message != WM_LBUTTONUP) {
            return false;
        }
        MsgWaitForMultipleObjectsEx(0, nullptr, quickTap - elapsed, QS_MOUSEBUTTON,
                                    MWMO_INPUTAVAILABLE);
    }
}

unsigned CommandBar::TrackPress(unsigned button) {
    // A bar that is destroyed meanwhile has no handle, as nobody has the capture.
    const HWND window = Handle();
    const platform::ScopeExit release([this] {
        SetPressed(noButton);
        if (GetCapture() == Handle()) {
            ReleaseCapture();
        }
    });
    SetCapture(window);
    SetPressed(button);
    unsigned released = noButton;
    const auto follow = [this, &button, &released](const MSG& message) {
        switch (message.message) {
            case WM_MOUSEMOVE:
                button = ButtonAt(PointOf(message.lParam));
                if (button == noButton) {
                    return LoopStep::End;
                }
                SetPressed(button);
                return LoopStep::Skip;
            case WM_LBUTTONUP:
            case WM_RBUTTONUP:
                released = button;
                return LoopStep::End;
            case WM_LBUTTONDOWN:
            case WM_LBUTTONDBLCLK:
            case WM_RBUTTONDOWN:
                return LoopStep::End;
            case WM_KEYDOWN:
                return message.wParam == VK_ESCAPE ? LoopStep::End : LoopStep::Dispatch;
            case WM_SYSKEYDOWN:
                Dispatch(message);
                return LoopStep::End;
            default:
                return LoopStep::Dispatch;
        }
    };
    RunModalLoop([window] { return GetCapture() == window; }, follow);
    return released;
}

void CommandBar::SetPressed(unsigned button) {
    if (pressed_ != button && Handle()) {
        pressed_ = button;
        InvalidateRect(Handle(), nullptr, FALSE);
        UpdateWindow(Handle());
    }
}

void CommandBar::Paint(HDC dc, const RECT& client) {
    FillWithColor(dc, client, barColor);
    const platform::Selected font(dc, Fonts().Base());
    SetBkMode(dc, TRANSPARENT);
    for (unsigned button = 0; button < ButtonCount(); ++button) {
        DrawButton(dc, BarButtonBounds(client, ButtonCount(), button), button);
    }
    const int border = GetSystemMetrics(SM_CYBORDER);
    FillWithColor(dc, RECT{client.left, client.top, client.right, client.top + border},
                  barRuleColor);
}

void CommandBar::DrawButton(HDC dc, const RECT& bounds, unsigned button) {
    MenuItem item;
    if (!ReadMenuItem(Menu(), buttons_.positions[button], &item)) {
        return;
    }
    const bool pressed = button == pressed_ && !item.Disabled();
    if (pressed) {
        FillWithColor(dc, bounds, barPressedColor);
    }
    if (button == focused_ && GetFocus() == Handle()) {
        DrawFrame(dc, bounds, 2 * GetSystemMetrics(SM_CXBORDER), barFocusColor);
    }
    if (button > 0) {
        const int border = GetSystemMetrics(SM_CXBORDER);
        const int inset = Height(bounds) / 4;
        FillWithColor(
            dc, RECT{bounds.left, bounds.top + inset, bounds.left + border, bounds.bottom - inset},
            barRuleColor);
    }
    if (item.image != noImage &&
        DrawImage(dc, bounds, static_cast<int>(item.image), item.Disabled())) {
        return;
    }
    SetTextColor(dc, item.Disabled() ? DisabledColor() : barTextColor);
    RECT area = bounds;
    if (TextWidth(dc, item.Text()) > Width(area)) {
        const int margin = Height(area) / 8;
        area.left += margin;
        area.right -= margin;
        DrawClippedLine(dc, area, item.Text());
        return;
    }
    DrawTextW(dc, item.characters, static_cast<int>(item.Text().size()), &area,
              DT_CENTER | DT_VCENTER | DT_SINGLELINE);
}

bool CommandBar::DrawImage(HDC dc, const RECT& bounds, int image, bool disabled) {
    const ImageStrip& images = Resources().MainStrip();
    if (!images) {
        return false;
    }
    if (disabled && (!disabledImages_ || disabledFrom_ != images.Bitmap())) {
        disabledImages_ = images.Recolored(dc, DisabledColor());
        disabledFrom_ = images.Bitmap();
    }
    const int size = images.IconSize();
    return (disabled ? disabledImages_ : images)
        .Draw(dc, bounds.left + (Width(bounds) - size) / 2,
              bounds.top + (Height(bounds) - size) / 2, image);
}

bool CommandBar::OnKey(WPARAM key) {
    const unsigned last = ButtonCount() == 0 ? 0 : ButtonCount() - 1;
    switch (key) {
        case VK_LEFT:
            focused_ = focused_ > 0 ? focused_ - 1 : last;
            break;
        case VK_RIGHT:
            focused_ = focused_ < last ? focused_ + 1 : 0;
            break;
        case VK_TAB: {
            const bool shift = GetAsyncKeyState(VK_SHIFT) < 0;
            PostMessageW(GetParent(Handle()), WM_NEXTDLGCTL, shift ? 0 : 1, 0);
            return true;
        }
        case VK_RETURN:
            // A menu that opened already would take the key's release as its own and close.
            enterDown_ = true;
            return true;
        case VK_UP:
            ActivateButton(focused_);
            return true;
        case VK_ESCAPE:
            PostMessageW(GetParent(Handle()), WM_COMMAND, IDCANCEL, 0);
            return true;
        default:
            return false;
    }
    InvalidateRect(Handle(), nullptr, FALSE);
    return true;
}

LRESULT CommandBar::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_PAINT:
            PaintWindow(Handle(), [this](HDC dc, const RECT& client) { Paint(dc, client); });
            return 0;
        case WM_ERASEBKGND:
            return 1;
        case WM_LBUTTONDOWN:
        case WM_LBUTTONDBLCLK:
            OnPress(PointOf(lParam));
            return 0;
        case WM_GETDLGCODE:
            return DLGC_WANTALLKEYS;
        case WM_KEYDOWN:
            if (OnKey(wParam)) {
                return 0;
            }
            return Default(message, wParam, lParam);
        case WM_KEYUP:
            if (wParam == VK_RETURN && std::exchange(enterDown_, false)) {
                ActivateButton(focused_);
                return 0;
            }
            if (wParam == VK_F1 || wParam == VK_F2) {
                ActivateButton(wParam == VK_F1 ? 0 : 1);
                return 0;
            }
            return Default(message, wParam, lParam);
        case WM_SETFOCUS:
        case WM_KILLFOCUS:
            enterDown_ = false;
            InvalidateRect(Handle(), nullptr, FALSE);
            return 0;
        default:
            return Default(message, wParam, lParam);
    }
}

}  // namespace ui
