#include "views/files/folder_listing.h"

#include "views/display_flags.h"

namespace views {

DWORD HideMask(DWORD flags) {
    DWORD mask = 0;
    if (!(flags & flagShowSystem)) {
        mask |= FILE_ATTRIBUTE_SYSTEM;
    }
    if (!(flags & flagShowHidden)) {
        mask |= FILE_ATTRIBUTE_HIDDEN;
    }
    return mask;
}

void CutTrailingBackslashes(std::wstring& path) {
    while (!path.empty() && path.back() == L'\\') {
        path.pop_back();
    }
}

bool IsExistingFolder(const std::wstring& path) {
    const DWORD attributes = GetFileAttributesW(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY);
}

FolderReader::FolderReader(const std::wstring& folder, DWORD hideMask)
    : search_(platform::FindFirst((folder + L"\\*").c_str(), &found_)),
      hideMask_(hideMask),
      child_(folder + L"\\"),
      folderLength_(child_.size()) {}

FolderReader::~FolderReader() {
    if (search_ != INVALID_HANDLE_VALUE) {
        FindClose(search_);
    }
}

const platform::FindData* FolderReader::Next() {
    if (search_ == INVALID_HANDLE_VALUE) {
        return nullptr;
    }
    do {
        if (!first_ && !platform::FindNext(search_, &found_)) {
            return nullptr;
        }
        first_ = false;
    } while (found_.dwFileAttributes & hideMask_);
    return &found_;
}

FileItemOwner FolderReader::MakeItem() {
    FileItemOwner item = MakeFileItem(found_);
    child_.resize(folderLength_);
    child_ += item->name;
    SHFILEINFOW info;
    if (platform::FileInfo(child_.c_str(), item->attributes, &info,
                           SHGFI_SYSICONINDEX | SHGFI_SMALLICON)) {
        item->iconIndex = info.iIcon;
    }
    return item;
}

}  // namespace views
