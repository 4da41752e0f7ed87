// Reading a folder, and lists whose rows are its entries in the order of Files.
#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "ui/list/list_layout.h"
#include "views/files/file_item.h"
#include "views/files/name_patterns.h"

namespace views {

// The attributes that keep an entry out of a list, for the display options.
DWORD HideMask(DWORD flags);

// Whether a path names an existing folder (GetFileAttributesW).
bool IsExistingFolder(const std::wstring& path);

// The index of a path's icon in the system's small-icon image list (SHGetFileInfo with `flags`
// besides the two for that); -1 when it has none.
int IconOf(const std::wstring& path, DWORD attributes, UINT flags = 0);

// The entries of a folder in the order of Files.
using FileItems = std::vector<FileItemOwner>;

// Reads a folder once (FindFirstFileW, FindNextFileW): the entries that `hideMask` does not hide,
// of its files those whose names match, with their icons (SHGetFileInfo). A folder that cannot be
// read, or no further, gives what could be read. Throws std::bad_alloc.
FileItems ReadFolder(const std::wstring& folder, DWORD hideMask,
                     const NamePatterns& patterns = NamePatterns());

// Puts other rows in the place of all rows of a list, all of them or none. Throws std::bad_alloc.
template <typename List>
void ShowItems(List& list, FileItems items) {
    ui::ItemRecords rows;
    rows.reserve(items.size());
    for (const FileItemOwner& item : items) {
        rows.push_back(ui::ItemRecord{0, 0, reinterpret_cast<ULONG_PTR>(item.get())});
    }
    for (FileItemOwner& item : items) {
        static_cast<void>(item.release());
    }
    list.ReplaceItems(std::move(rows));
    list.Layout();
}

inline FileItem& ItemOf(ULONG_PTR data) {
    return *reinterpret_cast<FileItem*>(data);
}

// The first of `count` items, which `itemAt` gives in their order, that does not order before the
// item. Most file systems give their entries in order, so the end is tried first.
template <typename ItemAt>
unsigned LowerBound(unsigned count, const FileItem& item, ItemAt itemAt) {
    unsigned first = 0;
    if (count > 0 && OrdersBefore(itemAt(count - 1), item)) {
        return count;
    }
    while (count > 0) {
        const unsigned half = count / 2;
        if (OrdersBefore(itemAt(first + half), item)) {
            first += half + 1;
            count -= half + 1;
        } else {
            count = half;
        }
    }
    return first;
}

// The first row of a list that does not order before the item.
template <typename List>
unsigned LowerBound(const List& list, const FileItem& item) {
    return LowerBound(list.GetCount(), item, [&list](unsigned row) -> const FileItem& {
        return ItemOf(list.GetItemData(row));
    });
}

template <typename List>
void InsertSorted(List& list, FileItemOwner item) {
    list.InsertItem(LowerBound(list, *item), reinterpret_cast<ULONG_PTR>(item.get()));
    static_cast<void>(item.release());
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
