// Where the keyboard is, and what the screen shows when a test gives up.
#pragma once

#include <string>

#include "platform/windows.h"

namespace test {

struct KeyboardState {
    // The window in front; null when there is none but the desktop.
    HWND front = nullptr;
    // The window that gets the keys, in front or within the window in front.
    HWND focus = nullptr;
    // How the screen calls the window in front; 0 before the screen has it.
    unsigned screenWindow = 0;
    // Whether some window of that thread holds the finger.
    bool captured = false;
    bool operator==(const KeyboardState&) const = default;
};

KeyboardState LookAtKeyboard();

// How the screen calls a window; 0 when it does not know it.
unsigned ScreenWindowOf(HWND window);

// All top-level windows with class, caption, process and state, and which of them is in front, has
// the keyboard or the capture. `expected` is the window that something was meant for, if any.
std::string DescribeScreen(HWND expected = nullptr);

}  // namespace test
