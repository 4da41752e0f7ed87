// The C heap over the process heap of Windows CE; the C++ library's operator new stands on it.
#include "platform/ce/runtime/coredll.h"

#include <cstdlib>

extern "C" {
void* malloc(std::size_t bytes) {
    return runtime::localAlloc(runtime::FixedMemory, bytes != 0 ? bytes : 1);
}

void* calloc(std::size_t count, std::size_t bytes) {
    std::size_t total = 0;
    if (__builtin_mul_overflow(count, bytes, &total)) {
        return nullptr;
    }
    return runtime::localAlloc(runtime::FixedMemory | runtime::ZeroedMemory,
                               total != 0 ? total : 1);
}

void* realloc(void* memory, std::size_t bytes) {
    if (memory == nullptr) {
        return malloc(bytes);
    }
    // Without this flag the block could only grow in place.
    return runtime::localReAlloc(memory, bytes != 0 ? bytes : 1, runtime::MovableMemory);
}

void free(void* memory) {
    if (memory != nullptr) {
        runtime::localFree(memory);
    }
}
}
