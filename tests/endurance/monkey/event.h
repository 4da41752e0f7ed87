// What the monkey does, one thing after another, and how a script writes it down.
#pragma once

#include <string>
#include <vector>

namespace monkey {

enum class Kind {
    // Messages of the mouse, posted to the window that a finger would hit. Places are thousandths
    // of the screen.
    Tap,
    Double,
    Press,
    Move,
    Lift,
    Drag,
    RightTap,
    BackButton,
    Wheel,
    SideWheel,
    // Messages of the keyboard, posted to the window that has it.
    Key,
    KeyDown,
    KeyUp,
    Letter,
    // The same through the screen's own input queue, with Ctrl, Shift and Alt.
    RealTap,
    RealRightTap,
    RealDrag,
    RealWheel,
    RealKey,
    // A command, given to what takes input.
    Command,
    // A message of another program: number, wParam, lParam, to whom.
    Message,
    // What changes around the program: a setting by its name, a color, the screen, files of the
    // folder, other programs, the clipboard.
    Setting,
    Color,
    Turn,
    File,
    Other,
    Clipboard,
    // Nothing for so many milliseconds.
    Rest,
    // The end of a round.
    Home,
};

struct Event {
    Kind kind = Kind::Rest;
    int values[4] = {};
};

using Script = std::vector<Event>;

// The same from the same seed, everywhere.
Script Invent(unsigned seed, unsigned round, size_t count);

std::string Written(const Event& event);
// False for a line that is no event.
bool Read(const std::string& line, Event* event);

// Bits of a RealKey's first value.
inline constexpr int withControl = 1;
inline constexpr int withShift = 2;
inline constexpr int withAlt = 4;

}  // namespace monkey
