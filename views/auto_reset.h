// A flag that is raised for as long as something goes on.
#pragma once

#include <utility>

namespace views {

class AutoReset {
 public:
    explicit AutoReset(bool& flag) : flag_(flag), before_(std::exchange(flag, true)) {}
    ~AutoReset() { flag_ = before_; }
    AutoReset(const AutoReset&) = delete;
    AutoReset& operator=(const AutoReset&) = delete;

 private:
    bool& flag_;
    const bool before_;
};

}  // namespace views
