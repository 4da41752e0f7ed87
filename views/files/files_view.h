// The Files view: the entries of one folder, folders first.
#pragma once

#include "views/files/file_rows.h"
#include "views/files/folder_listing.h"
#include "views/files/path_bar.h"
#include "views/list_view.h"

namespace views {

class FilesView final : public ListView {
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
    void UpdateMenu(HMENU menu) override;
    bool Key(WPARAM key) override;
    bool Command(WORD command) override;
    void Refresh() override;
    int RowHeight(ULONG_PTR data) const override;
    void Arrange(const RECT& area) override;
    bool Back() override;
    void MarksChanged() override;
    void Close() override;

    // Shows a folder, or a file's folder with the file selected. A path that does not exist leaves
    // the folder as it is; it is listed again in every case. No path lists the current folder.
    void Navigate(const wchar_t* path);
    // Goes to the parent folder and selects the folder that was left; false at the root.
    bool Up();
    // Lists `folder` and selects the entry `name` if it is there.
    void RelistAndSelect(const std::wstring& folder, const std::wstring& name);

 private:
    static constexpr UINT menuResource = 500;
    static constexpr UINT markingMenuResource = 506;

    FileItem& ItemAt(unsigned row) const { return ItemOf(List().GetItemData(row)); }
    // The first row that does not order before the item.
    unsigned LowerBound(const FileItem& item) const;
    // Starts or ends multi-selection, which has a bar of its own.
    void SetMarking(bool marking);
    void RebuildHideMask();
    void Enumerate(const std::wstring& folder);
    void ReadFolder(const std::wstring& folder);
    void InsertSorted(FileItemOwner item);
    void SelectItem(const FileItem& probe);
    void SelectName(const std::wstring& name, DWORD attributes);
    void Open(unsigned row);
    // "Open With..." and "Properties" of the selected row.
    void OpenOrDescribe(WORD command);
    void ShowPath();

    std::wstring path_;
    DWORD hideMask_ = 0;
    FileRows rows_;
    PathBar pathBar_;
    // What was selected when the view was left.
    std::wstring leftName_;
    DWORD leftAttributes_ = 0;
};

}  // namespace views
