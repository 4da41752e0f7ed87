// Knowing that the program has taken all the input that was sent to it.
#pragma once

#include "platform/windows.h"
#include "tests/support/finger.h"

namespace test {

// Watches what the creating thread, the program's, takes from its message queue (WH_GETMESSAGE).
class InputTaken {
 public:
    InputTaken();
    ~InputTaken();
    InputTaken(const InputTaken&) = delete;
    InputTaken& operator=(const InputTaken&) = delete;

    // Plays the input and waits until the program has come back to its queue after the last of
    // it. For the user's thread; the program must have the keyboard.
    bool Play(Finger& finger) const;
    bool Play(Finger&& finger) const { return Play(finger); }

    // Whether a key ends a sequence of input: the program is sent it as well.
    static bool IsMarker(WPARAM key);

    // How many messages of a kind the program has taken so far.
    static LONG Count(UINT message);

 private:
    HHOOK hook_;
};

}  // namespace test
