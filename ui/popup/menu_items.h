// Reading a menu's items by position (GetMenuItemInfoW).
#pragma once

#include <string_view>

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

    bool Disabled() const { return (state & MFS_GRAYED) != 0; }
    bool Checked() const { return (state & MFS_CHECKED) != 0; }
    bool Separator() const { return (type & MFT_SEPARATOR) != 0; }
};

// An item's text, in place: it is read with every paint.
class MenuText {
 public:
    // Longer texts are cut.
    static constexpr UINT longest = 256;

    std::wstring_view View() const { return letters_; }
    // NUL-terminated, for the platform to write to.
    wchar_t* Letters() { return letters_; }

 private:
    wchar_t letters_[longest + 1] = {};
};

// How many items a menu has, separators included.
UINT MenuItemCount(HMENU menu);

// Reads an item, and its text where that is asked for; a separator has none. False when there is no
// such item.
bool ReadMenuItem(HMENU menu, UINT position, MenuItem* item, MenuText* text = nullptr);

// Marks all top-level items as having no image (SetMenuItemInfoW).
void ClearMenuImages(HMENU menu);

// Gives an item an image (SetMenuItemInfoW).
void SetMenuImage(HMENU menu, UINT position, ULONG_PTR image);

}  // namespace ui
