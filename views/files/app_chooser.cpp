#include "views/files/app_chooser.h"

#include <shlobj.h>

#include "platform/shell.h"
#include "res/resource.h"
#include "text/resources.h"
#include "ui/dialog/action.h"
#include "ui/dialog/full_screen_dialog.h"
#include "ui/paint/drawing_resources.h"
#include "ui/popup/menu_items.h"
#include "views/command_table.h"
#include "views/display_flags.h"
#include "views/files/file_names.h"
#include "views/files/folder_browser.h"
#include "views/files/folder_listing.h"
#include "views/properties_page.h"

namespace views {

namespace {

constexpr wchar_t pathSetting[] = L"SelectAppPath";
constexpr wchar_t flagsSetting[] = L"SelectAppFlags";
constexpr wchar_t applicationsFilter[] = L"*.exe";

class AppChooser final : public ui::FullScreenDialog,
                         private ui::RowListOwner,
                         private FolderBrowserOwner {
 public:
    static constexpr wchar_t listClass[] = L"kx::ChooserList";

    explicit AppChooser(Frame& frame)
        : FullScreenDialog(text::TextOf(IDS_OPEN_FILE), IDR_OPEN_FILE), frame_(frame) {}

    const std::wstring& Chosen() const { return chosen_; }
    // Whether there is what a command needs.
    bool Meets(Needs needs) const {
        return needs == Needs::Nothing || browser_.Rows().HasSelection();
    }

 protected:
    bool OpenContents() override;
    void ArrangeContents(const RECT& area) override { browser_.Arrange(area); }
    void ContentsReady() override;
    HWND Contents() const override { return browser_.Rows().Handle(); }
    bool OnCommand(WORD command) override;
    bool OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

 private:
    static const CommandEntry<AppChooser> commands[];

    void OnActivated(unsigned) override { OnCommand(IDOK); }
    bool OpensRows() const override { return true; }
    bool OnKey(WPARAM key) override;
    void OnMouseBack() override { OnCommand(ID_UP); }
    std::wstring_view RowName(unsigned row) const override { return browser_.Rows()[row].name; }
    void OnLeave() override { Back(); }

    std::wstring FirstFolder() const;
    void AddCancel();
    void UpdateMenu();
    // Lists what the flags let through from now on.
    void SetFilter();
    void SetFlag(DWORD flag, bool set);
    void Back();

    // The commands. Enters the selected folder, or ends with the selected file:
    void Choose();
    void ShowProperties();
    void LeaveFolder() { browser_.Up(); }
    void ListApplications() { SetFlag(chooserApplications | chooserSaved, true); }
    void ListAllFiles() { SetFlag(chooserApplications, false); }
    void FlipHidden() { SetFlag(flagShowHidden, !(flags_ & flagShowHidden)); }
    void FlipSystem() { SetFlag(flagShowSystem, !(flags_ & flagShowSystem)); }

    Frame& frame_;
    DWORD flags_ = 0;
    std::wstring chosen_;
    FolderBrowser browser_{*this, *this};
};

const CommandEntry<AppChooser> AppChooser::commands[] = {
    {IDOK, Needs::Selection, &AppChooser::Choose},
    {ID_PROPERTIES, Needs::Selection, &AppChooser::ShowProperties},
    {ID_UP, Needs::Nothing, &AppChooser::LeaveFolder},
    {ID_FILTER_APPLICATIONS, Needs::Nothing, &AppChooser::ListApplications},
    {ID_FILTER_ALL_FILES, Needs::Nothing, &AppChooser::ListAllFiles},
    {ID_SHOW_HIDDEN, Needs::Nothing, &AppChooser::FlipHidden},
    {ID_SHOW_SYSTEM, Needs::Nothing, &AppChooser::FlipSystem},
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
    ui::MenuEntry item;
    const UINT last = ui::MenuItemCount(Bar().Menu()) - 1;
    if (ui::ReadMenuEntry(Bar().Menu(), last, &item) && item.submenu) {
        AppendMenuW(item.submenu, MF_STRING, IDCANCEL, text::TextOf(IDS_BUTTON_CANCEL).c_str());
    }
}

bool AppChooser::OpenContents() {
    AddCancel();
    {
        const platform::WindowDC dc(Handle());
        browser_.Measure(dc);
    }
    if (!browser_.OpenStrip(Handle()) ||
        !browser_.Rows().Open(Handle(), 1, listClass, ui::childStyle)) {
        return false;
    }
    browser_.ShowStrip(true);
    flags_ = ChooserFlags(frame_.Flags() & (flagShowHidden | flagShowSystem),
                          frame_.StoredNumber(flagsSetting).value_or(0));
    return true;
}

void AppChooser::ContentsReady() {
    ui::RunAction(Handle(), IDS_ACTION_FAILED, [this] {
        SetFilter();
        browser_.Show(FirstFolder());
    });
}

void AppChooser::SetFilter() {
    browser_.SetFilter(HideMask(flags_), ListsApplications(flags_)
                                             ? NamePatterns(applicationsFilter)
                                             : NamePatterns());
}

void AppChooser::SetFlag(DWORD flag, bool set) {
    const DWORD before = flags_;
    flags_ = set ? flags_ | flag : flags_ & ~flag;
    try {
        SetFilter();
        browser_.Relist();
    } catch (...) {
        flags_ = before;
        SetFilter();
        throw;
    }
}

void AppChooser::Choose() {
    const unsigned row = browser_.Rows().GetSelection();
    const std::wstring path = browser_.PathOf(row);
    if (browser_.Rows()[row].IsFolder()) {
        browser_.Show(path);
        return;
    }
    frame_.StoreNumber(flagsSetting, flags_ | chooserSaved);
    frame_.StoreText(pathSetting, browser_.Folder());
    chosen_ = path;
    End(IDOK);
}

void AppChooser::ShowProperties() {
    views::ShowProperties(Handle(), browser_.PathOf(browser_.Rows().GetSelection()));
}

void AppChooser::Back() {
    ui::RunAction(Handle(), IDS_ACTION_FAILED, [this] {
        if (!browser_.Up()) {
            End(IDCANCEL);
        }
    });
}

void AppChooser::UpdateMenu() {
    const HMENU menu = Bar().Menu();
    const bool applications = ListsApplications(flags_);
    EnableCommand(menu, ID_PROPERTIES, Meets(Needs::Selection));
    CheckCommand(menu, ID_FILTER_APPLICATIONS, applications);
    CheckCommand(menu, ID_FILTER_ALL_FILES, !applications);
    CheckCommand(menu, ID_SHOW_HIDDEN, (flags_ & flagShowHidden) != 0);
    CheckCommand(menu, ID_SHOW_SYSTEM, (flags_ & flagShowSystem) != 0);
}

bool AppChooser::OnCommand(WORD command) {
    bool known = true;
    ui::RunAction(Handle(), IDS_ACTION_FAILED,
                  [&] { known = RunCommand(command, *this, commands); });
    return known;
}

bool AppChooser::OnKey(WPARAM key) {
    const WORD command = CommandOfKey(ChooserKeys(), key, KeysHeld(), false);
    if (command != 0 && AllowsCommand(command, *this, commands)) {
        PostMessageW(Handle(), WM_COMMAND, command, 0);
    }
    return command != 0;
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

std::span<const KeyEntry> ChooserKeys() {
    static constexpr KeyEntry keys[] = {
        {VK_LEFT, withAny, ID_UP},      {VK_BACK, alone, ID_UP},
        {VK_RIGHT, alone, IDOK},        {VK_RETURN, withAlt, ID_PROPERTIES},
        {VK_ESCAPE, withAny, IDCANCEL},
    };
    return keys;
}

std::wstring ChooseProgram(Frame& frame) {
    AppChooser chooser(frame);
    return ui::RunDialog(frame.MainWindow(), chooser) == IDOK ? chooser.Chosen() : std::wstring();
}

}  // namespace views
