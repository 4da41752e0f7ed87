// The list of the "Open File" dialog: the entries of one folder.
#pragma once

#include "ui/list/touch_list.h"
#include "views/files/file_rows.h"
#include "views/files/folder_listing.h"
#include "views/files/name_patterns.h"

namespace views {

class ChooserList final : public ui::TouchList<ChooserList> {
 public:
    static constexpr wchar_t className[] = L"kx::ChooserList";

    ChooserList() = default;
    ~ChooserList() override;

    // Creates the list as a child of `parent`; false when the platform fails.
    bool Open(HWND parent, UINT_PTR id);
    // Lists a folder's entries that are not hidden by `hideMask`: its folders, and the files whose
    // names match. Where memory is short the rows stay as they are: throws std::bad_alloc.
    void Show(const std::wstring& folder, DWORD hideMask, const NamePatterns& patterns);
    const FileItem& ItemAt(unsigned row) const { return ItemOf(GetItemData(row)); }

    // The hooks of the touch list.
    SIZE Measure(unsigned, int clientWidth, int, ULONG_PTR data) const {
        return SIZE{clientWidth, rows_.Height(ItemOf(data), 0)};
    }
    void DrawItem(const DRAWITEMSTRUCT& row) { rows_.Draw(row, ItemOf(row.itemData), 0); }
    void EraseBackground(HDC dc, const RECT& area) {
        ui::FillWithSystemColor(dc, area, COLOR_WINDOW);
    }
    // Selects the row; a tap also sends IDOK to the parent, as NM_RETURN would.
    void OnTap(unsigned index, ui::GestureResult gesture);
    void DeleteItem(ULONG_PTR data) { FileItemOwner(&ItemOf(data)); }

 private:
    FileRows rows_;
};

}  // namespace views
