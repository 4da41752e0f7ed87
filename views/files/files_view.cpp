#include "views/files/files_view.h"

#include <algorithm>

#include "faults/fault.h"
#include "platform/handles.h"
#include "res/resource.h"
#include "text/format.h"
#include "ui/dialog/action.h"
#include "ui/paint/drawing_resources.h"
#include "ui/window/held_fault.h"
#include "views/files/folder_listing.h"
#include "views/files/open_file.h"
#include "views/properties_page.h"

namespace views {

namespace {

constexpr wchar_t pathSetting[] = L"path";

}  // namespace

FilesView::FilesView(Frame& frame) : ListView(frame, IDR_FILES) {
    const std::optional<std::wstring> stored = frame.StoredText(pathSetting);
    if (stored && !stored->empty() && IsExistingFolder(*stored)) {
        path_ = PathOnDisk(*stored);
    }
}

FilesView::~FilesView() {
    List().Clear();
}

void FilesView::Layout(HDC dc) {
    ListView::Layout(dc);
    rows_.Layout(dc);
    oneLineHeight_ = rows_.OneLineHeight();
    if (!pathBar_.Handle()) {
        if (!pathBar_.Open(GetFrame().Pane(), [this] { GoUp(); })) {
            throw faults::W32Fault();
        }
        pathBar_.SetText(TextOfFolder(path_));
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
        leftName_ += item.name;
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
        name += item.name;
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
    const std::wstring folder = TextOfFolder(path_);
    return List().Marking() ? text::Format(L"%1 (%2!i!)", folder, List().MarkedCount()) : folder;
}

void FilesView::DeleteRow(ULONG_PTR data) {
    FileItemOwner(&ItemOf(data));
}

void FilesView::Tap(unsigned row) {
    ui::RunAction(GetFrame().MainWindow(), IDS_ACTION_FAILED, [this, row] { Open(row); });
}

void FilesView::Open(unsigned row) {
    std::wstring path = PathOf(row);
    if (!ItemAt(row).IsFolder()) {
        const std::optional<std::wstring> folder = FolderOfShortcut(path);
        if (!folder) {
            OpenWithShell(GetFrame().MainWindow(), path);
            return;
        }
        path = *folder;
    }
    ShowFolder(std::move(path));
}

void FilesView::UpdateMenu(HMENU menu) {
    const bool selected = List().Marking() ? List().MarkedCount() > 0 : HasSelection();
    for (const UINT command :
         {ID_RENAME, ID_DELETE, ID_CUT, ID_COPY, ID_OPEN, ID_OPEN_WITH, ID_PROPERTIES}) {
        EnableCommand(menu, command, selected);
    }
    const bool paths = IsClipboardFormatAvailable(CF_HDROP) != FALSE;
    EnableCommand(menu, ID_PASTE, paths);
    EnableCommand(menu, ID_PASTE_SHORTCUT, paths);
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
        GoUp();
        return true;
    }
    return ListView::Key(key);
}

void FilesView::SetMarking(bool marking) {
    if (marking == List().Marking()) {
        return;
    }
    List().SetMarking(marking);
    GetFrame().Bar().LoadBar(marking ? IDR_FILES_MARKING : IDR_FILES);
    MarksChanged();
}

void FilesView::MarksChanged() {
    GetFrame().TitleChanged();
    GetFrame().MenuStateChanged();
}

bool FilesView::Back() {
    if (editor_) {
        editor_->Finish(IDCANCEL);
        return true;
    }
    if (List().Marking()) {
        SetMarking(false);
        return true;
    }
    return GoUp();
}

void FilesView::Focus() {
    if (editor_) {
        editor_->Focus();
    } else {
        ListView::Focus();
    }
}

LRESULT FilesView::Notify(const NMHDR& notification) {
    // The rows stand still under an editor.
    return editor_ ? TRUE : ListView::Notify(notification);
}

bool FilesView::GoUp() {
    bool moved = true;
    ui::RunAction(GetFrame().MainWindow(), IDS_ACTION_FAILED, [&] { moved = Up(); });
    return moved;
}

bool FilesView::Command(WORD command) {
    if (editor_) {
        // Only the editor's own bar is there.
        if (command == IDOK || command == IDCANCEL) {
            editor_->Finish(command);
        }
        return true;
    }
    switch (command) {
        case ID_UP:
            Up();
            return true;
        case ID_OPEN:
        case ID_OPEN_WITH:
        case ID_PROPERTIES:
        case ID_RENAME:
            OnSelectedRow(command);
            return true;
        case ID_DELETE:
            if (List().Marking()) {
                operations_.DeleteMarked();
            } else {
                OnSelectedRow(command);
            }
            return true;
        case ID_NEW_FOLDER:
            operations_.NewFolder();
            return true;
        case ID_COPY:
            operations_.CopyRows(ChosenRows());
            return true;
        case ID_CUT:
            operations_.CutRows(ChosenRows());
            return true;
        case ID_PASTE:
            operations_.Paste();
            return true;
        case ID_PASTE_SHORTCUT:
            operations_.PasteShortcuts();
            return true;
        case ID_SELECT:
            SetMarking(true);
            return true;
        case IDCANCEL:
            SetMarking(false);
            return true;
        default:
            return ListView::Command(command);
    }
}

void FilesView::OnSelectedRow(WORD command) {
    if (!HasSelection()) {
        MessageBeep(~0u);
        return;
    }
    const unsigned row = List().GetSelection();
    switch (command) {
        case ID_OPEN:
            Open(row);
            break;
        case ID_OPEN_WITH:
            OpenWith(GetFrame(), PathOf(row));
            break;
        case ID_PROPERTIES:
            ShowProperties(GetFrame().MainWindow(), PathOf(row));
            break;
        case ID_RENAME:
            operations_.Rename(row);
            break;
        default:
            operations_.Delete(row);
            break;
    }
}

std::vector<unsigned> FilesView::MarkedRows() const {
    std::vector<unsigned> rows;
    for (unsigned row = 0; row < List().GetCount(); ++row) {
        if (List().Marked(row)) {
            rows.push_back(row);
        }
    }
    return rows;
}

std::vector<unsigned> FilesView::ChosenRows() const {
    if (List().Marking()) {
        return MarkedRows();
    }
    return HasSelection() ? std::vector<unsigned>{List().GetSelection()} : std::vector<unsigned>();
}

void FilesView::RemoveRow(unsigned row) {
    const bool selected = List().GetSelection() == row;
    List().RemoveItem(row);
    List().Remeasure();
    if (selected) {
        List().SetSelection(row);
    }
    GetFrame().MenuStateChanged();
}

unsigned FilesView::InsertRow(FileItemOwner item) {
    const unsigned equal = RowOf(*item);
    if (equal != ui::noRow) {
        List().RemoveItem(equal);
    }
    const unsigned row = LowerBound(*item);
    InsertSorted(std::move(item));
    List().Remeasure();
    List().SetSelection(row);
    GetFrame().MenuStateChanged();
    return row;
}

int FilesView::EditName(unsigned row, std::wstring* name) {
    List().SetSelection(row);
    List().BringIntoView(row);
    RECT area;
    if (!List().RowRectangle(row, &area)) {
        return IDCANCEL;
    }
    UpdateWindow(List().Handle());
    // The bar and the view are as before on every way out.
    struct Editing {
        FilesView& view;
        ~Editing() {
            view.editor_ = nullptr;
            try {
                if (view.List().Handle()) {
                    view.GetFrame().Bar().LoadBar(IDR_FILES);
                    view.GetFrame().MenuStateChanged();
                }
            } catch (...) {
                ui::HoldException();
            }
        }
    } editing{*this};
    GetFrame().Bar().LoadBar(IDR_DONE_CANCEL);
    ui::RowEditor editor(List().Handle(), GetFrame().Bar().Handle(), rows_.NameArea(area),
                         ui::Fonts().Base(), *name,
                         ui::BaseNameLength(*name, ItemAt(row).IsFolder()));
    if (!editor) {
        MessageBeep(~0u);
        return IDCANCEL;
    }
    editor_ = &editor;
    editedRow_ = row;
    PlaceEditor();
    const int result = editor.Run();
    if (result == IDOK) {
        *name = editor.Text();
    }
    return result;
}

void FilesView::PlaceEditor() {
    RECT area;
    List().BringIntoView(editedRow_);
    if (List().RowRectangle(editedRow_, &area)) {
        editor_->Place(rows_.NameArea(area));
    }
}

void FilesView::Arrange(const RECT& area) {
    RECT list = area;
    list.top += std::min(PathBar::PreferredHeight(textHeight_), ui::Height(area) / 4);
    MoveWindow(pathBar_.Handle(), area.left, area.top, ui::Width(area), list.top - area.top, TRUE);
    ListView::Arrange(list);
    if (editor_) {
        PlaceEditor();
    }
}

void FilesView::Close() {
    GetFrame().StoreText(pathSetting, path_);
}

void FilesView::Navigate(const wchar_t* path) {
    std::wstring folder = path_;
    std::wstring fileName;
    const DWORD attributes = path ? GetFileAttributesW(path) : INVALID_FILE_ATTRIBUTES;
    if (attributes != INVALID_FILE_ATTRIBUTES) {
        folder = PathOnDisk(path);
        if (!(attributes & FILE_ATTRIBUTE_DIRECTORY)) {
            fileName = NameOfPath(folder);
            folder = FolderOfPath(folder);
        }
    }
    RebuildHideMask();
    ShowFolder(std::move(folder));
    if (!fileName.empty()) {
        SelectName(fileName, attributes);
    }
}

bool FilesView::Up() {
    if (path_.find(L'\\') == std::wstring::npos) {
        return false;
    }
    const std::wstring left(NameOfPath(path_));
    ShowFolder(std::wstring(FolderOfPath(path_)));
    SelectName(left, FILE_ATTRIBUTE_DIRECTORY);
    return true;
}

void FilesView::RelistAndSelect(const std::wstring& name) {
    const DWORD attributes = GetFileAttributesW((path_ + L'\\' + name).c_str());
    ShowFolder(path_);
    if (attributes != INVALID_FILE_ATTRIBUTES) {
        SelectName(name, attributes);
    }
}

void FilesView::RebuildHideMask() {
    hideMask_ = HideMask(GetFrame().Flags());
}

void FilesView::ShowFolder(std::wstring folder) {
    const platform::WaitCursor cursor;
    FileItems items = ReadFolder(folder, hideMask_);
    std::wstring text = TextOfFolder(folder);
    path_.swap(folder);
    try {
        GetFrame().TitleChanged();
        ShowItems(List(), std::move(items));
    } catch (...) {
        path_.swap(folder);
        RestoreTitle();
        throw;
    }
    pathBar_.SetText(std::move(text));
    if (List().Marking()) {
        GetFrame().TitleChanged();
    }
    GetFrame().MenuStateChanged();
}

unsigned FilesView::LowerBound(const FileItem& item) const {
    return views::LowerBound(List(), item);
}

void FilesView::InsertSorted(FileItemOwner item) {
    views::InsertSorted(List(), std::move(item));
}

void FilesView::SelectItem(const FileItem& probe) {
    List().SetSelection(RowOfItem(List(), probe));
}

void FilesView::SelectName(const std::wstring& name, DWORD attributes) {
    SelectItem(*MakeFileItem(name, attributes, FILETIME{}, 0));
}

// After a fault, which is told: one more changes nothing.
void FilesView::RestoreTitle() noexcept {
    try {
        GetFrame().TitleChanged();
    } catch (...) {
    }
}

int FilesView::RowHeight(ULONG_PTR data) const {
    return rows_.Height(ItemOf(data), GetFrame().Flags());
}

void FilesView::DrawRow(const DRAWITEMSTRUCT& row) {
    rows_.Draw(row, ItemOf(row.itemData), GetFrame().Flags());
}

}  // namespace views
