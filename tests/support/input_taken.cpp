#include "tests/support/input_taken.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>

#include "tests/support/keyboard.h"
#include "tests/support/wait.h"

namespace test {

namespace {

// A key that nothing in the program uses ends every sequence of input, the next sequence another
// one: what was sent twice and came late is not taken for the end of what follows it.
struct Marker {
    WPARAM key;
    const char* name;
};
constexpr Marker markers[] = {{VK_F11, "F11"}, {VK_F12, "F12"}};

constexpr UINT countedMessages = 0x400;
volatile LONG sequences = 0;
volatile LONG taken[std::size(markers)] = {};
volatile LONG counts[countedMessages] = {};

LRESULT CALLBACK Watch(int code, WPARAM wParam, LPARAM lParam) {
    if (code == HC_ACTION && wParam == PM_REMOVE) {
        const MSG& message = *reinterpret_cast<const MSG*>(lParam);
        for (size_t marker = 0; marker < std::size(markers); ++marker) {
            if (message.message == WM_KEYUP && message.wParam == markers[marker].key) {
                InterlockedIncrement(&taken[marker]);
            }
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
    const size_t marker =
        static_cast<size_t>(InterlockedIncrement(&sequences)) % std::size(markers);
    const LONG before = taken[marker];
    if (!finger.Play()) {
        return false;
    }
    constexpr DWORD usualWay = 500;
    constexpr int mostMarkers = 20;
    for (int sent = 0; sent < mostMarkers; ++sent) {
        if (!Finger().Key(markers[marker].name).Play()) {
            return false;
        }
        if (WaitFor([&] { return taken[marker] != before; }, usualWay)) {
            return true;
        }
    }
    ADD_FAILURE() << "the program did not take the input\n" << DescribeScreen();
    return false;
}

bool InputTaken::IsMarker(WPARAM key) {
    return std::any_of(std::begin(markers), std::end(markers),
                       [key](const Marker& marker) { return marker.key == key; });
}

LONG InputTaken::Count(UINT message) {
    return counts[message];
}

}  // namespace test
