#include "views/apps/applications_view.h"

#include "faults/fault.h"
#include "platform/handles.h"
#include "platform/processes.h"
#include "platform/top_windows.h"
#include "res/resource.h"
#include "text/format.h"
#include "ui/dialog/action.h"
#include "views/app_closer.h"
#include "views/apps/hidden_app_list.h"
#include "views/apps/running_apps.h"
#include "views/apps/window_page.h"
#include "views/auto_reset.h"

namespace views {

const CommandEntry<ApplicationsView> ApplicationsView::commands[] = {
    {ID_STOP, Needs::Selection, &ApplicationsView::Stop},
    {ID_STOP_ALL, Needs::Nothing, &ApplicationsView::StopAll},
    {ID_HIDE, Needs::Selection, &ApplicationsView::Hide},
    {ID_PROPERTIES, Needs::Selection, &ApplicationsView::ShowInformation},
    {ID_GO_TO_PROCESS, Needs::Selection, &ApplicationsView::GoToProcess},
    {ID_GO_TO_MODULE, Needs::Selection, &ApplicationsView::GoToModule},
};

// Kept on purpose: docs/compatibility.md#apps-keys
std::span<const KeyEntry> ApplicationsView::Keys() const {
    static constexpr KeyEntry keys[] = {
        {'0', withAny, ID_STOP_ALL},
        {'8', withAny, ID_STOP},
        {VK_DELETE, alone, ID_STOP},
        {VK_RETURN, withAlt, ID_PROPERTIES},
    };
    return keys;
}

ApplicationsView::ApplicationsView(Frame& frame) : ListView(frame, IDR_APPLICATIONS) {
    SetList(list_);
}

void ApplicationsView::Layout(HDC dc) {
    ListView::Layout(dc);
    rows_.Layout(dc);
}

bool ApplicationsView::Activate(const ViewArgument& argument) {
    if (!ListView::Activate(argument)) {
        return false;
    }
    Enumerate(nullptr);
    return true;
}

void ApplicationsView::Resume() {
    // The windows that are asked for their titles may activate this one meanwhile.
    if (!enumerating_) {
        Refresh();
    }
}

void ApplicationsView::FlagsChanged(DWORD mask, DWORD) {
    if (mask & (flagShowCriticalApplications | flagShowHiddenApplications)) {
        Refresh();
    }
}

std::wstring ApplicationsView::Title() const {
    return text::FormatText(IDS_APPLICATIONS_TITLE, list_.GetCount());
}

void ApplicationsView::OnActivated(unsigned row) {
    if (row == ui::noRow) {
        return;
    }
    const HWND window = list_[row].window;
    if (!IsWindow(window) || !SetForegroundWindow(platform::InnermostOwnedWindow(window))) {
        MessageBeep(~0u);
    }
}

void ApplicationsView::UpdateMenu(HMENU menu) {
    EnableCommands(menu, *this, commands);
}

bool ApplicationsView::Allows(WORD command) const {
    return AllowsCommand(command, *this, commands);
}

bool ApplicationsView::Command(WORD command) {
    return RunCommand(command, *this, commands) || ListView::Command(command);
}

void ApplicationsView::Refresh() {
    Enumerate(HasSelection() ? SelectedWindow() : nullptr);
}

void ApplicationsView::Enumerate(HWND selected) {
    const platform::WaitCursor cursor;
    const AutoReset enumerating(enumerating_);
    ui::RowList<AppItem>::Rows rows;
    try {
        FindRunningApps(GetFrame().Closer(), GetFrame().Flags(),
                        [&rows](std::unique_ptr<AppItem> item) { rows.Add(std::move(item)); });
    } catch (...) {
        // Kept on purpose: docs/compatibility.md#silent-listing
        // The windows behind the one that failed are listed when they can be.
    }
    list_.Refill(std::move(rows),
                 [selected](const AppItem& item) { return selected && item.window == selected; });
    GetFrame().TitleChanged();
    GetFrame().MenuStateChanged();
}

void ApplicationsView::Hide() {
    const HWND window = SelectedWindow();
    AppCloser& closer = GetFrame().Closer();
    // Kept on purpose: docs/compatibility.md#critical-hide
    WindowQuestions questions;
    const bool critical = AppCloser::ProcessIdOfWindow(window) == closer.ShellProcessId() &&
                          !NameOfApp(window, questions).text.empty();
    if (!IsWindow(window) || critical) {
        return;
    }
    closer.HideApp(window);
    if (GetFrame().Flags() & flagShowHiddenApplications) {
        return;
    }
    // It may have brought the list up to date itself, by activating this window when it was asked.
    if (HasSelection()) {
        list_.RemoveItem(list_.GetSelection());
    }
    GetFrame().TitleChanged();
    if (!HasSelection()) {
        GetFrame().MenuStateChanged();
    }
}

void ApplicationsView::Stop() {
    const HWND window = SelectedWindow();
    ui::RunAction(GetFrame().MainWindow(), IDS_CANNOT_STOP, [this, window] {
        if (!IsWindow(window)) {
            Refresh();
            return;
        }
        WindowQuestions questions;
        if (GetFrame().Closer().IsClosableApp(window, NameOfApp(window, questions).text) ||
            ui::Confirm(GetFrame().MainWindow(), text::TextOf(IDS_ASK_STOP),
                        ui::DefaultButton::No)) {
            StopNow(window);
        }
        // Kept on purpose: docs/compatibility.md#stop-forgets-selection
        Enumerate(nullptr);
    });
}

void ApplicationsView::StopNow(HWND window) {
    const platform::WaitCursor cursor;
    const DWORD process = AppCloser::ProcessIdOfWindow(window);
    PostMessageW(window, WM_CLOSE, 0, 0);
    if (process != 0) {
        AppCloser::WaitForAppExit(window, process);
    }
}

void ApplicationsView::StopAll() {
    if (!ui::Confirm(list_.Handle(), text::TextOf(IDS_ASK_STOP_ALL), ui::DefaultButton::No)) {
        return;
    }
    const platform::WaitCursor cursor;
    GetFrame().Closer().CloseAllApps();
    Refresh();
}

void ApplicationsView::ShowInformation() {
    const HWND window = SelectedWindow();
    if (IsWindow(window)) {
        ShowWindowInformation(GetActiveWindow(), window);
    } else {
        MessageBeep(~0u);
    }
}

void ApplicationsView::GoToProcess() {
    const HWND window = SelectedWindow();
    if (const DWORD process = AppCloser::ProcessIdOfWindow(window)) {
        GetFrame().SwitchTo(ViewIndex::Processes, ViewArgument{process, std::wstring()});
    }
}

void ApplicationsView::GoToModule() {
    const DWORD process = AppCloser::ProcessIdOfWindow(SelectedWindow());
    // No process would be this one to a handheld; a name alone, as a PC may tell, is no path.
    std::wstring path = process ? platform::ProcessPath(process) : std::wstring();
    if (path.find(L'\\') != std::wstring::npos) {
        GetFrame().SwitchTo(ViewIndex::Files, ViewArgument{0, std::move(path)});
    } else {
        MessageBeep(~0u);
    }
}

}  // namespace views
