// Addresses of the emulated program. They are also addresses of this process: every piece of memory
// the program sees lies below 4 GB and at the same place in both, so that a call can use the
// program's pointers as they are once they have been checked.
#pragma once

#include <cstdint>

namespace emulator {

using Address = std::uint32_t;

inline constexpr Address pageSize = 0x1000;

template <class Type = void>
Type* PointerTo(Address address) {
    return reinterpret_cast<Type*>(static_cast<std::uintptr_t>(address));
}

// The address of memory that the program may see. Memory above 4 GB ends the run.
Address AddressOf(const void* pointer);

constexpr Address RoundUpToPage(Address size) {
    return (size + pageSize - 1) & ~(pageSize - 1);
}

}  // namespace emulator
