#include "ui/bar/page_slider.h"

#include <cstdlib>

#include "platform/handles.h"
#include "ui/bar/slide.h"
#include "ui/paint/clipped_text.h"
#include "ui/paint/drawing_resources.h"
#include "ui/paint/paint.h"
#include "ui/paint/theme.h"
#include "ui/popup/popup_menu.h"
#include "ui/window/held_fault.h"

namespace ui {

unsigned NeighbourEntry(unsigned current, unsigned count, bool next) {
    return count == 0 ? 0 : (current + (next ? 1 : count - 1)) % count;
}

// Follows a swipe; the change itself happens as soon as the swipe is far enough.
class PageSlider::Tracker final : public DragTracker {
 public:
    explicit Tracker(PageSlider& slider) : slider_(slider) {}

    bool Start(int x, int) override {
        startX_ = x;
        return slider_.Count() > 1;
    }

    bool Move(int x, int) override {
        offset_ = x - startX_;
        const int third = Width(slider_.ClientRectangle()) / 3;
        if (std::abs(offset_) < third) {
            slider_.ShowShifted(offset_);
            return true;
        }
        slider_.Change(offset_ > 0, offset_);
        offset_ = 0;
        changed_ = true;
        ReleaseCapture();
        return true;
    }

    void Release() override {
        if (!changed_ && offset_ != 0) {
            Slide(offset_, 0, [this](int offset) { slider_.ShowShifted(offset); });
        }
    }

 private:
    PageSlider& slider_;
    int startX_ = 0;
    int offset_ = 0;
    bool changed_ = false;
};

bool PageSlider::Open(HWND parent, const RECT& bounds, HWND target) {
    target_ = target;
    return Create(L"kx::PageSlider", L"", childStyle | WS_TABSTOP, bounds, parent);
}

void PageSlider::SetEntries(std::vector<Entry> entries) {
    entries_ = std::move(entries);
    current_ = 0;
    InvalidateRect(Handle(), nullptr, FALSE);
}

void PageSlider::DrawEntry(HDC dc, const RECT& area, unsigned index) const {
    // Two long entries side by side must not run into each other.
    const int margin = TextHeight(dc, Fonts().Base()) / 2;
    const RECT text = {area.left + margin, area.top, area.right - margin, area.bottom};
    DrawClippedLine(dc, text, entries_[index].text, TextAlignment::Centered);
}

void PageSlider::DrawShifted(HDC dc, const RECT& client, int offset) {
    FillWithSystemColor(dc, client, COLOR_WINDOW);
    if (entries_.empty()) {
        return;
    }
    const platform::Selected font(dc, Fonts().Base());
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, GetSysColor(COLOR_WINDOWTEXT));
    RECT area = client;
    OffsetRectangle(&area, offset, 0);
    DrawEntry(dc, area, current_);
    if (offset != 0) {
        const bool next = offset > 0;
        OffsetRectangle(&area, next ? -Width(client) : Width(client), 0);
        DrawEntry(dc, area, NeighbourEntry(current_, Count(), next));
    }
}

void PageSlider::ShowShifted(int offset) {
    const platform::WindowDC dc(Handle());
    const RECT client = ClientRectangle();
    const OffscreenBitmap frame(dc, client);
    if (frame) {
        DrawShifted(frame.DC(), client, offset);
        frame.Show();
    }
}

void PageSlider::Change(bool next, int offset) {
    if (Count() < 2) {
        return;
    }
    const int width = Width(ClientRectangle());
    Slide(offset, next ? width : -width, [this](int shifted) { ShowShifted(shifted); });
    Take(NeighbourEntry(current_, Count(), next));
}

void PageSlider::Take(unsigned index) {
    current_ = index;
    InvalidateRect(Handle(), nullptr, FALSE);
    Send(target_, WM_COMMAND, MAKEWPARAM(entries_[current_].command, 1),
         reinterpret_cast<LPARAM>(target_));
}

void PageSlider::ChooseFromList() {
    const platform::UniqueMenu menu(CreatePopupMenu());
    RECT anchor = ClientRectangle();
    POINT corner = {anchor.left, anchor.top};
    if (Count() < 2 || !menu || !ClientToScreen(Handle(), &corner)) {
        return;
    }
    OffsetRectangle(&anchor, corner.x, corner.y);
    for (unsigned index = 0; index < Count(); ++index) {
        const UINT checked = index == current_ ? MF_CHECKED : MF_UNCHECKED;
        if (!AppendMenuW(menu.Get(), MF_STRING | checked, index + 1,
                         entries_[index].text.c_str())) {
            return;
        }
    }
    const int chosen = TrackSpinnerMenu(Handle(), anchor, menu.Get());
    // The entries may have been replaced meanwhile.
    const unsigned entry = static_cast<unsigned>(chosen) - 1;
    if (Handle() && chosen != noCommand && entry != current_ && entry < Count()) {
        Take(entry);
    }
}

LRESULT PageSlider::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_PAINT:
            PaintWindow(Handle(),
                        [this](HDC dc, const RECT& client) { DrawShifted(dc, client, 0); });
            return 0;
        case WM_ERASEBKGND:
            return 1;
        case WM_LBUTTONDOWN:
        case WM_LBUTTONDBLCLK: {
            const POINT point = PointOf(lParam);
            SetFocus(Handle());
            if (StartDrag(Handle(), point.x, point.y) == GestureTap) {
                ChooseFromList();
            }
            return 0;
        }
        case WM_QUERYDRAGTRACKER: {
            auto& gesture = *reinterpret_cast<GestureInfo*>(lParam);
            if (std::abs(gesture.x - gesture.startX) <= std::abs(gesture.y - gesture.startY)) {
                return 0;
            }
            gesture.tracker = DragTrackerOwner(new Tracker(*this));
            return 1;
        }
        case WM_GETDLGCODE:
            return DLGC_WANTARROWS;
        case WM_KEYDOWN:
            if (wParam == VK_LEFT || wParam == VK_RIGHT) {
                Change(wParam == VK_RIGHT, 0);
                return 0;
            }
            return Default(message, wParam, lParam);
        default:
            return Default(message, wParam, lParam);
    }
}

}  // namespace ui
