// A real finger and real keys: input that goes through the screen's own input queue.
#pragma once

#include <string>
#include <vector>

#include "platform/windows.h"

namespace test {

// A sequence of input, collected first and then played at once without a pause but those it names.
// Points are screen coordinates. Plays on the thread that calls Play, which returns when all of it
// has been sent; a program under test in the same process needs another thread for its messages.
// Keys are sent once the window in front has the keyboard, and presses once the screen shows the
// window that lies there: one that has just appeared gets there a little later, and what is pressed
// before goes to another one, or to nobody.
// A program counts how long a press lasts from when it takes it, which may be long after it was
// sent.
class Finger {
 public:
    Finger& Down(POINT point);
    Finger& Down(int x, int y) { return Down(POINT{x, y}); }
    Finger& MoveTo(POINT point);
    Finger& MoveTo(int x, int y) { return MoveTo(POINT{x, y}); }
    Finger& Up();
    Finger& Wait(DWORD milliseconds);
    // A press shorter than any that means something else.
    Finger& Tap(POINT point) { return Down(point).Up(); }
    Finger& Tap(int x, int y) { return Tap(POINT{x, y}); }
    // A press without any pause, for a finger that taps many times.
    Finger& QuickTap(POINT point);
    // Waits until the program follows the press that was sent before: it has the capture, and its
    // thread looks for what comes next.
    Finger& Followed();
    // Waits until what was sent before has been taken by the thread of the window that has the
    // finger, or that lies under the last press.
    Finger& Taken();
    // A press of more than half a second, as the program counts: from when it follows the finger.
    Finger& Hold(POINT point) { return Down(point).Followed().Wait(650).Up(); }
    // The other button of a PC's mouse.
    Finger& RightClick(POINT point) { return RightDown(point).Wait(60).RightUp(); }
    Finger& RightDown(POINT point);
    Finger& RightUp();
    // The mouse's back button.
    Finger& BackButton(POINT point);
    // Turns the mouse's wheel over a point by so many notches, downwards when negative.
    Finger& Turn(POINT point, int notches);
    // From one point to another in small steps at the pace of a hand, until all of them are taken.
    // The finger stays down.
    Finger& DragTo(POINT from, POINT to, int steps = 10);
    // A key by the screen's name of it ("Down", "Return", "F1", "a", "shift+Tab").
    Finger& Key(const std::string& name);
    Finger& KeyDown(const std::string& name);
    Finger& KeyUp(const std::string& name);

    // The keys are meant for this window or what lies in it, which must come to the front.
    Finger& In(HWND window);

    // False when the input could not be sent; a test fails then and tells what was on the screen.
    bool Play();

 private:
    // Input of one kind in a row.
    enum class Kind { Pointer, Keys, Followed, Taken };
    struct Part {
        Kind kind = Kind::Pointer;
        // Where the finger was pressed last before.
        POINT pressed = {};
        std::string commands;
        // Where in the commands its first press stands, and where that is on the screen.
        size_t firstPress = std::string::npos;
        POINT pressPoint = {};
    };
    void Add(Kind kind, const std::string& command);
    // Presses or turns there.
    void Press(POINT point, const std::string& command);
    static bool MovesFinger(const Part& part);
    bool PlayPart(const Part& part) const;

    std::vector<Part> parts_;
    POINT pressed_ = {};
    HWND window_ = nullptr;
};

// Whether the program comes to let go of the finger, which may still be down: it has decided what
// the gesture is, or takes no part in it.
bool LetsGoOfFinger(HWND window);

// Brings a window of any program to the front, with the keyboard in it. What was in front before
// has done all that it does about its own coming there and leaving.
bool BringToFront(HWND window);

}  // namespace test
