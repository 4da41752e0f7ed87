// Counts the calls of a program against a plan by which some of them fail. The emulator does, and
// the library that watches the executable of a PC.
#pragma once

#include <string>

#include "sweep_channel.h"

namespace sweep {

class PlannedFailures {
 public:
    // Counts a call, unless the plan leaves out its function; whether it fails.
    bool Meet(const Plan& plan, const std::string& name);
    // The same for a call of a kind (0 for one that cannot fail), while the channel is armed, which
    // is told of it. A channel that is not armed ends the plan.
    bool Meet(Channel* channel, const std::string& name, std::uint32_t kind);
    // How many have failed.
    std::uint32_t Failures() const { return failures_; }

 private:
    std::uint32_t counted_ = 0;
    std::uint32_t failures_ = 0;
    std::string first_;
};

}  // namespace sweep
