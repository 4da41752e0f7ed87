#include "app/main_frame.h"

#include <algorithm>
#include <new>

#include "app/about_box.h"
#include "app/language_menu.h"
#include "app/module.h"
#include "app/restart.h"
#include "app/settings.h"
#include "app/settings_page.h"
#include "app/view_choice.h"
#include "faults/fault.h"
#include "platform/aygshell.h"
#include "platform/main_window.h"
#include "platform/processes.h"
#include "res/resource.h"
#include "text/resources.h"
#include "ui/dialog/action.h"
#include "ui/dialog/message_box.h"
#include "ui/paint/drawing_resources.h"
#include "ui/paint/paint.h"
#include "ui/paint/screen_metrics.h"
#include "ui/paint/spacing.h"
#include "ui/window/held_fault.h"
#include "views/apps/applications_view.h"
#include "views/display_flags.h"
#include "views/files/files_view.h"
#include "views/processes/dlls_view.h"
#include "views/processes/processes_view.h"
#include "views/status/system_status_view.h"

namespace app {

using views::ViewArgument;
using views::ViewIndex;

namespace {

// What the platform's function of this name tells; drawing resources and metrics are those of the
// new scale then.
bool AdoptScale(HWND window, RECT* place) {
    if (!platform::AdoptScale(window, place)) {
        return false;
    }
    ui::ForgetScreenMetrics();
    ui::Resources().Load();
    return true;
}

// The menu of the slide bar: the views.

struct ViewCommand {
    WORD command;
    ViewIndex view;
};
constexpr ViewCommand viewCommands[] = {
    {ID_SHOW_FILES, ViewIndex::Files},         {ID_SHOW_APPLICATIONS, ViewIndex::Applications},
    {ID_SHOW_PROCESSES, ViewIndex::Processes}, {ID_SHOW_SYSTEM_STATUS, ViewIndex::SystemStatus},
    {ID_SHOW_DLLS, ViewIndex::Dlls},
};

}  // namespace

const views::CommandEntry<MainFrame> MainFrame::commands[] = {
    {ID_SETTINGS, views::Needs::Nothing, &MainFrame::ChangeSettings},
    {ID_ABOUT, views::Needs::Nothing, &MainFrame::ShowAboutBox},
    {ID_EXIT, views::Needs::Nothing, &MainFrame::Exit},
};

MainFrame::~MainFrame() {
    Destroy();
}

bool MainFrame::Open(std::optional<int> showCommand) {
    showCommand_ = showCommand;
    const RECT anywhere = {CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT};
    return Create(mainWindowClass, text::TextOf(IDS_PROGRAM).c_str(), WS_CLIPCHILDREN, anywhere,
                  nullptr);
}

std::unique_ptr<views::View> MainFrame::MakeView(ViewIndex view) {
    switch (view) {
        case ViewIndex::Applications:
            return std::make_unique<views::ApplicationsView>(*this);
        case ViewIndex::Processes:
            return std::make_unique<views::ProcessesView>(*this);
        case ViewIndex::SystemStatus:
            return std::make_unique<views::SystemStatusView>(*this);
        case ViewIndex::Dlls:
            return std::make_unique<views::DllsView>(*this);
        default:
            return std::make_unique<views::FilesView>(*this);
    }
}

void MainFrame::OnCreate() {
    const std::optional<ViewIndex> asked = ViewOfCommandLine(platform::CommandLineArguments());
    flags_ = ReadNumber(settingFlags).value_or(0);
    current_ = asked ? *asked : ViewOfSetting(ReadNumber(settingView).value_or(0));
    platform::AdaptMainWindow(Handle());
    RECT place;
    AdoptScale(Handle(), &place);
    const platform::WindowDC dc(Handle());
    MeasureBand(dc);
    if (!pane_.Open(Handle()) || !bar_.Open(Handle(), RECT{}) || !slideBar_.Open(Handle())) {
        throw faults::W32Fault();
    }
    slideBar_.LoadBar(IDR_SLIDE_BAR);
    FollowVisibleArea();
    Arrange();
    if (showCommand_) {
        // Reading a folder and asking for the system's icons takes as long as all the rest.
        ShowWindow(Handle(), *showCommand_);
        UpdateWindow(Handle());
    }
    platform::ShowMainWindowIcon(Handle(), IDI_PROGRAM);
    closer_.emplace();
    closer_->SpareWindow(Handle());
    hiddenApps_.LoadHiddenApps();
    closer_->SetHiddenApps(&hiddenApps_);
    for (size_t index = 0; index < views::viewCount; ++index) {
        views_[index] = MakeView(static_cast<ViewIndex>(index));
    }
    for (const std::unique_ptr<views::View>& view : views_) {
        view->Layout(dc);
    }
    ArrangeView(pane_.ClientRectangle());
    ActivateCurrent(ViewArgument());
    // What a window kept while it was placed.
    ui::RethrowHeldException();
    open_ = true;
    UpdateSlideBar();
    TitleChanged();
    MenuStateChanged();
    // The keyboard came before there was a view to have it.
    if (GetFocus() == Handle()) {
        platform::HideInputPanelButton(Handle());
        Current().Focus();
    }
    platform::ClaimBackKey(Handle());
}

void MainFrame::ActivateCurrent(const ViewArgument& argument) {
    if (!Current().Activate(argument)) {
        // The last error may be that of any call before.
        throw faults::W32Fault(E_FAIL);
    }
}

void MainFrame::MeasureBand(HDC dc) {
    const std::optional<int> textHeight = ui::MeasureTextHeight(dc, ui::Fonts().Base());
    if (!textHeight) {
        throw faults::W32Fault();
    }
    bandHeight_ = ui::BandHeight(*textHeight);
}

bool MainFrame::Idle() {
    FollowScale();
    return Current().Idle();
}

void MainFrame::FollowScale() {
    RECT place;
    if (!AdoptScale(Handle(), &place)) {
        return;
    }
    ui::RunAction(Handle(), IDS_ACTION_FAILED, [&] {
        const platform::WindowDC dc(Handle());
        MeasureBand(dc);
        for (const std::unique_ptr<views::View>& view : views_) {
            view->Rescale(dc);
        }
        Place(place);
        Arrange();
        InvalidateRect(bar_.Handle(), nullptr, TRUE);
        InvalidateRect(slideBar_.Handle(), nullptr, TRUE);
    });
}

void MainFrame::FollowVisibleArea() {
    RECT area;
    if (platform::VisibleArea(Handle(), &area)) {
        Place(area);
    }
}

void MainFrame::Place(const RECT& area) {
    RECT window;
    if (!GetWindowRect(Handle(), &window) || window.left != area.left || window.top != area.top ||
        window.right != area.right || window.bottom != area.bottom) {
        MoveWindow(Handle(), area.left, area.top, ui::Width(area), ui::Height(area), TRUE);
    }
}

void MainFrame::Arrange() {
    RECT pane = ClientRectangle();
    const int barTop = std::max<int>(pane.top, pane.bottom - bandHeight_);
    MoveWindow(bar_.Handle(), pane.left, barTop, ui::Width(pane), pane.bottom - barTop, TRUE);
    pane.bottom = barTop;
    ArrangeSlideBar(&pane);
    MoveWindow(pane_.Handle(), pane.left, pane.top, ui::Width(pane), ui::Height(pane), TRUE);
}

void MainFrame::ArrangeSlideBar(RECT* area) {
    const int thickness = slideBar_.Thickness();
    const int rowHeight = static_cast<int>(ui::GetScreenMetrics().iconSize) * 3 / 4;
    const ui::SlideBarPlace place =
        ui::PlaceSlideBar(ui::Width(*area), ui::Height(*area), rowHeight, thickness);
    RECT bar = *area;
    if (place == ui::SlideBarPlace::Top) {
        area->top = bar.bottom = bar.top + thickness;
    } else if (place == ui::SlideBarPlace::Left) {
        area->left = bar.right = bar.left + thickness;
    }
    MoveWindow(slideBar_.Handle(), bar.left, bar.top, ui::Width(bar), ui::Height(bar), TRUE);
    ShowWindow(slideBar_.Handle(), place == ui::SlideBarPlace::None ? SW_HIDE : SW_SHOW);
}

void MainFrame::ArrangeView(const RECT& area) {
    for (const std::unique_ptr<views::View>& view : views_) {
        if (view) {
            view->Arrange(area);
        }
    }
}

void MainFrame::TimerOfView(UINT_PTR timer) {
    if (open_) {
        ui::RunAction(Handle(), IDS_ACTION_FAILED, [&] { Current().Timer(timer); });
    }
}

void MainFrame::SwitchTo(ViewIndex view, const ViewArgument& argument) {
    ui::RunAction(Handle(), IDS_ACTION_FAILED, [&] { ShowView(view, argument); });
}

void MainFrame::ShowView(ViewIndex view, const ViewArgument& argument) {
    const platform::WindowDC dc(Handle());
    if (!Current().Deactivate(dc)) {
        return;
    }
    current_ = view;
    try {
        Current().Layout(dc);
        ActivateCurrent(argument);
    } catch (...) {
        UpdateSlideBar();
        TitleChanged();
        MenuStateChanged();
        throw;
    }
    UpdateSlideBar();
    TitleChanged();
    MenuStateChanged();
    Current().Focus();
}

void MainFrame::TitleChanged() {
    if (!open_) {
        return;
    }
    const auto show = [this] { return SetWindowTextW(Handle(), Current().Title().c_str()); };
    try {
        if (show()) {
            return;
        }
    } catch (const std::bad_alloc&) {
        // As any other failure.
    }
    // Another view's title would lie about what is shown, so it is tried once more.
    if (!show()) {
        throw faults::W32Fault();
    }
}

void MainFrame::MenuStateChanged() {
    // A popup is brought up to date when it opens.
    if (open_ && bar_.HasCommands()) {
        UpdateMenu();
        InvalidateRect(bar_.Handle(), nullptr, FALSE);
    }
}

void MainFrame::UpdateMenu() {
    const HMENU menu = bar_.Menu();
    for (const views::FlagCommand& entry : views::flagCommands) {
        views::CheckCommand(menu, entry.command, (flags_ & entry.mask) != 0);
    }
    for (const ViewCommand& entry : viewCommands) {
        if (entry.command != ID_SHOW_DLLS) {
            views::CheckCommand(menu, entry.command, entry.view == current_);
        }
    }
    Current().UpdateMenu(menu);
}

void MainFrame::UpdateSlideBar() {
    for (const ViewCommand& entry : viewCommands) {
        views::CheckCommand(slideBar_.Menu(), entry.command, entry.view == current_);
    }
    InvalidateRect(slideBar_.Handle(), nullptr, FALSE);
}

void MainFrame::ChooseLanguage(WORD command) {
    const std::optional<LANGID> language = languages_.Choice(bar_.Menu(), command);
    if (!language) {
        MessageBeep(~0u);
        return;
    }
    WriteNumber(settingLanguage, *language);
    if (*language == 0 || *language == text::Language()) {
        return;
    }
    // Kept on purpose: docs/compatibility.md#language-question
    if (MessageBoxW(Handle(), text::TextOf(IDS_ASK_RESTART).c_str(),
                    text::TextOf(IDS_LANGUAGE_CHANGED).c_str(),
                    MB_YESNO | MB_ICONQUESTION) == IDYES) {
        RequestRestart();
    }
}

void MainFrame::ChangeSettings() {
    if (!ShowSettings(Handle())) {
        return;
    }
    if (ui::Confirm(Handle(), text::TextOf(IDS_ASK_RESTART), ui::DefaultButton::Yes,
                    IDS_LANGUAGE_CHANGED)) {
        RequestRestart();
    }
}

void MainFrame::RequestRestart() {
    TheModule().SetExitHook(Restart);
    Exit();
}

void MainFrame::Exit() {
    if (!PostMessageW(Handle(), WM_CLOSE, 0, 0)) {
        throw faults::W32Fault();
    }
}

void MainFrame::ShowAboutBox() {
    ShowAbout(Handle());
}

bool MainFrame::SwitchCommand(WORD command) {
    for (const ViewCommand& entry : viewCommands) {
        if (entry.command == command) {
            SwitchTo(entry.view, ViewArgument());
            return true;
        }
    }
    return false;
}

void MainFrame::FlipFlag(DWORD mask) {
    const DWORD value = mask & ~flags_;
    flags_ ^= mask;
    Current().FlagsChanged(mask, value);
    TitleChanged();
    MenuStateChanged();
}

void MainFrame::OnCommand(WORD command) {
    ui::RunAction(Handle(), IDS_ACTION_FAILED, [&] {
        if (const DWORD mask = views::FlagOfCommand(command)) {
            FlipFlag(mask);
        } else if (command >= ID_FIRST_LANGUAGE && command <= ID_LAST_LANGUAGE) {
            ChooseLanguage(command);
        } else if (!views::RunCommand(command, *this, commands) && !Current().Command(command)) {
            SwitchCommand(command);
        }
    });
}

std::span<const views::KeyEntry> MainFrame::Keys() {
    static constexpr views::KeyEntry keys[] = {
        {'1', views::withAny, ID_SHOW_FILES},
        {'2', views::withAny, ID_SHOW_APPLICATIONS},
        {'3', views::withAny, ID_SHOW_PROCESSES},
        {'4', views::withAny, ID_SHOW_SYSTEM_STATUS},
    };
    return keys;
}

bool MainFrame::FrameKey(WPARAM key) {
    return SwitchCommand(views::CommandOfKey(Keys(), key, views::alone, false));
}

bool MainFrame::PreTranslate(const MSG& message) {
    if (message.message != WM_KEYUP || (message.wParam != VK_F1 && message.wParam != VK_F2) ||
        GetActiveWindow() != Handle()) {
        return false;
    }
    bar_.ActivateButton(message.wParam == VK_F1 ? 0 : 1);
    return true;
}

// The Back key belongs to what lies on top of the frame first, then to the view.
bool MainFrame::OnHotKey(LPARAM key) {
    if (HIWORD(key) != VK_ESCAPE) {
        return false;
    }
    const HWND active = GetActiveWindow();
    if (active && active != Handle()) {
        if (!SendMessageW(active, WM_HOTKEY, VK_ESCAPE, key) && (LOWORD(key) & MOD_KEYUP)) {
            PostMessageW(GetFocus(), WM_KEYDOWN, VK_ESCAPE, 0);
            PostMessageW(GetFocus(), WM_KEYUP, VK_ESCAPE, 0);
        }
        return true;
    }
    return (LOWORD(key) & MOD_KEYUP) && Current().Back();
}

// A popup, a box or a page of the program itself comes and goes without anything being read anew.
void MainFrame::OnActivate(bool active, HWND other) {
    const bool own = other && GetWindowThreadProcessId(other, nullptr) == GetCurrentThreadId();
    if (active) {
        platform::HideInputPanelButton(Handle());
        FollowVisibleArea();
    }
    if (own) {
        return;
    }
    ui::RunAction(Handle(), IDS_ACTION_FAILED, [&] {
        if (active) {
            Current().Resume();
        } else {
            Current().Suspend();
        }
    });
}

void MainFrame::OnDestroy() {
    if (!open_) {
        return;
    }
    open_ = false;
    WriteNumber(settingFlags, flags_);
    WriteNumber(settingView, SettingOfView(current_));
    for (const std::unique_ptr<views::View>& view : views_) {
        view->Close();
    }
    PostQuitMessage(1);
}

std::optional<std::wstring> MainFrame::StoredText(const wchar_t* name) const {
    return ReadText(name);
}

std::optional<DWORD> MainFrame::StoredNumber(const wchar_t* name) const {
    return ReadNumber(name);
}

void MainFrame::StoreNumber(const wchar_t* name, DWORD value) {
    WriteNumber(name, value);
}

void MainFrame::StoreText(const wchar_t* name, const std::wstring& value) {
    WriteText(name, value);
}

LRESULT MainFrame::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_CREATE:
            try {
                OnCreate();
                return 0;
            } catch (...) {
                return -1;
            }
        case WM_DESTROY:
            OnDestroy();
            break;
        case WM_SIZE:
            // Minimised, a window has no place for anything, and comes back as large as it was.
            if (wParam != SIZE_MINIMIZED) {
                Arrange();
                // Meanwhile it could give the keyboard to none of its parts either.
                if (open_ && GetFocus() == Handle()) {
                    Current().Focus();
                }
            }
            return 0;
        case WM_PAINT:
            ui::PaintWindow(Handle(), [](HDC dc, const RECT& client) {
                ui::FillWithSystemColor(dc, client, COLOR_WINDOW);
            });
            return 0;
        case WM_ERASEBKGND:
            return 1;
        case WM_SETFOCUS:
            if (open_) {
                Current().Focus();
            }
            return 0;
        case WM_ACTIVATE:
            if (open_) {
                OnActivate(LOWORD(wParam) != WA_INACTIVE, reinterpret_cast<HWND>(lParam));
            }
            break;
        case WM_SETTINGCHANGE:
            text::TextsChanged();
            [[fallthrough]];
        case WM_DISPLAYCHANGE:
            if (open_) {
                FollowVisibleArea();
            }
            break;
        case WM_DEVICECHANGE:
            if (open_) {
                ui::RunAction(Handle(), IDS_ACTION_FAILED,
                              [&] { Current().DeviceChanged(wParam); });
            }
            break;
        case WM_INITMENUPOPUP:
            ui::RunAction(Handle(), IDS_ACTION_FAILED, [&] {
                UpdateMenu();
                languages_.Update(reinterpret_cast<HMENU>(wParam));
            });
            return 0;
        case WM_COMMAND:
            OnCommand(LOWORD(wParam));
            return 0;
        case WM_MOUSEWHEEL:
            // Over a bar or a strip, which pass it on.
            if (IsChild(pane_.Handle(), GetFocus())) {
                ui::Send(GetFocus(), message, wParam, lParam);
            }
            return 0;
        case WM_HOTKEY:
            if (open_ && OnHotKey(lParam)) {
                return 0;
            }
            break;
        default:
            break;
    }
    return Default(message, wParam, lParam);
}

}  // namespace app
