// The cursor that a person sees while the program works.
#pragma once

#include "tests/support/platform_hook.h"

namespace test {

// Follows the cursor for as long as it lives, from the arrow on; one at a time.
class WatchedCursor {
 public:
    WatchedCursor();
    ~WatchedCursor();
    WatchedCursor(const WatchedCursor&) = delete;
    WatchedCursor& operator=(const WatchedCursor&) = delete;

    // Whether a process has been opened or a snapshot taken, and each time under the wait cursor.
    bool Waited() const { return asked_ > 0 && asked_ == askedWaiting_; }
    // Whether the cursor is the arrow again.
    bool IsBack() const;

 private:
    static HCURSOR WINAPI Set(HCURSOR cursor);
    static HANDLE WINAPI Open(DWORD access, BOOL inherit, DWORD process);
    static HANDLE WINAPI TakeSnapshot(DWORD flags, DWORD process);
    void Asked();

    HCURSOR shown_;
    int asked_ = 0;
    int askedWaiting_ = 0;
    PlatformHook<HCURSOR WINAPI(HCURSOR)> set_{"SetCursor", Set};
    PlatformHook<HANDLE WINAPI(DWORD, BOOL, DWORD)> open_{"OpenProcess", Open};
    PlatformHook<HANDLE WINAPI(DWORD, DWORD)> snapshot_{"CreateToolhelp32Snapshot", TakeSnapshot};
};

}  // namespace test
