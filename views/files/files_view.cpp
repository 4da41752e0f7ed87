#include "views/files/files_view.h"

#include "faults/fault.h"
#include "platform/scope_exit.h"
#include "res/resource.h"
#include "text/format.h"
#include "ui/dialog/action.h"
#include "ui/paint/drawing_resources.h"
#include "ui/window/held_fault.h"
#include "views/files/file_names.h"
#include "views/files/folder_listing.h"
#include "views/files/open_file.h"
#include "views/properties_page.h"

namespace views {

namespace {

constexpr wchar_t pathSetting[] = L"path";

}  // namespace

const CommandEntry<FilesView> FilesView::commands[] = {
    {ID_OPEN, Needs::Selection, &FilesView::Open},
    {ID_OPEN_WITH, Needs::Selection, &FilesView::ChooseProgram},
    {ID_UP, Needs::Nothing, &FilesView::LeaveFolder},
    {ID_SELECT, Needs::Nothing, &FilesView::StartMarking},
    {IDCANCEL, Needs::Nothing, &FilesView::StopMarking},
    {ID_MARK, Needs::Selection, &FilesView::Mark},
    {ID_MARK_ALL, Needs::Rows, &FilesView::MarkAll},
    {ID_COPY, Needs::ChosenRows, &FilesView::Copy},
    {ID_CUT, Needs::ChosenRows, &FilesView::Cut},
    {ID_PASTE, Needs::Paths, &FilesView::Paste},
    {ID_PASTE_SHORTCUT, Needs::Paths, &FilesView::PasteShortcuts},
    {ID_NEW_FOLDER, Needs::Nothing, &FilesView::NewFolder},
    {ID_RENAME, Needs::Selection, &FilesView::Rename},
    {ID_DELETE, Needs::ChosenRows, &FilesView::Delete},
    {ID_PROPERTIES, Needs::Selection, &FilesView::ShowProperties},
};

std::span<const KeyEntry> FilesView::Keys() const {
    static constexpr KeyEntry keys[] = {
        {VK_LEFT, withAny, ID_UP},
        {VK_BACK, alone, ID_UP},
        {VK_RIGHT, alone, ID_OPEN, KeyHolds::UnlessMarking},
        {VK_DELETE, alone, ID_DELETE},
        {'X', withControl, ID_CUT},
        {'C', withControl, ID_COPY},
        {'V', withControl, ID_PASTE, KeyHolds::UnlessMarking},
        {'A', withControl, ID_MARK_ALL},
        {VK_SPACE, alone, ID_MARK},
        {VK_INSERT, alone, ID_MARK},
        {VK_ESCAPE, withAny, IDCANCEL, KeyHolds::WhileMarking},
        {VK_RETURN, withAlt, ID_PROPERTIES, KeyHolds::UnlessMarking},
    };
    return keys;
}

FilesView::FilesView(Frame& frame) : ListView(frame, IDR_FILES), clipboard_(*this) {
    SetList(browser_.Rows());
    const std::optional<std::wstring> stored = frame.StoredText(pathSetting);
    if (stored && !stored->empty() && IsExistingFolder(*stored)) {
        browser_.SetFolder(PathOnDisk(*stored));
    }
}

void FilesView::Layout(HDC dc) {
    const bool first = !browser_.Rows().Handle();
    ListView::Layout(dc);
    browser_.Measure(dc);
    oneLineHeight_ = browser_.Look().OneLineHeight();
    if (first && !browser_.OpenStrip(GetFrame().Pane())) {
        throw faults::W32Fault();
    }
}

bool FilesView::Activate(const ViewArgument& argument) {
    if (!ListView::Activate(argument)) {
        return false;
    }
    browser_.ShowStrip(true);
    Navigate(argument.path.empty() ? nullptr : argument.path.c_str());
    if (argument.path.empty() && !left_.name.empty()) {
        browser_.Select(left_);
    }
    return true;
}

bool FilesView::Deactivate(HDC dc) {
    left_ = browser_.Selected();
    browser_.Rows().SetMarking(false);
    GetFrame().Bar().Uncover();
    browser_.ShowStrip(false);
    return ListView::Deactivate(dc);
}

void FilesView::FlagsChanged(DWORD, DWORD) {
    browser_.SetFilter(HideMask(GetFrame().Flags()));
    browser_.Relist();
}

void FilesView::Refresh() {
    FlagsChanged(0, 0);
}

std::wstring FilesView::Title() const {
    const std::wstring folder = TextOfFolder(browser_.Folder());
    return browser_.Rows().Marking()
               ? text::Format(L"%1 (%2!i!)", folder, browser_.Rows().MarkedCount())
               : folder;
}

void FilesView::OnSelected() {
    // The rows stand still under an editor.
    if (!editor_) {
        ListView::OnSelected();
    }
}

void FilesView::OnActivated(unsigned row) {
    if (!editor_ && row != ui::noRow) {
        ui::RunAction(GetFrame().MainWindow(), IDS_ACTION_FAILED, [this, row] { OpenRow(row); });
    }
}

void FilesView::OpenRow(unsigned row) {
    std::wstring path = PathOf(row);
    if (!ItemAt(row).IsFolder()) {
        const std::optional<std::wstring> folder = FolderOfShortcut(path);
        if (!folder) {
            OpenWithShell(GetFrame().MainWindow(), path);
            return;
        }
        path = *folder;
    }
    browser_.Show(std::move(path));
}

void FilesView::Show(std::wstring folder) {
    browser_.SetFilter(HideMask(GetFrame().Flags()));
    browser_.Show(std::move(folder));
}

void FilesView::OnFolderShown() {
    if (browser_.Rows().Marking()) {
        // The marks have gone.
        GetFrame().TitleChanged();
    }
    GetFrame().MenuStateChanged();
}

void FilesView::UpdateMenu(HMENU menu) {
    EnableCommands(menu, *this, commands);
}

bool FilesView::Key(WPARAM key) {
    return (KeysHeld() == withShift && MarkAlong(key)) || ListView::Key(key);
}

bool FilesView::MarkAlong(WPARAM key) {
    FolderBrowser::List& rows = browser_.Rows();
    if (!FolderBrowser::List::MovesSelection(key) || rows.GetCount() == 0) {
        return false;
    }
    SetMarking(true);
    rows.MarkAlong(key);
    return true;
}

void FilesView::Mark() {
    SetMarking(true);
    browser_.Rows().ToggleMark(SelectedRow());
}

void FilesView::MarkAll() {
    SetMarking(true);
    browser_.Rows().MarkAll();
}

void FilesView::SetMarking(bool marking) {
    if (marking == browser_.Rows().Marking()) {
        return;
    }
    // Rows are marked only where the bar leads out of it.
    if (marking && !GetFrame().Bar().Cover(IDR_FILES_MARKING)) {
        throw faults::W32Fault();
    }
    browser_.Rows().SetMarking(marking);
    if (!marking) {
        GetFrame().Bar().Uncover();
    }
    OnMarksChanged();
}

void FilesView::OnMarksChanged() {
    GetFrame().TitleChanged();
    GetFrame().MenuStateChanged();
}

bool FilesView::Back() {
    if (editor_) {
        editor_->Finish(IDCANCEL);
        return true;
    }
    if (browser_.Rows().Marking()) {
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

bool FilesView::GoUp() {
    bool moved = true;
    ui::RunAction(GetFrame().MainWindow(), IDS_ACTION_FAILED, [&] { moved = Up(); });
    return moved;
}

bool FilesView::Allows(WORD command) const {
    return AllowsCommand(command, *this, commands);
}

// Going up does not wait for the messages that are on their way.
void FilesView::Give(WORD command) {
    if (command == ID_UP) {
        GoUp();
    } else {
        ListView::Give(command);
    }
}

bool FilesView::Command(WORD command) {
    if (editor_) {
        // Only the editor's own bar is there.
        if (command == IDOK || command == IDCANCEL) {
            editor_->Finish(command);
        }
        return true;
    }
    return RunCommand(command, *this, commands) || ListView::Command(command);
}

void FilesView::ChooseProgram() {
    OpenWith(GetFrame(), PathOf(SelectedRow()));
}

void FilesView::ShowProperties() {
    views::ShowProperties(GetFrame().MainWindow(), PathOf(SelectedRow()));
}

void FilesView::Delete() {
    if (browser_.Rows().Marking()) {
        deletion_.DeleteMarked();
    } else {
        deletion_.Delete(SelectedRow());
    }
}

std::vector<unsigned> FilesView::ChosenRows() const {
    return browser_.Rows().Marking() ? MarkedRows() : std::vector<unsigned>{SelectedRow()};
}

void FilesView::RemoveRow(unsigned row) {
    FolderBrowser::List& rows = browser_.Rows();
    const bool selected = rows.GetSelection() == row;
    rows.RemoveItem(row);
    if (selected) {
        rows.SetSelection(row);
    }
    GetFrame().MenuStateChanged();
}

unsigned FilesView::InsertRow(FileItemOwner item) {
    const unsigned equal = RowOf(*item);
    if (equal != ui::noRow) {
        browser_.Rows().RemoveItem(equal);
    }
    const unsigned row = browser_.Rows().Insert(std::move(item));
    browser_.Rows().SetSelection(row);
    GetFrame().MenuStateChanged();
    return row;
}

int FilesView::EditName(unsigned row, std::wstring* name) {
    FolderBrowser::List& rows = browser_.Rows();
    rows.SetSelection(row);
    rows.BringIntoView(row);
    RECT area;
    if (!rows.RowRectangle(row, &area)) {
        return IDCANCEL;
    }
    UpdateWindow(rows.Handle());
    // The bar and the view are as before on every way out.
    const platform::ScopeExit restoration([this] {
        editor_ = nullptr;
        try {
            if (browser_.Rows().Handle()) {
                GetFrame().Bar().Uncover();
                GetFrame().MenuStateChanged();
            }
        } catch (...) {
            ui::HoldException();
        }
    });
    if (!GetFrame().Bar().Cover(IDR_DONE_CANCEL)) {
        MessageBeep(~0u);
        return IDCANCEL;
    }
    ui::RowEditor editor(rows.Handle(), GetFrame().Bar().Handle(), browser_.Look().NameArea(area),
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
    browser_.Rows().BringIntoView(editedRow_);
    if (browser_.Rows().RowRectangle(editedRow_, &area)) {
        editor_->Place(browser_.Look().NameArea(area));
    }
}

void FilesView::Arrange(const RECT& area) {
    browser_.Arrange(area);
    if (editor_) {
        PlaceEditor();
    }
}

void FilesView::Close() {
    GetFrame().StoreText(pathSetting, browser_.Folder());
}

void FilesView::Navigate(const wchar_t* path) {
    std::wstring folder = browser_.Folder();
    EntryName file;
    const DWORD attributes = path ? GetFileAttributesW(path) : INVALID_FILE_ATTRIBUTES;
    if (attributes != INVALID_FILE_ATTRIBUTES) {
        folder = PathOnDisk(path);
        if (!(attributes & FILE_ATTRIBUTE_DIRECTORY)) {
            file = EntryName{std::wstring(NameOfPath(folder)), attributes};
            folder = FolderOfPath(folder);
        }
    }
    Show(std::move(folder));
    if (!file.name.empty()) {
        browser_.Select(file);
    }
}

void FilesView::RelistAndSelect(const std::wstring& name) {
    const DWORD attributes = GetFileAttributesW((Folder() + L'\\' + name).c_str());
    browser_.Show(Folder());
    if (attributes != INVALID_FILE_ATTRIBUTES) {
        browser_.Select(EntryName{name, attributes});
    }
}

}  // namespace views
