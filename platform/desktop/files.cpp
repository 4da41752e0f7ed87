#include "platform/files.h"

#include "platform/handles.h"

namespace platform {

namespace {

bool Identify(const wchar_t* path, BY_HANDLE_FILE_INFORMATION* identity) {
    const UniqueHandle file(
        CreateFileW(path, 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                    OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    return file.Get() != INVALID_HANDLE_VALUE && GetFileInformationByHandle(file.Get(), identity);
}

}  // namespace

bool CompareFiles(const wchar_t* first, const wchar_t* second, bool* same) {
    BY_HANDLE_FILE_INFORMATION one;
    BY_HANDLE_FILE_INFORMATION other;
    if (!Identify(first, &one) || !Identify(second, &other)) {
        return false;
    }
    *same = one.dwVolumeSerialNumber == other.dwVolumeSerialNumber &&
            one.nFileIndexHigh == other.nFileIndexHigh && one.nFileIndexLow == other.nFileIndexLow;
    return true;
}

bool MoveOver(const wchar_t* source, const wchar_t* destination) {
    return MoveFileExW(source, destination, MOVEFILE_REPLACE_EXISTING) != FALSE;
}

}  // namespace platform
