#include "views/files/file_item.h"

#include <cstring>
#include <new>

#include "platform/files.h"
#include "views/system_icons.h"

namespace views {

FileItemOwner MakeFileItem(std::wstring_view name, DWORD attributes, FILETIME created,
                           uint64_t size) {
    const size_t bytes = offsetof(FileItem, name) + (name.size() + 1) * sizeof(wchar_t);
    FileItemOwner item(static_cast<FileItem*>(::operator new(bytes)));
    item->size = size;
    item->created = created;
    item->attributes = attributes;
    item->iconIndex = unknownIcon;
    std::memcpy(item->name, name.data(), name.size() * sizeof(wchar_t));
    item->name[name.size()] = 0;
    return item;
}

FileItemOwner MakeFileItem(const platform::FindData& found, std::wstring_view name) {
    return MakeFileItem(name, found.dwFileAttributes, found.ftCreationTime,
                        static_cast<uint64_t>(found.nFileSizeHigh) << 32 | found.nFileSizeLow);
}

bool IsSameEntry(const FileItem& first, const FileItem& second) {
    return first.IsFolder() == second.IsFolder() && platform::SameSpelling(first.name, second.name);
}

bool OrdersBefore(const FileItem& first, const FileItem& second) {
    if (first.IsFolder() != second.IsFolder()) {
        return first.IsFolder();
    }
    return CompareStringW(LOCALE_USER_DEFAULT, NORM_IGNORECASE, first.name, -1, second.name, -1) ==
           CSTR_LESS_THAN;
}

}  // namespace views
