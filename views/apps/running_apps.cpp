#include "views/apps/running_apps.h"

#include <exception>

#include "faults/fault.h"
#include "platform/aygshell.h"
#include "platform/coredll.h"
#include "views/display_flags.h"

namespace views {

namespace {

struct Search {
    const AppCloser& closer;
    DWORD flags;
    const std::function<void(std::unique_ptr<AppItem>)>& found;
    // No exception may cross the platform's frames.
    std::exception_ptr fault;
};

void Look(const Search& search, HWND window) {
    if (GetParent(window) || !IsWindowVisible(window)) {
        return;
    }
    const DWORD process = AppCloser::ProcessIdOfWindow(window);
    if (process == GetCurrentProcessId()) {
        return;
    }
    wchar_t path[MAX_PATH] = {};
    if (platform::ProcessPath(process, path, MAX_PATH) == 0) {
        throw faults::W32Fault();
    }
    std::wstring title = AppName(window);
    if (title.empty() || AppCloser::IsCursorWindow(window, title) ||
        (!(search.flags & flagShowCriticalApplications) &&
         process == search.closer.ShellProcessId()) ||
        (!(search.flags & flagShowHiddenApplications) && search.closer.IsHidden(window))) {
        return;
    }
    SHFILEINFOW info = {};
    const bool hasIcon =
        platform::FileInfo(path, 0, &info, SHGFI_SYSICONINDEX | SHGFI_SMALLICON) != 0;
    search.found(
        std::make_unique<AppItem>(AppItem{std::move(title), hasIcon ? info.iIcon : -1, window}));
}

BOOL CALLBACK Visit(HWND window, LPARAM parameter) {
    Search& search = *reinterpret_cast<Search*>(parameter);
    try {
        Look(search, window);
        return TRUE;
    } catch (...) {
        search.fault = std::current_exception();
        return FALSE;
    }
}

struct OwnedSearch {
    HWND owner;
    HWND skipped;
    HWND found;
};

BOOL CALLBACK VisitOwned(HWND window, LPARAM parameter) {
    OwnedSearch& search = *reinterpret_cast<OwnedSearch*>(parameter);
    if (window == search.skipped || !IsWindowVisible(window) ||
        GetWindow(window, GW_OWNER) != search.owner) {
        return TRUE;
    }
    search.found = window;
    return FALSE;
}

}  // namespace

void FindRunningApps(const AppCloser& closer, DWORD flags,
                     const std::function<void(std::unique_ptr<AppItem>)>& found) {
    Search search = {closer, flags, found, nullptr};
    const BOOL complete = EnumWindows(Visit, reinterpret_cast<LPARAM>(&search));
    if (search.fault) {
        std::rethrow_exception(search.fault);
    }
    if (!complete) {
        throw faults::W32Fault();
    }
}

HWND InnermostOwnedWindow(HWND window) {
    for (;;) {
        OwnedSearch search = {window, platform::FindMenuBar(window), nullptr};
        EnumWindows(VisitOwned, reinterpret_cast<LPARAM>(&search));
        if (!search.found) {
            return window;
        }
        window = search.found;
    }
}

}  // namespace views
