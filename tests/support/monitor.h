// Shows a device with another screen.
#pragma once

#include "tests/support/platform_hook.h"

namespace test {

// Answers GetMonitorInfoW for as long as it lives; one at a time.
class Monitor {
 public:
    // The screen and the part of it that windows may use.
    Monitor(const RECT& screen, const RECT& workArea);
    explicit Monitor(const RECT& screen) : Monitor(screen, screen) {}
    ~Monitor();
    Monitor(const Monitor&) = delete;
    Monitor& operator=(const Monitor&) = delete;

    void SetWorkArea(const RECT& workArea) { workArea_ = workArea; }
    // The screen cannot be asked any more.
    void Fail() { fails_ = true; }

 private:
    static BOOL WINAPI Answer(HMONITOR monitor, MONITORINFO* information);

    RECT screen_;
    RECT workArea_;
    bool fails_ = false;
    PlatformHook<BOOL(HMONITOR, MONITORINFO*)> hook_;
};

}  // namespace test
