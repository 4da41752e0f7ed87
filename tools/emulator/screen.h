// The screen of the device: that of the system underneath, or the same lying on its side.
#pragma once

#include "host.h"

namespace emulator {

// Its whole area, and what the shell's caption strip leaves of it.
RECT ScreenArea();
RECT WorkArea();

// Turns the screen, or turns it back, and tells every window of the program.
void TurnScreen(bool turned);

}  // namespace emulator
