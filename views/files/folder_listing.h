// Reading a folder, and lists whose rows are its entries in the order of Files.
#pragma once

#include <algorithm>
#include <string>

#include "ui/list_layout.h"
#include "views/files/file_item.h"

namespace views {

// The attributes that keep an entry out of a list, for the display options.
DWORD HideMask(DWORD flags);

// Cuts the backslashes at a folder's end: the root is the empty string.
void CutTrailingBackslashes(std::wstring& path);

// Whether a path names an existing folder (GetFileAttributesW).
bool IsExistingFolder(const std::wstring& path);

// Goes through a folder's entries once. One that cannot be read, or no further, ends early.
class FolderReader {
 public:
    FolderReader(const std::wstring& folder, DWORD hideMask);
    ~FolderReader();
    FolderReader(const FolderReader&) = delete;
    FolderReader& operator=(const FolderReader&) = delete;

    // The next entry that is not hidden, valid until the next call; null at the end.
    const platform::FindData* Next();
    // The entry that Next gave, with its icon (SHGetFileInfo).
    FileItemOwner MakeItem();

 private:
    platform::FindData found_;
    HANDLE search_;
    DWORD hideMask_;
    bool first_ = true;
    // The folder with a backslash, and room for the names behind it.
    std::wstring child_;
    size_t folderLength_;
};

inline FileItem& ItemOf(ULONG_PTR data) {
    return *reinterpret_cast<FileItem*>(data);
}

// The first row of a list that does not order before the item.
template <typename List>
unsigned LowerBound(const List& list, const FileItem& item) {
    unsigned first = 0;
    unsigned count = list.GetCount();
    // Most file systems give their entries in order, so the end is tried first.
    if (count > 0 && OrdersBefore(ItemOf(list.GetItemData(count - 1)), item)) {
        return count;
    }
    while (count > 0) {
        const unsigned half = count / 2;
        if (OrdersBefore(ItemOf(list.GetItemData(first + half)), item)) {
            first += half + 1;
            count -= half + 1;
        } else {
            count = half;
        }
    }
    return first;
}

template <typename List>
void InsertSorted(List& list, FileItemOwner item) {
    list.InsertItem(LowerBound(list, *item), reinterpret_cast<ULONG_PTR>(item.get()));
    item.release();
}

// The row of an entry equal to the item in the order; noRow when there is none. Of several it is
// the item's own.
template <typename List>
unsigned RowOfItem(const List& list, const FileItem& item) {
    unsigned equal = ui::noRow;
    for (unsigned row = LowerBound(list, item);
         row < list.GetCount() && !OrdersBefore(item, ItemOf(list.GetItemData(row))); ++row) {
        if (IsSameEntry(item, ItemOf(list.GetItemData(row)))) {
            return row;
        }
        equal = std::min(equal, row);
    }
    return equal;
}

// The item's own row; noRow when there is none.
template <typename List>
unsigned RowOfEntry(const List& list, const FileItem& item) {
    const unsigned row = RowOfItem(list, item);
    return row != ui::noRow && IsSameEntry(item, ItemOf(list.GetItemData(row))) ? row : ui::noRow;
}

}  // namespace views
