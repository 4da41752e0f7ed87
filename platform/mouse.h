// What a PC's user has set for the mouse.
#pragma once

#include "platform/windows.h"

namespace platform {

// A wheel's turn to the side (WM_MOUSEHWHEEL, which a handheld's headers do not have).
inline constexpr UINT sideWheelMessage = 0x020E;

// In place of a number of rows: a whole page (WHEEL_PAGESCROLL).
inline constexpr UINT wholePage = ~0u;

// How many rows a notch of the wheel is worth, 0 for none (SystemParametersInfoW). Three where the
// system has no such setting.
UINT RowsPerWheelNotch();

}  // namespace platform
