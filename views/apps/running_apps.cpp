#include "views/apps/running_apps.h"

#include "faults/fault.h"
#include "platform/processes.h"
#include "platform/shell.h"
#include "platform/top_windows.h"
#include "views/display_flags.h"

namespace views {

namespace {

using AppFound = std::function<void(std::unique_ptr<AppItem>)>;

void Examine(HWND window, const AppCloser& closer, DWORD flags, WindowQuestions& questions,
             const AppFound& found) {
    if (GetParent(window) || !IsWindowVisible(window)) {
        return;
    }
    const DWORD process = AppCloser::ProcessIdOfWindow(window);
    if (process == GetCurrentProcessId()) {
        return;
    }
    std::wstring path = platform::ProcessPath(process);
    if (path.empty()) {
        throw faults::W32Fault();
    }
    AppName name = NameOfApp(window, questions);
    if (name.text.empty() || AppCloser::IsCursorWindow(window, name.text) ||
        (!(flags & flagShowCriticalApplications) && process == closer.ShellProcessId()) ||
        (!(flags & flagShowHiddenApplications) && closer.Hides(path))) {
        return;
    }
    found(std::make_unique<AppItem>(
        AppItem{std::move(name.text), std::move(path), unknownIcon, window, name.answers}));
}

}  // namespace

void FindRunningApps(const AppCloser& closer, DWORD flags, const AppFound& found) {
    WindowQuestions questions;
    const bool complete = platform::ForEachWindow([&](HWND window) {
        Examine(window, closer, flags, questions, found);
        return true;
    });
    if (!complete) {
        throw faults::W32Fault();
    }
}

}  // namespace views
