#include "ui/paint/fonts.h"

#include "platform/drawing.h"

namespace ui {

namespace {

platform::UniqueFont Derive(LOGFONTW description, LONG height, LONG weight) {
    description.lfHeight = height;
    description.lfWeight = weight;
    return platform::UniqueFont(CreateFontIndirectW(&description));
}

}  // namespace

void FontSet::Free() {
    small_.Reset();
    bold_.Reset();
    large_.Reset();
    title_.Reset();
}

void FontSet::Load() {
    Free();
    base_ = StockFont();
    LOGFONTW stock = {};
    if (!GetObjectW(Base(), sizeof stock, &stock)) {
        return;
    }
    const LONG height = stock.lfHeight;
    bold_ = Derive(stock, height, FW_BOLD);
    large_ = Derive(stock, height + height / 3, FW_MEDIUM);
    small_ = Derive(stock, height - height / 5, FW_NORMAL);
    title_ = Derive(stock, height + height / 3, FW_BOLD);
}

HFONT FontSet::StockFont() {
    return platform::SystemFont();
}

std::optional<int> MeasureTextHeight(HDC dc, HFONT font) {
    const platform::Selected selected(dc, font);
    TEXTMETRICW metrics;
    return GetTextMetricsW(dc, &metrics) ? std::optional<int>(metrics.tmHeight) : std::nullopt;
}

int TextHeight(HDC dc, HFONT font, int fallback) {
    return MeasureTextHeight(dc, font).value_or(fallback);
}

}  // namespace ui
