// Something that is done when a scope ends, also when an exception leaves it.
#pragma once

#include <utility>

namespace platform {

// Calls `action`, which must not throw, at its end.
template <typename Action>
class ScopeExit {
 public:
    explicit ScopeExit(Action action) : action_(std::move(action)) {}
    ~ScopeExit() {
        if (armed_) {
            action_();
        }
    }
    ScopeExit(const ScopeExit&) = delete;
    ScopeExit& operator=(const ScopeExit&) = delete;
    // The action is not called any more.
    void Release() { armed_ = false; }

 private:
    Action action_;
    bool armed_ = true;
};

}  // namespace platform
