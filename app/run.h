// One run of the program: only the first instance shows a window, the others hand over to it.
#pragma once

#include "app/module.h"

namespace app {

inline constexpr wchar_t instanceEventName[] = L"{5D0C1A7E-3B94-4F2A-8E61-0A9B7C3D2E14}";

// Runs the main frame until it is closed, or brings a running instance to the foreground. Returns
// the message loop's result. Throws faults of the family.
int Run(Module& module, int showCommand);

}  // namespace app
