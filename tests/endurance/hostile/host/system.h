// The system that the product's code calls in this build: it answers with what a test has chosen.
#pragma once

#include <string>
#include <vector>

#include "platform/windows.h"
#include "tests/endurance/hostile/input.h"

namespace hostile {

struct Value {
    std::wstring name;
    DWORD type = REG_SZ;
    Bytes data;
};

// The answers.
struct System {
    // The clipboard.
    Bytes clipboard;
    // The registry's values, and what stands in their place after the first question.
    std::vector<Value> values;
    std::vector<Value> valuesLater;
    unsigned questions = 0;
    // What a search, or a walk through a snapshot, finds: the bytes of one entry after the other.
    std::vector<Bytes> entries;
    size_t entry = 0;
    // Whether what is there can be opened: a store, a shortcut.
    bool opens = false;
    // What a shortcut holds.
    std::wstring command;
    // The regions of memory: their sizes and states.
    std::vector<MEMORY_BASIC_INFORMATION> regionsFound;
    // Handles and blocks that were given out and have not come back.
    int held = 0;
};
inline System answers;

// Whether the system says that a path is there: by the sum of its letters.
bool IsThere(std::wstring_view path);

}  // namespace hostile
