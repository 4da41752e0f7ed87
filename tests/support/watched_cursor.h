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

    // Whether a file's icon has been asked for, and each time under the wait cursor.
    bool Waited() const { return asked_ > 0 && asked_ == askedWaiting_; }
    // Whether the cursor is the arrow again.
    bool IsBack() const;

 private:
    static HCURSOR WINAPI Set(HCURSOR cursor);
    static DWORD_PTR WINAPI FileInfo(const wchar_t* path, DWORD attributes, SHFILEINFOW* info,
                                     UINT size, UINT flags);

    HCURSOR shown_;
    int asked_ = 0;
    int askedWaiting_ = 0;
    PlatformHook<HCURSOR WINAPI(HCURSOR)> set_{"SetCursor", Set};
    PlatformHook<DWORD_PTR WINAPI(const wchar_t*, DWORD, SHFILEINFOW*, UINT, UINT)> info_{
        "SHGetFileInfoW", FileInfo};
};

}  // namespace test
