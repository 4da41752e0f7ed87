#include "tests/faults/no_memory.h"

#include <atomic>
#include <cstdlib>
#include <new>

#include "platform/windows.h"

namespace {

std::atomic<DWORD> threadWithoutMemory = 0;

}  // namespace

void* operator new(std::size_t size) {
    void* const memory =
        GetCurrentThreadId() == threadWithoutMemory ? nullptr : std::malloc(size ? size : 1);
    if (!memory) {
        throw std::bad_alloc();
    }
    return memory;
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

namespace test {

NoMemory::NoMemory() {
    threadWithoutMemory = GetCurrentThreadId();
}

NoMemory::~NoMemory() {
    threadWithoutMemory = 0;
}

}  // namespace test
