// How the entries of a folder look in a list.
#pragma once

#include "views/files/file_item.h"
#include "views/kept_texts.h"
#include "views/system_icons.h"

namespace views {

class FileRows {
 public:
    // Measures fonts and icons. Heights are pixels.
    void Layout(HDC dc);

    int OneLineHeight() const { return oneLineHeight_; }
    // The height of an entry's row under the display options.
    int Height(const FileItem& item, DWORD flags) const;
    void Draw(const DRAWITEMSTRUCT& row, const FileItem& item, DWORD flags) const;
    // The part of a row in which its name stands.
    RECT NameArea(const RECT& row) const;

 private:
    // Draws the second line of a row (from 0).
    void DrawSecondLine(HDC dc, const RECT& area, unsigned row, const FileItem& item,
                        DWORD flags) const;

    SystemIcons icons_;
    mutable KeptTexts<uint64_t> sizes_;
    mutable KeptTexts<uint64_t> dates_;
    int textHeight_ = 0;
    int smallTextHeight_ = 0;
    int oneLineHeight_ = 0;
};

}  // namespace views
