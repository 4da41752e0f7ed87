// The cursor that a person sees while the program works.
#pragma once

#include <vector>

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

// In place of each message box, which is left unanswered.
class NoBox {
 public:
    NoBox() { shown_ = 0; }
    // How many boxes there would have been.
    int Count() const { return shown_; }

 private:
    static INT_PTR WINAPI Show(HINSTANCE, LPCDLGTEMPLATEW, HWND, DLGPROC, LPARAM) {
        ++shown_;
        return -1;
    }

    static inline int shown_ = 0;
    PlatformHook<INT_PTR WINAPI(HINSTANCE, LPCDLGTEMPLATEW, HWND, DLGPROC, LPARAM)> dialogs_{
        "DialogBoxIndirectParamW", Show};
};

}  // namespace test
