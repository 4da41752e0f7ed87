#include "views/files/file_rows.h"

#include <algorithm>

#include "platform/handles.h"
#include "platform/shell.h"
#include "text/format.h"
#include "ui/paint/clipped_text.h"
#include "ui/paint/drawing_resources.h"
#include "ui/paint/paint.h"
#include "ui/paint/spacing.h"
#include "ui/paint/theme.h"
#include "ui/window/window.h"
#include "views/display_flags.h"
#include "views/list_view.h"

namespace views {

namespace {

bool HasSecondLine(const FileItem& item, DWORD flags) {
    return (flags & flagShowFileDate) || ((flags & flagShowFileSize) && !item.IsFolder());
}

}  // namespace

void FileRows::Layout(HDC dc) {
    textHeight_ = ui::TextHeight(dc, ui::Fonts().Base());
    smallTextHeight_ = ui::TextHeight(dc, ui::Fonts().Small());
    icons_.Load(SHGFI_SMALLICON);
    oneLineHeight_ = std::max(ThumbRowHeight(textHeight_), icons_.RowHeight());
}

int FileRows::Height(const FileItem& item, DWORD flags) const {
    return HasSecondLine(item, flags) ? oneLineHeight_ + smallTextHeight_ : oneLineHeight_;
}

void FileRows::Draw(const DRAWITEMSTRUCT& row, const FileItem& item, DWORD flags) const {
    const HDC dc = row.hDC;
    const bool selected = (row.itemState & ODS_SELECTED) != 0;
    ui::DrawRowBackground(dc, row.rcItem, selected);
    const int margin = ui::RowMargin(textHeight_);
    RECT text = row.rcItem;
    text.right -= 2 * margin;
    text.left += 2 * margin;
    icons_.Draw(dc, item.iconIndex, text.left,
                row.rcItem.top + (ui::Height(row.rcItem) - icons_.Height()) / 2);
    // Names stand below each other, with an icon or without.
    text.left += icons_.Width() + icons_.Width() / 2;
    ui::SetRowTextColor(dc, selected);
    if (!HasSecondLine(item, flags)) {
        const platform::Selected font(dc, ui::Fonts().Base());
        ui::DrawClippedLine(dc, text, textHeight_, item.name);
        return;
    }
    const int padding = (ui::Height(text) - textHeight_ - smallTextHeight_) / 2;
    text.top += padding;
    {
        const platform::Selected font(dc, ui::Fonts().Base());
        ui::DrawClippedText(dc, text, item.name);
    }
    text.top += textHeight_;
    if (!selected) {
        constexpr unsigned textShare = 150;
        SetTextColor(
            dc, ui::MixColors(GetSysColor(COLOR_WINDOWTEXT), GetSysColor(COLOR_WINDOW), textShare));
    }
    const platform::Selected font(dc, ui::Fonts().Small());
    DrawSecondLine(dc, text, row.itemID, item, flags);
}

RECT FileRows::NameArea(const RECT& row) const {
    RECT area = row;
    area.left += 2 * ui::RowMargin(textHeight_) + icons_.Width() + icons_.Width() / 4;
    area.bottom = area.top + std::min(ui::Height(row), oneLineHeight_);
    return area;
}

void FileRows::DrawSecondLine(HDC dc, const RECT& area, unsigned row, const FileItem& item,
                              DWORD flags) const {
    RECT date = area;
    if ((flags & flagShowFileSize) && !item.IsFolder()) {
        const std::wstring_view size = sizes_.Of(row, item.size, text::FormatSize);
        const bool alone = !(flags & flagShowFileDate);
        ui::DrawClippedText(dc, area, size,
                            alone ? ui::TextAlignment::Left : ui::TextAlignment::Right);
        date.right -= ui::TextWidth(dc, size) + smallTextHeight_ / 2;
    }
    if (flags & flagShowFileDate) {
        // Kept on purpose: docs/compatibility.md#created-date
        ui::DrawClippedText(dc, date,
                            dates_.Of(row, text::LocalTime(item.created), [](uint64_t time) {
                                return text::FormatLocalTime(time, text::Seconds::Without);
                            }));
    }
}

}  // namespace views
