// The C++ library keeps the exceptions under way in one place for all threads; these keep one for
// each thread.
#include "platform/ce/runtime/exception_globals.h"

#include "platform/ce/runtime/coredll.h"

#include <cstdlib>

namespace {
// The layout the library's exception code expects on ARM.
struct ExceptionGlobals {
    void* caught;
    unsigned uncaughtCount;
    void* propagating;
};

ExceptionGlobals firstThread;
unsigned slot = runtime::NoSlot;
}  // namespace

namespace runtime {
void prepareExceptionGlobals() {
    slot = tlsCall(TakeSlot, 0);
    if (slot == NoSlot || tlsSetValue(slot, &firstThread) == 0) {
        // Exceptions of two threads would get into one another.
        std::abort();
    }
}

void releaseThread() {
    auto* globals = static_cast<ExceptionGlobals*>(tlsGetValue(slot));
    if (globals != nullptr && globals != &firstThread) {
        tlsSetValue(slot, nullptr);
        localFree(globals);
    }
}
}  // namespace runtime

// A handler is entered and left through here, and TlsGetValue clears the last error when it
// succeeds: the program's own is put back.
extern "C" {
void* __cxa_get_globals() {
    const unsigned error = runtime::getLastError();
    auto* globals = static_cast<ExceptionGlobals*>(runtime::tlsGetValue(slot));
    if (globals == nullptr) {
        globals = static_cast<ExceptionGlobals*>(runtime::localAlloc(
            runtime::FixedMemory | runtime::ZeroedMemory, sizeof(ExceptionGlobals)));
        if (globals == nullptr || runtime::tlsSetValue(slot, globals) == 0) {
            std::abort();
        }
    }
    runtime::setLastError(error);
    return globals;
}

void* __cxa_get_globals_fast() {
    return __cxa_get_globals();
}
}
