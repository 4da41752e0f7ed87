// How each system call fails when it fails as it naturally does.
#pragma once

#include <string>

#include "address.h"

namespace emulator {

struct NaturalFailure {
    Address result;
    // The last error that it leaves.
    Address error;
    // One of sweep::systemCalls and its neighbours.
    std::uint32_t kind;
};

// Null for a call that does not fail, or whose failure is nothing that a program could be told.
const NaturalFailure* NaturalFailureOf(const std::string& name);

// Whether it is known of a call how it fails, or that it does not.
bool KnowsHowItFails(const std::string& name);

}  // namespace emulator
