// Reading a menu's items by position (GetMenuItemInfoW).
#pragma once

#include <string>

#include "platform/windows.h"

namespace ui {

// The data word of an item that has no image.
inline constexpr ULONG_PTR noImage = ~static_cast<ULONG_PTR>(0);

struct MenuItem {
    UINT type = 0;
    UINT state = 0;
    UINT id = 0;
    HMENU submenu = nullptr;
    // An index into an image strip, or noImage.
    ULONG_PTR image = noImage;
    std::wstring text;

    bool Disabled() const { return (state & MFS_GRAYED) != 0; }
    bool Checked() const { return (state & MFS_CHECKED) != 0; }
    bool Separator() const { return (type & MFT_SEPARATOR) != 0; }
};

// How many items a menu has, separators included.
UINT MenuItemCount(HMENU menu);

// False when there is no such item. Texts are cut at 256 characters.
bool ReadMenuItem(HMENU menu, UINT position, MenuItem* item);

// Marks all top-level items as having no image (SetMenuItemInfoW).
void ClearMenuImages(HMENU menu);

// Gives an item an image (SetMenuItemInfoW).
void SetMenuImage(HMENU menu, UINT position, ULONG_PTR image);

}  // namespace ui
