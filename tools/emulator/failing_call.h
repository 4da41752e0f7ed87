// System calls that are to fail, so that tests see what the program does then: one that a variable
// describes, or those that a program beside this one asks for while it watches (sweep_channel.h).
#pragma once

#include <optional>

#include "call.h"

namespace emulator {

struct Failure {
    Address result = 0;
    // The last error that the call leaves.
    Address error = 0;
};

// How this call has to fail, if it has to. The variable VANTOR_HANDHELD_FAILING describes one
// function's calls: "name result error times argument at-least", all numbers decimal.
std::optional<Failure> FailureOf(const Call& call);

}  // namespace emulator
