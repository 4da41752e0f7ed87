#include "ui/popup/menu_items.h"

#include "platform/windows.h"

namespace ui {

namespace {

MENUITEMINFOW ItemRequest(UINT mask) {
    MENUITEMINFOW info = {};
    info.cbSize = platform::menuItemInfoSize;
    info.fMask = mask;
    return info;
}

}  // namespace

// A handheld has no call for the number of items, so they are asked for until one is missing.
UINT MenuItemCount(HMENU menu) {
    UINT count = 0;
    MENUITEMINFOW info = ItemRequest(MIIM_STATE);
    while (menu && GetMenuItemInfoW(menu, count, TRUE, &info)) {
        ++count;
        info = ItemRequest(MIIM_STATE);
    }
    return count;
}

bool ReadMenuItem(HMENU menu, UINT position, MenuItem* item, MenuText* text) {
    MENUITEMINFOW info = ItemRequest(MIIM_TYPE | MIIM_STATE | MIIM_ID | MIIM_SUBMENU | MIIM_DATA);
    if (text) {
        text->Letters()[0] = 0;
        info.dwTypeData = text->Letters();
        info.cch = MenuText::longest + 1;
    }
    if (!GetMenuItemInfoW(menu, position, TRUE, &info)) {
        return false;
    }
    item->type = info.fType;
    item->state = info.fState;
    item->id = info.wID;
    item->submenu = info.hSubMenu;
    item->image = info.dwItemData;
    if (text && item->Separator()) {
        text->Letters()[0] = 0;
    }
    return true;
}

void ClearMenuImages(HMENU menu) {
    const UINT count = MenuItemCount(menu);
    for (UINT position = 0; position < count; ++position) {
        SetMenuImage(menu, position, noImage);
    }
}

void SetMenuImage(HMENU menu, UINT position, ULONG_PTR image) {
    MENUITEMINFOW info = ItemRequest(MIIM_DATA);
    info.dwItemData = image;
    SetMenuItemInfoW(menu, position, TRUE, &info);
}

}  // namespace ui
