// The end of the program at a call that a program beside it has chosen.
#pragma once

#include "call.h"
#include "sweep_channel.h"

namespace emulator {

// Whether the call writes a file piece by piece.
bool HasMiddle(const Call& call);

// Ends this process at once, or as soon as the call has been served.
void EndAt(const Call& call, sweep::Ending ending);
void EndIfDue(const Call& call, std::uint64_t result);

}  // namespace emulator
