// What a program beside this one sees of the emulated program while it lets its calls fail.
#pragma once

#include "call.h"
#include "sweep_channel.h"

namespace emulator {

// Null when nobody watches.
sweep::Channel* SweepChannel();

// Tells of a call before and after it is served.
void TellCall(const Call& call);
void TellResult(const Call& call, std::uint64_t result);
// Names the first call that fails and those who made it.
void TellFirstFailure(const Call& call, sweep::Channel* channel);

// While it lives the program is in this place.
class InPlace {
 public:
    explicit InPlace(sweep::Place place);
    ~InPlace();
    InPlace(const InPlace&) = delete;
    InPlace& operator=(const InPlace&) = delete;

 private:
    sweep::Place before_ = sweep::Place::Runs;
};

}  // namespace emulator
