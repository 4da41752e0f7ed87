// Everything that an emulated program runs on. There is one in a process.
#pragma once

#include <string>

#include "counts.h"
#include "device.h"
#include "engine.h"
#include "heap.h"
#include "image.h"
#include "memory.h"
#include "symbols.h"

namespace emulator {

struct Machine {
    Engine engine;
    Memory memory;
    Heap heap;
    Symbols symbols;
    Image image;
    Device device;
    Counts counts;
    // The arguments, as the program's command line.
    Address commandLine = 0;
};

Machine& TheMachine();

// The program has ended by itself.
[[noreturn]] void EndRun(unsigned exitCode);

}  // namespace emulator
