// The keys of a view as the rows of a table: each gives one of the view's commands.
#pragma once

#include <span>

#include "platform/windows.h"

namespace views {

// What is held together with a key.
enum HeldKeys : BYTE {
    alone = 0,
    withShift = 1,
    withControl = 2,
    withAlt = 4,
    // Whatever is held.
    withAny = 0x80,
};

// While rows are marked some keys mean nothing, and some mean something only then.
enum class KeyHolds : BYTE { Always, UnlessMarking, WhileMarking };

// A key and its command, which it gives where the command's item in the menu is not gray; elsewhere
// it does nothing. docs/keys.md shows all tables.
struct KeyEntry {
    // A virtual key.
    BYTE key;
    HeldKeys held;
    WORD command;
    KeyHolds holds = KeyHolds::Always;
};

// What is held now (GetKeyState).
HeldKeys KeysHeld();

// The command of a key; 0 when the table does not have it.
WORD CommandOfKey(std::span<const KeyEntry> table, WPARAM key, HeldKeys held, bool marking);

}  // namespace views
