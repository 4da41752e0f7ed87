#include "platform/desktop/paths.h"

#include <utility>

#include "platform/windows.h"

namespace platform::desktop {

namespace {

// The current drive as "C:", empty when the current folder has no drive letter.
std::wstring CurrentDrive() {
    wchar_t folder[MAX_PATH] = {};
    const DWORD length = GetCurrentDirectoryW(MAX_PATH, folder);
    if (length < 2 || length >= MAX_PATH || folder[1] != L':') {
        return std::wstring();
    }
    return std::wstring(folder, 2);
}

bool SameDrive(const std::wstring& path, const std::wstring& drive) {
    return drive.size() == 2 && path.size() >= 2 && path[1] == L':' &&
           CompareStringW(LOCALE_INVARIANT, NORM_IGNORECASE, path.c_str(), 1, drive.c_str(), 1) ==
               CSTR_EQUAL;
}

std::wstring WithoutCurrentDrive(std::wstring path) {
    if (SameDrive(path, CurrentDrive())) {
        path.erase(0, 2);
    }
    return path;
}

}  // namespace

std::wstring FromDesktopPath(const std::wstring& path) {
    // What is longer than a path can be has no entry to expand; Wine's call overruns on it.
    if (path.size() >= MAX_PATH) {
        return WithoutCurrentDrive(path);
    }
    std::wstring expanded(MAX_PATH, L'\0');
    const auto expand = [&] {
        return GetLongPathNameW(path.c_str(), expanded.data(), static_cast<DWORD>(expanded.size()));
    };
    DWORD length = expand();
    if (length > expanded.size()) {
        expanded.resize(length);
        length = expand();
    }
    if (length == 0 || length >= expanded.size()) {
        return WithoutCurrentDrive(path);
    }
    expanded.resize(length);
    return WithoutCurrentDrive(std::move(expanded));
}

std::wstring FromImagePath(const std::wstring& path) {
    return path.find(L'~') == std::wstring::npos ? WithoutCurrentDrive(path)
                                                 : FromDesktopPath(path);
}

std::wstring WithinLimit(std::wstring path) {
    if (path.size() >= MAX_PATH) {
        SetLastError(ERROR_INSUFFICIENT_BUFFER);
        path.clear();
    }
    return path;
}

std::wstring ToDesktopPath(const std::wstring& path) {
    // An entry of the root may be written with two backslashes; another computer's path has more.
    const bool doubled = path.starts_with(L"\\\\");
    if (!path.empty() && (path[0] != L'\\' || (doubled && path.find(L'\\', 2) != path.npos))) {
        return path;
    }
    return CurrentDrive() + (path.empty() ? L"\\" : path.substr(doubled ? 1 : 0));
}

}  // namespace platform::desktop
