#include "views/status/gauge_rows.h"

#include <algorithm>

#include "ui/paint/clipped_text.h"
#include "ui/paint/drawing_resources.h"
#include "ui/paint/paint.h"
#include "ui/paint/percentage_bar.h"
#include "ui/paint/spacing.h"
#include "ui/paint/theme.h"
#include "ui/window/window.h"

namespace views {

namespace {

// The mark of the selection lies over the row, so that the bar's color can still be told.
void DrawSelection(HDC dc, const RECT& area) {
    constexpr uint32_t selectionOpacity = 100;
    const int width = ui::Width(area);
    const int height = ui::Height(area);
    ui::BlendSurface surface(dc, width, height);
    if (!surface) {
        return;
    }
    BitBlt(surface.DC(), 0, 0, width, height, dc, area.left, area.top, SRCCOPY);
    surface.BlendRoundedRectangle(4 * GetSystemMetrics(SM_CXBORDER), GetSysColor(COLOR_HIGHLIGHT),
                                  selectionOpacity);
    BitBlt(dc, area.left, area.top, width, height, surface.DC(), 0, 0, SRCCOPY);
}

}  // namespace

void GaugeRows::Layout(HDC dc) {
    textHeight_ = ui::TextHeight(dc, ui::Fonts().Base());
    smallTextHeight_ = ui::TextHeight(dc, ui::Fonts().Small());
    barHeight_ = ui::PercentageBarHeight(GetSystemMetrics(SM_CXBORDER));
    iconSize_ = ui::Resources().StatusIconSize();
    margin_ = ui::RowMargin(textHeight_);
    const int lines = textHeight_ + margin_ + barHeight_ + margin_ + smallTextHeight_;
    height_ = std::max(lines, iconSize_) + 4 * margin_;
}

void GaugeRows::Draw(const DRAWITEMSTRUCT& row, const Gauge& gauge) const {
    DrawContent(row, gauge);
    if (row.itemState & ODS_SELECTED) {
        DrawSelection(row.hDC, row.rcItem);
    }
}

void GaugeRows::DrawContent(const DRAWITEMSTRUCT& row, const Gauge& gauge) const {
    const HDC dc = row.hDC;
    ui::DrawRowRule(dc, row.rcItem);
    RECT area = row.rcItem;
    area.left += 2 * margin_;
    area.right -= 2 * margin_;
    const GaugeReading& reading = gauge.Reading();
    ui::Resources().StatusStrip().Draw(
        dc, area.left, area.top + std::max(0, ui::Height(row.rcItem) - iconSize_) / 2,
        static_cast<int>(reading.icon));
    area.left += iconSize_ + 2 * margin_;
    const int lines = textHeight_ + margin_ + barHeight_ + margin_ + smallTextHeight_;
    area.top += (ui::Height(row.rcItem) - lines) / 2;
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, GetSysColor(COLOR_WINDOWTEXT));
    area.bottom = area.top + textHeight_;
    {
        const platform::Selected font(dc, ui::Fonts().Base());
        ui::DrawClippedText(dc, area, gauge.Label());
    }
    area.top = area.bottom + margin_;
    area.bottom = area.top + barHeight_;
    ui::DrawPercentageBar(dc, area, reading.percent, gauge.BarColor());
    area.top = area.bottom + margin_;
    area.bottom = area.top + smallTextHeight_;
    const platform::Selected font(dc, ui::Fonts().Small());
    ui::DrawClippedText(dc, area, reading.text, ui::TextAlignment::Right);
}

}  // namespace views
