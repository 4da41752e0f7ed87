// The rules about the names of files and folders.
#pragma once

#include <string>
#include <string_view>

namespace views {

// What stands behind a path's last backslash.
std::wstring_view NameOfPath(std::wstring_view path);

// What stands before it: the folder, empty for the root.
std::wstring_view FolderOfPath(std::wstring_view path);

// Whether two names or paths differ in nothing but the case of letters (CompareStringW).
bool SameName(std::wstring_view first, std::wstring_view second);

// Whether a folder's path begins with the path of another, letter by letter: "\AB" counts as
// lying within "\A".
bool BeginsWithPath(std::wstring_view folder, std::wstring_view other);

// A name without and from its extension's dot on.
struct NameParts {
    std::wstring base;
    std::wstring extension;
};

// The parts of the name that a copy beside its original gets. A folder's name has no extension,
// nor has one whose extension begins with the digit 0. Throws std::out_of_range for a file's name
// without a dot.
NameParts SplitForCopy(const std::wstring& name, bool folder);

// "New Folder", or "New Folder 1" to "New Folder 255", whichever does not exist first
// (GetFileAttributesW). Throws W32Fault (ERROR_INVALID_NAME) when all of them do.
std::wstring UniqueFolderName(const std::wstring& folder);

// The path of a copy of the entry `name` in its own folder: "report - Copy.txt", then
// "report.txt - Copy (1).txt" to "(255)". Throws as the two above.
std::wstring UniqueCopyPath(const std::wstring& folder, const std::wstring& name, bool isFolder);

}  // namespace views
