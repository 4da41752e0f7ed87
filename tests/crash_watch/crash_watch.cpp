// Loaded into the program under test by the test that starts it: tells of a crash in the file that
// the environment names, and goes along into the program that is started in its place.
#include "tests/support/crash.h"
#include "tests/support/loaded_library.h"
#include "tests/support/platform_hook.h"

namespace {

HMODULE own = nullptr;
decltype(&CreateProcessW) startProcess = nullptr;

BOOL WINAPI StartAndWatch(const wchar_t* path, wchar_t* command, SECURITY_ATTRIBUTES* process,
                          SECURITY_ATTRIBUTES* thread, BOOL inherits, DWORD flags,
                          void* environment, const wchar_t* folder, STARTUPINFOW* startup,
                          PROCESS_INFORMATION* information) {
    const BOOL started = startProcess(path, command, process, thread, inherits, flags, environment,
                                      folder, startup, information);
    const DWORD error = GetLastError();
    wchar_t library[MAX_PATH];
    if (started && GetModuleFileNameW(own, library, MAX_PATH)) {
        test::LoadInto(information->hProcess, library);
    }
    SetLastError(error);
    return started;
}

}  // namespace

BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, void*) {
    if (reason != DLL_PROCESS_ATTACH) {
        return TRUE;
    }
    own = instance;
    if (!test::EndWhenCrashedAndTellWhoStarted()) {
        return FALSE;
    }
    if (void** const slot = test::FindImport("CreateProcessW")) {
        startProcess = reinterpret_cast<decltype(startProcess)>(*slot);
        test::SetImport(slot, reinterpret_cast<void*>(StartAndWatch));
    }
    return TRUE;
}
