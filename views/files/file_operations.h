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
    Removal DeletePath(const std::wstring& path, DWORD attributes, DWORD error, bool several);
    void DeleteMarkedRows(const std::vector<unsigned>& rows);
    void RenameRow(unsigned row);
    void MakeFolder();
    void PutPaths(const std::vector<unsigned>& rows, Effect effect);
    void PasteFromClipboard();
    TransferAnswer PasteOne(FileTransfer& transfer, const std::wstring& source, bool move);
    // Brings the row of an entry of the list's folder up to date, or removes it when the entry has
    // gone.
    void UpdateEntry(const std::wstring& path, DWORD attributes);
    void CreateShortcut(const std::wstring& target);
    // Gives an entry of the list's folder its row; false when it cannot be read, with the thread's
    // last error.
    bool ShowEntry(const std::wstring& path);
    void ShowItem(FileItemOwner item, int iconIndex);
    // The item of an entry as it is now, under the name that the disk has; null when it cannot be
    // read, with the thread's last error (GetFileAttributesExW).
    static FileItemOwner ReadItem(const std::wstring& path);
    void RemoveRowOf(const FileItem& item);
    // Brings rows up to date after the disk has changed: for want of memory all of them are read
    // anew, as what has been done is done.
    template <typename Update>
    void UpdateRows(Update update);

    HWND Owner() const { return list_.GetFrame().MainWindow(); }
    bool Confirm(UINT text, const std::wstring& insert) const;

    TransferAnswer AskConflict(const std::wstring& name, bool folder, bool topLevel) override;
    void TellOtherKind(const std::wstring& name, bool sourceIsFolder) override;
    TransferAnswer AskAfterFailure(const std::wstring& source, const std::wstring& destination,
                                   bool moving, FailedEntry entry) override;
    void OnProgress() override;

    FileList& list_;
    DWORD lastPainted_ = 0;
};

}  // namespace views
