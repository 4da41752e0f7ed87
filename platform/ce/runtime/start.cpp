// Where Windows CE enters the program.
#include "platform/ce/runtime/exception_globals.h"

#include <cstdlib>

using Initialiser = void (*)();

extern "C" {
extern Initialiser __init_array_start[];
extern Initialiser __init_array_end[];

// Named wWinMain because the Win32 headers declare WinMain with a narrow command line;
// on Windows CE the system hands over the arguments alone, without the program's name.
int wWinMain(void* instance, void* previousInstance, wchar_t* commandLine, int showCommand);

[[noreturn]] void WinMainCRTStartup(void* instance, void* previousInstance, wchar_t* commandLine,
                                    int showCommand) {
    runtime::prepareExceptionGlobals();
    for (Initialiser* initialiser = __init_array_start; initialiser != __init_array_end;
         ++initialiser) {
        (*initialiser)();
    }
    std::exit(wWinMain(instance, previousInstance, commandLine, showCommand));
}
}
