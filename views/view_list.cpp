#include "views/view_list.h"

#include <algorithm>

#include "ui/paint/marks.h"
#include "ui/paint/theme.h"

namespace views {

void ViewList::SetMarking(bool marking) {
    marking_ = marking;
    marks_.clear();
    InvalidateRect(Handle(), nullptr, FALSE);
}

unsigned ViewList::MarkedCount() const {
    return static_cast<unsigned>(std::count(marks_.begin(), marks_.end(), 1));
}

void ViewList::ToggleMark(unsigned row) {
    if (!marking_ || row >= GetCount()) {
        return;
    }
    if (marks_.size() <= row) {
        marks_.resize(row + 1);
    }
    marks_[row] ^= 1;
    InvalidateRow(row);
    view_.MarksChanged();
}

void ViewList::ReplaceItems(ui::ItemRecords items) {
    marks_.clear();
    TouchList::ReplaceItems(std::move(items));
}

void ViewList::InsertItem(unsigned index, ULONG_PTR data) {
    if (index < marks_.size()) {
        marks_.insert(marks_.begin() + static_cast<ptrdiff_t>(index), uint8_t{0});
    }
    TouchList::InsertItem(index, data);
}

void ViewList::RemoveItem(unsigned index) {
    if (index < marks_.size()) {
        marks_.erase(marks_.begin() + static_cast<ptrdiff_t>(index));
    }
    TouchList::RemoveItem(index);
}

void ViewList::OnTap(unsigned index, ui::GestureResult gesture) {
    if (marking_) {
        SetSelection(index);
        ToggleMark(index);
    } else if (SetSelection(index) == index && gesture == ui::GestureTap) {
        view_.Tap(index);
    }
}

void ViewList::DrawItem(const DRAWITEMSTRUCT& row) {
    if (!marking_) {
        view_.DrawRow(row);
        return;
    }
    const int boxWidth = std::min(ui::Height(row.rcItem), ui::Width(row.rcItem) / 4);
    DRAWITEMSTRUCT content = row;
    content.rcItem.right -= boxWidth;
    view_.DrawRow(content);
    RECT box = row.rcItem;
    box.left = content.rcItem.right;
    const bool selected = (row.itemState & ODS_SELECTED) != 0;
    if (selected) {
        ui::FillWithSystemColor(row.hDC, box, COLOR_HIGHLIGHT);
    } else {
        ui::DrawRowRule(row.hDC, box);
    }
    const int inset = ui::Height(box) / 4;
    const RECT square = {box.left + inset, box.top + inset, box.right - inset, box.bottom - inset};
    ui::DrawCheckBox(row.hDC, square, Marked(row.itemID),
                     GetSysColor(selected ? COLOR_HIGHLIGHTTEXT : COLOR_WINDOWTEXT));
}

}  // namespace views
