// One entry of a folder as a row of the Files view.
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

#include "platform/files.h"

namespace views {

// Kept in one block together with its name, since a folder may hold many thousands.
struct FileItem {
    uint64_t size;
    FILETIME created;
    DWORD attributes;
    // Index into the system's small-icon image list, -1 for none, unknownIcon until it is asked
    // for.
    int32_t iconIndex;
    // NUL-terminated, longer than declared.
    wchar_t name[1];

    bool IsFolder() const { return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0; }
};

struct DeleteFileItem {
    void operator()(FileItem* item) const { ::operator delete(item); }
};
using FileItemOwner = std::unique_ptr<FileItem, DeleteFileItem>;

// Throws std::bad_alloc.
FileItemOwner MakeFileItem(std::wstring_view name, DWORD attributes, FILETIME created,
                           uint64_t size);
// `name` is the one that was found.
FileItemOwner MakeFileItem(const platform::FindData& found, std::wstring_view name);

// Whether two items are one entry: both folders or both files, and of one name as the file system
// compares names. The locale's order finds some different names equal, of which one with a sharp s
// and one with two s are both found in folders.
bool IsSameEntry(const FileItem& first, const FileItem& second);

// Folders before files, each in the locale's order ignoring case (CompareStringW).
bool OrdersBefore(const FileItem& first, const FileItem& second);

}  // namespace views
