// A library of the tests in another program of this machine.
#pragma once

#include "platform/windows.h"

namespace test {

// Lets a process that has just been started load a library, beside its own start. False when it
// does not, though it goes on running.
bool LoadInto(HANDLE process, const wchar_t* path);

}  // namespace test
