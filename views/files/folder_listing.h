// Reading a folder for a list of its entries.
#pragma once

#include <string>

#include "ui/list/row_list.h"
#include "views/files/file_item.h"
#include "views/files/name_patterns.h"

namespace views {

// The attributes that keep an entry out of a list, for the display options.
DWORD HideMask(DWORD flags);

// Whether a path names an existing folder (GetFileAttributesW).
bool IsExistingFolder(const std::wstring& path);

using FileItems = ui::RowBatch<FileItem, FileItemOwner>;

// Reads a folder once (FindFirstFileW, FindNextFileW), in the file system's order: the entries that
// `hideMask` does not hide, of its files those whose names match. Their icons are not known yet.
// A folder that cannot be read, or no further, gives what could be read. Throws std::bad_alloc.
FileItems ReadFolder(const std::wstring& folder, DWORD hideMask, const NamePatterns& patterns);

}  // namespace views
