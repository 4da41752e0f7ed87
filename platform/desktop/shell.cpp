#include "platform/shell.h"

#include <shlobj.h>

#include <cstdint>
#include <string>

#include "platform/desktop/paths.h"

namespace platform {

bool OpenFile(const wchar_t* path, const wchar_t* argument) {
    const std::wstring file = desktop::ToDesktopPath(path);
    const std::wstring parameters = argument ? desktop::ToDesktopPath(argument) : std::wstring();
    if (file.size() >= MAX_PATH) {
        SetLastError(ERROR_FILENAME_EXCED_RANGE);
        return false;
    }
    SHELLEXECUTEINFOW info = {};
    info.cbSize = sizeof info;
    info.fMask = SEE_MASK_FLAG_NO_UI;
    info.lpFile = file.c_str();
    info.lpParameters = argument ? parameters.c_str() : nullptr;
    info.nShow = SW_SHOWNORMAL;
    if (ShellExecuteExW(&info)) {
        return true;
    }
    // Wine tells so in the older of the two results only.
    if (reinterpret_cast<INT_PTR>(info.hInstApp) == SE_ERR_NOASSOC) {
        SetLastError(ERROR_NO_ASSOCIATION);
    }
    return false;
}

std::wstring SpecialFolder(HWND owner, int folder) {
    wchar_t path[MAX_PATH] = {};
    return SHGetSpecialFolderPathW(owner, path, folder, FALSE) ? desktop::FromDesktopPath(path)
                                                               : std::wstring();
}

}  // namespace platform
