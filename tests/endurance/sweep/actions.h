// What a person does with the program, one thing after another.
#pragma once

#include <vector>

#include "tests/endurance/sweep/stage.h"

namespace sweep {

// Each begins in Files, in the folder of the sweep, with its first contents.
struct Action {
    const char* name;
    // What is done before, without failures, and the action itself.
    void (*prepare)(Stage&);
    void (*act)(Stage&);
    // Looks at what has come of it, before anything is closed.
    void (*look)(Stage&);
    // It leaves something in the program that only a new start forgets.
    bool leavesTrace = false;
};

const std::vector<Action>& Actions();
// Those of them that work on files, which the executable of a PC does as well.
std::vector<Action> FileActions();
// Null for no action's name.
const Action* FindAction(const std::string& name);

}  // namespace sweep
