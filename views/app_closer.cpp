#include "views/app_closer.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <utility>

#include "faults/fault.h"
#include "platform/handles.h"
#include "platform/processes.h"
#include "platform/shell.h"
#include "platform/toolhelp.h"
#include "platform/top_windows.h"

namespace views {

namespace {

// A window that hangs must not hang its observer. Milliseconds.
constexpr UINT longestAnswer = 1000;
// Characters; what claims to be longer is not believed.
constexpr DWORD_PTR longestText = 0xFFFF;
// Kept on purpose: docs/compatibility.md#close-waits
constexpr DWORD exitTimeout = 3000;
constexpr DWORD pollPeriod = 300;
constexpr int mostPolls = 10;

bool SameText(const wchar_t* first, int firstLength, const wchar_t* second, int secondLength) {
    return CompareStringW(LOCALE_USER_DEFAULT, NORM_IGNORECASE, first, firstLength, second,
                          secondLength) == CSTR_EQUAL;
}

// A window's text; none when it does not answer. One that is gone has an empty one.
std::optional<std::wstring> AskedTitle(HWND window) {
    // Only the first question may go unanswered: the second lends its memory.
    DWORD_PTR length = 0;
    if (!SendMessageTimeoutW(window, WM_GETTEXTLENGTH, 0, 0, SMTO_NORMAL, longestAnswer, &length)) {
        return IsWindow(window) ? std::nullopt : std::optional<std::wstring>(std::in_place);
    }
    if (length == 0 || length > longestText) {
        return std::wstring();
    }
    std::wstring title(length + 1, L'\0');
    const LRESULT copied =
        SendMessageW(window, WM_GETTEXT, title.size(), reinterpret_cast<LPARAM>(title.data()));
    title.resize(
        std::min(static_cast<size_t>(length), static_cast<size_t>(std::max<LRESULT>(copied, 0))));
    return title;
}

std::wstring Trimmed(std::wstring title) {
    title.erase(title.find_last_not_of(L' ') + 1);
    title.erase(0, title.find_first_not_of(L' '));
    return title;
}

}  // namespace

std::wstring UntrimmedTitle(HWND window) {
    return AskedTitle(window).value_or(std::wstring());
}

std::wstring AppName(HWND window) {
    if (std::optional<std::wstring> title = AskedTitle(window)) {
        return Trimmed(*std::move(title));
    }
    std::wstring path = platform::ProcessPath(AppCloser::ProcessIdOfWindow(window));
    path.erase(0, path.rfind(L'\\') + 1);
    return path;
}

AppCloser::AppCloser() : desktop_(platform::ShellDesktopWindow()) {
    if (desktop_) {
        shellProcess_ = ProcessIdOfWindow(desktop_);
    }
}

DWORD AppCloser::ProcessIdOfWindow(HWND window) {
    DWORD process = 0;
    const DWORD thread = GetWindowThreadProcessId(window, &process);
    if (process == 0 && !platform::ProcessOfThread(thread, &process)) {
        throw faults::W32Fault();
    }
    return process;
}

bool AppCloser::IsCursorWindow(HWND window, const std::wstring& title) {
    // Kept on purpose: docs/compatibility.md#cursor-window
    constexpr std::wstring_view cursorTitle = L"CursorWindow";
    constexpr std::wstring_view cursorClass = L"static";
    wchar_t className[7] = {};
    return SameText(title.c_str(), static_cast<int>(title.size()), cursorTitle.data(),
                    static_cast<int>(cursorTitle.size())) &&
           GetClassNameW(window, className, 7) == 6 &&
           SameText(className, 6, cursorClass.data(), 6);
}

bool AppCloser::IsClosableApp(HWND window, const std::wstring& title) const {
    return !title.empty() && !IsHidden(window) && !IsCursorWindow(window, title) &&
           ProcessIdOfWindow(window) != shellProcess_;
}

void AppCloser::HideApp(HWND window) {
    if (hidden_) {
        hidden_->HideApp(window);
    }
}

void AppCloser::WaitForAppExit(HWND window, DWORD processId) {
    const platform::UniqueHandle process(OpenProcess(PROCESS_ALL_ACCESS, FALSE, processId));
    if (process) {
        if (WaitForSingleObject(process.Get(), exitTimeout) == WAIT_FAILED) {
            throw faults::W32Fault();
        }
        return;
    }
    for (int polls = 0; IsWindow(window) && polls < mostPolls; ++polls) {
        Sleep(pollPeriod);
    }
}

void AppCloser::Visit(HWND window, Pass pass) const {
    if (window == spared_ || GetParent(window) || !IsWindowVisible(window) ||
        !IsClosableApp(window, AppName(window))) {
        return;
    }
    if (pass == Pass::Wait) {
        WaitForAppExit(window, ProcessIdOfWindow(window));
    } else {
        PostMessageW(window, WM_CLOSE, 0, 0);
    }
}

void AppCloser::VisitAll(Pass pass) const {
    const bool all = platform::ForEachWindow([this, pass](HWND window) {
        Visit(window, pass);
        return true;
    });
    if (!all) {
        throw faults::W32Fault();
    }
}

void AppCloser::CloseAllApps() {
    VisitAll(Pass::Ask);
    VisitAll(Pass::Wait);
    SetWindowPos(desktop_, spared_, 0, 0, 0, 0, SWP_NOSIZE | SWP_NOMOVE | SWP_NOACTIVATE);
}

}  // namespace views
