#include "tests/support/finger.h"

#include <gtest/gtest.h>

#include "tests/support/keyboard.h"
#include "tests/support/unix_command.h"
#include "tests/support/wait.h"

namespace test {

Finger& Finger::Down(POINT point) {
    MoveTo(point);
    Add(false, " sleep 0.02 mousedown 1");
    return *this;
}

Finger& Finger::MoveTo(POINT point) {
    Add(false, " mousemove " + std::to_string(point.x) + ' ' + std::to_string(point.y));
    return *this;
}

Finger& Finger::Up() {
    Add(false, " mouseup 1");
    return *this;
}

Finger& Finger::QuickTap(POINT point) {
    MoveTo(point);
    Add(false, " mousedown 1 mouseup 1");
    return *this;
}

Finger& Finger::Wait(DWORD milliseconds) {
    const std::string fraction = std::to_string(1000 + milliseconds % 1000).substr(1);
    Add(!parts_.empty() && parts_.back().keys,
        " sleep " + std::to_string(milliseconds / 1000) + '.' + fraction);
    return *this;
}

Finger& Finger::RightClick(POINT point) {
    MoveTo(point);
    Add(false, " sleep 0.02 mousedown 3 sleep 0.06 mouseup 3");
    return *this;
}

Finger& Finger::DragTo(POINT from, POINT to, int steps) {
    for (int step = 1; step <= steps; ++step) {
        MoveTo(POINT{from.x + (to.x - from.x) * step / steps,
                     from.y + (to.y - from.y) * step / steps});
        Wait(15);
    }
    // A finger that is lifted before its moves are looked at has tapped.
    constexpr DWORD seen = 100;
    return Wait(seen);
}

Finger& Finger::Key(const std::string& name) {
    Add(true, " key " + name);
    return *this;
}

Finger& Finger::KeyDown(const std::string& name) {
    Add(true, " keydown " + name);
    return *this;
}

Finger& Finger::KeyUp(const std::string& name) {
    Add(true, " keyup " + name);
    return *this;
}

Finger& Finger::In(HWND window) {
    window_ = window;
    return *this;
}

void Finger::Add(bool keys, const std::string& command) {
    if (parts_.empty() || parts_.back().keys != keys) {
        parts_.push_back(Part{keys, ""});
    }
    parts_.back().commands += command;
}

bool Finger::Play() {
    std::vector<Part> parts;
    parts.swap(parts_);
    for (const Part& part : parts) {
        if (part.keys) {
            if (!PlayKeys(part.commands)) {
                return false;
            }
        } else if (!RunUnixCommand("xdotool" + part.commands)) {
            ADD_FAILURE() << "the finger does not move\n" << DescribeScreen();
            return false;
        }
    }
    return true;
}

// A window that has come to the front asks the screen for the keyboard with the time of the last
// message that its thread has taken. The screen refuses when the keyboard has moved since, as it
// does by itself when the window that had it goes; the keys then go to whatever lies under the
// finger, or to nobody. So the screen's keyboard is put where the window in front is, in the same
// breath in which the keys are sent. Windows of one thread share it: that thread passes keys on by
// itself.
bool Finger::PlayKeys(const std::string& commands) const {
    std::string answer;
    const bool played = WaitFor(
        [&] {
            const KeyboardState state = LookAtKeyboard();
            const HWND wanted = window_ ? GetAncestor(window_, GA_ROOT) : state.front;
            if (!wanted || state.front != wanted || !state.focus || !state.screenWindow) {
                answer = "not sent";
                return false;
            }
            // A window may have the keyboard before it has passed it on to what lies in it: its
            // thread must have come back for messages. One that follows a finger may not.
            DWORD_PTR result = 0;
            constexpr UINT longestAnswer = 500;
            if (!state.captured && (!SendMessageTimeoutW(state.front, WM_NULL, 0, 0, SMTO_NORMAL,
                                                         longestAnswer, &result) ||
                                    LookAtKeyboard() != state)) {
                answer = "not taken by a thread that is busy";
                return false;
            }
            // What the screen's names of one program's windows have in common.
            constexpr unsigned programShift = 21;
            answer = RunUnixCommand("k=$(xdotool getwindowfocus -f); if [ $((k >> " +
                                    std::to_string(programShift) +
                                    ")) = " + std::to_string(state.screenWindow >> programShift) +
                                    " ]; then xdotool" + commands + "; else xdotool windowfocus " +
                                    std::to_string(state.screenWindow) + commands +
                                    "; fi && echo sent || echo refused")
                         .value_or("not answered");
            return answer == "sent";
        },
        longestWait);
    EXPECT_TRUE(played) << "keys are " << answer << ':' << commands << '\n'
                        << DescribeScreen(window_);
    return played;
}

}  // namespace test
