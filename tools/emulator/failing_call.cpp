#include "failing_call.h"

#include <cstring>
#include <sstream>

#include "ending.h"
#include "machine.h"
#include "natural_failures.h"
#include "stop.h"
#include "sweep.h"

namespace emulator {

namespace {

// A plan with what it has come to so far.
struct Progress {
    sweep::Plan plan = {};
    std::uint32_t counted = 0;
    std::uint32_t failures = 0;
    std::string first;
};

// What only the description of one call says.
struct DescribedCall {
    Progress progress;
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
    if (!(words >> name >> read.failure.result >> read.failure.error >> read.progress.plan.times >>
          read.argument >> read.atLeast) ||
        name.size() >= sweep::longestName) {
        Stop("\"%s\" does not describe a failing call", description);
    }
    std::memcpy(read.progress.plan.only, name.c_str(), name.size() + 1);
    read.progress.plan.first = 1;
    return read;
}

// The names of calls carry their library, those of plans need not.
bool IsCalled(const std::string& call, const std::string& name) {
    const size_t library = call.find('!');
    return call == name || (library != std::string::npos && call.substr(library + 1) == name);
}

// Counts a call and decides whether it fails.
bool Fails(Progress* progress, const std::string& name) {
    const sweep::Plan& plan = progress->plan;
    if (plan.only[0] != '\0' && !IsCalled(name, plan.only)) {
        return false;
    }
    ++progress->counted;
    if (plan.first == 0 || progress->counted < plan.first || progress->failures >= plan.times) {
        return false;
    }
    const bool first = progress->failures == 0;
    // Two in a row are two calls that follow each other.
    if (!first && plan.sameFunction != 0 && name != progress->first) {
        return false;
    }
    if (first) {
        progress->first = name;
    }
    ++progress->failures;
    return true;
}

std::optional<Failure> DescribedFailureOf(const Call& call) {
    static DescribedCall described = ReadDescribedCall();
    if (described.progress.plan.first == 0 || call.Word(described.argument) < described.atLeast ||
        !Fails(&described.progress, call.Name())) {
        return std::nullopt;
    }
    return described.failure;
}

std::optional<Failure> SweptFailureOf(const Call& call, sweep::Channel* channel) {
    static Progress progress;
    if (channel->arming == sweep::Arming::Off) {
        progress = Progress();
        return std::nullopt;
    }
    // A process can always end itself.
    const bool endsItself = std::strcmp(call.Name(), "TerminateProcess") == 0 &&
                            call.KernelHandle(0) == GetCurrentProcess();
    const NaturalFailure* const natural = endsItself ? nullptr : NaturalFailureOf(call.Name());
    if (channel->arming == sweep::Arming::Paused || !natural ||
        (natural->kind & channel->plan.kinds) == 0 ||
        (channel->plan.ending == sweep::Ending::Amid && !HasMiddle(call))) {
        return std::nullopt;
    }
    progress.plan = channel->plan;
    const bool fails = Fails(&progress, call.Name());
    channel->counted = progress.counted;
    channel->failures = progress.failures;
    if (!fails) {
        return std::nullopt;
    }
    if (progress.failures == 1) {
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
