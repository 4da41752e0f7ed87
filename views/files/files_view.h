// The Files view: the entries of one folder, folders first.
#pragma once

#include "ui/list/row_editor.h"
#include "views/files/file_operations.h"
#include "views/files/file_rows.h"
#include "views/files/folder_listing.h"
#include "views/files/path_bar.h"
#include "views/list_view.h"

namespace views {

class FilesView final : public ListView, private FileList {
 public:
    // Takes up the folder of the last run if it still exists.
    explicit FilesView(Frame& frame);
    ~FilesView() override;

    void Layout(HDC dc) override;
    bool Activate(const ViewArgument& argument) override;
    bool Deactivate(HDC dc) override;
    void FlagsChanged(DWORD mask, DWORD value) override;
    std::wstring Title() const override;
    void DrawRow(const DRAWITEMSTRUCT& row) override;
    void DeleteRow(ULONG_PTR data) override;
    void Tap(unsigned row) override;
    bool TapsOpen() const override { return true; }
    void UpdateMenu(HMENU menu) override;
    bool Key(WPARAM key) override;
    bool Command(WORD command) override;
    void Refresh() override;
    int RowHeight(ULONG_PTR data) const override;
    void Arrange(const RECT& area) override;
    bool Back() override;
    void MarksChanged() override;
    void Close() override;
    void Focus() override;
    LRESULT Notify(const NMHDR& notification) override;

    // Shows a folder, or a file's folder with the file selected. A path that does not exist leaves
    // the folder as it is; it is listed again in every case. No path lists the current folder.
    void Navigate(const wchar_t* path);
    // Goes to the parent folder and selects the folder that was left; false at the root.
    bool Up();
    // Lists the folder again and selects the entry `name` if it is there.
    void RelistAndSelect(const std::wstring& name) override;

 private:
    // The list as the file operations see it.
    Frame& GetFrame() const override { return ListView::GetFrame(); }
    const std::wstring& Folder() const override { return path_; }
    const FileItem& ItemAt(unsigned row) const override { return ItemOf(List().GetItemData(row)); }
    unsigned RowOf(const FileItem& item) const override { return RowOfEntry(List(), item); }
    void RemoveRow(unsigned row) override;
    unsigned InsertRow(FileItemOwner item) override;
    void Relist() override { Refresh(); }
    std::vector<unsigned> MarkedRows() const override;
    void EndMarking() override { SetMarking(false); }
    int EditName(unsigned row, std::wstring* name) override;

    // The rows that a command is for: the marked ones, or the selected one.
    std::vector<unsigned> ChosenRows() const;
    // Commands for the selected row; they beep without one.
    void OnSelectedRow(WORD command);
    void PlaceEditor();
    // The first row that does not order before the item.
    unsigned LowerBound(const FileItem& item) const;
    // Starts or ends multi-selection, which has a bar of its own.
    void SetMarking(bool marking);
    void RebuildHideMask();
    // Reads a folder and shows it: path, strip, title and rows change together or not at all.
    // Throws std::bad_alloc.
    void ShowFolder(std::wstring folder);
    void RestoreTitle() noexcept;
    void InsertSorted(FileItemOwner item);
    void SelectItem(const FileItem& probe);
    void SelectName(const std::wstring& name, DWORD attributes);
    void Open(unsigned row);
    // Up as a user's action: its faults are shown. False at the root.
    bool GoUp();

    std::wstring path_;
    DWORD hideMask_ = 0;
    FileRows rows_;
    PathBar pathBar_;
    FileOperations operations_{*this};
    // The editor of a name while it is open, and its row.
    ui::RowEditor* editor_ = nullptr;
    unsigned editedRow_ = ui::noRow;
    // What was selected when the view was left.
    std::wstring leftName_;
    DWORD leftAttributes_ = 0;
};

}  // namespace views
