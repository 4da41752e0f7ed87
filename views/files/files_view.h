// The Files view: the entries of one folder, folders first.
#pragma once

#include "ui/list/row_editor.h"
#include "views/files/file_clipboard.h"
#include "views/files/file_deletion.h"
#include "views/files/folder_browser.h"
#include "views/files/name_editing.h"
#include "views/list_view.h"

namespace views {

class FilesView final : public ListView, private FileList, private FolderBrowserOwner {
 public:
    // Takes up the folder of the last run if it still exists.
    explicit FilesView(Frame& frame);

    void Layout(HDC dc) override;
    bool Activate(const ViewArgument& argument) override;
    bool Deactivate(HDC dc) override;
    void FlagsChanged(DWORD mask, DWORD value) override;
    std::wstring Title() const override;
    void UpdateMenu(HMENU menu) override;
    bool Key(WPARAM key) override;
    bool Command(WORD command) override;
    void Refresh() override;
    void Arrange(const RECT& area) override;
    bool Back() override;
    void Close() override;
    void Focus() override;
    std::span<const KeyEntry> Keys() const override;

    // Shows a folder, or a file's folder with the file selected. A path that does not exist leaves
    // the folder as it is; it is listed again in every case. No path lists the current folder.
    void Navigate(const wchar_t* path);
    // Goes to the parent folder and selects the folder that was left; false at the root.
    bool Up() { return browser_.Up(); }
    // Lists the folder again and selects the entry `name` if it is there.
    void RelistAndSelect(const std::wstring& name) override;

 private:
    static const CommandEntry<FilesView> commands[];

    // The list as the file operations see it.
    Frame& GetFrame() const override { return ListView::GetFrame(); }
    const std::wstring& Folder() const override { return browser_.Folder(); }
    const FileItem& ItemAt(unsigned row) const override { return browser_.Rows()[row]; }
    unsigned RowOf(const FileItem& item) const override { return browser_.RowOf(item); }
    std::wstring PathOf(unsigned row) const override { return browser_.PathOf(row); }
    void RemoveRow(unsigned row) override;
    unsigned InsertRow(FileItemOwner item) override;
    void Relist() override { Refresh(); }
    std::vector<unsigned> MarkedRows() const override { return browser_.Rows().MarkedRows(); }
    void EndMarking() override { SetMarking(false); }
    int EditName(unsigned row, std::wstring* name) override;

    // What list and strip tell.
    bool MaySelect() override { return !editor_; }
    void OnSelected() override;
    void OnActivated(unsigned row) override;
    bool OpensRows() const override { return true; }
    bool OnKey(WPARAM key) override { return editor_ || ListView::OnKey(key); }
    void OnMouseBack() override { GoUp(); }
    std::wstring_view RowName(unsigned row) const override { return ItemAt(row).name; }
    bool Allows(WORD command) const override;
    void Give(WORD command) override;
    void OnMarksChanged() override;
    DWORD RowFlags() const override { return GetFrame().Flags(); }
    void OnFolderChanging() override { GetFrame().TitleChanged(); }
    void OnFolderShown() override;
    void OnLeave() override { GoUp(); }

    // The commands.
    void LeaveFolder() { Up(); }
    void Open() { OpenRow(SelectedRow()); }
    void ChooseProgram();
    void ShowProperties();
    void Rename() { names_.Rename(SelectedRow()); }
    void Delete();
    void NewFolder() { names_.NewFolder(); }
    void Copy() { clipboard_.CopyRows(ChosenRows()); }
    void Cut() { clipboard_.CutRows(ChosenRows()); }
    void Paste() { clipboard_.Paste(); }
    void PasteShortcuts() { clipboard_.PasteShortcuts(); }
    void StartMarking() { SetMarking(true); }
    void Mark();
    void MarkAll();
    void StopMarking() { SetMarking(false); }

    unsigned SelectedRow() const { return browser_.Rows().GetSelection(); }
    // The rows that a command is for: the marked ones, or the selected one.
    std::vector<unsigned> ChosenRows() const;
    // Opens a file, or shows a folder.
    void OpenRow(unsigned row);
    // Reads a folder anew under the display options of now.
    void Show(std::wstring folder);
    // Up as a user's action: its faults are shown. False at the root.
    bool GoUp();
    void PlaceEditor();
    // Moves the selection with a key and marks what it goes along; false for other keys.
    bool MarkAlong(WPARAM key);
    // Starts or ends multi-selection, which has a bar of its own.
    void SetMarking(bool marking);

    FileDeletion deletion_{*this};
    NameEditing names_{*this};
    FileClipboard clipboard_;
    // The editor of a name while it is open, and its row.
    ui::RowEditor* editor_ = nullptr;
    unsigned editedRow_ = ui::noRow;
    // What was selected when the view was left.
    EntryName left_;
    FolderBrowser browser_{*this, *this};
};

}  // namespace views
