// What goes wrong while the program works on files. The executable is linked so that the calls of
// the platform that change or read folders come here first.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/windows.h"

namespace conservation {

enum class Mishap {
    None,
    // Calls fail: one, some in a row, all from one on.
    Fails,
    // Now and then one fails.
    FailsSometimes,
    // A volume has room for so much and no more.
    Full,
    // Something else changes the disk just before a call.
    Meanwhile,
    // The process ends at a call.
    Ends,
};

enum class Moment { Before, Within, After };

struct Plan {
    Mishap mishap = Mishap::None;
    // The number of the call that it begins with, and of how many it holds.
    unsigned call = 0;
    unsigned calls = 1;
    // One in so many fails.
    unsigned oneIn = 0;
    // The room that is left, in bytes.
    DWORD room = 0;
    // When the process ends, or where in a copy a failure comes.
    Moment moment = Moment::Before;
    // Moves from one volume to the other are made of a copy and a deletion.
    bool movesByCopying = false;
    std::function<void()> meanwhile;
    // Called as the process ends; when it returns, no call does anything any more.
    std::function<void()> end;
};

// What has come of it.
struct Outcome {
    unsigned calls = 0;
    unsigned failures = 0;
    bool ended = false;
    // The calls came to no end.
    bool endless = false;
    // A call that failed, or in which the process ended, has left the beginning of this file.
    std::wstring halfDone;
    // What could not be deleted, or not be looked for, by the plan.
    std::vector<std::wstring> outOfReach;
    // The last destination that was looked at or written to.
    std::wstring lastSeen;
};

// Carries a plan out as long as it lives. One at a time.
class Mishaps {
 public:
    explicit Mishaps(Plan plan);
    ~Mishaps();
    Mishaps(const Mishaps&) = delete;
    Mishaps& operator=(const Mishaps&) = delete;

    // What has come of it so far; the second ends the plan.
    const Outcome& Current() const;
    const Outcome& Result() const;
};

}  // namespace conservation
