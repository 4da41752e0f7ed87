// What the file operations see of the Files view.
#pragma once

#include <vector>

#include "views/files/file_item.h"
#include "views/files/file_names.h"
#include "views/view.h"

namespace views {

class FileList {
 public:
    virtual Frame& GetFrame() const = 0;
    // The folder that is shown; empty for the root.
    virtual const std::wstring& Folder() const = 0;
    virtual const FileItem& ItemAt(unsigned row) const = 0;
    // The row of an entry, noRow when it has none.
    virtual unsigned RowOf(const FileItem& item) const = 0;
    // Takes a row out; the row that takes its place is selected when it was the selected one.
    virtual void RemoveRow(unsigned row) = 0;
    // Puts an item at its sorted place, in place of the same entry's, and selects it; its row.
    virtual unsigned InsertRow(FileItemOwner item) = 0;
    // Reads the folder anew.
    virtual void Relist() = 0;
    // The same, and selects an entry that has been made or renamed.
    virtual void RelistAndSelect(const std::wstring& name) = 0;
    // The marked rows in ascending order.
    virtual std::vector<unsigned> MarkedRows() const = 0;
    virtual void EndMarking() = 0;
    // Lets the user edit a name over a row; IDOK or IDCANCEL, the name as edited in `name`.
    virtual int EditName(unsigned row, std::wstring* name) = 0;

    // A row's path for the system's calls. Throws W32Fault (ERROR_INVALID_NAME) for one that they
    // take for another entry's.
    virtual std::wstring PathOf(unsigned row) const = 0;

 protected:
    ~FileList() = default;
};

}  // namespace views
