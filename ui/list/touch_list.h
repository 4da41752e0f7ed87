// The list that follows the finger: rows of any height, drawn by their owner, selected by tap and
// keys, scrolled by dragging or by a wheel and at rest always on a whole row.
#pragma once

#include <algorithm>
#include <cstdlib>
#include <stdexcept>
#include <utility>

#include "platform/handles.h"
#include "platform/mouse.h"
#include "ui/list/list_layout.h"
#include "ui/list/list_notifications.h"
#include "ui/list/scroll_indicator.h"
#include "ui/list/wheel_turns.h"
#include "ui/paint/paint.h"
#include "ui/paint/reading.h"
#include "ui/window/gesture.h"
#include "ui/window/held_fault.h"
#include "ui/window/window.h"

namespace ui {

// `Kind` derives from TouchList<Kind> and supplies for its rows:
//   SIZE Measure(unsigned index, int clientWidth, int clientHeight, ULONG_PTR data)
//   void DrawItem(const DRAWITEMSTRUCT& row)
//   void EraseBackground(HDC dc, const RECT& area)
//   void OnTap(unsigned index, GestureResult gesture)
//   void DeleteItem(ULONG_PTR data)
// may hide Clear and the hooks below by public functions of its own, and calls Clear in its
// destructor. All sizes are pixels, all rectangles client coordinates.
template <typename Kind>
class TouchList : public Window {
 public:
    // Measures all rows anew, drops the selection and returns to the top.
    void Layout(int clientWidth, int clientHeight);
    // Layout with the window's own size.
    void Layout() {
        RECT client;
        if (GetClientRect(Handle(), &client)) {
            Layout(Width(client), Height(client));
        }
    }

    // Measures all rows anew and keeps the selection and, as far as possible, the top row.
    void Remeasure();

    // The row under a client point and its rectangle; noRow when there is none.
    unsigned HitTest(POINT point, RECT* row = nullptr) const;

    // Selects a row (noRow: none) unless the parent vetoes it, and brings it into view.
    // Returns the selection after the call.
    unsigned SetSelection(unsigned index);

    unsigned GetSelection() const { return selection_; }
    unsigned GetTopIndex() const { return topIndex_; }
    unsigned GetMaxTop() const { return maxTop_; }
    unsigned GetCount() const { return static_cast<unsigned>(items_.size()); }
    ULONG_PTR GetItemData(unsigned index) const { return items_.at(index).data; }
    int GetTotalHeight() const { return totalHeight_; }
    int GetMaxItemWidth() const { return maxItemWidth_; }

    // Row by row changes by the owner, who calls Layout, Remeasure or MeasureItem afterwards. The
    // selection stays on its row. A place behind the end throws std::out_of_range.
    void InsertItem(unsigned index, ULONG_PTR data) {
        if (index > items_.size()) {
            throw std::out_of_range("InsertItem");
        }
        items_.insert(items_.begin() + static_cast<ptrdiff_t>(index), ItemRecord{0, 0, data});
        if (selection_ != noRow && selection_ >= index) {
            ++selection_;
        }
    }
    // Measures a row that has been inserted; the others keep their sizes.
    void MeasureItem(unsigned index);
    // Frees one row and fits the list to the others; the selection stays on its row, or goes when
    // that is the one.
    void RemoveItem(unsigned index);
    // Frees all rows; the window is not repainted before the next Layout.
    void Clear() { ReplaceItems(ItemRecords()); }
    // The same, and takes other rows in their place. Nothing is thrown.
    void ReplaceItems(ItemRecords items);
    // Scrolls so that `index` is the top row, as far as the rows allow.
    void SetTopIndex(unsigned index);

    // Part n is row n - 1, with the texts that are drawn of it.
    bool Describe(unsigned part, platform::AccessiblePart* description) override;
    unsigned PartCount() const override { return GetCount(); }
    unsigned PartAt(POINT point) override {
        const unsigned row = platform::hasAssistiveTechnology ? HitTest(point) : noRow;
        return row == noRow ? 0 : row + 1;
    }
    unsigned FocusedPart() const override { return selection_ == noRow ? 0 : selection_ + 1; }

 protected:
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

    // Hooks of the kinds of list.
    // What a row is to assistive technology.
    static constexpr platform::PartRole rowRole = platform::PartRole::Row;
    bool IsDisabled(unsigned) const { return false; }
    // The first taker of a key; true when it is handled.
    bool OfferKeyFirst(WPARAM key, LPARAM keyData) {
        return OfferKey(GetParent(Handle()), key, keyData) != 0;
    }
    // Keys that move the selection. True when the list knows the key.
    bool HandleNavigationKey(WPARAM key);
    // Whether rows that all fit may be dragged nevertheless.
    bool DragsWhenAllRowsFit() const { return false; }
    // Whether a tap opens something. Then a second one that follows quickly does nothing: it was
    // not meant for what has come to its place.
    bool TapsOpen() const { return true; }
    // All rows are about to be drawn, where they rest or for a frame of a drag, which has to be
    // quick.
    void BeginFrame(bool /*dragged*/) {}
    // Whether rows of the last frame of a drag lack something that the next frames bring.
    bool FrameLacksSomething() const { return false; }
    // Asked before a wheel scrolls; false keeps the rows where they are.
    bool MayScroll() { return true; }
    // Asked before the selection changes, from `old` to `index`; false keeps it. A list asks its
    // parent (LSN_SELCHANGING) unless its kind knows better.
    bool MaySelect(unsigned index, unsigned old) {
        return NotifySelection(LSN_SELCHANGING, index, old) == 0;
    }
    // The selection has changed; likewise (LSN_SELCHANGED).
    void OnSelected(unsigned index, unsigned old) { NotifySelection(LSN_SELCHANGED, index, old); }
    // Enter was pressed on a list with rows; likewise (NM_RETURN).
    void OnReturn() {
        NMHDR notification = {};
        Notify(GetParent(Handle()), notification, NM_RETURN);
    }

    const ItemRecords& Items() const { return items_; }
    // Sends NM_KEYDOWN to `receiver`; nonzero when it handled the key.
    LRESULT OfferKey(HWND receiver, WPARAM key, LPARAM keyData);
    // Sends LSN_SELCHANGING or LSN_SELCHANGED to the parent; its reply.
    LRESULT NotifySelection(int code, unsigned newIndex, unsigned oldIndex);
    void InvalidateRow(unsigned index);
    // The client rectangle of a row that lies at least in part in the window.
    bool RowRectangle(unsigned index, RECT* row) const;
    // Scrolls as little as needed to show the whole of a row.
    void BringIntoView(unsigned index);

 private:
    class Tracker;

    Kind& Self() { return static_cast<Kind&>(*this); }
    void MeasureItems(int clientWidth, int clientHeight);
    void UpdateMaxTop(int clientHeight);
    void FitTo(int clientHeight);
    void PaintRows(HDC dc, const RECT& client, unsigned top, int firstY, bool dragged);
    void OnButtonDown(POINT point, bool repeated);
    bool OnQueryDragTracker(GestureInfo& info);
    void OnKeyDown(WPARAM key, LPARAM keyData);
    void OnWheel(int turn);
    void OnGetDialogCode(const MSG* message);
    LRESULT Notify(HWND receiver, NMHDR& notification, UINT code);

    ItemRecords items_;
    unsigned topIndex_ = 0;
    unsigned maxTop_ = 0;
    unsigned selection_ = noRow;
    int maxItemWidth_ = 0;
    int totalHeight_ = 0;
    // Whether the last press was a tap that opened something.
    bool opened_ = false;
    WheelTurns wheel_;
};

// Scrolls the list during one drag; the list's own scroll state changes at the end only.
template <typename Kind>
class TouchList<Kind>::Tracker final : public DragTracker {
 public:
    explicit Tracker(TouchList& list) : list_(list), dc_(list.Handle()) {}
    ~Tracker() override { KillTimer(list_.Handle(), nextFrame); }

    bool Start(int, int y) override {
        position_ = DragPosition{list_.topIndex_, 0};
        lastY_ = y;
        return GetClientRect(list_.Handle(), &client_) != FALSE;
    }

    bool Move(int, int y) override {
        const int distance = lastY_ - y;
        lastY_ = y;
        if (list_.items_.empty()) {
            return true;
        }
        Follow(distance);
        DrawFrame(-position_.offset);
        return true;
    }

    // The finger rests: what the last frame lacked follows.
    bool PreTranslate(const MSG& message) override {
        if (message.message != WM_TIMER || message.hwnd != list_.Handle() ||
            message.wParam != nextFrame) {
            return false;
        }
        KillTimer(list_.Handle(), nextFrame);
        Follow(0);
        DrawFrame(-position_.offset);
        return true;
    }

    void Release() override {
        if (list_.items_.empty()) {
            return;
        }
        Follow(0);
        const SlideToRest slide =
            PlanSlide(list_.items_, list_.maxTop_, list_.totalHeight_, position_);
        int y = slide.first;
        DrawFrame(y);
        while (y != slide.target) {
            y += slide.step;
            DrawFrame(y);
        }
        const unsigned rest = std::min(slide.newTop, list_.maxTop_);
        // The last frame's scroll indicator may stand for another row than the one at rest.
        if (rest != list_.topIndex_ || rest != position_.top ||
            list_.Self().FrameLacksSomething()) {
            list_.topIndex_ = rest;
            InvalidateRect(list_.Handle(), nullptr, TRUE);
        }
    }

 private:
    // The number of a timer.
    static constexpr UINT_PTR nextFrame = 1;

    // The rows may have been replaced since the last move.
    void Follow(int distance) {
        position_.top = std::min(position_.top, list_.maxTop_);
        position_ = FollowFinger(list_.items_, list_.maxTop_, Height(client_), position_, distance);
    }
    void DrawFrame(int firstY) {
        ShowFrame(dc_, client_, [&](HDC dc, const RECT& client) {
            list_.PaintRows(dc, client, position_.top, firstY, true);
        });
        if (list_.Self().FrameLacksSomething()) {
            SetTimer(list_.Handle(), nextFrame, USER_TIMER_MINIMUM, nullptr);
        }
    }

    TouchList& list_;
    platform::WindowDC dc_;
    RECT client_ = {};
    DragPosition position_;
    int lastY_ = 0;
};

template <typename Kind>
void TouchList<Kind>::Layout(int clientWidth, int clientHeight) {
    selection_ = noRow;
    topIndex_ = 0;
    MeasureItems(clientWidth, clientHeight);
}

template <typename Kind>
void TouchList<Kind>::Remeasure() {
    RECT client;
    if (GetClientRect(Handle(), &client)) {
        MeasureItems(Width(client), Height(client));
    }
}

template <typename Kind>
void TouchList<Kind>::MeasureItems(int clientWidth, int clientHeight) {
    totalHeight_ = 0;
    maxItemWidth_ = 0;
    unsigned index = 0;
    for (ItemRecord& item : items_) {
        const SIZE size = Self().Measure(index++, clientWidth, clientHeight, item.data);
        item.width = size.cx;
        item.height = size.cy;
        totalHeight_ += item.height;
        maxItemWidth_ = std::max(maxItemWidth_, item.width);
    }
    FitTo(clientHeight);
    InvalidateRect(Handle(), nullptr, TRUE);
}

template <typename Kind>
void TouchList<Kind>::MeasureItem(unsigned index) {
    RECT client;
    if (!GetClientRect(Handle(), &client)) {
        return;
    }
    ItemRecord& item = items_.at(index);
    const SIZE size = Self().Measure(index, Width(client), Height(client), item.data);
    totalHeight_ += size.cy - item.height;
    item.width = size.cx;
    item.height = size.cy;
    maxItemWidth_ = std::max(maxItemWidth_, item.width);
    FitTo(Height(client));
    InvalidateRect(Handle(), nullptr, TRUE);
}

template <typename Kind>
void TouchList<Kind>::FitTo(int clientHeight) {
    if (clientHeight >= totalHeight_ || items_.empty()) {
        topIndex_ = maxTop_ = 0;
    } else {
        UpdateMaxTop(clientHeight);
    }
}

template <typename Kind>
void TouchList<Kind>::UpdateMaxTop(int clientHeight) {
    maxTop_ = LargestTop(items_, clientHeight);
    topIndex_ = std::min(topIndex_, maxTop_);
}

template <typename Kind>
unsigned TouchList<Kind>::HitTest(POINT point, RECT* row) const {
    RECT client;
    if (items_.empty() || !GetClientRect(Handle(), &client) || !PtInRect(&client, point)) {
        return noRow;
    }
    const RowHit hit = RowBelow(items_, topIndex_, point.y - client.top);
    if (hit.index != noRow && row) {
        *row = RECT{client.left, client.top + hit.top, client.right, client.top + hit.bottom};
    }
    return hit.index;
}

template <typename Kind>
unsigned TouchList<Kind>::SetSelection(unsigned index) {
    if (index != noRow && index >= GetCount()) {
        index = items_.empty() ? noRow : GetCount() - 1;
    }
    if (index == selection_) {
        return selection_;
    }
    const unsigned old = selection_;
    if (!Self().MaySelect(index, old)) {
        return selection_;
    }
    // Those who were asked may have replaced the rows.
    if (selection_ != old || (index != noRow && index >= GetCount())) {
        return selection_;
    }
    selection_ = index;
    const unsigned oldTop = topIndex_;
    BringIntoView(index);
    if (topIndex_ == oldTop) {
        InvalidateRow(old);
        InvalidateRow(index);
    }
    Self().OnSelected(index, old);
    if (platform::hasAssistiveTechnology) {
        platform::TellFocusedPart(Handle(), FocusedPart());
    }
    return selection_;
}

template <typename Kind>
void TouchList<Kind>::BringIntoView(unsigned index) {
    RECT client;
    if (index >= GetCount() || !GetClientRect(Handle(), &client)) {
        return;
    }
    const unsigned top =
        index < topIndex_ ? index : std::max(topIndex_, TopToShow(items_, index, Height(client)));
    if (top != topIndex_) {
        topIndex_ = top;
        InvalidateRect(Handle(), nullptr, TRUE);
    }
}

template <typename Kind>
void TouchList<Kind>::SetTopIndex(unsigned index) {
    index = std::min(index, maxTop_);
    if (index != topIndex_) {
        topIndex_ = index;
        InvalidateRect(Handle(), nullptr, TRUE);
    }
}

template <typename Kind>
void TouchList<Kind>::ReplaceItems(ItemRecords items) {
    const ItemRecords removed = std::exchange(items_, std::move(items));
    selection_ = noRow;
    topIndex_ = maxTop_ = 0;
    totalHeight_ = maxItemWidth_ = 0;
    for (const ItemRecord& item : removed) {
        Self().DeleteItem(item.data);
    }
}

template <typename Kind>
void TouchList<Kind>::RemoveItem(unsigned index) {
    const ItemRecord removed = items_.at(index);
    items_.erase(items_.begin() + static_cast<ptrdiff_t>(index));
    totalHeight_ -= removed.height;
    if (selection_ == index) {
        selection_ = noRow;
    } else if (selection_ != noRow && selection_ > index) {
        --selection_;
    }
    Self().DeleteItem(removed.data);
    RECT client;
    if (GetClientRect(Handle(), &client)) {
        FitTo(Height(client));
        InvalidateRect(Handle(), nullptr, TRUE);
    }
}

template <typename Kind>
bool TouchList<Kind>::Describe(unsigned part, platform::AccessiblePart* description) {
    if (!platform::hasAssistiveTechnology || part > GetCount()) {
        return false;
    }
    description->role = Kind::rowRole;
    if (part == 0) {
        const bool menu = Kind::rowRole == platform::PartRole::MenuItem;
        description->role = menu ? platform::PartRole::Menu : platform::PartRole::List;
        return true;
    }
    const unsigned index = part - 1;
    DRAWITEMSTRUCT row = {};
    row.hwndItem = Handle();
    row.itemID = index;
    row.itemData = items_[index].data;
    row.rcItem = RECT{0, 0, items_[index].width, items_[index].height};
    const platform::UniqueMemoryDC dc(CreateCompatibleDC(nullptr));
    row.hDC = dc.Get();
    Reading reading;
    {
        const ReadInstead readInstead(&reading);
        Self().DrawItem(row);
    }
    description->name = std::move(reading.text);
    description->checked = reading.marked;
    description->selected = index == selection_;
    description->disabled = Self().IsDisabled(index);
    if (!RowRectangle(index, &description->bounds)) {
        description->bounds = RECT{};
    }
    return true;
}

template <typename Kind>
bool TouchList<Kind>::RowRectangle(unsigned index, RECT* row) const {
    if (index < topIndex_ || index >= GetCount()) {
        return false;
    }
    if (!GetClientRect(Handle(), row)) {
        return false;
    }
    const int bottom = row->bottom;
    for (unsigned above = topIndex_; above < index && row->top < bottom; ++above) {
        row->top += items_[above].height;
    }
    row->bottom = row->top + items_[index].height;
    return row->top < bottom;
}

template <typename Kind>
void TouchList<Kind>::InvalidateRow(unsigned index) {
    RECT row;
    if (RowRectangle(index, &row)) {
        InvalidateRect(Handle(), &row, FALSE);
    }
}

template <typename Kind>
void TouchList<Kind>::PaintRows(HDC dc, const RECT& client, unsigned top, int firstY,
                                bool dragged) {
    Self().BeginFrame(dragged);
    Self().EraseBackground(dc, client);
    DRAWITEMSTRUCT row = {};
    row.CtlType = ODT_LISTBOX;
    row.CtlID = static_cast<UINT>(GetDlgCtrlID(Handle()));
    row.itemAction = ODA_DRAWENTIRE;
    row.hwndItem = Handle();
    row.hDC = dc;
    int y = client.top + firstY;
    for (unsigned index = top; index < GetCount() && y < client.bottom; ++index) {
        const ItemRecord& item = items_[index];
        row.itemID = index;
        row.itemState = index == selection_ ? ODS_SELECTED : 0;
        row.rcItem = RECT{client.left, y, client.right, y + item.height};
        row.itemData = item.data;
        Self().DrawItem(row);
        y += item.height;
    }
    DrawScrollIndicator(dc, client, totalHeight_, top, GetCount());
}

template <typename Kind>
LRESULT TouchList<Kind>::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_CREATE:
            Layout();
            return 0;
        case WM_DESTROY:
            Self().Clear();
            return 0;
        case WM_PAINT:
            PaintWindow(Handle(), [this](HDC dc, const RECT& client) {
                PaintRows(dc, client, topIndex_, 0, false);
            });
            return 0;
        case WM_ERASEBKGND:
            return 1;
        case WM_WINDOWPOSCHANGED: {
            const auto position = reinterpret_cast<const WINDOWPOS*>(lParam);
            RECT client;
            if (!(position->flags & SWP_NOSIZE) && GetClientRect(Handle(), &client)) {
                FitTo(Height(client));
            }
            return Default(message, wParam, lParam);
        }
        case WM_LBUTTONDOWN:
        case WM_LBUTTONDBLCLK:
            OnButtonDown(PointOf(lParam), message == WM_LBUTTONDBLCLK);
            return 0;
        case WM_MOUSEWHEEL:
            OnWheel(static_cast<SHORT>(HIWORD(wParam)));
            return 0;
        case WM_QUERYDRAGTRACKER:
            return OnQueryDragTracker(*reinterpret_cast<GestureInfo*>(lParam));
        case WM_GETDLGCODE:
            OnGetDialogCode(reinterpret_cast<const MSG*>(lParam));
            return DLGC_WANTALLKEYS;
        case WM_KEYDOWN:
            OnKeyDown(wParam, lParam);
            return 0;
        case WM_KEYUP:
            // The hardware's soft keys belong to the bar of the window around the list.
            if (wParam == VK_F1 || wParam == VK_F2) {
                return Send(GetParent(Handle()), message, wParam, lParam);
            }
            return Default(message, wParam, lParam);
        default:
            return Default(message, wParam, lParam);
    }
}

template <typename Kind>
void TouchList<Kind>::OnButtonDown(POINT point, bool repeated) {
    const RECT client = ClientRectangle();
    if (!PtInRect(&client, point)) {
        return;
    }
    const bool meantForAnother = std::exchange(opened_, false) && repeated;
    const GestureResult gesture = StartDrag(Handle(), point.x, point.y);
    if (gesture != GestureHold && (gesture != GestureTap || meantForAnother)) {
        return;
    }
    SetFocus(Handle());
    const unsigned index = HitTest(point);
    if (index != noRow) {
        opened_ = gesture == GestureTap && Self().TapsOpen();
        Self().OnTap(index, gesture);
    }
}

template <typename Kind>
void TouchList<Kind>::OnWheel(int turn) {
    RECT client;
    // While a finger holds the rows they follow nothing else.
    if (items_.empty() || GetCapture() == Handle() || !GetClientRect(Handle(), &client) ||
        !Self().MayScroll()) {
        return;
    }
    const UINT rows = platform::RowsPerWheelNotch();
    if (rows == platform::wholePage) {
        const int pages = wheel_.Add(turn, 1);
        unsigned top = topIndex_;
        for (int page = 0; page < std::abs(pages); ++page) {
            top = pages > 0 ? PageUp(items_, top, Height(client))
                            : PageDown(items_, top, Height(client));
        }
        SetTopIndex(top);
        return;
    }
    constexpr UINT mostRows = 100;
    const int steps = wheel_.Add(turn, static_cast<int>(std::min(rows, mostRows)));
    const unsigned distance = static_cast<unsigned>(std::abs(steps));
    SetTopIndex(steps > 0 ? topIndex_ - std::min(topIndex_, distance) : topIndex_ + distance);
}

template <typename Kind>
bool TouchList<Kind>::OnQueryDragTracker(GestureInfo& info) {
    if (items_.empty() || (maxTop_ == 0 && !Self().DragsWhenAllRowsFit())) {
        return false;
    }
    const bool upright = std::abs(info.x - info.startX) <= std::abs(info.y - info.startY);
    if (info.result != GestureHold && !(info.result == GestureDrag && upright)) {
        return false;
    }
    info.tracker = DragTrackerOwner(new Tracker(*this));
    return true;
}

template <typename Kind>
void TouchList<Kind>::OnGetDialogCode(const MSG* message) {
    if (message && message->message == WM_KEYDOWN && message->wParam == VK_TAB) {
        const bool shift = GetAsyncKeyState(VK_SHIFT) < 0;
        // Kept on purpose: docs/compatibility.md#tab-direction
        PostMessageW(GetParent(Handle()), WM_NEXTDLGCTL, shift ? 0 : 1, 0);
    }
}

template <typename Kind>
void TouchList<Kind>::OnKeyDown(WPARAM key, LPARAM keyData) {
    if (Self().OfferKeyFirst(key, keyData) || items_.empty()) {
        return;
    }
    if (key == VK_RETURN) {
        Self().OnReturn();
        return;
    }
    Self().HandleNavigationKey(key);
}

template <typename Kind>
bool TouchList<Kind>::HandleNavigationKey(WPARAM key) {
    if (items_.empty()) {
        return false;
    }
    const unsigned last = GetCount() - 1;
    const unsigned start = selection_ == noRow ? 0 : selection_;
    RECT client;
    switch (key) {
        case VK_UP:
            if (selection_ != 0) {
                SetSelection(selection_ == noRow ? last : selection_ - 1);
            }
            return true;
        case VK_DOWN:
            if (selection_ == noRow || selection_ < last) {
                SetSelection(selection_ == noRow ? 0 : selection_ + 1);
            }
            return true;
        case VK_HOME:
            SetSelection(0);
            return true;
        case VK_END:
            SetSelection(last);
            return true;
        case VK_PRIOR:
            if (GetClientRect(Handle(), &client)) {
                SetSelection(PageUp(items_, start, Height(client)));
            }
            return true;
        case VK_NEXT:
            if (GetClientRect(Handle(), &client)) {
                SetSelection(PageDown(items_, start, Height(client)));
            }
            return true;
        default:
            return false;
    }
}

template <typename Kind>
LRESULT TouchList<Kind>::OfferKey(HWND receiver, WPARAM key, LPARAM keyData) {
    ListKeyDown notification = {};
    notification.key = static_cast<UINT>(key);
    notification.flags = HIWORD(keyData);
    return Notify(receiver, notification.header, NM_KEYDOWN);
}

template <typename Kind>
LRESULT TouchList<Kind>::NotifySelection(int code, unsigned newIndex, unsigned oldIndex) {
    ListSelectionChange notification = {};
    notification.newIndex = newIndex;
    notification.oldIndex = oldIndex;
    return Notify(GetParent(Handle()), notification.header, static_cast<UINT>(code));
}

template <typename Kind>
LRESULT TouchList<Kind>::Notify(HWND receiver, NMHDR& notification, UINT code) {
    notification.hwndFrom = Handle();
    notification.idFrom = static_cast<UINT_PTR>(GetDlgCtrlID(Handle()));
    notification.code = code;
    return Send(receiver, WM_NOTIFY, notification.idFrom, reinterpret_cast<LPARAM>(&notification));
}

}  // namespace ui
