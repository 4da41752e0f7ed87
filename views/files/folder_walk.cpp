#include "views/files/folder_walk.h"

#include <memory>
#include <vector>

#include "faults/fault.h"
#include "platform/files.h"
#include "views/files/file_names.h"

namespace views {

namespace {

// A folder that is being emptied. Its path is the first `length` characters of the walk's path.
struct Level {
    std::unique_ptr<FolderWalk> walk;
    size_t length;
};

void Enter(std::vector<Level>& levels, const std::wstring& path) {
    levels.push_back(Level{std::make_unique<FolderWalk>(path + L"\\*.*"), path.size()});
}

void ThrowUnless(BOOL succeeded) {
    if (!succeeded) {
        throw faults::W32Fault();
    }
}

void RemoveLink(const std::wstring& path) {
    RequireOwnLink(path, FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT);
    ThrowUnless(RemoveDirectoryW(path.c_str()));
}

}  // namespace

FolderWalk::FolderWalk(const std::wstring& pattern)
    : search_(platform::FindFirst(pattern.c_str(), &found_)) {
    if (search_) {
        return;
    }
    const DWORD error = GetLastError();
    if (error != ERROR_NO_MORE_FILES && error != ERROR_FILE_NOT_FOUND) {
        throw faults::W32Fault();
    }
}

const platform::FindData* FolderWalk::Next() {
    if (!search_) {
        return nullptr;
    }
    if (!std::exchange(first_, false) && !platform::FindNext(search_.Get(), &found_)) {
        ThrowUnless(GetLastError() == ERROR_NO_MORE_FILES);
        return nullptr;
    }
    return &found_;
}

void RequireOwnLink(const std::wstring& path, DWORD attributes) {
    if (IsFolderLink(attributes) && !platform::ReachesLink(path)) {
        throw faults::W32Fault(faults::ResultFromError(ERROR_NOT_SUPPORTED));
    }
}

void RecursiveDelete(const std::wstring& folderPath, WalkProgress* progress) {
    // Without its attributes nobody knows whether what is walked lies here or behind a link.
    const DWORD attributesOfTop = GetFileAttributesW(folderPath.c_str());
    ThrowUnless(attributesOfTop != INVALID_FILE_ATTRIBUTES);
    if (IsFolderLink(attributesOfTop)) {
        RemoveLink(folderPath);
        return;
    }
    std::wstring path = folderPath;
    std::vector<Level> levels;
    Enter(levels, path);
    while (!levels.empty()) {
        path.resize(levels.back().length);
        const platform::FindData* const entry = levels.back().walk->Next();
        if (!entry) {
            // A folder that is being read cannot be removed.
            levels.pop_back();
            ThrowUnless(RemoveDirectoryW(path.c_str()));
            continue;
        }
        path += L'\\';
        path += entry->cFileName;
        if (progress && !progress->OnProgress(path)) {
            throw faults::W32Fault(faults::ResultFromError(ERROR_CANCELLED));
        }
        RequireOwnName(path);
        const DWORD attributes = entry->dwFileAttributes;
        if (!(attributes & FILE_ATTRIBUTE_DIRECTORY)) {
            // Kept on purpose: docs/compatibility.md#read-only-stays
            ThrowUnless(DeleteFileW(path.c_str()));
        } else if (IsFolderLink(attributes)) {
            RemoveLink(path);
        } else {
            Enter(levels, path);
        }
    }
}

}  // namespace views
