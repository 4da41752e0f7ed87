#include "views/files/app_chooser.h"

#include <shlobj.h>

#include "platform/shell.h"
#include "res/resource.h"
#include "text/resources.h"
#include "ui/dialog/action.h"
#include "ui/dialog/full_screen_dialog.h"
#include "ui/paint/drawing_resources.h"
#include "ui/popup/menu_items.h"
#include "views/display_flags.h"
#include "views/files/chooser_list.h"
#include "views/files/file_names.h"
#include "views/files/path_bar.h"
#include "views/properties_page.h"

namespace views {

namespace {

constexpr wchar_t pathSetting[] = L"SelectAppPath";
constexpr wchar_t flagsSetting[] = L"SelectAppFlags";
constexpr wchar_t applicationsFilter[] = L"*.exe";

class AppChooser final : public ui::FullScreenDialog {
 public:
    explicit AppChooser(Frame& frame)
        : FullScreenDialog(std::wstring(text::LoadText(IDS_OPEN_FILE)), IDR_OPEN_FILE),
          frame_(frame) {}

    const std::wstring& Chosen() const { return chosen_; }

 protected:
    bool OpenContents() override;
    void ArrangeContents(const RECT& area) override;
    void ContentsReady() override;
    HWND Contents() const override { return list_.Handle(); }
    bool OnCommand(WORD command) override;
    LRESULT OnNotify(const NMHDR& notification) override;
    bool OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

 private:
    bool HasSelection() const { return list_.GetSelection() != ui::noRow; }
    // Throws W32Fault for a name that the system takes for another's.
    std::wstring SelectedPath() const {
        std::wstring path = path_ + L"\\" + list_.ItemAt(list_.GetSelection()).name;
        RequireOwnName(path);
        return path;
    }
    std::wstring FirstFolder() const;
    void AddCancel();
    void UpdateMenu();
    void Show(std::wstring folder);
    // Lists the folder again and keeps the selection.
    void Relist();
    void SelectName(const std::wstring& name, DWORD attributes);
    void SetFlag(DWORD flag, bool set);
    // Enters the selected folder, or ends with the selected file.
    void Choose();
    // Goes to the parent folder; false at the root.
    bool Up();
    void Back();

    Frame& frame_;
    DWORD flags_ = 0;
    std::wstring path_;
    std::wstring chosen_;
    PathBar pathBar_;
    ChooserList list_;
};

std::wstring AppChooser::FirstFolder() const {
    std::optional<std::wstring> stored = frame_.StoredText(pathSetting);
    if (stored) {
        std::wstring folder = PathOnDisk(*stored);
        if (folder.empty() || IsExistingFolder(folder)) {
            return folder;
        }
    }
    return PathOnDisk(platform::SpecialFolder(Handle(), CSIDL_PROGRAM_FILES));
}

// The menu has no way out for a finger.
void AppChooser::AddCancel() {
    ui::MenuItem item;
    const UINT last = ui::MenuItemCount(Bar().Menu()) - 1;
    if (ui::ReadMenuItem(Bar().Menu(), last, &item) && item.submenu) {
        AppendMenuW(item.submenu, MF_STRING, IDCANCEL,
                    std::wstring(text::LoadText(IDS_BUTTON_CANCEL)).c_str());
    }
}

bool AppChooser::OpenContents() {
    AddCancel();
    if (!pathBar_.Open(Handle(), [this] { Back(); }) || !list_.Open(Handle(), 1)) {
        return false;
    }
    ShowWindow(pathBar_.Handle(), SW_SHOW);
    flags_ = ChooserFlags(frame_.Flags() & (flagShowHidden | flagShowSystem),
                          frame_.StoredNumber(flagsSetting).value_or(0));
    return true;
}

void AppChooser::ArrangeContents(const RECT& area) {
    const platform::WindowDC dc(Handle());
    const int wanted = PathBar::PreferredHeight(ui::TextHeight(dc, ui::Fonts().Base()));
    RECT list = area;
    list.top += std::min(wanted, ui::Height(area) / 4);
    MoveWindow(pathBar_.Handle(), area.left, area.top, ui::Width(area), list.top - area.top, TRUE);
    MoveWindow(list_.Handle(), list.left, list.top, ui::Width(list), ui::Height(list), TRUE);
}

void AppChooser::ContentsReady() {
    ui::RunAction(Handle(), IDS_ACTION_FAILED, [this] { Show(FirstFolder()); });
}

// Path, strip and rows change together: what may fail comes first.
void AppChooser::Show(std::wstring folder) {
    std::wstring text = TextOfFolder(folder);
    list_.Show(folder, HideMask(flags_),
               ListsApplications(flags_) ? NamePatterns(applicationsFilter) : NamePatterns());
    path_ = std::move(folder);
    pathBar_.SetText(std::move(text));
}

void AppChooser::SelectName(const std::wstring& name, DWORD attributes) {
    list_.SetSelection(RowOfItem(list_, *MakeFileItem(name, attributes, FILETIME{}, 0)));
}

void AppChooser::Relist() {
    std::wstring name;
    DWORD attributes = 0;
    if (HasSelection()) {
        const FileItem& item = list_.ItemAt(list_.GetSelection());
        name = item.name;
        attributes = item.attributes;
    }
    Show(path_);
    if (!name.empty()) {
        SelectName(name, attributes);
    }
}

void AppChooser::SetFlag(DWORD flag, bool set) {
    const DWORD before = flags_;
    flags_ = set ? flags_ | flag : flags_ & ~flag;
    try {
        Relist();
    } catch (...) {
        flags_ = before;
        throw;
    }
}

void AppChooser::Choose() {
    if (!HasSelection()) {
        MessageBeep(~0u);
        return;
    }
    const std::wstring path = SelectedPath();
    if (list_.ItemAt(list_.GetSelection()).IsFolder()) {
        Show(path);
        return;
    }
    frame_.StoreNumber(flagsSetting, flags_ | chooserSaved);
    frame_.StoreText(pathSetting, path_);
    chosen_ = path;
    End(IDOK);
}

bool AppChooser::Up() {
    const size_t backslash = path_.rfind(L'\\');
    if (backslash == std::wstring::npos) {
        return false;
    }
    const std::wstring left = path_.substr(backslash + 1);
    Show(path_.substr(0, backslash));
    SelectName(left, FILE_ATTRIBUTE_DIRECTORY);
    return true;
}

void AppChooser::Back() {
    ui::RunAction(Handle(), IDS_ACTION_FAILED, [this] {
        if (!Up()) {
            End(IDCANCEL);
        }
    });
}

void AppChooser::UpdateMenu() {
    const HMENU menu = Bar().Menu();
    const bool applications = ListsApplications(flags_);
    EnableCommand(menu, ID_PROPERTIES, HasSelection());
    CheckCommand(menu, ID_FILTER_APPLICATIONS, applications);
    CheckCommand(menu, ID_FILTER_ALL_FILES, !applications);
    CheckCommand(menu, ID_SHOW_HIDDEN, (flags_ & flagShowHidden) != 0);
    CheckCommand(menu, ID_SHOW_SYSTEM, (flags_ & flagShowSystem) != 0);
}

bool AppChooser::OnCommand(WORD command) {
    bool known = true;
    ui::RunAction(Handle(), IDS_ACTION_FAILED, [&] {
        switch (command) {
            case IDOK:
                Choose();
                break;
            case ID_PROPERTIES:
                if (HasSelection()) {
                    ShowProperties(Handle(), SelectedPath());
                } else {
                    MessageBeep(~0u);
                }
                break;
            case ID_FILTER_APPLICATIONS:
                SetFlag(chooserApplications | chooserSaved, true);
                break;
            case ID_FILTER_ALL_FILES:
                SetFlag(chooserApplications, false);
                break;
            case ID_SHOW_HIDDEN:
            case ID_SHOW_SYSTEM: {
                const DWORD flag = FlagOfCommand(command);
                SetFlag(flag, !(flags_ & flag));
                break;
            }
            default:
                known = false;
        }
    });
    return known;
}

LRESULT AppChooser::OnNotify(const NMHDR& notification) {
    if (notification.hwndFrom != list_.Handle()) {
        return 0;
    }
    switch (static_cast<int>(notification.code)) {
        case static_cast<int>(NM_RETURN):
            OnCommand(IDOK);
            return 1;
        case static_cast<int>(NM_KEYDOWN):
            switch (reinterpret_cast<const ui::ListKeyDown&>(notification).key) {
                case VK_LEFT:
                    ui::RunAction(Handle(), IDS_ACTION_FAILED, [this] { Up(); });
                    return 1;
                case VK_ESCAPE:
                    End(IDCANCEL);
                    return 1;
                default:
                    return 0;
            }
        default:
            return 0;
    }
}

bool AppChooser::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_INITMENUPOPUP:
            UpdateMenu();
            return true;
        case WM_HOTKEY:
            if (HIWORD(lParam) != VK_ESCAPE) {
                return false;
            }
            if (LOWORD(lParam) & MOD_KEYUP) {
                Back();
            }
            SetWindowLongPtrW(Handle(), DWLP_MSGRESULT, TRUE);
            return true;
        default:
            return FullScreenDialog::OnMessage(message, wParam, lParam);
    }
}

}  // namespace

std::wstring ChooseProgram(Frame& frame) {
    AppChooser chooser(frame);
    return ui::RunDialog(frame.MainWindow(), chooser) == IDOK ? chooser.Chosen() : std::wstring();
}

}  // namespace views
