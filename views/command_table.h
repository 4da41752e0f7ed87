// The commands of a view as the rows of a table, which enables them, guards them and runs them.
#pragma once

#include "views/commands.h"

namespace views {

// What a command needs; its item is grayed without it.
enum class Needs {
    Nothing,
    // A selected row.
    Selection,
    // Marked rows in multi-selection, else a selected one.
    ChosenRows,
    // At least one row.
    Rows,
    // Paths on the clipboard. Run without them, the command itself tells what it misses.
    Paths,
};

// What becomes of a command that is given without what it needs.
enum class Otherwise {
    Beeps,
    // The frame has a meaning for it.
    IsPassedOn,
};

// A command of `Target`, which has `bool Meets(Needs) const`.
template <typename Target>
struct CommandEntry {
    WORD id;
    Needs needs;
    void (Target::*run)();
    Otherwise otherwise = Otherwise::Beeps;
};

// Enables the commands of a menu for the current state (EnableMenuItem).
template <typename Target, size_t count>
void EnableCommands(HMENU menu, const Target& target, const CommandEntry<Target> (&table)[count]) {
    for (const CommandEntry<Target>& entry : table) {
        EnableCommand(menu, entry.id, target.Meets(entry.needs));
    }
}

// Whether there is what a command needs; also for one that the table does not have.
template <typename Target, size_t count>
bool AllowsCommand(WORD id, const Target& target, const CommandEntry<Target> (&table)[count]) {
    for (const CommandEntry<Target>& entry : table) {
        if (entry.id == id) {
            return target.Meets(entry.needs);
        }
    }
    return true;
}

// Runs a command; false when the table does not have it, or passes it on.
template <typename Target, size_t count>
bool RunCommand(WORD id, Target& target, const CommandEntry<Target> (&table)[count]) {
    for (const CommandEntry<Target>& entry : table) {
        if (entry.id != id) {
            continue;
        }
        if (entry.needs == Needs::Paths || target.Meets(entry.needs)) {
            (target.*entry.run)();
        } else if (entry.otherwise == Otherwise::IsPassedOn) {
            return false;
        } else {
            MessageBeep(~0u);
        }
        return true;
    }
    return false;
}

}  // namespace views
