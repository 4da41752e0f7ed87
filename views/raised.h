// A flag that is raised for as long as something goes on.
#pragma once

#include <utility>

namespace views {

class Raised {
 public:
    explicit Raised(bool& flag) : flag_(flag), before_(std::exchange(flag, true)) {}
    ~Raised() { flag_ = before_; }
    Raised(const Raised&) = delete;
    Raised& operator=(const Raised&) = delete;

 private:
    bool& flag_;
    const bool before_;
};

}  // namespace views
