// One binary in memory: the executable of a process, or a module that a process has loaded.
#pragma once

#include <cstdint>
#include <string>

#include "platform/windows.h"

namespace views {

struct BinaryItem {
    // Index into the system's image lists, -1 for none, unknownIcon until it is asked for.
    int32_t icon = -1;
    std::wstring name;
    // What its row says first; empty where that is the name.
    std::wstring label;
    // The full path of its file; may be empty.
    std::wstring path;
    // Where it begins in memory.
    ULONG_PTR base = 0;
    // The process's or the module's.
    ULONG_PTR id = 0;
    // Bytes.
    uint64_t size = 0;
};

// By their place in memory.
inline bool OrdersBefore(const BinaryItem& first, const BinaryItem& second) {
    return first.base < second.base;
}

}  // namespace views
