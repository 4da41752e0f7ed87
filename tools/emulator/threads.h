// The program's threads.
#pragma once

#include "engine.h"

namespace emulator {

// The page that Windows CE shows every process: the running thread and process stand in it.
void MakeKernelPage(Engine& engine);

}  // namespace emulator
