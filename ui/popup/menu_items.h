// Reading a menu's items by position (GetMenuItemInfoW).
#pragma once

#include <string_view>

#include "platform/windows.h"

namespace ui {

// The data word of an item that has no image.
inline constexpr ULONG_PTR noImage = ~static_cast<ULONG_PTR>(0);

// Texts are cut there.
inline constexpr UINT longestMenuText = 256;

struct MenuEntry {
    UINT type = 0;
    UINT state = 0;
    UINT id = 0;
    HMENU submenu = nullptr;
    // An index into an image strip, or noImage.
    ULONG_PTR image = noImage;

    bool Disabled() const { return (state & MFS_GRAYED) != 0; }
    bool Checked() const { return (state & MFS_CHECKED) != 0; }
    bool Separator() const { return (type & MFT_SEPARATOR) != 0; }
};

// With its text, which is empty for a separator. It takes no memory but its own.
struct MenuItem : MenuEntry {
    wchar_t characters[longestMenuText + 1] = {};

    std::wstring_view Text() const { return characters; }
};

// How many items a menu has, separators included.
UINT MenuItemCount(HMENU menu);

// False when there is no such item.
bool ReadMenuItem(HMENU menu, UINT position, MenuItem* item);
bool ReadMenuEntry(HMENU menu, UINT position, MenuEntry* entry);

// Marks all top-level items as having no image (SetMenuItemInfoW). False when it cannot, and for a
// menu in which no item is found.
bool ClearMenuImages(HMENU menu);

// Gives an item an image (SetMenuItemInfoW).
bool SetMenuImage(HMENU menu, UINT position, ULONG_PTR image);

}  // namespace ui
