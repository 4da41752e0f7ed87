#include "ui/popup/popup_menu.h"

#include <new>

#include "platform/scope_exit.h"
#include "ui/paint/clipped_text.h"
#include "ui/paint/drawing_resources.h"
#include "ui/paint/marks.h"
#include "ui/paint/spacing.h"
#include "ui/paint/theme.h"
#include "ui/popup/menu_items.h"
#include "ui/popup/popup_placement.h"

namespace ui {

namespace {

// Posted by a menu to itself to end its loop.
constexpr UINT WM_CLOSEPOPUP = 0x8000;

bool IsTap(const MSG& message) {
    return message.message == WM_LBUTTONDOWN || message.message == WM_LBUTTONDBLCLK;
}

// The parts of a row, derived from the height of its text.
struct RowMetrics {
    int text;
    int margin;
    int mark;
    int height;
};

RowMetrics MetricsOf(HDC dc) {
    const int text = TextHeight(dc, Fonts().Base());
    return RowMetrics{text, FormRowPadding(text), text, FormRowHeight(text)};
}

}  // namespace

int TrackPopup(HWND owner, const RECT& anchor, HMENU menu, UINT, MSG* lastMessage) {
    *lastMessage = MSG{};
    PopupMenu popup(L"kx::PopupMenu", menu, anchor);
    bool open = false;
    try {
        open = popup.Open(owner);
    } catch (const std::bad_alloc&) {
        // A menu that does not open is a command that nobody gives.
    }
    if (!open) {
        MessageBeep(~0u);
        return noCommand;
    }
    *lastMessage = popup.Run();
    return popup.ChosenCommand();
}

int TrackSpinnerMenu(HWND owner, const RECT& anchor, HMENU menu) {
    PopupMenu popup(L"InternalSpinnerMenu", menu, anchor);
    if (popup.Open(owner)) {
        popup.Run();
    }
    return popup.ChosenCommand();
}

PopupMenu::~PopupMenu() {
    Destroy();
    Clear();
}

bool PopupMenu::Open(HWND owner) {
    if (!Create(windowClass_, L"", WS_POPUP | WS_CLIPSIBLINGS | WS_CLIPCHILDREN, RECT{}, owner)) {
        return false;
    }
    Fill();
    if (GetCount() == 0) {
        Destroy();
        return false;
    }
    Layout(0, 0);
    MONITORINFO monitor = {};
    monitor.cbSize = sizeof monitor;
    if (!GetMonitorInfoW(MonitorFromWindow(owner, MONITOR_DEFAULTTONEAREST), &monitor)) {
        monitor.rcWork = RECT{0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)};
    }
    const RECT place =
        PlacePopup(anchor_, SIZE{GetMaxItemWidth(), GetTotalHeight()}, monitor.rcWork);
    SetWindowPos(Handle(), HWND_TOP, place.left, place.top, Width(place), Height(place),
                 SWP_SHOWWINDOW);
    SetFocus(Handle());
    return true;
}

void PopupMenu::Fill() {
    const UINT count = MenuItemCount(menu_);
    for (UINT position = 0; position < count; ++position) {
        MenuEntry item;
        if (ReadMenuEntry(menu_, position, &item) && !item.Separator()) {
            InsertItem(GetCount(), position);
        }
    }
}

MSG PopupMenu::Run() {
    MSG last = {};
    running_ = true;
    const auto filter = [this, &last](const MSG& message) {
        last = message;
        if (message.hwnd == Handle() ? message.message == WM_CLOSEPOPUP : IsTap(message)) {
            return LoopStep::End;
        }
        if (message.hwnd != Handle() && message.message > WM_LBUTTONDBLCLK &&
            message.message <= platform::sideWheelMessage) {
            return OnMouseElsewhere(message);
        }
        TranslateMessage(&message);
        return LoopStep::Dispatch;
    };
    const bool finished = RunModalLoop([this] { return Handle() && !closed_; }, filter);
    running_ = false;
    Destroy();
    if (closingTap_) {
        return *closingTap_;
    }
    if (!finished) {
        // For the loop around it is still there.
        PeekMessageW(&last, nullptr, WM_QUIT, WM_QUIT, PM_NOREMOVE);
        return last;
    }
    return closed_ ? MSG{} : last;
}

// What lies below the menu stands still.
LoopStep PopupMenu::OnMouseElsewhere(const MSG& message) const {
    if (message.message == WM_MOUSEWHEEL) {
        Send(Handle(), message.message, message.wParam, message.lParam);
    }
    return message.message == WM_RBUTTONDOWN ? LoopStep::End : LoopStep::Skip;
}

SIZE PopupMenu::Measure(unsigned, int, int, ULONG_PTR data) {
    const platform::WindowDC dc(Handle());
    const platform::Selected font(dc, Fonts().Base());
    const RowMetrics metrics = MetricsOf(dc);
    MenuItem item;
    ReadMenuItem(menu_, static_cast<UINT>(data), &item);
    return SIZE{TextWidth(dc, item.Text()) + 2 * (metrics.mark + metrics.margin), metrics.height};
}

bool PopupMenu::IsDisabled(unsigned index) const {
    MenuEntry item;
    return ReadMenuEntry(menu_, static_cast<UINT>(GetItemData(index)), &item) && item.Disabled();
}

void PopupMenu::EraseBackground(HDC dc, const RECT& area) {
    FillWithSystemColor(dc, area, COLOR_WINDOW);
}

void PopupMenu::DrawItem(const DRAWITEMSTRUCT& row) {
    MenuItem item;
    if (!ReadMenuItem(menu_, static_cast<UINT>(row.itemData), &item)) {
        return;
    }
    const HDC dc = row.hDC;
    const RowMetrics metrics = MetricsOf(dc);
    const int border = GetSystemMetrics(SM_CXBORDER);
    const bool selected = (row.itemState & ODS_SELECTED) != 0;
    if (selected) {
        FillWithSystemColor(dc, row.rcItem, COLOR_HIGHLIGHT);
    } else if (row.itemID + 1 < GetCount()) {
        DrawRowRule(dc, row.rcItem);
    }
    COLORREF color = GetSysColor(selected ? COLOR_HIGHLIGHTTEXT : COLOR_WINDOWTEXT);
    if (item.Disabled()) {
        const COLORREF background = GetSysColor(selected ? COLOR_HIGHLIGHT : COLOR_WINDOW);
        constexpr unsigned textShare = 150;
        color = ReadableOn(background, GetSysColor(COLOR_GRAYTEXT),
                           MixColors(color, background, textShare), Contrast::Disabled);
    }
    const platform::Selected font(dc, Fonts().Base());
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, color);
    RECT area = row.rcItem;
    area.left += metrics.mark + metrics.margin / 2;
    area.right -= metrics.mark + metrics.margin / 2;
    DrawClippedLine(dc, area, metrics.text, item.Text());
    const int markTop = row.rcItem.top + (Height(row.rcItem) - metrics.mark) / 2;
    RECT mark = {row.rcItem.left + metrics.margin / 4, markTop, 0, markTop + metrics.mark};
    mark.right = mark.left + metrics.mark;
    if (item.Checked()) {
        DrawCheckMark(dc, mark, color);
    }
    if (item.submenu) {
        mark.right = row.rcItem.right - metrics.margin / 4;
        mark.left = mark.right - metrics.mark;
        DrawSubmenuArrow(dc, mark, color);
    }
    // The menu's frame lies on its outermost pixels, whatever row stands there: over the last one
    // that is drawn.
    const RECT client = ClientRectangle();
    if (row.rcItem.bottom >= client.bottom || row.itemID + 1 == GetCount()) {
        DrawFrame(dc, client, border, GetSysColor(COLOR_WINDOWFRAME));
    }
}

void PopupMenu::OnTap(unsigned index, GestureResult) {
    Choose(index);
}

void PopupMenu::Choose(unsigned index) {
    if (SetSelection(index) != index) {
        return;
    }
    MenuEntry item;
    if (!ReadMenuEntry(menu_, static_cast<UINT>(GetItemData(index)), &item) || item.Disabled()) {
        return;
    }
    if (!item.submenu) {
        chosenCommand_ = static_cast<int>(item.id);
        Close();
        return;
    }
    // It may have been dragged out of view.
    BringIntoView(index);
    RECT row;
    if (RowRectangle(index, &row) && ChooseInSubmenu(item.submenu, row)) {
        Close();
    }
}

bool PopupMenu::ChooseInSubmenu(HMENU submenu, const RECT& row) {
    POINT corner = {row.left, (row.top + row.bottom) / 2};
    if (!ClientToScreen(Handle(), &corner)) {
        return false;
    }
    const RECT anchor = {corner.x, corner.y, corner.x + Width(row), corner.y};
    MSG lastMessage;
    {
        submenuOpen_ = true;
        const platform::ScopeExit closed([this] { submenuOpen_ = false; });
        chosenCommand_ = TrackPopup(Handle(), anchor, submenu, 0, &lastMessage);
    }
    if (chosenCommand_ != noCommand || !IsTap(lastMessage)) {
        return true;
    }
    if (lastMessage.hwnd != Handle()) {
        closingTap_ = lastMessage;
        return true;
    }
    const POINT tap = PointOf(lastMessage.lParam);
    if (!PtInRect(&row, tap)) {
        TranslateMessage(&lastMessage);
        Dispatch(lastMessage);
    }
    return false;
}

void PopupMenu::Close() {
    PostMessageW(Handle(), WM_CLOSEPOPUP, 0, 0);
}

void PopupMenu::OnDeactivated() {
    if (submenuOpen_ || !running_) {
        return;
    }
    MSG tap;
    for (const UINT kind : {WM_LBUTTONDOWN, WM_LBUTTONDBLCLK}) {
        if (!closingTap_ && PeekInput(&tap, nullptr, kind, kind, PM_REMOVE)) {
            closingTap_ = tap;
        }
    }
    Close();
}

bool PopupMenu::OnKeyUp(WPARAM key) {
    switch (key) {
        case VK_ESCAPE:
        case VK_F1:
        case VK_F2:
            Close();
            return true;
        case VK_RETURN:
            if (GetSelection() == noRow) {
                Close();
            } else {
                Choose(GetSelection());
            }
            return true;
        default:
            return false;
    }
}

LRESULT PopupMenu::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_KEYUP:
            if (OnKeyUp(wParam)) {
                return 0;
            }
            break;
        case WM_CLOSEPOPUP:
            closed_ = true;
            // A message box's loop may have dispatched it: nothing is chosen beside the box.
            ShowWindow(Handle(), SW_HIDE);
            SendMessageW(GetWindow(Handle(), GW_OWNER), WM_CLOSEPOPUP, 0, 0);
            return 0;
        case WM_CANCELMODE:
        case WM_SETTINGCHANGE:
            Close();
            break;
        case WM_ACTIVATE:
            if (LOWORD(wParam) == WA_INACTIVE) {
                OnDeactivated();
            }
            break;
        default:
            break;
    }
    return TouchList::OnMessage(message, wParam, lParam);
}

}  // namespace ui
