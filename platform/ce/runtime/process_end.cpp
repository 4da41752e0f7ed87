// The ways a process ends, and what runs before it does.
#include "platform/ce/runtime/coredll.h"

#include <cstdlib>

namespace {
struct ExitHandler {
    void (*function)(void*);
    void* argument;
};

constexpr unsigned FirstCapacity = 32;
constexpr unsigned AbortExitCode = 3;

// Static destructors register before the first heap failure can matter, so most programs never need
// the heap here.
ExitHandler firstHandlers[FirstCapacity];
ExitHandler* handlers = firstHandlers;
unsigned handlerCount = 0;
unsigned handlerCapacity = FirstCapacity;

[[noreturn]] void endProcess(unsigned exitCode) {
    for (;;) {
        runtime::terminateProcess(runtime::currentProcess(), exitCode);
        runtime::sleep(0xFFFFFFFF);
    }
}

bool makeRoom() {
    const unsigned capacity = handlerCapacity * 2;
    auto* larger = static_cast<ExitHandler*>(
        runtime::localAlloc(runtime::FixedMemory, capacity * sizeof(ExitHandler)));
    if (larger == nullptr) {
        return false;
    }
    for (unsigned i = 0; i < handlerCount; ++i) {
        larger[i] = handlers[i];
    }
    if (handlers != firstHandlers) {
        runtime::localFree(handlers);
    }
    handlers = larger;
    handlerCapacity = capacity;
    return true;
}
}  // namespace

extern "C" {
void* __dso_handle = &__dso_handle;

int __cxa_atexit(void (*function)(void*), void* argument, void*) {
    if (handlerCount == handlerCapacity && !makeRoom()) {
        return -1;
    }
    handlers[handlerCount++] = {function, argument};
    return 0;
}

// The form the ARM ABI asks for, with the arguments the other way round.
int __aeabi_atexit(void* argument, void (*function)(void*), void* module) {
    return __cxa_atexit(function, argument, module);
}

int atexit(void (*function)()) {
    return __cxa_atexit([](void* stored) { reinterpret_cast<void (*)()>(stored)(); },
                        reinterpret_cast<void*>(function), nullptr);
}

[[noreturn]] void exit(int exitCode) {
    // A handler may register another one, which then runs next.
    while (handlerCount > 0) {
        const ExitHandler handler = handlers[--handlerCount];
        handler.function(handler.argument);
    }
    endProcess(static_cast<unsigned>(exitCode));
}

[[noreturn]] void _Exit(int exitCode) {
    endProcess(static_cast<unsigned>(exitCode));
}

[[noreturn]] void abort() {
    runtime::outputDebugString(L"The program ended itself: abort.\r\n");
    endProcess(AbortExitCode);
}

[[noreturn]] void __assert_func(const char*, int, const char*, const char*) {
    abort();
}
}
