// A slide of a control's contents in five steps over about 300 ms.
#pragma once

#include <functional>

namespace ui {

inline constexpr int slideSteps = 5;
inline constexpr unsigned slideDuration = 300;

// Calls `draw` with the offsets from `from` to `to` in five equal steps and waits out the rest of
// each frame's share of the time (GetTickCount, Sleep).
void Slide(int from, int to, const std::function<void(int offset)>& draw);

}  // namespace ui
