#include "platform/coredll.h"

#include "platform/windows.h"

// Exports whose declaration for a PC has another layout or another name.
extern "C" {
HANDLE CeFindFirstFile(const wchar_t*, platform::FindData*) asm("FindFirstFileW");
BOOL CeFindNextFile(HANDLE, platform::FindData*) asm("FindNextFileW");
BOOL EventModify(HANDLE event, DWORD function);
}

namespace platform {

HANDLE FindFirst(const wchar_t* pattern, FindData* data) {
    return CeFindFirstFile(pattern, data);
}

bool FindNext(HANDLE search, FindData* data) {
    // A driver that ends a search without a word must not end it with another call's error.
    SetLastError(ERROR_NO_MORE_FILES);
    return CeFindNextFile(search, data) != FALSE;
}

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

// Without a buffer the call returns the text itself; its length is the word before it.
size_t ResourceString(HINSTANCE module, UINT id, const wchar_t** text) {
    const auto found =
        reinterpret_cast<const wchar_t*>(static_cast<INT_PTR>(LoadStringW(module, id, nullptr, 0)));
    if (!found) {
        return 0;
    }
    *text = found;
    return static_cast<uint16_t>(found[-1]);
}

std::wstring NumberFormat(const wchar_t* plain) {
    std::wstring shown;
    const int needed = GetNumberFormatW(LOCALE_USER_DEFAULT, 0, plain, nullptr, nullptr, 0);
    if (needed > 0) {
        shown.resize(static_cast<size_t>(needed));
        const int length =
            GetNumberFormatW(LOCALE_USER_DEFAULT, 0, plain, nullptr, shown.data(), needed);
        shown.resize(length > 0 ? static_cast<size_t>(length) - 1 : 0);
    }
    return shown;
}

DWORD_PTR FileInfo(const wchar_t* path, DWORD attributes, SHFILEINFOW* info, UINT flags) {
    return SHGetFileInfoW(path, attributes, info, sizeof *info, flags);
}

void FlushDrawing() {}

HFONT SystemFont() {
    return static_cast<HFONT>(GetStockObject(SYSTEM_FONT));
}

bool ScreenRectangle(RECT* rectangle) {
    MONITORINFO monitor = {};
    monitor.cbSize = sizeof monitor;
    if (!GetMonitorInfoW(MonitorFromWindow(nullptr, MONITOR_DEFAULTTONEAREST), &monitor)) {
        return false;
    }
    *rectangle = monitor.rcMonitor;
    return true;
}

LONG OpenMachineKey(const wchar_t* path, REGSAM access, HKEY* key) {
    return RegOpenKeyExW(HKEY_LOCAL_MACHINE, path, 0, access, key);
}

LONG CreateMachineKey(const wchar_t* path, REGSAM access, HKEY* key) {
    DWORD disposition = 0;
    return RegCreateKeyExW(HKEY_LOCAL_MACHINE, path, 0, nullptr, 0, access, nullptr, key,
                           &disposition);
}

}  // namespace platform
