// Renames entries of Files and makes new folders, with a name that the user edits in the row.
// Shows its own failures.
#pragma once

#include "views/files/entry_rows.h"

namespace views {

class NameEditing {
 public:
    // The list is borrowed.
    explicit NameEditing(FileList& list) : list_(list), rows_(list) {}

    void Rename(unsigned row);
    void NewFolder();

 private:
    // Both throw W32Fault.
    void RenameRow(unsigned row);
    void MakeFolder();
    HWND Owner() const { return list_.GetFrame().MainWindow(); }

    FileList& list_;
    EntryRows rows_;
};

}  // namespace views
