#include "platform/processes.h"

extern "C" BOOL EventModify(HANDLE event, DWORD function);

namespace platform {

const wchar_t* CommandLineArguments() {
    return GetCommandLineW();
}

bool StartProgram(const wchar_t* path) {
    PROCESS_INFORMATION process = {};
    if (!CreateProcessW(path, nullptr, nullptr, nullptr, FALSE, 0, nullptr, nullptr, nullptr,
                        &process)) {
        return false;
    }
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    return true;
}

bool SignalEvent(HANDLE event) {
    constexpr DWORD eventSet = 3;
    return EventModify(event, eventSet) != FALSE;
}

std::wstring ModulePath(HMODULE module) {
    wchar_t path[MAX_PATH];
    return std::wstring(path, GetModuleFileNameW(module, path, MAX_PATH));
}

std::wstring ProcessPath(DWORD processId) {
    return ModulePath(reinterpret_cast<HMODULE>(processId));
}

}  // namespace platform
