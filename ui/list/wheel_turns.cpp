#include "ui/list/wheel_turns.h"

namespace ui {

int WheelTurns::Add(int turn, int stepsPerNotch) {
    if ((turn < 0) != (rest_ < 0)) {
        rest_ = 0;
    }
    rest_ += turn * stepsPerNotch;
    const int steps = rest_ / WHEEL_DELTA;
    rest_ -= steps * WHEEL_DELTA;
    return steps;
}

}  // namespace ui
