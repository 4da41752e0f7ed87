#include "platform/shell.h"

#include <objbase.h>
#include <shlobj.h>

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/desktop/paths.h"
#include "platform/desktop/shortcuts.h"

namespace platform {

namespace {

bool ComIsInitialized() {
    APTTYPE type;
    APTTYPEQUALIFIER qualifier;
    return CoGetApartmentType(&type, &qualifier) != CO_E_NOTINITIALIZED;
}

// `parameters` may be empty.
bool Execute(const std::wstring& file, const std::wstring& parameters) {
    if (file.size() >= MAX_PATH) {
        SetLastError(ERROR_FILENAME_EXCED_RANGE);
        return false;
    }
    SHELLEXECUTEINFOW info = {};
    info.cbSize = sizeof info;
    info.fMask = SEE_MASK_FLAG_NO_UI;
    info.lpFile = file.c_str();
    info.lpParameters = parameters.empty() ? nullptr : parameters.c_str();
    info.nShow = SW_SHOWNORMAL;
    const bool comWasInitialized = ComIsInitialized();
    const bool started = ShellExecuteExW(&info) != FALSE;
    DWORD error = GetLastError();
    // Wine's call uninitialises COM once more than it initialises it on a thread of the
    // multithreaded apartment.
    if (comWasInitialized && !ComIsInitialized()) {
        CoInitializeEx(nullptr, COINIT_MULTITHREADED);
    }
    // Wine tells so in the older of the two results only.
    if (!started && reinterpret_cast<INT_PTR>(info.hInstApp) == SE_ERR_NOASSOC) {
        error = ERROR_NO_ASSOCIATION;
    }
    SetLastError(error);
    return started;
}

}  // namespace

bool OpenFile(const wchar_t* path, const wchar_t* argument) {
    const std::wstring file = desktop::ToDesktopPath(path);
    if (Execute(file, argument ? desktop::ToDesktopPath(argument) : std::wstring())) {
        return true;
    }
    // Nor does it follow shortcuts there.
    const DWORD error = GetLastError();
    if (error == ERROR_NO_ASSOCIATION) {
        const auto target = desktop::ReadShortcut(file);
        if (target && !target->path.empty()) {
            return Execute(target->path, target->arguments);
        }
        SetLastError(error);
    }
    return false;
}

std::wstring SpecialFolder(HWND owner, int folder, MissingFolder missing) {
    wchar_t path[MAX_PATH] = {};
    const BOOL create = missing == MissingFolder::Create;
    return SHGetSpecialFolderPathW(owner, path, folder, create) ? desktop::FromDesktopPath(path)
                                                                : std::wstring();
}

DWORD_PTR FileInfo(const wchar_t* path, DWORD attributes, SHFILEINFOW* info, UINT flags) {
    if (!path) {
        return SHGetFileInfoW(L"", attributes, info, sizeof *info, flags | SHGFI_USEFILEATTRIBUTES);
    }
    // A process that does not tell its path has a name alone, which names no file.
    const std::wstring_view file(path);
    if (!(flags & SHGFI_USEFILEATTRIBUTES) && file.find_first_of(L"\\:") == file.npos) {
        SetLastError(ERROR_FILE_NOT_FOUND);
        return 0;
    }
    return SHGetFileInfoW(desktop::ToDesktopPath(path).c_str(), attributes, info, sizeof *info,
                          flags);
}

HWND ShellDesktopWindow() {
    const HWND shell = GetShellWindow();
    return shell ? shell : GetDesktopWindow();
}

}  // namespace platform
