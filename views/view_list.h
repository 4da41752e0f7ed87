// The touch list of a view: its rows are the view's.
#pragma once

#include <vector>

#include "ui/list/touch_list.h"
#include "views/view.h"

namespace views {

class ViewList final : public ui::TouchList<ViewList> {
 public:
    static constexpr wchar_t className[] = L"kx::TouchList";

    explicit ViewList(View& view) : view_(view) {}
    ~ViewList() override { Destroy(); }

    // Creates the list as a hidden child of `parent`; false when the platform fails.
    bool Open(HWND parent, UINT_PTR id) {
        return Create(className, L"", ui::childStyle & ~static_cast<DWORD>(WS_VISIBLE), RECT{},
                      parent, id);
    }

    // Multi-selection: while it lasts a tap marks a row instead of selecting it, and every row
    // shows a box at its right end. Starts and ends without marks.
    void SetMarking(bool marking);
    bool Marking() const { return marking_; }
    bool Marked(unsigned row) const { return row < marks_.size() && marks_[row] != 0; }
    unsigned MarkedCount() const;
    void ToggleMark(unsigned row);

    // As the list's own; the marks go with their rows.
    void Clear() { ReplaceItems(ui::ItemRecords()); }
    void ReplaceItems(ui::ItemRecords items);
    void InsertItem(unsigned index, ULONG_PTR data);
    void RemoveItem(unsigned index);

    // The hooks of the touch list.
    SIZE Measure(unsigned, int clientWidth, int, ULONG_PTR data) const {
        return SIZE{clientWidth, view_.RowHeight(data)};
    }
    void DrawItem(const DRAWITEMSTRUCT& row);
    void EraseBackground(HDC dc, const RECT& area) {
        ui::FillWithSystemColor(dc, area, COLOR_WINDOW);
    }
    void OnTap(unsigned index, ui::GestureResult gesture);
    void DeleteItem(ULONG_PTR data) { view_.DeleteRow(data); }
    bool TapsOpen() const { return !marking_ && view_.TapsOpen(); }

    using TouchList::BringIntoView;
    using TouchList::RowRectangle;

 private:
    View& view_;
    bool marking_ = false;
    // 1 for each marked row; shorter when the last rows have no mark.
    std::vector<uint8_t> marks_;
};

}  // namespace views
