// Real trees of files as values: made on the device and read back.
#pragma once

#include <map>
#include <string>

#include "views/files/folder_walk.h"

namespace test {

// Paths below a folder, folders with a backslash at their end and no content.
using Tree = std::map<std::wstring, std::string>;

// Makes the entries below an existing folder; parents come first in a map's order.
void MakeTree(const std::wstring& folder, const Tree& tree);
// All that is below a folder, hidden entries too; empty when it is not there.
Tree ReadTree(const std::wstring& folder);

// Deletes a folder as the program does; the error that it ends with, ERROR_SUCCESS when it is gone.
DWORD ErrorOfDelete(const std::wstring& folder, views::WalkProgress* progress = nullptr);

}  // namespace test
