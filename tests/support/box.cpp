#include "tests/support/box.h"

#include <gtest/gtest.h>

#include "tests/support/keyboard.h"
#include "tests/support/wait.h"
#include "tests/support/windows_seen.h"

namespace test {

HWND WaitForBox(bool anyProcess, HWND previous) {
    HWND box = nullptr;
    const bool found = WaitFor([&] {
        const KeyboardState state = LookAtKeyboard();
        box = FindVisible(L"#32770", anyProcess);
        return box && box != previous && state.front == box && state.focus;
    });
    EXPECT_TRUE(found) << "no box comes to the front\n" << DescribeScreen(box);
    return found ? box : nullptr;
}

bool AnswerBox(HWND box, Finger keys) {
    if (!keys.In(box).Play()) {
        return false;
    }
    const bool gone = WaitFor([&] { return !IsWindow(box); });
    EXPECT_TRUE(gone) << "the box stays\n" << DescribeScreen(box);
    return gone;
}

}  // namespace test
