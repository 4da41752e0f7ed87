// Lets allocations that may fail without an exception fail.
#pragma once

namespace test {

// While it lives, new (std::nothrow) gives null on this thread.
class ShortMemory {
 public:
    ShortMemory();
    ~ShortMemory();
    ShortMemory(const ShortMemory&) = delete;
    ShortMemory& operator=(const ShortMemory&) = delete;
};

}  // namespace test
