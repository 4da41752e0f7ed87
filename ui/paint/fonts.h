// The four fonts of the program, derived from the platform's stock system font.
#pragma once

#include <optional>

#include "platform/handles.h"

namespace ui {

class FontSet {
 public:
    // Holds the stock font alone until Load.
    FontSet() = default;
    ~FontSet() { Free(); }
    FontSet(const FontSet&) = delete;
    FontSet& operator=(const FontSet&) = delete;

    // Derives the fonts anew from the stock font (GetObjectW, CreateFontIndirectW), deleting the
    // previous ones first. A font that cannot be made is replaced by the stock font.
    void Load();

    // Deletes the owned fonts in the order small, bold, large; the stock font remains.
    void Free();

    // Borrowed by the caller.
    HFONT Base() const { return base_ ? base_ : StockFont(); }
    HFONT Bold() const { return Or(bold_); }
    HFONT Large() const { return Or(large_); }
    HFONT Small() const { return Or(small_); }
    // Large and bold where the two combine, else large.
    HFONT Title() const { return title_ ? title_.Get() : Large(); }

 private:
    static HFONT StockFont();
    HFONT Or(const platform::UniqueFont& font) const { return font ? font.Get() : Base(); }

    // The stock font, once it has been asked for.
    HFONT base_ = nullptr;
    platform::UniqueFont title_;
    platform::UniqueFont large_;
    platform::UniqueFont bold_;
    platform::UniqueFont small_;
};

// The height of a font's text line in pixels (tmHeight of GetTextMetricsW); none when it cannot be
// read.
std::optional<int> MeasureTextHeight(HDC dc, HFONT font);

// The same, `fallback` when it cannot be read.
int TextHeight(HDC dc, HFONT font, int fallback = 15);

}  // namespace ui
