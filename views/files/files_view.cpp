#include "views/files/files_view.h"

#include <algorithm>

#include "platform/handles.h"
#include "text/format.h"
#include "ui/action.h"
#include "ui/clipped_text.h"
#include "ui/drawing_resources.h"
#include "ui/theme.h"

namespace views {

namespace {

constexpr wchar_t pathSetting[] = L"path";

bool IsFolder(const wchar_t* path) {
    const DWORD attributes = GetFileAttributesW(path);
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY);
}

void CutTrailingBackslashes(std::wstring& path) {
    while (!path.empty() && path.back() == L'\\') {
        path.pop_back();
    }
}

// Measures and shows what has been read of a folder, also when a fault passes.
class ShowsRows {
 public:
    explicit ShowsRows(ViewList& list) : list_(list) {}
    ~ShowsRows() { list_.Layout(); }
    ShowsRows(const ShowsRows&) = delete;
    ShowsRows& operator=(const ShowsRows&) = delete;

 private:
    ViewList& list_;
};

class FolderSearch {
 public:
    explicit FolderSearch(const std::wstring& folder)
        : handle_(platform::FindFirst((folder + L"\\*").c_str(), &found_)) {}
    ~FolderSearch() {
        if (*this) {
            FindClose(handle_);
        }
    }
    FolderSearch(const FolderSearch&) = delete;
    FolderSearch& operator=(const FolderSearch&) = delete;
    explicit operator bool() const { return handle_ != INVALID_HANDLE_VALUE; }
    const platform::FindData& Found() const { return found_; }
    bool Next() { return platform::FindNext(handle_, &found_); }

 private:
    platform::FindData found_;
    HANDLE handle_;
};

}  // namespace

FilesView::FilesView(Frame& frame) : ListView(frame, menuResource) {
    const std::optional<std::wstring> stored = frame.StoredText(pathSetting);
    if (stored && !stored->empty() && IsFolder(stored->c_str())) {
        path_ = *stored;
        CutTrailingBackslashes(path_);
    }
}

FilesView::~FilesView() {
    List().Clear();
}

void FilesView::Layout(HDC dc) {
    ListView::Layout(dc);
    SHFILEINFOW info = {};
    icons_ = reinterpret_cast<HIMAGELIST>(
        platform::FileInfo(nullptr, 0, &info, SHGFI_SYSICONINDEX | SHGFI_SMALLICON));
    if (!icons_ || !ImageList_GetIconSize(icons_, &iconWidth_, &iconHeight_)) {
        iconWidth_ = iconHeight_ = 0;
    }
    oneLineHeight_ = std::max(oneLineHeight_, iconHeight_ + iconHeight_ / 4);
    if (!pathBar_.Handle()) {
        pathBar_.Open(GetFrame().Pane(), [this] { Back(); });
    }
}

bool FilesView::Activate(const ViewArgument& argument) {
    if (!ListView::Activate(argument)) {
        return false;
    }
    ShowWindow(pathBar_.Handle(), SW_SHOW);
    Navigate(argument.path.empty() ? nullptr : argument.path.c_str());
    if (argument.path.empty() && !leftName_.empty()) {
        SelectName(leftName_, leftAttributes_);
    }
    return true;
}

bool FilesView::Deactivate(HDC dc) {
    leftName_.clear();
    if (HasSelection()) {
        const FileItem& item = ItemAt(List().GetSelection());
        leftName_ = item.name;
        leftAttributes_ = item.attributes;
    }
    List().SetMarking(false);
    ShowWindow(pathBar_.Handle(), SW_HIDE);
    return ListView::Deactivate(dc);
}

void FilesView::FlagsChanged(DWORD, DWORD) {
    std::wstring name;
    DWORD attributes = 0;
    if (HasSelection()) {
        const FileItem& item = ItemAt(List().GetSelection());
        name = item.name;
        attributes = item.attributes;
    }
    Navigate(nullptr);
    if (!name.empty()) {
        SelectName(name, attributes);
    }
}

void FilesView::Refresh() {
    FlagsChanged(0, 0);
}

std::wstring FilesView::Title() const {
    const std::wstring folder = path_.empty() ? L"\\" : path_;
    return List().Marking() ? text::Format(L"%1 (%2!i!)", folder, List().MarkedCount()) : folder;
}

void FilesView::DeleteRow(ULONG_PTR data) {
    FileItemOwner(&ItemOf(data));
}

void FilesView::Tap(unsigned row) {
    ui::RunAction(GetFrame().MainWindow(), ui::actionFailed, [this, row] { Open(row); });
}

void FilesView::Open(unsigned row) {
    const FileItem& item = ItemAt(row);
    if (!item.IsFolder()) {
        MessageBeep(~0u);
        return;
    }
    path_ += L'\\';
    path_ += item.name;
    ShowPath();
    Enumerate(path_);
}

void FilesView::UpdateMenu(HMENU menu) {
    const bool selected = List().Marking() ? List().MarkedCount() > 0 : HasSelection();
    for (const views::Command command : {commandRename, commandDelete, commandCut, commandCopy,
                                         commandOpen, commandOpenWith, commandProperties}) {
        EnableCommand(menu, command, selected);
    }
    const bool paths = IsClipboardFormatAvailable(CF_HDROP) != FALSE;
    EnableCommand(menu, commandPaste, paths);
    EnableCommand(menu, commandPasteShortcut, paths);
}

bool FilesView::Key(WPARAM key) {
    if (List().Marking()) {
        if (key == VK_ESCAPE) {
            SetMarking(false);
            return true;
        }
        if (key == VK_SPACE) {
            List().ToggleMark(List().GetSelection());
            return true;
        }
    }
    if (key == VK_LEFT) {
        Back();
        return true;
    }
    return ListView::Key(key);
}

void FilesView::SetMarking(bool marking) {
    if (marking == List().Marking()) {
        return;
    }
    List().SetMarking(marking);
    GetFrame().Bar().LoadBar(marking ? markingMenuResource : menuResource);
    MarksChanged();
}

void FilesView::MarksChanged() {
    GetFrame().TitleChanged();
    GetFrame().MenuStateChanged();
}

bool FilesView::Back() {
    if (List().Marking()) {
        SetMarking(false);
        return true;
    }
    bool moved = true;
    ui::RunAction(GetFrame().MainWindow(), ui::actionFailed, [&] { moved = Up(); });
    return moved;
}

bool FilesView::Command(WORD command) {
    switch (command) {
        case commandUp:
            Up();
            return true;
        case commandOpen:
            if (HasSelection()) {
                Open(List().GetSelection());
            } else {
                MessageBeep(~0u);
            }
            return true;
        case commandSelect:
            SetMarking(true);
            return true;
        case IDCANCEL:
            SetMarking(false);
            return true;
        case commandRename:
        case commandDelete:
        case commandNewFolder:
        case commandOpenWith:
        case commandProperties:
        case commandCopy:
        case commandCut:
        case commandPaste:
        case commandPasteShortcut:
            MessageBeep(~0u);
            return true;
        default:
            return ListView::Command(command);
    }
}

void FilesView::Arrange(const RECT& area) {
    RECT list = area;
    list.top += std::min(PathBar::PreferredHeight(textHeight_), ui::Height(area) / 4);
    MoveWindow(pathBar_.Handle(), area.left, area.top, ui::Width(area), list.top - area.top, TRUE);
    ListView::Arrange(list);
}

void FilesView::Close() {
    GetFrame().StoreText(pathSetting, path_);
}

void FilesView::Navigate(const wchar_t* path) {
    std::wstring fileName;
    DWORD attributes = INVALID_FILE_ATTRIBUTES;
    if (path) {
        attributes = GetFileAttributesW(path);
        if (attributes != INVALID_FILE_ATTRIBUTES) {
            path_ = path;
            CutTrailingBackslashes(path_);
            if (!(attributes & FILE_ATTRIBUTE_DIRECTORY)) {
                const size_t backslash = path_.rfind(L'\\');
                fileName = path_.substr(backslash == std::wstring::npos ? 0 : backslash + 1);
                path_.resize(backslash == std::wstring::npos ? 0 : backslash);
            }
        }
    }
    RebuildHideMask();
    ShowPath();
    Enumerate(path_);
    if (!fileName.empty()) {
        SelectName(fileName, attributes);
    }
}

bool FilesView::Up() {
    const size_t backslash = path_.rfind(L'\\');
    if (backslash == std::wstring::npos) {
        return false;
    }
    const std::wstring left = path_.substr(backslash + 1);
    path_.resize(backslash);
    ShowPath();
    Enumerate(path_);
    SelectName(left, FILE_ATTRIBUTE_DIRECTORY);
    return true;
}

void FilesView::RelistAndSelect(const std::wstring& folder, const std::wstring& name) {
    const DWORD attributes = GetFileAttributesW((folder + L"\\" + name).c_str());
    Enumerate(folder);
    if (attributes != INVALID_FILE_ATTRIBUTES) {
        SelectName(name, attributes);
    }
}

void FilesView::RebuildHideMask() {
    const DWORD flags = GetFrame().Flags();
    hideMask_ = 0;
    if (!(flags & flagShowSystem)) {
        hideMask_ |= FILE_ATTRIBUTE_SYSTEM;
    }
    if (!(flags & flagShowHidden)) {
        hideMask_ |= FILE_ATTRIBUTE_HIDDEN;
    }
}

void FilesView::Enumerate(const std::wstring& folder) {
    const platform::WaitCursor cursor;
    List().Clear();
    {
        const ShowsRows shown(List());
        ReadFolder(folder);
    }
    if (List().Marking()) {
        GetFrame().TitleChanged();
    }
    GetFrame().MenuStateChanged();
}

void FilesView::ReadFolder(const std::wstring& folder) {
    FolderSearch search(folder);
    std::wstring child = folder + L"\\";
    const size_t folderLength = child.size();
    for (bool found = static_cast<bool>(search); found; found = search.Next()) {
        const platform::FindData& entry = search.Found();
        if (entry.dwFileAttributes & hideMask_) {
            continue;
        }
        FileItemOwner item = MakeFileItem(entry);
        child.resize(folderLength);
        child += item->name;
        SHFILEINFOW info;
        if (platform::FileInfo(child.c_str(), item->attributes, &info,
                               SHGFI_SYSICONINDEX | SHGFI_SMALLICON)) {
            item->iconIndex = info.iIcon;
        }
        InsertSorted(std::move(item));
    }
}

unsigned FilesView::LowerBound(const FileItem& item) const {
    unsigned first = 0;
    unsigned count = List().GetCount();
    // Most file systems give their entries in order, so the end is tried first.
    if (count > 0 && OrdersBefore(ItemAt(count - 1), item)) {
        return count;
    }
    while (count > 0) {
        const unsigned half = count / 2;
        if (OrdersBefore(ItemAt(first + half), item)) {
            first += half + 1;
            count -= half + 1;
        } else {
            count = half;
        }
    }
    return first;
}

void FilesView::InsertSorted(FileItemOwner item) {
    const unsigned row = LowerBound(*item);
    List().InsertItem(row, reinterpret_cast<ULONG_PTR>(item.get()));
    item.release();
}

void FilesView::SelectItem(const FileItem& probe) {
    const unsigned row = LowerBound(probe);
    const bool equal = row < List().GetCount() && !OrdersBefore(probe, ItemAt(row));
    List().SetSelection(equal ? row : ui::noRow);
}

void FilesView::SelectName(const std::wstring& name, DWORD attributes) {
    SelectItem(*MakeFileItem(name, attributes, FILETIME{}, 0));
}

void FilesView::ShowPath() {
    pathBar_.SetPath(path_);
    GetFrame().TitleChanged();
}

bool FilesView::HasSecondLine(const FileItem& item) const {
    const DWORD flags = GetFrame().Flags();
    return (flags & flagShowFileDate) || ((flags & flagShowFileSize) && !item.IsFolder());
}

int FilesView::RowHeight(ULONG_PTR data) const {
    return HasSecondLine(ItemOf(data)) ? oneLineHeight_ + smallTextHeight_ : oneLineHeight_;
}

void FilesView::DrawRow(const DRAWITEMSTRUCT& row) {
    const FileItem& item = ItemOf(row.itemData);
    const HDC dc = row.hDC;
    const bool selected = (row.itemState & ODS_SELECTED) != 0;
    if (selected) {
        ui::FillWithSystemColor(dc, row.rcItem, COLOR_HIGHLIGHT);
    } else {
        ui::DrawRowRule(dc, row.rcItem);
    }
    const int margin = (textHeight_ + 5) / 6;
    RECT text = row.rcItem;
    text.right -= 2 * margin;
    text.left += 2 * margin;
    if (icons_ && item.iconIndex >= 0 &&
        ImageList_Draw(icons_, item.iconIndex, dc, text.left,
                       row.rcItem.top + (ui::Height(row.rcItem) - iconHeight_) / 2, ILD_NORMAL)) {
        text.left += iconWidth_ + iconWidth_ / 2;
    } else {
        text.left += iconWidth_ > 0 ? iconWidth_ + iconWidth_ / 2 : 0;
    }
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, GetSysColor(selected ? COLOR_HIGHLIGHTTEXT : COLOR_WINDOWTEXT));
    if (!HasSecondLine(item)) {
        const platform::Selected font(dc, ui::Fonts().Base());
        ui::DrawClippedLine(dc, text, item.name);
        return;
    }
    const int padding = (ui::Height(text) - textHeight_ - smallTextHeight_) / 2;
    text.top += padding;
    {
        const platform::Selected font(dc, ui::Fonts().Base());
        ui::DrawClippedText(dc, text, item.name);
    }
    text.top += textHeight_;
    if (!selected) {
        constexpr unsigned textShare = 150;
        SetTextColor(
            dc, ui::MixColors(GetSysColor(COLOR_WINDOWTEXT), GetSysColor(COLOR_WINDOW), textShare));
    }
    const platform::Selected font(dc, ui::Fonts().Small());
    DrawSecondLine(dc, text, item);
}

void FilesView::DrawSecondLine(HDC dc, const RECT& area, const FileItem& item) const {
    const DWORD flags = GetFrame().Flags();
    RECT date = area;
    if ((flags & flagShowFileSize) && !item.IsFolder()) {
        const std::wstring size = text::FormatSize(item.size);
        const bool alone = !(flags & flagShowFileDate);
        ui::DrawClippedText(dc, area, size,
                            alone ? ui::TextAlignment::Left : ui::TextAlignment::Right);
        date.right -= ui::TextWidth(dc, size) + smallTextHeight_ / 2;
    }
    if (flags & flagShowFileDate) {
        ui::DrawClippedText(dc, date, text::FormatFileTime(item.created, text::Seconds::Without));
    }
}

}  // namespace views
