// The display options: one bit each of the word that all views consult.
#pragma once

#include "res/resource.h"
#include "views/commands.h"

namespace views {

enum DisplayFlag : DWORD {
    flagShowHidden = 0x0001,
    flagShowSystem = 0x0002,
    flagShowFileSize = 0x0004,
    flagShowFileDate = 0x0008,
    flagShowCriticalApplications = 0x0010,
    flagShowHiddenApplications = 0x0020,
    flagShowImagePath = 0x0040,
    flagShowProcessId = 0x0080,
    flagShowVirtualMemory = 0x0100,
    flagShowBaseAddress = 0x1000,
    flagShowSize = 0x2000,
};

struct FlagCommand {
    WORD command;
    DWORD mask;
};

// Which command flips which bit.
inline constexpr FlagCommand flagCommands[] = {
    {ID_SHOW_HIDDEN, flagShowHidden},
    {ID_SHOW_SYSTEM, flagShowSystem},
    {ID_SHOW_FILE_SIZE, flagShowFileSize},
    {ID_SHOW_FILE_DATE, flagShowFileDate},
    {ID_SHOW_CRITICAL_APPLICATIONS, flagShowCriticalApplications},
    {ID_SHOW_HIDDEN_APPLICATIONS, flagShowHiddenApplications},
    {ID_SHOW_IMAGE_PATH, flagShowImagePath},
    {ID_SHOW_PROCESS_ID, flagShowProcessId},
    {ID_SHOW_VIRTUAL_MEMORY, flagShowVirtualMemory},
    {ID_SHOW_BASE_ADDRESS, flagShowBaseAddress},
    {ID_SHOW_SIZE, flagShowSize},
};

// The bit that a command flips; 0 for any other command.
constexpr DWORD FlagOfCommand(UINT command) {
    for (const FlagCommand& entry : flagCommands) {
        if (entry.command == command) {
            return entry.mask;
        }
    }
    return 0;
}

}  // namespace views
