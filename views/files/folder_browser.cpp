#include "views/files/folder_browser.h"

#include <algorithm>

#include "platform/handles.h"
#include "ui/paint/drawing_resources.h"
#include "views/files/file_names.h"
#include "views/files/folder_listing.h"

namespace views {

void FolderBrowser::Measure(HDC dc) {
    textHeight_ = ui::TextHeight(dc, ui::Fonts().Base());
    look_.Layout(dc);
}

bool FolderBrowser::OpenStrip(HWND parent) {
    if (!strip_.Open(parent, [this] { owner_.OnLeave(); })) {
        return false;
    }
    strip_.SetText(TextOfFolder(folder_));
    return true;
}

void FolderBrowser::Arrange(const RECT& area) {
    const int wanted = PathBar::PreferredHeight(textHeight_);
    const int strip = std::min(wanted, ui::Height(area) / 4);
    MoveWindow(strip_.Handle(), area.left, area.top, ui::Width(area), strip, TRUE);
    MoveWindow(list_.Handle(), area.left, area.top + strip, ui::Width(area),
               ui::Height(area) - strip, TRUE);
}

void FolderBrowser::SetFolder(std::wstring folder) {
    folder_ = std::move(folder);
}

void FolderBrowser::SetFilter(DWORD hideMask, NamePatterns patterns) {
    hideMask_ = hideMask;
    patterns_ = std::move(patterns);
}

void FolderBrowser::Show(std::wstring folder) {
    const platform::WaitCursor cursor;
    List::Rows entries = ReadFolder(folder, hideMask_, patterns_);
    std::wstring text = TextOfFolder(folder);
    folder_.swap(folder);
    try {
        owner_.OnFolderChanging();
        list_.ShowSorted(std::move(entries));
    } catch (...) {
        folder_.swap(folder);
        TellOfOldFolder();
        throw;
    }
    strip_.SetText(std::move(text));
    owner_.OnFolderShown();
}

// Called while a fault is on its way to the user; another one would add nothing.
void FolderBrowser::TellOfOldFolder() noexcept {
    try {
        owner_.OnFolderChanging();
    } catch (...) {
    }
}

void FolderBrowser::Complete(FileItem& item) const {
    item.iconIndex = IconOf(folder_ + L'\\' + item.name, item.attributes);
}

bool FolderBrowser::Up() {
    if (folder_.find(L'\\') == std::wstring::npos) {
        return false;
    }
    const EntryName left = {std::wstring(NameOfPath(folder_)), FILE_ATTRIBUTE_DIRECTORY};
    Show(std::wstring(FolderOfPath(folder_)));
    Select(left);
    return true;
}

void FolderBrowser::Relist() {
    const EntryName selected = Selected();
    Show(folder_);
    if (!selected.name.empty()) {
        Select(selected);
    }
}

void FolderBrowser::Select(const EntryName& entry) {
    list_.SetSelection(RowLike(*MakeFileItem(entry.name, entry.attributes, FILETIME{}, 0)));
}

EntryName FolderBrowser::Selected() const {
    const FileItem* const item = list_.Selected();
    return item ? EntryName{item->name, item->attributes} : EntryName();
}

unsigned FolderBrowser::RowLike(const FileItem& item) const {
    unsigned equal = ui::noRow;
    for (unsigned row = list_.LowerBound(item);
         row < list_.GetCount() && !OrdersBefore(item, list_[row]); ++row) {
        if (IsSameEntry(item, list_[row])) {
            return row;
        }
        equal = std::min(equal, row);
    }
    return equal;
}

unsigned FolderBrowser::RowOf(const FileItem& item) const {
    const unsigned row = RowLike(item);
    return row != ui::noRow && IsSameEntry(item, list_[row]) ? row : ui::noRow;
}

std::wstring FolderBrowser::PathOf(unsigned row) const {
    std::wstring path = folder_ + L'\\' + list_[row].name;
    RequireOwnName(path);
    return path;
}

}  // namespace views
