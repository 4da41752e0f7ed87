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

std::wstring FormatAddress(ULONG_PTR address) {
    if constexpr (sizeof address == sizeof(DWORD)) {
        return text::Format(L"%1!x!", static_cast<DWORD>(address));
    } else {
        return text::Format(L"%1!I64x!", static_cast<int64_t>(address));
    }
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

void BinaryRows::Draw(const DRAWITEMSTRUCT& row, const BinaryItem& item, const std::wstring& name,
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
    text.bottom = std::max<int>(DrawLines(dc, text, item, lines), text.top + textHeight_);
    const platform::Selected font(dc, ui::Fonts().Base());
    ui::DrawClippedLine(dc, text, name);
}

int BinaryRows::DrawLines(HDC dc, RECT area, const BinaryItem& item,
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
        const std::wstring size = text::FormatSize(item.size);
        ui::DrawClippedText(dc, area, size, ui::TextAlignment::Right);
        base.right -= ui::TextWidth(dc, size) + smallTextHeight_ / 2;
    }
    if (lines.base) {
        ui::DrawClippedText(dc, base, FormatAddress(item.base));
    }
    return area.top;
}

}  // namespace views
