// Brings the rows of Files up to date with what an operation has done to the disk.
#pragma once

#include <new>
#include <string>

#include "views/files/file_list.h"

namespace views {

class EntryRows {
 public:
    // The list is borrowed.
    explicit EntryRows(FileList& list) : list_(list) {}

    // Runs `update`, after the disk has changed. Where memory is short for it all rows are read
    // anew: what has been done is done.
    template <typename Update>
    void Follow(Update update) {
        try {
            update();
        } catch (const std::bad_alloc&) {
            ReadAnew();
        }
    }
    // Reads all rows anew. What fails is done once more: rows of what has gone must not stay.
    void ReadAnew();

    // Gives an entry of the list's folder its row; false when it cannot be read, with the thread's
    // last error (GetFileAttributesExW).
    bool Show(const std::wstring& path);
    // Shows an item as an entry's row.
    void Show(FileItemOwner item, int iconIndex);
    // Brings the row of an entry up to date, or removes it when the entry has gone. `attributes`
    // are those that it had.
    void Update(const std::wstring& path, DWORD attributes);
    void Remove(const FileItem& item);

    // The item of an entry as it is now, under the name that the disk has; null when it cannot be
    // read, with the thread's last error.
    static FileItemOwner Read(const std::wstring& path);

 private:
    FileList& list_;
};

// A copy of an item that outlives its row.
FileItemOwner CopyOf(const FileItem& item);

}  // namespace views
