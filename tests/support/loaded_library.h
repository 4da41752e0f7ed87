// A library of the tests in another program of this machine.
#pragma once

#include <string>

#include "platform/windows.h"

namespace test {

// Where a library of the tests lies: beside this executable.
std::wstring LibraryBeside(const wchar_t* name);

// Lets a process that has just been started load a library, beside its own start. False when it
// does not, though it goes on running.
bool LoadInto(HANDLE process, const wchar_t* path);

}  // namespace test
