// The message boxes and dialogs of a program, and the person who answers them.
#pragma once

#include "platform/windows.h"
#include "tests/support/finger.h"

namespace test {

// Waits until a box is in front and has the keyboard, another than `previous`; one of any process
// if asked. When none comes a test fails and tells what was on the screen, and this is null.
HWND WaitForBox(bool anyProcess = false, HWND previous = nullptr);

// Presses the keys in this box, which must end it, and waits until it is gone. False, after a test
// has failed and told what was on the screen, when it stays.
bool AnswerBox(HWND box, Finger keys);

}  // namespace test
