// The display options: one bit each of the word that all views consult.
#pragma once

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
    Command command;
    DWORD mask;
};

// Which command flips which bit.
inline constexpr FlagCommand flagCommands[] = {
    {commandShowHidden, flagShowHidden},
    {commandShowSystem, flagShowSystem},
    {commandShowFileSize, flagShowFileSize},
    {commandShowFileDate, flagShowFileDate},
    {commandShowCriticalApplications, flagShowCriticalApplications},
    {commandShowHiddenApplications, flagShowHiddenApplications},
    {commandShowImagePath, flagShowImagePath},
    {commandShowProcessId, flagShowProcessId},
    {commandShowVirtualMemory, flagShowVirtualMemory},
    {commandShowBaseAddress, flagShowBaseAddress},
    {commandShowSize, flagShowSize},
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
