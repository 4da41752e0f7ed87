// A device on which only certain applications run.
#pragma once

#include <vector>

#include "tests/support/platform_hook.h"

namespace test {

// For as long as it lives EnumWindows gives these windows of other processes, in this order, and
// the windows of this process behind them; one at a time.
class OnlyApplications {
 public:
    explicit OnlyApplications(std::vector<HWND> windows);
    ~OnlyApplications();
    OnlyApplications(const OnlyApplications&) = delete;
    OnlyApplications& operator=(const OnlyApplications&) = delete;

 private:
    static BOOL WINAPI Enumerate(WNDENUMPROC visit, LPARAM parameter);

    std::vector<HWND> windows_;
    PlatformHook<BOOL WINAPI(WNDENUMPROC, LPARAM)> hook_;
};

}  // namespace test
