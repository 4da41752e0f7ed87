// Function-local statics: the first thread that comes by makes them, the others wait.
#include "platform/ce/runtime/coredll.h"

namespace {
// On ARM a guard is one word. The compiler itself tests the lowest bit before it calls here.
constexpr long Untouched = 0;
constexpr long Made = 1;
constexpr long InTheMaking = 2;
}  // namespace

extern "C" {
int __cxa_guard_acquire(volatile long* guard) {
    for (;;) {
        const long before = runtime::interlockedTestExchange(guard, Untouched, InTheMaking);
        if (before == Untouched) {
            return 1;
        }
        if (before == Made) {
            return 0;
        }
        runtime::sleep(1);
    }
}

void __cxa_guard_release(volatile long* guard) {
    runtime::interlockedExchange(guard, Made);
}

void __cxa_guard_abort(volatile long* guard) {
    runtime::interlockedExchange(guard, Untouched);
}
}
