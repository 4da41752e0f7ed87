// Files as a handheld and a PC know them differently.
#pragma once

#include <string>
#include <string_view>

#include "platform/windows.h"

namespace platform {

// A folder entry as the find calls give it.
#ifdef UNDER_CE
struct FindData {
    DWORD dwFileAttributes;
    FILETIME ftCreationTime;
    FILETIME ftLastAccessTime;
    FILETIME ftLastWriteTime;
    DWORD nFileSizeHigh;
    DWORD nFileSizeLow;
    DWORD dwOID;
    WCHAR cFileName[MAX_PATH];
};
static_assert(sizeof(FindData) == 560);
#else
using FindData = WIN32_FIND_DATAW;
#endif

// FindFirstFileW, FindNextFileW: entries "." and ".." never appear, nor does what has no name of an
// entry of the folder, as a damaged volume may have it. The first returns INVALID_HANDLE_VALUE on
// failure; the handle is closed with FindClose. A folder that holds nothing else fails with
// ERROR_NO_MORE_FILES, as the second does at a folder's end.
HANDLE FindFirst(const wchar_t* pattern, FindData* data);
bool FindNext(HANDLE search, FindData* data);

// The one spelling under which a path is compared and kept: with one backslash at its beginning,
// none at its end and none doubled, without "." and ".."; the root is empty. A PC's loses the
// letter of the current drive and its short names (GetFullPathNameW, GetLongPathNameW) and keeps
// another drive's; a path that is longer than a path can be is left to the file system to refuse.
// The case of letters stays.
std::wstring CanonicalPath(const std::wstring& path);

// Whether two names or paths are spelt alike by the file system's own rules: letter by letter,
// ignoring case as it does, whatever the user's language (CompareStringOrdinal; CharUpperBuffW on
// a handheld).
bool SameSpelling(std::wstring_view first, std::wstring_view second);

// Whether the file system's calls take a path for the very entry that a listing shows under it. A
// PC's drop dots and blanks at a name's end and take some names for devices (GetFullPathNameW).
bool NamesItself(const std::wstring& path);

// What a path that ends in a link stands for.
enum class Links { Kept, Followed };

// Tells whether two paths are one file or folder: by the file system's own identity where it tells
// one (GetFileInformationByHandle: a volume and an index, on a handheld an object identifier; a
// handheld opens no folders), else by their canonical spellings. False when that cannot be found
// out, with the thread's last error.
bool CompareFiles(const std::wstring& first, const std::wstring& second, Links links, bool* same);

// Whether the system's calls reach a link to a folder itself. Windows's do; Wine's delete and move
// the folder behind it (seen at a handle of CreateFileW with FILE_FLAG_OPEN_REPARSE_POINT).
bool ReachesLink(const std::wstring& path);

// Where a folder lies once every link on the way is followed (GetFinalPathNameByHandleW; a handheld
// has no links). The path itself where that cannot be found out.
std::wstring PathBehindLinks(const std::wstring& folder);

// Makes a link that leads where another one does (DeviceIoControl with its reparse point; a
// handheld has no links). False on failure, with the thread's last error.
bool CopyLink(const std::wstring& source, const std::wstring& destination);

// Renames a file, which takes the place of the destination if there is one (MoveFileExW; a handheld
// deletes the destination first). Both are on one volume. False on failure, with the thread's last
// error.
bool MoveOver(const wchar_t* source, const wchar_t* destination);

}  // namespace platform
