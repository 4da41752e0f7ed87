// A system call that is to fail, so that tests see what the program does then.
#pragma once

#include "call.h"

namespace emulator {

struct FailingCall {
    std::string name;
    Address result = 0;
    Address error = 0;
    Address times = 0;
    // It fails only when this argument is at least so large.
    Address argument = 0;
    Address atLeast = 0;
};

// The description when this call is the one that the variable VANTOR_HANDHELD_FAILING describes
// ("name result error times argument at-least", all numbers decimal) and has to fail; else null.
const FailingCall* FailingCallOf(const Call& call);

}  // namespace emulator
