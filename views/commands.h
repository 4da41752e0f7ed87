// The identifiers of the menus' commands.
#pragma once

#include "platform/windows.h"

namespace views {

enum Command : WORD {
    commandShowFiles = 600,
    commandShowApplications = 601,
    commandShowProcesses = 602,
    commandShowSystemStatus = 603,
    commandRefresh = 610,
    commandRename = 611,
    commandDelete = 612,
    commandHide = 613,
    commandProperties = 614,
    commandStop = 615,
    commandStopAll = 616,
    commandNewFolder = 617,
    commandOpen = 618,
    commandOpenWith = 619,
    commandShowDlls = 620,
    commandUp = 650,
    commandSelect = 651,
    commandGoToProcess = 670,
    commandGoToModule = 671,
    commandSettings = 680,
    commandShowHidden = 687,
    commandShowSystem = 688,
    commandShowFileSize = 689,
    commandShowFileDate = 690,
    commandShowImagePath = 691,
    commandShowProcessId = 692,
    commandShowVirtualMemory = 693,
    commandShowHiddenApplications = 696,
    commandShowCriticalApplications = 697,
    commandShowBaseAddress = 698,
    commandShowSize = 699,
    commandFirstLanguage = 0x8F00,
    commandLastLanguage = 0x8FFF,
    commandCopy = 57634,
    commandCut = 57635,
    commandPaste = 57637,
    commandPasteShortcut = 57638,
    commandAbout = 57664,
    commandExit = 57665,
};

// Enables or grays a command of a menu or of its submenus (EnableMenuItem).
inline void EnableCommand(HMENU menu, Command command, bool enabled) {
    EnableMenuItem(menu, command,
                   static_cast<UINT>(MF_BYCOMMAND | (enabled ? MF_ENABLED : MF_GRAYED)));
}

// Sets or clears a command's check mark (CheckMenuItem).
inline void CheckCommand(HMENU menu, UINT command, bool checked) {
    CheckMenuItem(menu, command,
                  static_cast<UINT>(MF_BYCOMMAND | (checked ? MF_CHECKED : MF_UNCHECKED)));
}

}  // namespace views
