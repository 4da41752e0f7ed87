#include "failing_call.h"

#include <cstring>
#include <sstream>

#include "ending.h"
#include "failure_plan.h"
#include "machine.h"
#include "natural_failures.h"
#include "stop.h"
#include "sweep.h"

namespace emulator {

namespace {

// What only the description of one call says.
struct DescribedCall {
    sweep::PlannedFailures planned;
    sweep::Plan plan = {};
    Failure failure;
    // It fails only when this argument is at least so large.
    Address argument = 0;
    Address atLeast = 0;
};

DescribedCall ReadDescribedCall() {
    DescribedCall read;
    // A program of the device sets it, so that this process's own environment need not have it.
    char description[256];
    const DWORD length =
        GetEnvironmentVariableA("VANTOR_HANDHELD_FAILING", description, sizeof description);
    if (length == 0 || length >= sizeof description) {
        return read;
    }
    std::istringstream words(description);
    std::string name;
    if (!(words >> name >> read.failure.result >> read.failure.error >> read.plan.times >>
          read.argument >> read.atLeast) ||
        name.size() >= sweep::longestName) {
        Stop("\"%s\" does not describe a failing call", description);
    }
    std::memcpy(read.plan.only, name.c_str(), name.size() + 1);
    read.plan.first = 1;
    return read;
}

std::optional<Failure> DescribedFailureOf(const Call& call) {
    static DescribedCall described = ReadDescribedCall();
    if (described.plan.first == 0 || call.Word(described.argument) < described.atLeast ||
        !described.planned.Meet(described.plan, call.Name())) {
        return std::nullopt;
    }
    return described.failure;
}

std::optional<Failure> SweptFailureOf(const Call& call, sweep::Channel* channel) {
    static sweep::PlannedFailures planned;
    // A process can always end itself.
    const bool endsItself = std::strcmp(call.Name(), "TerminateProcess") == 0 &&
                            call.KernelHandle(0) == GetCurrentProcess();
    const NaturalFailure* const natural = endsItself ? nullptr : NaturalFailureOf(call.Name());
    const bool isLeftOut =
        !natural || (channel->plan.ending == sweep::Ending::Amid && !HasMiddle(call));
    if (!planned.Meet(channel, call.Name(), isLeftOut ? 0 : natural->kind)) {
        return std::nullopt;
    }
    if (planned.Failures() == 1) {
        TellFirstFailure(call, channel);
    }
    if (channel->plan.ending != sweep::Ending::None) {
        EndAt(call, channel->plan.ending);
        return std::nullopt;
    }
    return Failure{natural->result, natural->error};
}

}  // namespace

std::optional<Failure> FailureOf(const Call& call) {
    if (const std::optional<Failure> described = DescribedFailureOf(call)) {
        return described;
    }
    sweep::Channel* const channel = SweepChannel();
    return channel ? SweptFailureOf(call, channel) : std::nullopt;
}

}  // namespace emulator
