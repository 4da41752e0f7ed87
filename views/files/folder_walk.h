// Going through the entries of folders on a walk over a tree.
#pragma once

#include <string>

#include "platform/files.h"
#include "platform/handles.h"

namespace views {

// Told of each entry that a long walk comes to.
class WalkProgress {
 public:
    // Before the entry is touched; a moment to let the screen be drawn. False when the user wants
    // the walk to end here.
    virtual bool OnProgress(const std::wstring& path) = 0;

 protected:
    ~WalkProgress() = default;
};

class FolderWalk {
 public:
    // Throws W32Fault when the folder cannot be read (FindFirstFileW).
    explicit FolderWalk(const std::wstring& pattern);

    // The next entry, valid until the next call; null at the end. Throws W32Fault when the folder
    // cannot be read any further (FindNextFileW).
    const platform::FindData* Next();

 private:
    platform::FindData found_;
    platform::UniqueSearch search_;
    bool first_ = true;
};

// Whether a platform's error says that an entry is not there.
constexpr bool IsGone(DWORD error) {
    return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND;
}

// Whether an entry is a link to a folder elsewhere (a PC's junction, symbolic link or mount point):
// one entry, which no walk enters.
constexpr bool IsFolderLink(DWORD attributes) {
    constexpr DWORD link = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT;
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & link) == link;
}

// Throws W32Fault (ERROR_NOT_SUPPORTED) for a link to a folder where the system would delete or
// move the folder behind it instead.
void RequireOwnLink(const std::wstring& path, DWORD attributes);

// Deletes a folder and all that is in it, whatever its depth, without recursion; of a link the link
// alone. What was deleted before a failure stays deleted. The progress is borrowed and may be null.
// Throws W32Fault (ERROR_CANCELLED) where the user stops it, and at the first failure (DeleteFileW,
// RemoveDirectoryW, FindFirstFileW, ...).
void RecursiveDelete(const std::wstring& folderPath, WalkProgress* progress = nullptr);

}  // namespace views
