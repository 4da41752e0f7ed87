#include "views/apps/applications_view.h"

#include "faults/fault.h"
#include "platform/coredll.h"
#include "platform/handles.h"
#include "res/resource.h"
#include "text/format.h"
#include "ui/dialog/action.h"
#include "views/app_closer.h"
#include "views/apps/hidden_app_list.h"
#include "views/apps/running_apps.h"
#include "views/apps/window_page.h"
#include "views/raised.h"

namespace views {

namespace {

constexpr WPARAM keyStopAll = L'0';
constexpr WPARAM keyStop = L'8';

// "No" is the default.
bool Asked(HWND owner, UINT question) {
    static constexpr UINT yesNo[] = {IDS_BUTTON_YES, IDS_BUTTON_NO};
    return ui::ShowMessage(owner, std::wstring(text::LoadText(question)), IDS_WARNING, 2, yesNo,
                           1) == IDS_BUTTON_YES;
}

}  // namespace

void ApplicationsView::Layout(HDC dc) {
    ListView::Layout(dc);
    rows_.Layout(dc);
}

bool ApplicationsView::Activate(const ViewArgument& argument) {
    if (!ListView::Activate(argument)) {
        return false;
    }
    Enumerate();
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
    return text::FormatText(IDS_APPLICATIONS_TITLE, List().GetCount());
}

void ApplicationsView::DrawRow(const DRAWITEMSTRUCT& row) {
    rows_.Draw(row, ItemOf(row.itemData));
}

void ApplicationsView::DeleteRow(ULONG_PTR data) {
    std::unique_ptr<AppItem>(&ItemOf(data));
}

void ApplicationsView::Tap(unsigned row) {
    const HWND window = ItemOf(List().GetItemData(row)).window;
    if (!IsWindow(window) || !SetForegroundWindow(InnermostOwnedWindow(window))) {
        MessageBeep(~0u);
    }
}

void ApplicationsView::UpdateMenu(HMENU menu) {
    for (const UINT command :
         {ID_STOP, ID_GO_TO_PROCESS, ID_GO_TO_MODULE, ID_HIDE, ID_PROPERTIES}) {
        EnableCommand(menu, command, HasSelection());
    }
}

bool ApplicationsView::Key(WPARAM key) {
    if (key != keyStopAll && key != keyStop) {
        return ListView::Key(key);
    }
    if (key == keyStopAll || HasSelection()) {
        PostMessageW(GetFrame().MainWindow(), WM_COMMAND, key == keyStopAll ? ID_STOP_ALL : ID_STOP,
                     0);
    }
    return true;
}

bool ApplicationsView::Command(WORD command) {
    using Operation = void (ApplicationsView::*)(HWND);
    Operation operation = nullptr;
    switch (command) {
        case ID_STOP_ALL:
            StopAll();
            return true;
        case ID_STOP:
            operation = &ApplicationsView::Stop;
            break;
        case ID_HIDE:
            operation = &ApplicationsView::Hide;
            break;
        case ID_PROPERTIES:
            operation = &ApplicationsView::ShowInformation;
            break;
        case ID_GO_TO_PROCESS:
            operation = &ApplicationsView::GoToProcess;
            break;
        case ID_GO_TO_MODULE:
            operation = &ApplicationsView::GoToModule;
            break;
        default:
            return ListView::Command(command);
    }
    if (HasSelection()) {
        (this->*operation)(SelectedItem().window);
    } else {
        MessageBeep(~0u);
    }
    return true;
}

void ApplicationsView::Refresh() {
    const HWND selected = HasSelection() ? SelectedItem().window : nullptr;
    Enumerate();
    for (unsigned row = 0; selected && row < List().GetCount(); ++row) {
        if (ItemOf(List().GetItemData(row)).window == selected) {
            List().SetSelection(row);
            return;
        }
    }
}

void ApplicationsView::Enumerate() {
    const platform::WaitCursor cursor;
    const Raised enumerating(enumerating_);
    const unsigned top = List().GetTopIndex();
    List().Clear();
    try {
        FindRunningApps(GetFrame().Closer(), GetFrame().Flags(),
                        [this](std::unique_ptr<AppItem> item) { InsertSorted(std::move(item)); });
    } catch (...) {
        // The windows behind the one that failed are listed when they can be.
    }
    List().Layout();
    List().SetTopIndex(top);
    GetFrame().TitleChanged();
    GetFrame().MenuStateChanged();
}

void ApplicationsView::InsertSorted(std::unique_ptr<AppItem> item) {
    const IgnoresCase before;
    unsigned first = 0;
    unsigned count = List().GetCount();
    while (count > 0) {
        const unsigned half = count / 2;
        if (before(ItemOf(List().GetItemData(first + half)).title, item->title)) {
            first += half + 1;
            count -= half + 1;
        } else {
            count = half;
        }
    }
    List().InsertItem(first, reinterpret_cast<ULONG_PTR>(item.get()));
    static_cast<void>(item.release());
}

void ApplicationsView::Hide(HWND window) {
    AppCloser& closer = GetFrame().Closer();
    const bool critical =
        !AppName(window).empty() && AppCloser::ProcessIdOfWindow(window) == closer.ShellProcessId();
    if (!IsWindow(window) || critical) {
        return;
    }
    closer.HideApp(window);
    if (GetFrame().Flags() & flagShowHiddenApplications) {
        return;
    }
    // It may have brought the list up to date itself, by activating this window when it was asked.
    if (HasSelection()) {
        List().RemoveItem(List().GetSelection());
        List().Remeasure();
    }
    GetFrame().TitleChanged();
    if (!HasSelection()) {
        GetFrame().MenuStateChanged();
    }
}

void ApplicationsView::Stop(HWND window) {
    ui::RunAction(GetFrame().MainWindow(), IDS_CANNOT_STOP, [this, window] {
        if (!IsWindow(window)) {
            Refresh();
            return;
        }
        if (GetFrame().Closer().IsClosableApp(window, AppName(window)) ||
            Asked(GetFrame().MainWindow(), IDS_ASK_STOP)) {
            StopNow(window);
        }
        Enumerate();
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
    if (!Asked(List().Handle(), IDS_ASK_STOP_ALL)) {
        return;
    }
    const platform::WaitCursor cursor;
    GetFrame().Closer().CloseAllApps();
    Refresh();
}

void ApplicationsView::ShowInformation(HWND window) {
    if (IsWindow(window)) {
        ShowWindowInformation(GetActiveWindow(), window);
    } else {
        MessageBeep(~0u);
    }
}

void ApplicationsView::GoToProcess(HWND window) {
    if (const DWORD process = AppCloser::ProcessIdOfWindow(window)) {
        GetFrame().SwitchTo(ViewIndex::Processes, ViewArgument{process, std::wstring()});
    }
}

void ApplicationsView::GoToModule(HWND window) {
    const DWORD process = AppCloser::ProcessIdOfWindow(window);
    wchar_t path[MAX_PATH] = {};
    if (platform::ProcessPath(process, path, MAX_PATH)) {
        GetFrame().SwitchTo(ViewIndex::Files, ViewArgument{0, path});
    } else {
        MessageBeep(~0u);
    }
}

}  // namespace views
