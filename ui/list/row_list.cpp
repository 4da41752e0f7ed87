#include "ui/list/row_list.h"

#include <algorithm>
#include <new>

#include "ui/paint/marks.h"
#include "ui/paint/reading.h"

namespace ui {

namespace {

// Parts of a push of the wheel to the side follow each other faster, in milliseconds.
constexpr DWORD longestPushPause = 300;

}  // namespace

void RowListWindow::SetMarking(bool marking) {
    marking_ = marking;
    marks_.clear();
    markedFrom_ = markedTo_ = noRow;
    InvalidateRect(Handle(), nullptr, FALSE);
}

unsigned RowListWindow::MarkedCount() const {
    return static_cast<unsigned>(std::count(marks_.begin(), marks_.end(), 1));
}

std::vector<unsigned> RowListWindow::MarkedRows() const {
    std::vector<unsigned> rows;
    for (unsigned row = 0; row < marks_.size(); ++row) {
        if (Marked(row)) {
            rows.push_back(row);
        }
    }
    return rows;
}

void RowListWindow::ToggleMark(unsigned row) {
    if (!marking_ || row >= GetCount()) {
        return;
    }
    if (marks_.size() <= row) {
        marks_.resize(row + 1);
    }
    marks_[row] ^= 1;
    markedFrom_ = markedTo_ = noRow;
    InvalidateRow(row);
    owner_.OnMarksChanged();
}

void RowListWindow::SetMarks(unsigned first, unsigned last, bool marked) {
    if (marks_.size() <= last) {
        marks_.resize(last + 1);
    }
    std::fill(marks_.begin() + static_cast<ptrdiff_t>(first),
              marks_.begin() + static_cast<ptrdiff_t>(last) + 1, uint8_t{marked});
}

void RowListWindow::MarkAll() {
    if (!marking_ || GetCount() == 0) {
        return;
    }
    SetMarks(0, GetCount() - 1, true);
    InvalidateRect(Handle(), nullptr, FALSE);
    owner_.OnMarksChanged();
}

bool RowListWindow::MovesSelection(WPARAM key) {
    return key == VK_UP || key == VK_DOWN || key == VK_HOME || key == VK_END || key == VK_PRIOR ||
           key == VK_NEXT;
}

void RowListWindow::MarkAlong(WPARAM key) {
    const unsigned before = GetSelection();
    HandleNavigationKey(key);
    const unsigned now = GetSelection();
    if (!marking_ || now == noRow) {
        return;
    }
    if (before == noRow || before != markedTo_ || markedFrom_ == noRow) {
        markedFrom_ = before == noRow ? now : before;
    } else {
        SetMarks(std::min(markedFrom_, before), std::max(markedFrom_, before), false);
    }
    SetMarks(std::min(markedFrom_, now), std::max(markedFrom_, now), true);
    markedTo_ = now;
    InvalidateRect(Handle(), nullptr, FALSE);
    owner_.OnMarksChanged();
}

void RowListWindow::ReplaceItems(ItemRecords items) {
    marks_.clear();
    markedFrom_ = markedTo_ = rightPressed_ = noRow;
    TouchList::ReplaceItems(std::move(items));
}

void RowListWindow::InsertItem(unsigned index, ULONG_PTR data) {
    if (index < marks_.size()) {
        marks_.insert(marks_.begin() + static_cast<ptrdiff_t>(index), uint8_t{0});
    }
    markedFrom_ = markedTo_ = rightPressed_ = noRow;
    TouchList::InsertItem(index, data);
}

void RowListWindow::RemoveItem(unsigned index) {
    if (index < marks_.size()) {
        marks_.erase(marks_.begin() + static_cast<ptrdiff_t>(index));
    }
    markedFrom_ = markedTo_ = rightPressed_ = noRow;
    TouchList::RemoveItem(index);
}

void RowListWindow::Sort(ItemRecords& items, Before before) {
    const auto inOrder = [before](const ItemRecord& first, const ItemRecord& second) {
        return before(first.data, second.data);
    };
    // Most file systems give their entries in order.
    const auto outOfOrder = [&](const ItemRecord& first, const ItemRecord& second) {
        return !inOrder(first, second);
    };
    if (std::adjacent_find(items.begin(), items.end(), outOfOrder) == items.end()) {
        return;
    }
    // Merges runs of doubling length; of equal rows the later run's goes first.
    ItemRecords merged(items.size());
    for (size_t length = 1; length < items.size(); length *= 2) {
        for (size_t start = 0; start < items.size(); start += 2 * length) {
            const ItemRecord* const first = items.data() + start;
            const ItemRecord* const middle = items.data() + std::min(start + length, items.size());
            const ItemRecord* const end = items.data() + std::min(start + 2 * length, items.size());
            std::merge(middle, end, first, middle, merged.data() + start, inOrder);
        }
        items.swap(merged);
    }
}

unsigned RowListWindow::LowerBound(ULONG_PTR data, Before before) const {
    const ItemRecords& items = Items();
    const auto found = std::lower_bound(
        items.begin(), items.end(), data,
        [before](const ItemRecord& item, ULONG_PTR wanted) { return before(item.data, wanted); });
    return static_cast<unsigned>(found - items.begin());
}

void RowListWindow::OnTap(unsigned index, GestureResult gesture) {
    if (marking_) {
        SetSelection(index);
        ToggleMark(index);
    } else if (SetSelection(index) == index && gesture == GestureTap) {
        owner_.OnActivated(index);
    }
}

void RowListWindow::OnReturn() {
    if (marking_) {
        ToggleMark(GetSelection());
    } else {
        owner_.OnActivated(GetSelection());
    }
}

void RowListWindow::BeginFrame(bool dragged) {
    // Rows at rest are drawn whole. In a drag few are new in one frame, unless it is a fast one.
    constexpr unsigned mostInDrag = 2;
    completions_ = dragged ? mostInDrag : ~0u;
    frameLacks_ = false;
}

bool RowListWindow::CompleteNearby() {
    const unsigned row = NextToComplete();
    if (row == noRow) {
        return false;
    }
    InvalidateRow(row);
    return TryToComplete(GetItemData(row));
}

bool RowListWindow::TryToComplete(ULONG_PTR data) const {
    try {
        Complete(data);
    } catch (const std::bad_alloc&) {
        return false;
    }
    return true;
}

unsigned RowListWindow::NextToComplete() const {
    const unsigned count = GetCount();
    RECT client;
    if (count == 0 || !GetClientRect(Handle(), &client)) {
        return noRow;
    }
    const auto lacks = [this, count](unsigned row) {
        return row < count && Lacks(GetItemData(row));
    };
    const unsigned top = GetTopIndex();
    unsigned end = top;
    for (int y = 0; end < count && y < Height(client); ++end) {
        y += Items()[end].height;
    }
    const unsigned page = end - top;
    const unsigned selection = GetSelection();
    for (unsigned distance = 0; selection != noRow && distance < page; ++distance) {
        // What is no row before the first one is none.
        for (const unsigned row : {selection + distance, selection - distance}) {
            if (lacks(row)) {
                return row;
            }
        }
    }
    // Two screens are what one drag brings.
    for (unsigned distance = 0; distance < 2 * page; ++distance) {
        for (const unsigned row : {end + distance, top - 1 - distance}) {
            if (lacks(row)) {
                return row;
            }
        }
    }
    return noRow;
}

bool RowListWindow::OfferKeyFirst(WPARAM key, LPARAM) {
    keyTaken_ = owner_.OnKey(key);
    if (keyTaken_ || MovesSelection(key)) {
        typed_.Reset();
    }
    return keyTaken_;
}

void RowListWindow::OnRightButtonDown(POINT point) {
    rightPressed_ = noRow;
    const unsigned row = HitTest(point);
    if (row == noRow || !owner_.MaySelect()) {
        return;
    }
    SetFocus(Handle());
    if (SetSelection(row) == row) {
        rightPressed_ = row;
        SetCapture(Handle());
    }
}

void RowListWindow::OnRightButtonUp(POINT point) {
    const unsigned pressed = std::exchange(rightPressed_, noRow);
    if (pressed == noRow || GetCapture() != Handle()) {
        return;
    }
    ReleaseCapture();
    RECT row;
    if (HitTest(point, &row) == pressed && GetSelection() == pressed) {
        OpenMenu(row, point.x, point.x);
    }
}

// The row itself stays in sight.
void RowListWindow::OpenMenu(const RECT& row, int left, int right) {
    POINT corner = {};
    if (ClientToScreen(Handle(), &corner)) {
        RECT anchor = {left, row.top, right, row.bottom};
        OffsetRectangle(&anchor, corner.x, corner.y);
        owner_.OnMenu(anchor);
    }
}

void RowListWindow::OpenMenuOfSelection() {
    RECT row;
    BringIntoView(GetSelection());
    if (owner_.MaySelect() && RowRectangle(GetSelection(), &row)) {
        OpenMenu(row, row.left, row.right);
    }
}

void RowListWindow::OnSideWheel(int turn) {
    const DWORD now = GetTickCount();
    if (now - std::exchange(pushedAt_, now) > longestPushPause) {
        sideWheel_.Reset();
        pushActed_ = false;
    }
    if (sideWheel_.Add(turn, 1) < 0 && !std::exchange(pushActed_, true)) {
        owner_.OnMouseBack();
    }
}

void RowListWindow::OnCharacter(wchar_t character) {
    const unsigned count = GetCount();
    if (keyTaken_ || character < L' ' || count == 0) {
        return;
    }
    typed_.Add(character, GetTickCount());
    const unsigned start = GetSelection() == noRow ? 0 : GetSelection() + typed_.GoesOn();
    for (unsigned step = 0; step < count; ++step) {
        const unsigned row = (start + step) % count;
        if (typed_.Begins(owner_.RowName(row))) {
            SetSelection(row);
            return;
        }
    }
}

LRESULT RowListWindow::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_RBUTTONDOWN:
        case WM_RBUTTONDBLCLK:
            OnRightButtonDown(PointOf(lParam));
            return 0;
        case WM_RBUTTONUP:
            OnRightButtonUp(PointOf(lParam));
            return 0;
        case WM_XBUTTONDOWN:
        case WM_XBUTTONDBLCLK:
            backPressed_ = HIWORD(wParam) == XBUTTON1 && owner_.MaySelect();
            return TRUE;
        case WM_XBUTTONUP:
            if (std::exchange(backPressed_, false) && HIWORD(wParam) == XBUTTON1) {
                owner_.OnMouseBack();
            }
            return TRUE;
        case platform::sideWheelMessage:
            if (owner_.MaySelect()) {
                OnSideWheel(static_cast<SHORT>(HIWORD(wParam)));
            }
            return 0;
        case WM_KEYDOWN:
            if (wParam == VK_APPS) {
                OpenMenuOfSelection();
                return 0;
            }
            break;
        case WM_KEYUP:
            // Its characters have come before.
            keyTaken_ = false;
            break;
        case WM_SYSKEYDOWN:
            // Of the keys beside Alt the program knows this one alone. The platform must see it
            // too: Alt that is released without another key opens the window's own menu.
            if (wParam == VK_RETURN) {
                owner_.OnKey(wParam);
            }
            break;
        case WM_SYSCHAR:
            if (wParam == L'\r') {
                return 0;
            }
            break;
        case WM_CHAR:
            OnCharacter(static_cast<wchar_t>(wParam));
            return 0;
        default:
            break;
    }
    return TouchList::OnMessage(message, wParam, lParam);
}

void RowListWindow::DrawItem(const DRAWITEMSTRUCT& row) {
    const bool seen = !platform::hasAssistiveTechnology || !IsReading();
    if (seen && Lacks(row.itemData)) {
        if (completions_ > 0) {
            --completions_;
            TryToComplete(row.itemData);
        } else {
            frameLacks_ = true;
        }
    }
    if (!marking_) {
        DrawRow(row);
        return;
    }
    const int boxWidth = std::min(Height(row.rcItem), Width(row.rcItem) / 4);
    DRAWITEMSTRUCT content = row;
    content.rcItem.right -= boxWidth;
    DrawRow(content);
    RECT box = row.rcItem;
    box.left = content.rcItem.right;
    const bool selected = (row.itemState & ODS_SELECTED) != 0;
    DrawRowBackground(row.hDC, box, selected);
    const int inset = Height(box) / 4;
    const RECT square = {box.left + inset, box.top + inset, box.right - inset, box.bottom - inset};
    DrawCheckBox(row.hDC, square, Marked(row.itemID),
                 GetSysColor(selected ? COLOR_HIGHLIGHTTEXT : COLOR_WINDOWTEXT));
}

}  // namespace ui
