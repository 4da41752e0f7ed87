#include "tests/support/input_taken.h"

#include <gtest/gtest.h>

#include "tests/support/keyboard.h"
#include "tests/support/wait.h"

namespace test {

namespace {

// A key that nothing in the program uses ends every sequence of input.
constexpr WPARAM markerKey = VK_F11;
constexpr char markerName[] = "F11";

constexpr UINT countedMessages = 0x400;
volatile LONG markers = 0;
volatile LONG counts[countedMessages] = {};

LRESULT CALLBACK Watch(int code, WPARAM wParam, LPARAM lParam) {
    if (code == HC_ACTION && wParam == PM_REMOVE) {
        const MSG& message = *reinterpret_cast<const MSG*>(lParam);
        if (message.message == WM_KEYUP && message.wParam == markerKey) {
            InterlockedIncrement(&markers);
        }
        if (message.message < countedMessages) {
            InterlockedIncrement(&counts[message.message]);
        }
    }
    return CallNextHookEx(nullptr, code, wParam, lParam);
}

}  // namespace

InputTaken::InputTaken()
    : hook_(SetWindowsHookExW(WH_GETMESSAGE, Watch, nullptr, GetCurrentThreadId())) {
    EXPECT_TRUE(hook_);
}

InputTaken::~InputTaken() {
    UnhookWindowsHookEx(hook_);
}

// The marker is no part of what the program is to do: while it has not come it is sent again, since
// the window that had the keyboard may have gone just before.
bool InputTaken::Play(Finger& finger) const {
    const LONG before = markers;
    if (!finger.Play()) {
        return false;
    }
    constexpr DWORD usualWay = 500;
    constexpr int mostMarkers = 20;
    for (int sent = 0; sent < mostMarkers; ++sent) {
        if (!Finger().Key(markerName).Play()) {
            return false;
        }
        if (WaitFor([&] { return markers != before; }, usualWay)) {
            return true;
        }
    }
    ADD_FAILURE() << "the program did not take the input\n" << DescribeScreen();
    return false;
}

LONG InputTaken::Count(UINT message) {
    return counts[message];
}

}  // namespace test
