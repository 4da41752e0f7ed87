#include "platform/files.h"

#include <winioctl.h>

#include <vector>

#include "platform/desktop/paths.h"
#include "platform/handles.h"
#include "platform/search.h"

namespace platform {

namespace {

constexpr DWORD shareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

// The full path as the system takes it; empty where it is longer than a path can be.
std::wstring FullPath(const std::wstring& path) {
    wchar_t buffer[MAX_PATH] = {};
    const DWORD length = GetFullPathNameW(path.c_str(), MAX_PATH, buffer, nullptr);
    return std::wstring(buffer, length < MAX_PATH ? length : 0);
}

// A file or folder itself, or the link that it is; empty with the thread's last error.
UniqueHandle OpenEntry(const std::wstring& path, DWORD access, Links links) {
    const DWORD kept = links == Links::Kept ? FILE_FLAG_OPEN_REPARSE_POINT : 0;
    return UniqueHandle(CreateFileW(path.c_str(), access, shareAll, nullptr, OPEN_EXISTING,
                                    FILE_FLAG_BACKUP_SEMANTICS | kept, nullptr));
}

bool Identify(const std::wstring& path, Links links, BY_HANDLE_FILE_INFORMATION* identity) {
    const UniqueHandle file = OpenEntry(path, 0, links);
    if (!file) {
        return false;
    }
    if (!GetFileInformationByHandle(file.Get(), identity)) {
        *identity = {};
    }
    return true;
}

bool TellsIdentity(const BY_HANDLE_FILE_INFORMATION& identity) {
    return (identity.nFileIndexHigh | identity.nFileIndexLow) != 0;
}

}  // namespace

HANDLE BeginSearch(const wchar_t* pattern, FindData* data) {
    return FindFirstFileW(pattern, data);
}

bool ContinueSearch(HANDLE search, FindData* data) {
    return FindNextFileW(search, data) != FALSE;
}

std::wstring CanonicalPath(const std::wstring& path) {
    const std::wstring full = path.empty() ? path : FullPath(path);
    const std::wstring plain = desktop::FromDesktopPath(full.empty() ? path : full);
    return plain.substr(0, plain.find_last_not_of(L'\\') + 1);
}

bool SameSpelling(std::wstring_view first, std::wstring_view second) {
    return CompareStringOrdinal(first.data(), static_cast<int>(first.size()), second.data(),
                                static_cast<int>(second.size()), TRUE) == CSTR_EQUAL;
}

bool NamesItself(const std::wstring& path) {
    const std::wstring name = path.substr(path.rfind(L'\\') + 1);
    const std::wstring full = FullPath(path);
    if (full.empty()) {
        return name.empty() || (name.back() != L'.' && name.back() != L' ');
    }
    return full.ends_with(L'\\' + name) && !full.starts_with(L"\\\\.\\");
}

bool CompareFiles(const std::wstring& first, const std::wstring& second, Links links, bool* same) {
    BY_HANDLE_FILE_INFORMATION one;
    BY_HANDLE_FILE_INFORMATION other;
    if (!Identify(first, links, &one) || !Identify(second, links, &other)) {
        return false;
    }
    // Spelt in full each path is looked up folder by folder, so only where nothing else tells.
    *same = TellsIdentity(one) && TellsIdentity(other)
                ? one.dwVolumeSerialNumber == other.dwVolumeSerialNumber &&
                      one.nFileIndexHigh == other.nFileIndexHigh &&
                      one.nFileIndexLow == other.nFileIndexLow
                : SameSpelling(CanonicalPath(first), CanonicalPath(second));
    return true;
}

bool ReachesLink(const std::wstring& path) {
    BY_HANDLE_FILE_INFORMATION entry;
    return Identify(path, Links::Kept, &entry) &&
           (entry.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
}

std::wstring PathBehindLinks(const std::wstring& folder) {
    constexpr std::wstring_view prefix = L"\\\\?\\";
    constexpr std::wstring_view elsewhere = L"\\\\?\\UNC";
    wchar_t buffer[MAX_PATH + prefix.size()] = {};
    const UniqueHandle handle = OpenEntry(folder, 0, Links::Followed);
    const DWORD size = static_cast<DWORD>(std::size(buffer));
    const DWORD length =
        handle ? GetFinalPathNameByHandleW(handle.Get(), buffer, size, FILE_NAME_NORMALIZED) : 0;
    const std::wstring path(buffer, length < size ? length : 0);
    if (path.starts_with(elsewhere)) {
        return L'\\' + path.substr(elsewhere.size());
    }
    return path.starts_with(prefix) ? path.substr(prefix.size()) : folder;
}

bool CopyLink(const std::wstring& source, const std::wstring& destination) {
    std::vector<char> point(MAXIMUM_REPARSE_DATA_BUFFER_SIZE);
    DWORD size = 0;
    {
        const UniqueHandle link = OpenEntry(source, FILE_READ_ATTRIBUTES, Links::Kept);
        if (!link || !DeviceIoControl(link.Get(), FSCTL_GET_REPARSE_POINT, nullptr, 0, point.data(),
                                      static_cast<DWORD>(point.size()), &size, nullptr)) {
            return false;
        }
    }
    if (!CreateDirectoryW(destination.c_str(), nullptr)) {
        return false;
    }
    DWORD error = ERROR_SUCCESS;
    {
        DWORD written = 0;
        const UniqueHandle link = OpenEntry(destination, GENERIC_WRITE, Links::Kept);
        if (!link || !DeviceIoControl(link.Get(), FSCTL_SET_REPARSE_POINT, point.data(), size,
                                      nullptr, 0, &written, nullptr)) {
            error = GetLastError();
        }
    }
    if (error != ERROR_SUCCESS) {
        RemoveDirectoryW(destination.c_str());
        SetLastError(error);
    }
    return error == ERROR_SUCCESS;
}

bool MoveOver(const wchar_t* source, const wchar_t* destination) {
    return MoveFileExW(source, destination, MOVEFILE_REPLACE_EXISTING) != FALSE;
}

}  // namespace platform
