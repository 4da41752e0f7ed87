// What the views do with the items of menus.
#pragma once

#include "platform/windows.h"

namespace views {

// Enables or grays a command of a menu or of its submenus (EnableMenuItem).
inline void EnableCommand(HMENU menu, UINT command, bool enabled) {
    EnableMenuItem(menu, command,
                   static_cast<UINT>(MF_BYCOMMAND | (enabled ? MF_ENABLED : MF_GRAYED)));
}

// Sets or clears a command's check mark (CheckMenuItem).
inline void CheckCommand(HMENU menu, UINT command, bool checked) {
    CheckMenuItem(menu, command,
                  static_cast<UINT>(MF_BYCOMMAND | (checked ? MF_CHECKED : MF_UNCHECKED)));
}

}  // namespace views
