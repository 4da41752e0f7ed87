// A person at the device: acts on a thread of their own while the program's thread, the test's,
// runs its windows.
#pragma once

#include <functional>

#include "platform/windows.h"

namespace test {

// Starts `script` on another thread, runs `program` on this one, and waits for both. The script
// must lead the program to its end; a script that returns or throws while the program still runs
// after `longestWait` milliseconds makes the test fail and posts WM_QUIT to the program's thread.
void WhileUser(const std::function<void()>& script, const std::function<void()>& program);

// Dispatches the thread's messages while the script runs, and ends with it.
void PumpWhileUser(const std::function<void()>& script);

}  // namespace test
