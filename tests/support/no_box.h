// A program that asks nothing of anybody.
#pragma once

#include "tests/support/platform_hook.h"

namespace test {

// In place of the system's own box, which is shown where the program's cannot be: it is answered.
class NoSystemBox {
 private:
    static int WINAPI Answer(HWND, const wchar_t*, const wchar_t*, UINT) { return IDOK; }

    PlatformHook<int(HWND, const wchar_t*, const wchar_t*, UINT)> boxes_{"MessageBoxW", Answer};
};

// In place of each message box and dialog: none is shown, and each ends at once as one that could
// not be shown.
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
    const NoSystemBox systemBox_;
    PlatformHook<INT_PTR WINAPI(HINSTANCE, LPCDLGTEMPLATEW, HWND, DLGPROC, LPARAM)> dialogs_{
        "DialogBoxIndirectParamW", Show};
};

}  // namespace test
