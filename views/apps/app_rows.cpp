#include "views/apps/app_rows.h"

#include <algorithm>

#include "platform/drawing.h"
#include "platform/shell.h"
#include "res/resource.h"
#include "text/resources.h"
#include "ui/paint/clipped_text.h"
#include "ui/paint/drawing_resources.h"
#include "ui/paint/spacing.h"
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
    smallTextHeight_ = ui::TextHeight(dc, ui::Fonts().Small());
    icons_.Load(0);
    height_ = std::max(ui::ListRowHeight(textHeight_), icons_.RowHeight());
}

void AppRows::Draw(const DRAWITEMSTRUCT& row, const AppItem& item) const {
    const HDC dc = row.hDC;
    const int margin = ui::RowMargin(textHeight_);
    if (ui::Width(row.rcItem) <= 2 * margin) {
        return;
    }
    const bool selected = (row.itemState & ODS_SELECTED) != 0;
    RECT text = row.rcItem;
    text.right -= margin;
    ui::DrawRowBackground(dc, row.rcItem, selected);
    if (selected) {
        DrawChevron(dc, row.rcItem, &text);
    }
    if (icons_.Draw(dc, item.icon, row.rcItem.left + icons_.Width() / 4,
                    row.rcItem.top + (ui::Height(row.rcItem) - icons_.Height()) / 2)) {
        text.left += icons_.Width() * 3 / 2;
    } else {
        text.left += margin;
    }
    ui::SetRowTextColor(dc, selected);
    DrawLines(dc, text, item);
}

void AppRows::DrawLines(HDC dc, const RECT& area, const AppItem& item) const {
    const platform::Selected font(dc, ui::Fonts().Base());
    const int height = textHeight_ + smallTextHeight_;
    if (item.answers || ui::Height(area) < height) {
        ui::DrawClippedLine(dc, area, textHeight_, item.title);
        return;
    }
    RECT line = area;
    line.top += (ui::Height(area) - height) / 2;
    line.bottom = line.top + textHeight_;
    ui::DrawClippedLine(dc, line, textHeight_, item.title);
    line.top = line.bottom;
    line.bottom += smallTextHeight_;
    const platform::Selected smallFont(dc, ui::Fonts().Small());
    ui::DrawClippedLine(dc, line, smallTextHeight_, text::LoadText(IDS_NOT_ANSWERING));
}

}  // namespace views
