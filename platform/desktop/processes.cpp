#include "platform/processes.h"

#include <tlhelp32.h>

#include "platform/desktop/paths.h"
#include "platform/toolhelp.h"

namespace platform {

namespace {

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
        desktop::WithinLimit(std::wstring(path, GetModuleFileNameW(module, path, MAX_PATH)));
    return told.empty() ? told : desktop::WithinLimit(desktop::FromDesktopPath(told));
}

std::wstring desktop::ImagePathOfProcess(unsigned long processId) {
    const UniqueHandle process(OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, processId));
    wchar_t path[MAX_PATH];
    DWORD length = MAX_PATH;
    if (!process || !QueryFullProcessImageNameW(process.Get(), 0, path, &length)) {
        return std::wstring();
    }
    return WithinLimit(FromImagePath(std::wstring(path, length)));
}

std::wstring ProcessPath(DWORD processId) {
    std::wstring path = desktop::ImagePathOfProcess(processId);
    if (path.empty()) {
        const DWORD error = GetLastError();
        path = NameOfProcess(processId);
        SetLastError(error);
    }
    return path;
}

std::wstring PathOfProcess(const ProcessEntry& entry) {
    std::wstring path = desktop::ImagePathOfProcess(entry.processId);
    return path.empty() ? entry.name : path;
}

}  // namespace platform
