// A gate before functions that this process's executable imports, whatever their arguments are.
#pragma once

#include "platform/windows.h"

namespace sweep {

// Is asked before a guarded function is called. The arguments lie one behind the other, each in a
// place of its own size; what comes before the first is the address to return to. True when the
// function is not to be called: `result` is then what the caller gets.
using Gate = bool (*)(unsigned number, const ULONG_PTR* arguments, ULONG_PTR* result);

// From now on who calls through the import's slot meets the gate, which is told this number
// (VirtualAlloc). Numbers are below `mostGuarded`. False when there is no memory.
inline constexpr unsigned mostGuarded = 256;
bool Guard(void** slot, unsigned number, Gate gate);

}  // namespace sweep
