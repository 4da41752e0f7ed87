#include "tests/app/short_memory.h"

#include <atomic>
#include <cstdlib>
#include <new>

#include "platform/windows.h"

namespace {

std::atomic<DWORD> shortThread = 0;

}  // namespace

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return GetCurrentThreadId() == shortThread ? nullptr : std::malloc(size ? size : 1);
}

namespace test {

ShortMemory::ShortMemory() {
    shortThread = GetCurrentThreadId();
}

ShortMemory::~ShortMemory() {
    shortThread = 0;
}

}  // namespace test
