// Deletes what the user has chosen in Files, after asking. Shows its own failures.
#pragma once

#include "views/files/entry_rows.h"
#include "views/files/work_progress.h"

namespace views {

class FileDeletion {
 public:
    // The list is borrowed.
    explicit FileDeletion(FileList& list) : list_(list), rows_(list) {}

    void Delete(unsigned row);
    // Deletes the marked rows, at least one, and ends multi-selection.
    void DeleteMarked();

 private:
    enum class Removal { Removed, Kept, Stopped };
    // How many entries are being deleted.
    enum class Extent { One, Several };
    // Throws W32Fault.
    void DeleteRow(unsigned row);
    void DeletePaths(const std::vector<std::wstring>& paths);
    // What becomes of an entry whose deletion ended with `result`, asking again where another
    // program uses it. `attributes` are the entry's, INVALID_FILE_ATTRIBUTES when nobody knows
    // them. Throws W32Fault for what stays without the user's wish.
    Removal Finish(const std::wstring& path, DWORD attributes, HRESULT result, Extent extent,
                   WorkProgress& progress);
    // Deletes a file, or a folder with all that is in it. The code of the fault that ended this,
    // S_OK when the entry is gone.
    HRESULT Remove(const std::wstring& path, DWORD attributes, WorkProgress& progress);
    // The same after applications have been closed: a process gives its files back only a little
    // after its windows are gone.
    HRESULT RemoveOnceFree(const std::wstring& path, DWORD attributes, WorkProgress& progress);
    HWND Owner() const { return list_.GetFrame().MainWindow(); }

    FileList& list_;
    EntryRows rows_;
};

}  // namespace views
