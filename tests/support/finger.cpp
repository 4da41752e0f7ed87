#include "tests/support/finger.h"

#include <gtest/gtest.h>

#include <cstdlib>

#include "tests/support/keyboard.h"
#include "tests/support/unix_command.h"
#include "tests/support/wait.h"

namespace test {

namespace {

// Far longer than a thread that serves its messages needs.
constexpr UINT longestAnswer = 500;

// Whether the thread of a window has come to a place where it takes messages.
bool Answers(HWND window) {
    DWORD_PTR result = 0;
    return SendMessageTimeoutW(window, WM_NULL, 0, 0, SMTO_NORMAL, longestAnswer, &result) != 0;
}

// Of the thread in front where no window is meant.
HWND CaptureOf(HWND window) {
    GUITHREADINFO information = {};
    information.cbSize = sizeof information;
    const DWORD thread = window ? GetWindowThreadProcessId(window, nullptr) : 0;
    GetGUIThreadInfo(thread, &information);
    return information.hwndCapture;
}

// The thread that has taken a press answers once it looks for what comes next.
bool FollowsFinger(POINT point) {
    const HWND window = WindowFromPoint(point);
    return window && CaptureOf(window) && Answers(window);
}

// A thread looks at the screen's input when it finds nothing else, and answers all that it is asked
// before it does. The first answer may come from a look that began before the last of the input was
// there. And who tells a tap from a drag looks at the queue several times for other things before
// it looks at the moves, and may answer from each of these looks. There are fewer than this. Who is
// asked again at once may answer from within the same look, as all twelve times on a processor that
// both share: nobody outside sees where a look ends, so the other one gets the processor in between
// and finds nothing.
bool HasLookedAtAll(HWND window) {
    constexpr int mostLooks = 12;
    for (int look = 0; look < mostLooks; ++look) {
        if (!Answers(window)) {
            return false;
        }
        Sleep(1);
    }
    return true;
}

bool HasTakenInput(POINT pressed) {
    HWND taker = CaptureOf(nullptr);
    if (!taker) {
        const HWND window = WindowFromPoint(pressed);
        const HWND capture = window ? CaptureOf(window) : nullptr;
        taker = capture ? capture : window;
    }
    return taker && HasLookedAtAll(taker);
}

// Farther than a tap may move.
bool IsDrag(POINT moved) {
    constexpr int part = 20;
    return std::abs(moved.x) > GetSystemMetrics(SM_CXSCREEN) / part ||
           std::abs(moved.y) > GetSystemMetrics(SM_CYSCREEN) / part;
}

// For the shell: `finger COMMANDS...` has them done one after the other. The tool that moves the
// finger stays for as long as the shell, since it learns the whole keyboard when it starts. Asking
// for the place of the screen's own window waits for all before it, is about no window that might
// go meanwhile, and leaves no window behind that later commands would be about. Over a window that
// has gone the tool ends, and does nothing of what comes behind. `focus WINDOW` puts the screen's
// keyboard there, `holds WINDOW` tells whether it is, and `over WINDOW` whether the finger is. Who
// has them is asked of another tool, since that leaves the window behind.
constexpr char fingerOfShell[] = R"(
command -v finger >/dev/null || {
    tools=
    take_tools() {
        screen=$(xdotool search --maxdepth 0 '' 2>/dev/null)
        way=/tmp/vantor-finger$DISPLAY-$$
        for use in finger focus; do
            rm -f $way.asks $way.answers
            mkfifo $way.asks $way.answers
            xdotool - <$way.asks >$way.answers 2>/dev/null &
            if [ $use = finger ]; then
                exec 9>$way.asks 8<$way.answers
            else
                exec 7>$way.asks 6<$way.answers
            fi
            rm -f $way.asks $way.answers
        done
        tools=taken
    }
    finger() {
        [ "$tools" ] || take_tools
        for part do printf '%s\n' "$part" "getwindowgeometry --shell $screen"; done >&9
        for part do
            told=
            while [ "${told%=*}" != SCREEN ]; do read -r told <&8 || { tools=; return 1; }; done
        done
    }
    find_focus() {
        [ "$tools" ] || take_tools
        printf '%s\n' 'getwindowfocus -f' "getwindowgeometry --shell $screen" >&7
        holder=0 told=
        while [ "${told%=*}" != SCREEN ]; do
            read -r told <&6 || { tools=; return 1; }
            [ "${told%=*}" != "$told" ] || holder=$told
        done
    }
    over() {
        [ "$tools" ] || take_tools
        printf '%s\n' 'getmouselocation --shell' >&7
        told=
        while [ "${told%=*}" != WINDOW ]; do read -r told <&6 || { tools=; return 1; }; done
        [ "${told#*=}" = "$1" ]
    }
    holds() {
        find_focus && [ "$holder" = "$1" ]
    }
    focus() {
        holds "$1" || finger "windowfocus $1"
    }
}
)";

std::optional<std::string> RunWithFinger(const std::string& line) {
    return RunUnixCommand(fingerOfShell + line);
}

// For the shell: whether a window of the screen has the keyboard. One that has just come to the
// front gets it in its own time, and to take it from a window that has just opened would close
// that; a window whom the screen has refused the keyboard would be waited for in vain. So it is
// waited for at first, and put there once it was elsewhere as often as this.
std::string HasKeyboard(const std::string& screenWindow, int timesElsewhere) {
    constexpr int often = 40;
    return (timesElsewhere < often ? "holds " : "focus ") + screenWindow;
}
constexpr char keyboardElsewhere[] = "the keyboard is elsewhere";

// A window that has come to the front asks the screen for the keyboard with the time of the last
// message that its thread has taken, and in its own time. The screen refuses when the keyboard has
// moved since, as it does by itself when the window that had it goes; the keys then go to whatever
// lies under the finger, or to nobody. And a window of the same program that had the keyboard gets
// the keys meanwhile, but should it be in front again when it learns that it has lost the keyboard,
// it leaves the front to nobody. So the window in front must have the screen's keyboard, in the
// same breath in which the keys are sent.
bool TryToSendKeys(HWND window, const std::string& commands, int* timesElsewhere,
                   std::string* answer) {
    const KeyboardState state = LookAtKeyboard();
    const HWND wanted = window ? GetAncestor(window, GA_ROOT) : state.front;
    if (!wanted || state.front != wanted || !state.focus || !state.screenWindow) {
        *answer = "not sent";
        return false;
    }
    // A window may have the keyboard before it has passed it on to what lies in it: its thread must
    // have come back for messages. One that follows a finger may not.
    if (!state.captured && (!Answers(state.front) || LookAtKeyboard() != state)) {
        *answer = "not taken by a thread that is busy";
        return false;
    }
    *answer =
        RunWithFinger("if " + HasKeyboard(std::to_string(state.screenWindow), *timesElsewhere) +
                      "; then finger '" + commands + "' && echo sent; else echo " +
                      keyboardElsewhere + "; fi")
            .value_or("not answered");
    *timesElsewhere += *answer == keyboardElsewhere;
    return *answer == "sent";
}

// A window lies on top before the screen has it there: what is pressed then is for the one below,
// which may take no input, and is lost. And one that is in front asks the screen for the keyboard
// only when it has heard that it is seen. Should a press that came before have closed it by then,
// the keyboard goes with it, and the one below, which is in front again, leaves the front.
bool TryToPress(const std::string& way, POINT point, const std::string& press, int* timesElsewhere,
                std::string* answer) {
    const HWND window = GetAncestor(WindowFromPoint(point), GA_ROOT);
    const unsigned screenWindow = window ? ScreenWindowOf(window) : 0;
    const std::string number = std::to_string(screenWindow);
    std::string ready;
    if (screenWindow != 0) {
        ready = "if ! over " + number + "; then echo elsewhere; ";
    }
    if (screenWindow != 0 && window == GetForegroundWindow()) {
        ready += "elif ! " + HasKeyboard(number, *timesElsewhere) + "; then echo " +
                 keyboardElsewhere + "; ";
    }
    const std::string pressed = "finger '" + press + "' && echo moved";
    *answer = RunWithFinger("finger '" + way + "' && { " +
                            (ready.empty() ? pressed : ready + "else " + pressed + "; fi") + "; }")
                  .value_or("not answered");
    *timesElsewhere += *answer == keyboardElsewhere;
    return *answer != "elsewhere" && *answer != keyboardElsewhere;
}

bool SendKeys(HWND window, const std::string& commands) {
    std::string answer;
    int timesElsewhere = 0;
    const bool sent =
        WaitFor([&] { return TryToSendKeys(window, commands, &timesElsewhere, &answer); });
    EXPECT_TRUE(sent) << "keys are " << answer << ':' << commands << '\n' << DescribeScreen(window);
    return sent;
}

}  // namespace

Finger& Finger::Down(POINT point) {
    pressed_ = point;
    // The pace of a hand: two presses of one moment may get times in the wrong order, and are no
    // pair to the system then.
    Press(point, " sleep 0.02 mousedown 1");
    return *this;
}

Finger& Finger::MoveTo(POINT point) {
    Add(Kind::Pointer, " mousemove " + std::to_string(point.x) + ' ' + std::to_string(point.y));
    return *this;
}

Finger& Finger::Up() {
    Add(Kind::Pointer, " mouseup 1");
    return *this;
}

Finger& Finger::QuickTap(POINT point) {
    Press(point, " mousedown 1 mouseup 1");
    return *this;
}

Finger& Finger::Wait(DWORD milliseconds) {
    const std::string fraction = std::to_string(1000 + milliseconds % 1000).substr(1);
    const bool keys = !parts_.empty() && parts_.back().kind == Kind::Keys;
    Add(keys ? Kind::Keys : Kind::Pointer,
        " sleep " + std::to_string(milliseconds / 1000) + '.' + fraction);
    return *this;
}

Finger& Finger::RightDown(POINT point) {
    Press(point, " mousedown 3");
    return *this;
}

Finger& Finger::RightUp() {
    Add(Kind::Pointer, " mouseup 3");
    return *this;
}

Finger& Finger::BackButton(POINT point) {
    Press(point, " mousedown 8 mouseup 8");
    return *this;
}

Finger& Finger::Turn(POINT point, int notches) {
    MoveTo(point);
    for (int notch = 0; notch < std::abs(notches); ++notch) {
        Press(point, notches > 0 ? " mousedown 4 mouseup 4" : " mousedown 5 mouseup 5");
    }
    return *this;
}

Finger& Finger::DragTo(POINT from, POINT to, int steps) {
    bool began = false;
    for (int step = 1; step <= steps; ++step) {
        // On a busy machine each pause may last far longer, and a finger that stays is a hold: the
        // first moves come with the press.
        if (step > 2) {
            Wait(15);
        }
        const POINT moved = {(to.x - from.x) * step / steps, (to.y - from.y) * step / steps};
        MoveTo(POINT{from.x + moved.x, from.y + moved.y});
        // What begins a drag are all moves that wait, however far they go: what shall move it comes
        // once it has begun.
        if (!began && IsDrag(moved)) {
            began = true;
            Taken();
        }
    }
    // A finger that is lifted before its moves are looked at has tapped: it rests, and until they
    // are.
    constexpr DWORD rest = 100;
    return Wait(rest).Taken();
}

Finger& Finger::Key(const std::string& name) {
    Add(Kind::Keys, " key " + name);
    return *this;
}

Finger& Finger::KeyDown(const std::string& name) {
    Add(Kind::Keys, " keydown " + name);
    return *this;
}

Finger& Finger::KeyUp(const std::string& name) {
    Add(Kind::Keys, " keyup " + name);
    return *this;
}

Finger& Finger::In(HWND window) {
    window_ = window;
    return *this;
}

Finger& Finger::Followed() {
    Add(Kind::Followed, "");
    return *this;
}

Finger& Finger::Taken() {
    Add(Kind::Taken, "");
    return *this;
}

void Finger::Add(Kind kind, const std::string& command) {
    if (parts_.empty() || parts_.back().kind != kind) {
        Part part;
        part.kind = kind;
        part.pressed = pressed_;
        parts_.push_back(part);
    }
    parts_.back().commands += command;
}

void Finger::Press(POINT point, const std::string& command) {
    MoveTo(point);
    Part& part = parts_.back();
    if (part.firstPress == std::string::npos) {
        part.firstPress = part.commands.size();
        part.pressPoint = point;
    }
    part.commands += command;
}

bool Finger::Play() {
    std::vector<Part> parts;
    parts.swap(parts_);
    for (const Part& part : parts) {
        if (!PlayPart(part)) {
            return false;
        }
    }
    return true;
}

bool Finger::MovesFinger(const Part& part) {
    if (part.firstPress == std::string::npos) {
        return RunWithFinger("finger '" + part.commands + "' && echo moved") == "moved";
    }
    const std::string way = part.commands.substr(0, part.firstPress);
    const std::string press = part.commands.substr(part.firstPress);
    std::string answer;
    int timesElsewhere = 0;
    return WaitFor(
               [&] { return TryToPress(way, part.pressPoint, press, &timesElsewhere, &answer); }) &&
           answer == "moved";
}

bool Finger::PlayPart(const Part& part) const {
    switch (part.kind) {
        case Kind::Keys:
            return SendKeys(window_, part.commands);
        case Kind::Followed: {
            const bool followed = WaitFor([&part] { return FollowsFinger(part.pressed); });
            EXPECT_TRUE(followed) << "nobody follows the finger\n" << DescribeScreen();
            return followed;
        }
        case Kind::Taken: {
            const bool taken = WaitFor([&part] { return HasTakenInput(part.pressed); });
            EXPECT_TRUE(taken) << "nobody takes the finger's moves\n" << DescribeScreen();
            return taken;
        }
        default: {
            const bool moved = MovesFinger(part);
            EXPECT_TRUE(moved) << "the finger does not move\n" << DescribeScreen();
            return moved;
        }
    }
}

bool LetsGoOfFinger(HWND window) {
    return WaitFor([window] { return !CaptureOf(window) && Answers(window); });
}

// A window that has come to the front asks the screen for the keyboard on its own thread, when that
// gets to it. Asked after the next window has come to the front it takes the keyboard from that,
// and the next one, which no longer has it, leaves the front. So one comes after the other. A
// thread that has lost the keyboard learns of it from the screen, when it gets to that: should its
// window be in front again by then, it would leave the front. So it is waited for as well, whether
// it loses the keyboard now or has lost it just before.
bool BringToFront(HWND window) {
    // Keys are sent once all of that is done, also when there are none.
    const std::string none = " sleep 0";
    std::string answer;
    int timesElsewhere = 0;
    const bool atRest = WaitFor([&] {
        return !LookAtKeyboard().front || TryToSendKeys(nullptr, none, &timesElsewhere, &answer);
    });
    EXPECT_TRUE(atRest) << "the window in front does not get the keyboard\n"
                        << DescribeScreen(window);
    const bool hasHeard = WaitFor([window] { return HasLookedAtAll(window); });
    EXPECT_TRUE(hasHeard) << "the window does not answer\n" << DescribeScreen(window);
    const HWND before = LookAtKeyboard().front;
    SetForegroundWindow(window);
    if (!atRest || !hasHeard || !SendKeys(window, none)) {
        return false;
    }
    const bool hasLeft = WaitFor([before] { return !IsWindow(before) || HasLookedAtAll(before); });
    EXPECT_TRUE(hasLeft) << "what was in front before does not answer\n" << DescribeScreen(before);
    // A window of this thread hears only now that it has the keyboard. Heard of later, once another
    // window has come to the front, it would take it back.
    PumpUntil([] { return true; });
    return hasLeft;
}

}  // namespace test
