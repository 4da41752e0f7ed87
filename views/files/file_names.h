// The rules about the names of files and folders.
#pragma once

#include <string>
#include <string_view>

namespace views {

// What stands behind a path's last backslash.
std::wstring_view NameOfPath(std::wstring_view path);

// What stands before it: the folder, empty for the root.
std::wstring_view FolderOfPath(std::wstring_view path);

// A folder's path as it is shown and as the system takes it: the root, an empty path, is "\".
inline std::wstring TextOfFolder(const std::wstring& path) {
    return path.empty() ? L"\\" : path;
}

// Whether a folder's path begins with the path of another, letter by letter: "\AB" counts as
// lying within "\A".
bool BeginsWithPath(std::wstring_view folder, std::wstring_view other);

// Whether two paths are one file or folder; not when that cannot be found out. A link is the one
// that it is, not the one it leads to.
bool IsSameFile(const std::wstring& first, const std::wstring& second);

// Whether two folder paths lead to one folder, be it through a link.
bool IsSameFolder(const std::wstring& first, const std::wstring& second);

// Whether a folder, or one that it lies in, is another one under a different spelling or behind a
// link.
bool LiesWithin(const std::wstring& folder, const std::wstring& other);

// The name under which the disk has an entry (FindFirstFileW): its own letter case, without what
// the system drops. The path's own name when the entry cannot be found.
std::wstring NameOnDisk(const std::wstring& path);

// A path's canonical spelling with the names that the disk has.
std::wstring PathOnDisk(const std::wstring& path);

// Throws W32Fault (ERROR_INVALID_NAME) for a path that the system takes for another entry's.
void RequireOwnName(const std::wstring& path);

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
