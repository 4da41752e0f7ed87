// What the C++ library calls when there is no way on; all of it ends in abort without printing.
#include <cstdlib>

namespace __cxxabiv1 {
extern void (*__terminate_handler)();
extern void (*__unexpected_handler)();
void (*__terminate_handler)() = std::abort;
void (*__unexpected_handler)() = std::abort;

extern "C" {
[[noreturn]] void __cxa_pure_virtual() {
    std::abort();
}

[[noreturn]] void __cxa_deleted_virtual() {
    std::abort();
}
}
}  // namespace __cxxabiv1
