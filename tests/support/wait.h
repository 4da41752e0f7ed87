// Waiting for a condition, with a bound.
#pragma once

#include "platform/windows.h"

namespace test {

// Far longer than anything takes, on a busy machine as well: only what fails waits as long.
inline constexpr DWORD longestWait = 30000;

// Asks every few milliseconds until the condition holds; false after `milliseconds`.
template <typename Condition>
bool WaitFor(Condition condition, DWORD milliseconds = longestWait) {
    const DWORD start = GetTickCount();
    while (!condition()) {
        if (GetTickCount() - start > milliseconds) {
            return false;
        }
        Sleep(5);
    }
    return true;
}

// Dispatches this thread's messages until the condition holds; false after `milliseconds`.
template <typename Condition>
bool PumpUntil(Condition condition, DWORD milliseconds = longestWait) {
    const DWORD start = GetTickCount();
    for (;;) {
        MSG message;
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
        if (condition()) {
            return true;
        }
        if (GetTickCount() - start > milliseconds) {
            return false;
        }
        MsgWaitForMultipleObjects(0, nullptr, FALSE, 5, QS_ALLINPUT);
    }
}

}  // namespace test
