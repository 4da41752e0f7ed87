// The icons of files and programs, as the system's shell keeps them.
#pragma once

#include <string>

#include "platform/shell.h"

namespace views {

// The index of a path's icon in the system's image lists (SHGetFileInfo with `flags` besides the
// two for that); -1 when it has none.
int IconOf(const std::wstring& path, DWORD attributes = 0, UINT flags = 0);

// In place of the index of an icon that nobody has asked for yet: a row gets its icon when it is
// drawn.
inline constexpr int unknownIcon = -2;

class SystemIcons {
 public:
    // Finds the system's list of an icon's size (SHGetFileInfo): SHGFI_SMALLICON, or 0 for the
    // large ones.
    void Load(UINT size);
    // Draws an icon (ImageList_Draw); false when there is none. One that is not known yet has its
    // place.
    bool Draw(HDC dc, int index, int x, int y) const;

    // Pixels; 0 without a list.
    int Width() const { return width_; }
    int Height() const { return height_; }
    // The height of a row that an icon fits into.
    int RowHeight() const { return height_ + height_ / 4; }

 private:
    // Borrowed.
    HIMAGELIST list_ = nullptr;
    int width_ = 0;
    int height_ = 0;
};

}  // namespace views
