#include "ui/popup/menu_items.h"

#include "platform/windows.h"

namespace ui {

namespace {

constexpr UINT entryMask = MIIM_TYPE | MIIM_STATE | MIIM_ID | MIIM_SUBMENU | MIIM_DATA;

MENUITEMINFOW ItemRequest(UINT mask) {
    MENUITEMINFOW info = {};
    info.cbSize = platform::menuItemInfoSize;
    info.fMask = mask;
    return info;
}

// A failure looks like the end of the menu, so what is not there is asked for once more.
bool Ask(HMENU menu, UINT position, const MENUITEMINFOW& request, MENUITEMINFOW* info) {
    for (int attempt = 0; attempt < 2; ++attempt) {
        *info = request;
        if (GetMenuItemInfoW(menu, position, TRUE, info)) {
            return true;
        }
    }
    return false;
}

bool Read(HMENU menu, UINT position, const MENUITEMINFOW& request, MenuEntry* entry) {
    MENUITEMINFOW info;
    if (!Ask(menu, position, request, &info)) {
        return false;
    }
    entry->type = info.fType;
    entry->state = info.fState;
    entry->id = info.wID;
    entry->submenu = info.hSubMenu;
    entry->image = info.dwItemData;
    return true;
}

}  // namespace

// A handheld has no call for the number of items, so they are asked for until one is missing.
UINT MenuItemCount(HMENU menu) {
    UINT count = 0;
    MENUITEMINFOW info;
    while (menu && Ask(menu, count, ItemRequest(MIIM_STATE), &info)) {
        ++count;
    }
    return count;
}

bool ReadMenuEntry(HMENU menu, UINT position, MenuEntry* entry) {
    return Read(menu, position, ItemRequest(entryMask), entry);
}

bool ReadMenuItem(HMENU menu, UINT position, MenuItem* item) {
    MENUITEMINFOW request = ItemRequest(entryMask);
    request.dwTypeData = item->characters;
    request.cch = longestMenuText + 1;
    if (!Read(menu, position, request, item)) {
        return false;
    }
    if (item->Separator()) {
        item->characters[0] = L'\0';
    }
    return true;
}

bool ClearMenuImages(HMENU menu) {
    const UINT count = MenuItemCount(menu);
    bool cleared = count > 0;
    for (UINT position = 0; position < count; ++position) {
        cleared = SetMenuImage(menu, position, noImage) && cleared;
    }
    return cleared;
}

bool SetMenuImage(HMENU menu, UINT position, ULONG_PTR image) {
    MENUITEMINFOW info = ItemRequest(MIIM_DATA);
    info.dwItemData = image;
    return SetMenuItemInfoW(menu, position, TRUE, &info) != FALSE;
}

}  // namespace ui
