// The turns of a mouse's wheel, which may come in small parts, as whole steps.
#pragma once

#include "platform/windows.h"

namespace ui {

class WheelTurns {
 public:
    // Takes what the wheel has turned, of which WHEEL_DELTA is a notch, and gives back the whole
    // steps of `stepsPerNotch` that have come together, with the sign of the turn. A turn in the
    // other direction begins anew.
    int Add(int turn, int stepsPerNotch);
    // Forgets what is not a whole step yet.
    void Reset() { rest_ = 0; }

 private:
    int rest_ = 0;
};

}  // namespace ui
