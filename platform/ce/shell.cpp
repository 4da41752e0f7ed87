#include "platform/shell.h"

#include <shlobj.h>

namespace platform {

bool OpenFile(const wchar_t* path, const wchar_t* argument) {
    SHELLEXECUTEINFOW info = {};
    info.cbSize = sizeof info;
    info.fMask = SEE_MASK_FLAG_NO_UI;
    info.lpFile = path;
    info.lpParameters = argument;
    info.nShow = SW_SHOWNORMAL;
    return ShellExecuteExW(&info) != FALSE;
}

std::wstring SpecialFolder(HWND owner, int folder, MissingFolder missing) {
    wchar_t path[MAX_PATH] = {};
    const BOOL create = missing == MissingFolder::Create;
    return SHGetSpecialFolderPathW(owner, path, folder, create) ? path : std::wstring();
}

DWORD_PTR FileInfo(const wchar_t* path, DWORD attributes, SHFILEINFOW* info, UINT flags) {
    return SHGetFileInfoW(path, attributes, info, sizeof *info, flags);
}

HWND ShellDesktopWindow() {
    return FindWindowW(L"DesktopExplorerWindow", L"Desktop");
}

}  // namespace platform
