// Going through the entries of folders on a walk over a tree.
#pragma once

#include <string>

#include "platform/coredll.h"

namespace views {

// Told of each entry that a long walk comes to.
class WalkProgress {
 public:
    // A moment to let the screen be drawn.
    virtual void OnProgress() = 0;

 protected:
    ~WalkProgress() = default;
};

class FolderWalk {
 public:
    // Throws W32Fault when the folder cannot be read (FindFirstFileW).
    explicit FolderWalk(const std::wstring& pattern);
    ~FolderWalk();
    FolderWalk(const FolderWalk&) = delete;
    FolderWalk& operator=(const FolderWalk&) = delete;

    // The next entry, valid until the next call; null at the end. Throws W32Fault when the folder
    // cannot be read any further (FindNextFileW).
    const platform::FindData* Next();

 private:
    platform::FindData found_;
    HANDLE search_;
    bool first_ = true;
};

// Deletes a folder and all that is in it, whatever its depth, without recursion. False at the
// first failure, with the thread's last error; what was deleted before stays deleted.
// The progress is borrowed and may be null.
bool RecursiveDelete(const std::wstring& folderPath, WalkProgress* progress = nullptr);

}  // namespace views
