#include "app/restart.h"

#include "app/language.h"
#include "faults/fault.h"
#include "platform/processes.h"

namespace app {

void Restart() {
    if (!platform::StartProgram(ProgramPath().c_str())) {
        throw faults::W32Fault();
    }
}

}  // namespace app
