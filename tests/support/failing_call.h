// Makes a platform function fail in another program of this machine.
#pragma once

#include "tests/support/program.h"

namespace test {

// For a process that this one has started with DEBUG_ONLY_THIS_PROCESS: lets it load its libraries,
// puts a failing function in the place of one that its executable imports, and lets it run on its
// own. False when the executable imports no such function.
bool LetCallFail(HANDLE process, DWORD processId, const FailingCall& call);

}  // namespace test
