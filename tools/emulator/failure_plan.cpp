#include "failure_plan.h"

namespace sweep {

namespace {

// The names of calls carry their library, those of plans need not.
bool IsCalled(const std::string& call, const std::string& name) {
    const size_t library = call.find('!');
    return call == name || (library != std::string::npos && call.substr(library + 1) == name);
}

}  // namespace

bool PlannedFailures::Meet(const Plan& plan, const std::string& name) {
    if (plan.only[0] != '\0' && !IsCalled(name, plan.only)) {
        return false;
    }
    ++counted_;
    if (plan.first == 0 || counted_ < plan.first || failures_ >= plan.times) {
        return false;
    }
    const bool first = failures_ == 0;
    // Two in a row are two calls that follow each other.
    if (!first && plan.sameFunction != 0 && name != first_) {
        return false;
    }
    if (first) {
        first_ = name;
    }
    ++failures_;
    return true;
}

bool PlannedFailures::Meet(Channel* channel, const std::string& name, std::uint32_t kind) {
    if (channel->arming == Arming::Off) {
        *this = PlannedFailures();
        return false;
    }
    if (channel->arming == Arming::Paused || (kind & channel->plan.kinds) == 0) {
        return false;
    }
    const bool fails = Meet(channel->plan, name);
    channel->counted = counted_;
    channel->failures = failures_;
    return fails;
}

}  // namespace sweep
