#include "views/files/folder_walk.h"

#include <memory>
#include <vector>

#include "faults/fault.h"

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

// Throws W32Fault at the first failure.
void DeleteTree(std::wstring path, WalkProgress* progress) {
    std::vector<Level> levels;
    Enter(levels, path);
    while (!levels.empty()) {
        path.resize(levels.back().length);
        const platform::FindData* const entry = levels.back().walk->Next();
        if (!entry) {
            // A folder that is being read cannot be removed.
            levels.pop_back();
            if (!RemoveDirectoryW(path.c_str())) {
                throw faults::W32Fault();
            }
            continue;
        }
        if (progress) {
            progress->OnProgress();
        }
        path += L'\\';
        path += entry->cFileName;
        const DWORD attributes = entry->dwFileAttributes;
        if (!(attributes & FILE_ATTRIBUTE_DIRECTORY)) {
            if (!DeleteFileW(path.c_str())) {
                throw faults::W32Fault();
            }
        } else if (attributes & FILE_ATTRIBUTE_REPARSE_POINT) {
            // A PC's link to a folder elsewhere: the link goes, that folder stays.
            if (!RemoveDirectoryW(path.c_str())) {
                throw faults::W32Fault();
            }
        } else {
            Enter(levels, path);
        }
    }
}

}  // namespace

FolderWalk::FolderWalk(const std::wstring& pattern)
    : search_(platform::FindFirst(pattern.c_str(), &found_)) {
    if (search_ != INVALID_HANDLE_VALUE) {
        return;
    }
    const DWORD error = GetLastError();
    if (error != ERROR_NO_MORE_FILES && error != ERROR_FILE_NOT_FOUND) {
        throw faults::W32Fault();
    }
}

FolderWalk::~FolderWalk() {
    if (search_ != INVALID_HANDLE_VALUE) {
        FindClose(search_);
    }
}

const platform::FindData* FolderWalk::Next() {
    if (search_ == INVALID_HANDLE_VALUE) {
        return nullptr;
    }
    if (!std::exchange(first_, false) && !platform::FindNext(search_, &found_)) {
        if (GetLastError() != ERROR_NO_MORE_FILES) {
            throw faults::W32Fault();
        }
        return nullptr;
    }
    return &found_;
}

bool RecursiveDelete(const std::wstring& folderPath, WalkProgress* progress) {
    try {
        DeleteTree(folderPath, progress);
        return true;
    } catch (const faults::W32Fault& fault) {
        SetLastError(static_cast<DWORD>(fault.Code()) & 0xFFFF);
        return false;
    }
}

}  // namespace views
