// Makes a platform function fail in another program of this machine.
#pragma once

#include "tests/support/program.h"

namespace test {

// For a process that this one has started with DEBUG_ONLY_THIS_PROCESS: lets it load its libraries,
// puts another function in the place of one that its executable imports, and lets it run on its
// own. A call of that function waits until it is let fail by what this returns; null when the
// executable imports no such function.
void* ReplaceCall(HANDLE process, DWORD processId, const FailingCall& call);

// False when the process has ended.
bool LetCallFail(HANDLE process, void* call);

}  // namespace test
