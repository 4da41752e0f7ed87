#include "platform/coredll.h"

#include <tlhelp32.h>

#include <string>

#include "platform/desktop/paths.h"
#include "platform/desktop/screen.h"
#include "platform/handles.h"

namespace platform {

namespace {

bool IsDotEntry(const wchar_t* name) {
    return name[0] == L'.' && (name[1] == 0 || (name[1] == L'.' && name[2] == 0));
}

// A locale's digit groups ("3;0", "3;2;0") as NUMBERFMTW counts them (3, 32).
UINT GroupingNumber(const wchar_t* groups) {
    UINT number = 0;
    bool repeats = false;
    for (; *groups; ++groups) {
        if (*groups >= L'1' && *groups <= L'9') {
            number = number * 10 + static_cast<UINT>(*groups - L'0');
        } else if (*groups == L'0') {
            repeats = true;
        }
    }
    return repeats ? number : number * 10;
}

UINT LocaleNumber(LCTYPE type) {
    DWORD value = 0;
    GetLocaleInfoW(LOCALE_USER_DEFAULT, type | LOCALE_RETURN_NUMBER,
                   reinterpret_cast<wchar_t*>(&value), sizeof value / sizeof(wchar_t));
    return value;
}

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

HANDLE FindFirst(const wchar_t* pattern, FindData* data) {
    const HANDLE search = FindFirstFileW(pattern, data);
    if (search == INVALID_HANDLE_VALUE || !IsDotEntry(data->cFileName) || FindNext(search, data)) {
        return search;
    }
    const DWORD error = GetLastError();
    FindClose(search);
    SetLastError(error);
    return INVALID_HANDLE_VALUE;
}

bool FindNext(HANDLE search, FindData* data) {
    while (FindNextFileW(search, data)) {
        if (!IsDotEntry(data->cFileName)) {
            return true;
        }
    }
    return false;
}

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
    const std::wstring name = NameOfProcess(processId);
    if (name.empty()) {
        SetLastError(error);
    }
    return name;
}

size_t ResourceString(HINSTANCE module, UINT id, const wchar_t** text) {
    const wchar_t* found = nullptr;
    const int length = LoadStringW(module, id, reinterpret_cast<wchar_t*>(&found), 0);
    if (length <= 0 || !found) {
        return 0;
    }
    *text = found;
    return static_cast<size_t>(length);
}

// Wine's default format groups the digits only once, so the locale's format is given in full.
std::wstring NumberFormat(const wchar_t* plain) {
    // As it stands in the plain text, where the locale does not tell its own.
    wchar_t decimal[8] = L".";
    wchar_t group[8] = {};
    wchar_t groups[16] = {};
    GetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SDECIMAL, decimal, 8);
    if (!GetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_STHOUSAND, group, 8) ||
        !GetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SGROUPING, groups, 16)) {
        return std::wstring();
    }
    NUMBERFMTW format = {};
    format.NumDigits = LocaleNumber(LOCALE_IDIGITS);
    format.LeadingZero = LocaleNumber(LOCALE_ILZERO);
    format.Grouping = GroupingNumber(groups);
    format.lpDecimalSep = decimal;
    format.lpThousandSep = group;
    format.NegativeOrder = LocaleNumber(LOCALE_INEGNUMBER);
    const int needed = GetNumberFormatW(LOCALE_USER_DEFAULT, 0, plain, &format, nullptr, 0);
    std::wstring shown;
    if (needed > 0) {
        shown.resize(static_cast<size_t>(needed));
        const int length =
            GetNumberFormatW(LOCALE_USER_DEFAULT, 0, plain, &format, shown.data(), needed);
        shown.resize(length > 0 ? static_cast<size_t>(length) - 1 : 0);
    }
    return shown;
}

DWORD_PTR FileInfo(const wchar_t* path, DWORD attributes, SHFILEINFOW* info, UINT flags) {
    if (!path) {
        return SHGetFileInfoW(L"", attributes, info, sizeof *info, flags | SHGFI_USEFILEATTRIBUTES);
    }
    return SHGetFileInfoW(desktop::ToDesktopPath(path).c_str(), attributes, info, sizeof *info,
                          flags);
}

void FlushDrawing() {
    GdiFlush();
}

HFONT SystemFont() {
    static const UniqueFont font(desktop::CreateSystemFont());
    return font ? font.Get() : static_cast<HFONT>(GetStockObject(SYSTEM_FONT));
}

bool ScreenRectangle(RECT* rectangle) {
    return desktop::ScreenRectangle(rectangle);
}

LONG OpenMachineKey(const wchar_t* path, REGSAM access, HKEY* key) {
    if (RegOpenKeyExW(HKEY_CURRENT_USER, path, 0, access, key) == ERROR_SUCCESS) {
        return ERROR_SUCCESS;
    }
    return RegOpenKeyExW(HKEY_LOCAL_MACHINE, path, 0, access, key);
}

LONG CreateMachineKey(const wchar_t* path, REGSAM access, HKEY* key) {
    if (RegOpenKeyExW(HKEY_CURRENT_USER, path, 0, access, key) == ERROR_SUCCESS) {
        return ERROR_SUCCESS;
    }
    const LONG result =
        RegCreateKeyExW(HKEY_LOCAL_MACHINE, path, 0, nullptr, 0, access, nullptr, key, nullptr);
    if (result != ERROR_ACCESS_DENIED) {
        return result;
    }
    return RegCreateKeyExW(HKEY_CURRENT_USER, path, 0, nullptr, 0, access, nullptr, key, nullptr);
}

}  // namespace platform
