#include "views/apps/app_rows.h"

#include <algorithm>

#include "platform/drawing.h"
#include "platform/shell.h"
#include "ui/paint/clipped_text.h"
#include "ui/paint/drawing_resources.h"
#include "ui/paint/theme.h"
#include "ui/window/window.h"
#include "views/apps/chevron.h"

namespace views {

namespace {

// Draws the mark at the row's right end and takes its room from the text.
void DrawChevron(HDC dc, const RECT& row, RECT* text) {
    const int width = ChevronWidth(ui::Height(row));
    if (ui::Width(*text) < width) {
        return;
    }
    text->right -= width;
    ui::BlendSurface mark(dc, width, ui::Height(row));
    if (!mark) {
        return;
    }
    ui::FillWithSystemColor(mark.DC(), RECT{0, 0, width, ui::Height(row)}, COLOR_HIGHLIGHT);
    platform::FlushDrawing();
    BlendChevron(mark, width, ui::Height(row), GetSysColor(COLOR_HIGHLIGHTTEXT));
    BitBlt(dc, text->right, row.top, width, ui::Height(row), mark.DC(), 0, 0, SRCCOPY);
}

}  // namespace

void AppRows::Layout(HDC dc) {
    textHeight_ = ui::TextHeight(dc, ui::Fonts().Base());
    SHFILEINFOW info = {};
    icons_ =
        reinterpret_cast<HIMAGELIST>(platform::FileInfo(nullptr, 0, &info, SHGFI_SYSICONINDEX));
    if (!icons_ || !ImageList_GetIconSize(icons_, &iconWidth_, &iconHeight_)) {
        iconWidth_ = iconHeight_ = 0;
    }
    height_ = std::max(textHeight_ + (textHeight_ + 3) / 4 * 2, iconHeight_ + iconHeight_ / 4);
}

void AppRows::Draw(const DRAWITEMSTRUCT& row, const AppItem& item) const {
    const HDC dc = row.hDC;
    const int margin = (textHeight_ + 5) / 6;
    if (ui::Width(row.rcItem) <= 2 * margin) {
        return;
    }
    const bool selected = (row.itemState & ODS_SELECTED) != 0;
    RECT text = row.rcItem;
    text.right -= margin;
    if (selected) {
        ui::FillWithSystemColor(dc, row.rcItem, COLOR_HIGHLIGHT);
        DrawChevron(dc, row.rcItem, &text);
    } else {
        ui::DrawRowRule(dc, row.rcItem);
    }
    if (icons_ && item.icon >= 0 &&
        ImageList_Draw(icons_, item.icon, dc, row.rcItem.left + iconWidth_ / 4,
                       row.rcItem.top + (ui::Height(row.rcItem) - iconHeight_) / 2, ILD_NORMAL)) {
        text.left += iconWidth_ * 3 / 2;
    } else {
        text.left += margin;
    }
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, GetSysColor(selected ? COLOR_HIGHLIGHTTEXT : COLOR_WINDOWTEXT));
    const platform::Selected font(dc, ui::Fonts().Base());
    ui::DrawClippedLine(dc, text, item.title);
}

}  // namespace views
