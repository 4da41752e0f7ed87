// The strip at the top of the screen on which the handheld's shell shows the caption of the window
// in front.
#pragma once

#include "host.h"

namespace emulator {

// Makes the strip when the device has one.
void MakeShellStrip();
// Over the whole width of the screen.
void PlaceShellStrip();
// A window's caption or activity has changed.
void RefreshShellStrip();

}  // namespace emulator
