// Names of functions, read from the executable itself.
#pragma once

#include <cstddef>

#include "platform/windows.h"

namespace test {

// The table of symbols that the linker leaves at the end of an executable. Once it is open it takes
// no memory, so that it can be read in a process that has just crashed.
class Symbols {
 public:
    Symbols() = default;
    // Nothing is found in a file that cannot be read or has no table.
    explicit Symbols(const wchar_t* path) { Open(path); }
    ~Symbols();
    Symbols(const Symbols&) = delete;
    Symbols& operator=(const Symbols&) = delete;

    void Open(const wchar_t* path);
    // Writes the function that holds an address, counted from the start of the loaded executable,
    // and how far within it the address is ("ui::Window::Destroy()+0x1c"). False when none does.
    bool Describe(size_t address, char* text, size_t size) const;

 private:
    const char* At(size_t offset, size_t size) const;

    const char* file_ = nullptr;
    size_t size_ = 0;
};

}  // namespace test
