// A folder on the screen: a strip with its path above the list of its entries.
#pragma once

#include <functional>
#include <string>

#include "ui/list/row_list.h"
#include "views/files/file_item.h"
#include "views/files/file_rows.h"
#include "views/files/name_patterns.h"
#include "views/files/path_bar.h"

namespace views {

// What a browser asks and tells its owner besides what every list of rows does.
class FolderBrowserOwner {
 public:
    // The display options under which entries are drawn.
    virtual DWORD RowFlags() const { return 0; }
    // The path is another one, whose entries are about to be shown. Throws to keep the old one.
    virtual void OnFolderChanging() {}
    // Its entries are shown.
    virtual void OnFolderShown() {}
    // A leftward drag on the strip.
    virtual void OnLeave() = 0;

 protected:
    ~FolderBrowserOwner() = default;
};

// An entry as the selection remembers it.
struct EntryName {
    std::wstring name;
    DWORD attributes = 0;
};

class FolderBrowser final : private ui::RowPainter<FileItem> {
 public:
    using List = ui::RowList<FileItem, FileItemOwner>;

    // Both owners are borrowed.
    FolderBrowser(ui::RowListOwner& rowsOwner, FolderBrowserOwner& owner)
        : owner_(owner), list_(rowsOwner, *this) {}

    // Measures fonts and icons.
    void Measure(HDC dc);
    // Creates the strip as a hidden child of `parent`; false when the platform fails.
    bool OpenStrip(HWND parent);
    void ShowStrip(bool shown) { ShowWindow(strip_.Handle(), shown ? SW_SHOW : SW_HIDE); }
    // Places strip and list in `area`, in client pixels of their parent.
    void Arrange(const RECT& area);

    List& Rows() { return list_; }
    const List& Rows() const { return list_; }
    const FileRows& Look() const { return look_; }
    // The folder that is shown, empty for the root.
    const std::wstring& Folder() const { return folder_; }
    // The folder to begin with; nothing is read.
    void SetFolder(std::wstring folder);
    // Which entries are left out: those that `hideMask` hides, and files whose names do not match.
    void SetFilter(DWORD hideMask, NamePatterns patterns = NamePatterns());

    // Reads a folder and shows it: path, strip and rows change together or not at all. Throws
    // std::bad_alloc, or what OnFolderChanging throws.
    void Show(std::wstring folder);
    // Goes to the parent folder and selects the folder that was left; false at the root.
    bool Up();
    // Reads the folder anew; the selection stays on its entry.
    void Relist();
    // Selects an entry by its name, or one that the order finds equal.
    void Select(const EntryName& entry);
    // The selected entry; without a name when there is none.
    EntryName Selected() const;

    // The row of an entry; noRow when it has none.
    unsigned RowOf(const FileItem& item) const;
    // A row's path for the system's calls. Throws W32Fault (ERROR_INVALID_NAME) for one that they
    // take for another entry's.
    std::wstring PathOf(unsigned row) const;

 private:
    int RowHeight(const FileItem& item) const override {
        return look_.Height(item, owner_.RowFlags());
    }
    void DrawRow(const DRAWITEMSTRUCT& place, const FileItem& item) const override {
        look_.Draw(place, item, owner_.RowFlags());
    }
    bool Lacks(const FileItem& item) const override { return item.iconIndex == unknownIcon; }
    void Complete(FileItem& item) const override;
    // The row of an entry equal to the item in the order; noRow when there is none. Of several it
    // is the item's own.
    unsigned RowLike(const FileItem& item) const;
    void TellOfOldFolder() noexcept;

    FolderBrowserOwner& owner_;
    std::wstring folder_;
    DWORD hideMask_ = 0;
    NamePatterns patterns_;
    int textHeight_ = 0;
    FileRows look_;
    PathBar strip_;
    List list_;
};

}  // namespace views
