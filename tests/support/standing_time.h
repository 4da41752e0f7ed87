// A clock that does not go on.
#pragma once

#include "tests/support/platform_hook.h"

namespace test {

// For the thread that makes it the time stands still (GetTickCount) for as long as it lives, so
// that nothing happens because something takes long. One at a time.
class StandingTime {
 public:
    StandingTime() {
        thread_ = GetCurrentThreadId();
        real_ = hook_.Original();
    }

 private:
    static DWORD WINAPI TickCount() { return GetCurrentThreadId() == thread_ ? 0 : real_(); }

    static inline DWORD thread_ = 0;
    static inline DWORD(WINAPI* real_)() = nullptr;
    const PlatformHook<DWORD WINAPI()> hook_{"GetTickCount", TickCount};
};

}  // namespace test
