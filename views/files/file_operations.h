// The commands of the Files view that change files: delete, rename, new folder, and the clipboard.
// Each shows its own failures.
#pragma once

#include "views/files/file_list.h"
#include "views/files/file_transfer.h"

namespace views {

class FileOperations final : private TransferPrompts {
 public:
    // The list is borrowed.
    explicit FileOperations(FileList& list) : list_(list) {}

    void Delete(unsigned row);
    void DeleteMarked();
    void Rename(unsigned row);
    void NewFolder();
    // Puts paths on the clipboard, to be copied or moved by whoever pastes them.
    void CopyRows(const std::vector<unsigned>& rows);
    void CutRows(const std::vector<unsigned>& rows);
    void Paste();
    void PasteShortcuts();

 private:
    enum class Removal { Removed, Kept, Stopped };
    enum class Effect { Copy, Move };

    // Throws W32Fault.
    void DeleteRow(unsigned row);
    Removal DeletePath(const std::wstring& path, DWORD error, bool several);
    void DeleteMarkedRows(const std::vector<unsigned>& rows);
    void RenameRow(unsigned row);
    void MakeFolder();
    void PutPaths(const std::vector<unsigned>& rows, Effect effect);
    TransferAnswer PasteOne(FileTransfer& transfer, const std::wstring& source, bool move);
    // Brings the row of an entry of the list's folder up to date, or removes it.
    void ShowEntry(const std::wstring& path, DWORD attributes);
    void CreateShortcut(const std::wstring& target);
    // The item of an entry of the list's folder as it is now, with its icon; null when it cannot
    // be read.
    FileItemOwner ReadItem(const std::wstring& name) const;
    void RemoveRowOf(const FileItem& item);

    HWND Owner() const { return list_.GetFrame().MainWindow(); }
    bool Confirm(UINT text, const std::wstring& insert) const;

    TransferAnswer AskConflict(const std::wstring& name, bool folder, bool topLevel) override;
    void TellOtherKind(const std::wstring& name, bool sourceIsFolder) override;
    TransferAnswer AskAfterFailure(const std::wstring& source, const std::wstring& destination,
                                   bool moving) override;
    void OnProgress() override;

    FileList& list_;
    DWORD lastPainted_ = 0;
};

}  // namespace views
