// Does what a script says.
#pragma once

#include "tests/endurance/monkey/device.h"
#include "tests/endurance/monkey/event.h"
#include "tests/endurance/monkey/program.h"

namespace monkey {

class Hand {
 public:
    Hand(Program& program, Device& device) : program_(program), device_(device) {}

    // Does the events until the program is no longer ready; `done` is how many of them it got.
    State Play(const Script& script, size_t* done);
    // Nothing is pressed any more, the screen stands upright, and the window is where it was.
    void Release();
    // One key, as it comes from a keyboard, to what has the keyboard.
    void PressKey(WPARAM key);

 private:
    void Do(const Event& event);
    void DoMouse(const Event& event);
    void DoReal(const Event& event);
    void DoMessage(const Event& event);
    void Post(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    // That of an emulated device.
    void TurnScreen(bool turned);
    void PostMouse(HWND window, UINT message, WPARAM wParam, POINT point);
    // Whether what a real finger or key would do there comes to the program.
    bool ReachesProgram(POINT point) const;
    bool ComesToFront() const;

    Program& program_;
    Device& device_;
};

}  // namespace monkey
