#include "views/files/entry_rows.h"

#include "ui/list/list_layout.h"
#include "views/files/file_names.h"
#include "views/files/folder_walk.h"

namespace views {

FileItemOwner EntryRows::Read(const std::wstring& path) {
    WIN32_FILE_ATTRIBUTE_DATA data;
    if (!GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &data)) {
        return nullptr;
    }
    return MakeFileItem(NameOnDisk(path), data.dwFileAttributes, data.ftCreationTime,
                        static_cast<uint64_t>(data.nFileSizeHigh) << 32 | data.nFileSizeLow);
}

void EntryRows::ReadAnew() {
    try {
        list_.Relist();
    } catch (...) {
        list_.Relist();
    }
}

bool EntryRows::Show(const std::wstring& path) {
    FileItemOwner item = Read(path);
    if (!item) {
        return false;
    }
    list_.InsertRow(std::move(item));
    return true;
}

void EntryRows::Show(FileItemOwner item, int iconIndex) {
    item->iconIndex = iconIndex;
    list_.InsertRow(std::move(item));
}

void EntryRows::Update(const std::wstring& path, DWORD attributes) {
    if (!Show(path) && IsGone(GetLastError())) {
        Remove(*MakeFileItem(NameOfPath(path), attributes, FILETIME{}, 0));
    }
}

void EntryRows::Remove(const FileItem& item) {
    const unsigned row = list_.RowOf(item);
    if (row != ui::noRow) {
        list_.RemoveRow(row);
    }
}

FileItemOwner CopyOf(const FileItem& item) {
    return MakeFileItem(item.name, item.attributes, item.created, item.size);
}

}  // namespace views
