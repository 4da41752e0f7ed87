// Copies and cuts entries of Files to the clipboard and pastes what is there. Shows its own
// failures.
#pragma once

#include "views/files/entry_rows.h"
#include "views/files/file_transfer.h"

namespace views {

class FileClipboard {
 public:
    // The list is borrowed.
    explicit FileClipboard(FileList& list) : list_(list), rows_(list) {}

    // Put paths on the clipboard, to be copied or moved by whoever pastes them.
    void CopyRows(const std::vector<unsigned>& rows);
    void CutRows(const std::vector<unsigned>& rows);
    void Paste();
    void PasteShortcuts();

 private:
    enum class Effect { Copy, Move };

    void PutPaths(const std::vector<unsigned>& rows, Effect effect);
    // The clipboard is open.
    void PastePaths();
    TransferAnswer PasteOne(FileTransfer& transfer, const std::wstring& source, Effect effect);
    void CreateShortcut(const std::wstring& target);
    HWND Owner() const { return list_.GetFrame().MainWindow(); }

    FileList& list_;
    EntryRows rows_;
};

}  // namespace views
