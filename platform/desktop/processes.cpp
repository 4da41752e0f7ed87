#include "platform/processes.h"

#include <tlhelp32.h>

#include "platform/desktop/paths.h"
#include "platform/toolhelp.h"

namespace platform {

namespace {

// Empty, with the thread's last error, when it is longer than a path can be.
std::wstring Limited(std::wstring path) {
    if (path.size() >= MAX_PATH) {
        SetLastError(ERROR_INSUFFICIENT_BUFFER);
        path.clear();
    }
    return path;
}

// Empty when there is no such process.
std::wstring NameOfProcess(DWORD processId) {
    const UniqueHandle snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
    PROCESSENTRY32W entry = {};
    entry.dwSize = sizeof entry;
    for (BOOL found = Process32FirstW(snapshot.Get(), &entry); found;
         found = Process32NextW(snapshot.Get(), &entry)) {
        if (entry.th32ProcessID == processId) {
            return entry.szExeFile;
        }
    }
    return std::wstring();
}

}  // namespace

const wchar_t* CommandLineArguments() {
    const wchar_t* rest = GetCommandLineW();
    const wchar_t end = *rest == L'"' ? L'"' : L' ';
    if (*rest == L'"') {
        ++rest;
    }
    while (*rest && *rest != end) {
        ++rest;
    }
    if (*rest == L'"') {
        ++rest;
    }
    return *rest == L' ' ? rest + 1 : rest;
}

bool StartProgram(const wchar_t* path) {
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process = {};
    if (!CreateProcessW(path, nullptr, nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                        &process)) {
        return false;
    }
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    return true;
}

bool SignalEvent(HANDLE event) {
    return SetEvent(event) != FALSE;
}

std::wstring ModulePath(HMODULE module) {
    wchar_t path[MAX_PATH];
    const std::wstring told =
        Limited(std::wstring(path, GetModuleFileNameW(module, path, MAX_PATH)));
    return told.empty() ? told : Limited(desktop::FromDesktopPath(told));
}

std::wstring ProcessPath(DWORD processId) {
    const UniqueHandle process(OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, processId));
    wchar_t path[MAX_PATH];
    DWORD length = MAX_PATH;
    if (process && QueryFullProcessImageNameW(process.Get(), 0, path, &length)) {
        return Limited(desktop::FromImagePath(std::wstring(path, length)));
    }
    const DWORD error = GetLastError();
    std::wstring name = NameOfProcess(processId);
    if (name.empty()) {
        SetLastError(error);
    }
    return name;
}

}  // namespace platform
