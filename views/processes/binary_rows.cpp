#include "views/processes/binary_rows.h"

#include <algorithm>

#include "platform/shell.h"
#include "text/format.h"
#include "ui/paint/clipped_text.h"
#include "ui/paint/drawing_resources.h"
#include "ui/paint/paint.h"
#include "ui/paint/spacing.h"
#include "ui/paint/theme.h"
#include "ui/window/window.h"

namespace views {

AddressText::AddressText(ULONG_PTR address) {
    do {
        *--first_ = L"0123456789abcdef"[address % 16];
        address /= 16;
    } while (address != 0);
}

std::wstring FormatAddress(ULONG_PTR address) {
    return std::wstring(AddressText(address).View());
}

void BinaryRows::Layout(HDC dc) {
    textHeight_ = ui::TextHeight(dc, ui::Fonts().Base());
    smallTextHeight_ = ui::TextHeight(dc, ui::Fonts().Small());
    icons_.Load(0);
}

int BinaryRows::Height(const BinaryLines& lines) const {
    int height = ui::ListRowHeight(textHeight_);
    height += lines.path ? smallTextHeight_ : 0;
    height += lines.base || lines.size ? smallTextHeight_ : 0;
    return std::max(height, icons_.RowHeight());
}

void BinaryRows::Draw(const DRAWITEMSTRUCT& row, const BinaryItem& item,
                      const BinaryLines& lines) const {
    const HDC dc = row.hDC;
    const RECT& area = row.rcItem;
    const int margin = ui::RowMargin(textHeight_);
    const bool selected = (row.itemState & ODS_SELECTED) != 0;
    ui::DrawRowBackground(dc, area, selected);
    const int iconTop = ui::Height(area) - 2 * margin > icons_.Height()
                            ? area.top + margin
                            : (area.top + area.bottom - icons_.Height()) / 2;
    RECT text = {area.left + margin, area.top + margin, area.right - margin,
                 area.bottom - 2 * margin};
    if (icons_.Draw(dc, item.icon, text.left, iconTop)) {
        text.left += icons_.Width() + margin;
    }
    ui::SetRowTextColor(dc, selected);
    // The letters may reach into the line below, but are not cut.
    text.bottom =
        std::max<int>(DrawLines(dc, text, row.itemID, item, lines), text.top + textHeight_);
    const platform::Selected font(dc, ui::Fonts().Base());
    ui::DrawClippedLine(dc, text, textHeight_, item.label.empty() ? item.name : item.label);
}

int BinaryRows::DrawLines(HDC dc, RECT area, unsigned row, const BinaryItem& item,
                          const BinaryLines& lines) const {
    const platform::Selected font(dc, ui::Fonts().Small());
    if (lines.path) {
        // Blank without a path.
        area.top = area.bottom - smallTextHeight_;
        ui::DrawPathText(dc, area, item.path);
        area.bottom = area.top;
    }
    if (!lines.base && !lines.size) {
        return area.bottom;
    }
    area.top = area.bottom - smallTextHeight_;
    RECT base = area;
    if (lines.size) {
        const std::wstring_view size = sizes_.Of(row, item.size, text::FormatSize);
        ui::DrawClippedText(dc, area, size, ui::TextAlignment::Right);
        base.right -= ui::TextWidth(dc, size) + smallTextHeight_ / 2;
    }
    if (lines.base) {
        ui::DrawClippedText(dc, base, AddressText(item.base).View());
    }
    return area.top;
}

}  // namespace views
