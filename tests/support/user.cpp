#include "tests/support/user.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "tests/support/keyboard.h"
#include "tests/support/wait.h"

namespace test {

namespace {

void RunScript(const std::function<void()>& script) {
    try {
        script();
    } catch (...) {
        ADD_FAILURE() << "the script of the user ended with an exception";
    }
}

// The user acts on what is on the screen: the system passes on what this thread's windows have
// asked of it when their messages are looked at.
void PassOnToScreen() {
    MSG message;
    PeekMessageW(&message, nullptr, WM_USER, WM_USER, PM_NOREMOVE);
}

}  // namespace

void WhileUser(const std::function<void()>& script, const std::function<void()>& program) {
    std::atomic<bool> programEnded = false;
    const DWORD programThread = GetCurrentThreadId();
    PassOnToScreen();
    std::thread user([&] {
        RunScript(script);
        if (!WaitFor([&] { return programEnded.load(); })) {
            ADD_FAILURE() << "the program did not end with the script\n" << DescribeScreen();
            while (!programEnded) {
                PostThreadMessageW(programThread, WM_QUIT, 0, 0);
                Sleep(50);
            }
        }
    });
    program();
    programEnded = true;
    user.join();
    MSG message;
    while (PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE)) {
    }
}

void PumpWhileUser(const std::function<void()>& script) {
    std::atomic<bool> scriptEnded = false;
    PassOnToScreen();
    std::thread user([&] {
        RunScript(script);
        scriptEnded = true;
    });
    EXPECT_TRUE(PumpUntil([&] { return scriptEnded.load(); }, 90000));
    user.join();
}

}  // namespace test
