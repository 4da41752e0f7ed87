// Starting the program anew.
#pragma once

namespace app {

// Starts another process of the program (CreateProcessW); installed as the exit hook. Throws
// W32Fault.
void Restart();

}  // namespace app
