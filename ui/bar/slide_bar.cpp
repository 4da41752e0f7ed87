#include "ui/bar/slide_bar.h"

#include <algorithm>

#include "text/resources.h"
#include "ui/paint/clipped_text.h"
#include "ui/paint/drawing_resources.h"
#include "ui/paint/paint.h"
#include "ui/paint/theme.h"
#include "ui/popup/menu_items.h"
#include "ui/popup/popup_menu.h"
#include "ui/window/gesture.h"
#include "ui/window/held_fault.h"

namespace ui {

namespace {

// The rows that must remain above one another beside a bar at the top.
constexpr int enoughRows = 9;

}  // namespace

SlideBarPlace PlaceSlideBar(int width, int height, int rowHeight, int thickness) {
    if (width >= height + height / 2 && width >= 6 * thickness) {
        return SlideBarPlace::Left;
    }
    if (rowHeight > 0 && height - thickness >= enoughRows * rowHeight) {
        return SlideBarPlace::Top;
    }
    return SlideBarPlace::None;
}

bool SlideBar::Open(HWND parent) {
    return Create(L"kx::SlideBar", L"", childStyle, RECT{}, parent);
}

bool SlideBar::LoadBar(UINT resourceId) {
    menu_.Reset(text::LoadMenuResource(resourceId));
    count_ = MenuItemCount(menu_.Get());
    for (UINT index = 0; index < count_; ++index) {
        SetMenuImage(menu_.Get(), index, index);
    }
    InvalidateRect(Handle(), nullptr, FALSE);
    return static_cast<bool>(menu_);
}

int SlideBar::Thickness() const {
    const int icon = Resources().MainIconSize();
    return icon + icon / 4;
}

bool SlideBar::Describe(unsigned part, platform::AccessiblePart* description) {
    if (!platform::hasAssistiveTechnology) {
        return false;
    }
    MenuItem item;
    if (part == 0) {
        description->role = platform::PartRole::Bar;
        return true;
    }
    if (part > count_ || !ReadMenuItem(menu_.Get(), part - 1, &item)) {
        return false;
    }
    description->role = platform::PartRole::Button;
    description->name = item.Text();
    description->checked = item.Checked();
    description->bounds = EntryBounds(ClientRectangle(), part - 1);
    return true;
}

RECT SlideBar::EntryBounds(const RECT& client, UINT index) const {
    RECT bounds = client;
    const int number = static_cast<int>(index);
    const int count = std::max(1, static_cast<int>(count_));
    if (Width(client) > Height(client)) {
        const int slot = Width(client) / count;
        bounds.left = client.left + number * slot;
        bounds.right = bounds.left + slot;
    } else {
        const int slot = std::min(Height(client) / count, 2 * Width(client));
        bounds.top = client.top + number * slot;
        bounds.bottom = bounds.top + slot;
    }
    return bounds;
}

std::optional<UINT> SlideBar::EntryAt(POINT point) const {
    const RECT client = ClientRectangle();
    for (UINT index = 0; index < count_; ++index) {
        const RECT bounds = EntryBounds(client, index);
        if (PtInRect(&bounds, point)) {
            return index;
        }
    }
    return std::nullopt;
}

void SlideBar::OnPress(POINT point) {
    const std::optional<UINT> entry = EntryAt(point);
    if (!entry) {
        return;
    }
    pressed_ = entry;
    InvalidateRect(Handle(), nullptr, FALSE);
    UpdateWindow(Handle());
    GestureInfo gesture;
    gesture.startX = point.x;
    gesture.startY = point.y;
    const GestureResult result = TrackGesture(Handle(), gesture, gestureTimeout);
    if (!Handle()) {
        return;
    }
    if (result == GestureTap || result == GestureHold) {
        Activate(*entry);
    }
    if (Handle()) {
        pressed_ = std::nullopt;
        InvalidateRect(Handle(), nullptr, FALSE);
    }
}

void SlideBar::Activate(UINT index) {
    MenuEntry item;
    const HWND parent = GetParent(Handle());
    if (!parent || !ReadMenuEntry(menu_.Get(), index, &item) || item.Disabled()) {
        return;
    }
    int command = static_cast<int>(item.id);
    if (item.submenu) {
        Send(parent, WM_INITMENUPOPUP, reinterpret_cast<WPARAM>(item.submenu), index);
        POINT corner = {};
        if (!ClientToScreen(Handle(), &corner)) {
            return;
        }
        RECT anchor = EntryBounds(ClientRectangle(), index);
        OffsetRectangle(&anchor, corner.x, corner.y);
        MSG lastMessage;
        command = TrackPopup(parent, anchor, item.submenu, 0, &lastMessage);
    }
    if (command != noCommand) {
        Send(parent, WM_COMMAND, MAKEWPARAM(command, 0), reinterpret_cast<LPARAM>(Handle()));
    }
}

void SlideBar::Paint(HDC dc, const RECT& client) {
    FillWithColor(dc, client, barColor);
    const platform::Selected font(dc, Fonts().Small());
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, barTextColor);
    const ImageStrip& images = Resources().MainStrip();
    for (UINT index = 0; index < count_; ++index) {
        MenuItem item;
        if (!ReadMenuItem(menu_.Get(), index, &item)) {
            continue;
        }
        const RECT bounds = EntryBounds(client, index);
        if (pressed_ == index) {
            FillWithColor(dc, bounds, barPressedColor);
        }
        if (item.Checked()) {
            // The current entry is marked on the edge towards what it shows.
            RECT mark = bounds;
            const int thickness = 3 * GetSystemMetrics(SM_CXBORDER);
            if (Width(client) > Height(client)) {
                mark.top = mark.bottom - thickness;
            } else {
                mark.left = mark.right - thickness;
            }
            FillWithColor(dc, mark, barFocusColor);
        }
        const int size = images.IconSize();
        if (!images.Draw(dc, bounds.left + (Width(bounds) - size) / 2,
                         bounds.top + (Height(bounds) - size) / 2, static_cast<int>(item.image))) {
            DrawClippedLine(dc, bounds, item.Text(), TextAlignment::Centered);
        }
    }
}

LRESULT SlideBar::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
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
        default:
            return Default(message, wParam, lParam);
    }
}

}  // namespace ui
