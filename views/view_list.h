// The touch list of a view: its rows are the view's.
#pragma once

#include "ui/touch_list.h"
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

    SIZE Measure(unsigned, int clientWidth, int, ULONG_PTR data) const {
        return SIZE{clientWidth, view_.RowHeight(data)};
    }
    void DrawItem(const DRAWITEMSTRUCT& row) { view_.DrawRow(row); }
    void EraseBackground(HDC dc, const RECT& area) {
        ui::FillWithSystemColor(dc, area, COLOR_WINDOW);
    }
    void OnTap(unsigned index, ui::GestureResult gesture) {
        if (SetSelection(index) == index && gesture == ui::GestureTap) {
            view_.Tap(index);
        }
    }
    void DeleteItem(ULONG_PTR data) { view_.DeleteRow(data); }

 private:
    View& view_;
};

}  // namespace views
