// Lets every allocation of this thread fail.
#pragma once

namespace test {

// While it lives, new throws std::bad_alloc on this thread.
class NoMemory {
 public:
    NoMemory();
    ~NoMemory();
    NoMemory(const NoMemory&) = delete;
    NoMemory& operator=(const NoMemory&) = delete;
};

}  // namespace test
