// Shortcut files as a handheld writes them: the length of a command, "#", the command.
#pragma once

#include <optional>

#include "host.h"

namespace emulator {

// The command in a shortcut file; nothing when the file is none.
std::optional<Text> ReadShortcut(const Text& path);
// Writes a shortcut file that must not exist yet. False with the last error.
bool WriteShortcut(const Text& path, const Text& command);

struct CommandParts {
    Text path;
    Text arguments;
};
CommandParts TakeApart(const Text& command);

}  // namespace emulator
