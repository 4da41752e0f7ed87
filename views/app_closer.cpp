#include "views/app_closer.h"

#include <optional>
#include <string_view>
#include <utility>

#include "faults/fault.h"
#include "platform/handles.h"
#include "platform/processes.h"
#include "platform/shell.h"
#include "platform/toolhelp.h"
#include "platform/top_windows.h"
#include "text/comparison.h"

namespace views {

namespace {

// Kept on purpose: docs/compatibility.md#close-waits
constexpr DWORD exitTimeout = 3000;
constexpr DWORD pollPeriod = 300;
constexpr int mostPolls = 10;

std::wstring Trimmed(std::wstring title) {
    title.erase(title.find_last_not_of(L' ') + 1);
    title.erase(0, title.find_first_not_of(L' '));
    return title;
}

}  // namespace

AppName WholeNameOfApp(HWND window, WindowQuestions& questions) {
    if (std::optional<std::wstring> title = questions.Title(window)) {
        return AppName{*std::move(title), true};
    }
    std::wstring path = platform::ProcessPath(AppCloser::ProcessIdOfWindow(window));
    path.erase(0, path.rfind(L'\\') + 1);
    return AppName{std::move(path), false};
}

AppName NameOfApp(HWND window, WindowQuestions& questions) {
    AppName name = WholeNameOfApp(window, questions);
    name.text = Trimmed(std::move(name.text));
    return name;
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
    return text::SameIgnoringCase(title, cursorTitle) && GetClassNameW(window, className, 7) == 6 &&
           text::SameIgnoringCase(className, cursorClass);
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

void AppCloser::Visit(HWND window, Pass pass, WindowQuestions& questions) const {
    if (window == spared_ || GetParent(window) || !IsWindowVisible(window) ||
        !IsClosableApp(window, NameOfApp(window, questions).text)) {
        return;
    }
    if (pass == Pass::Wait) {
        WaitForAppExit(window, ProcessIdOfWindow(window));
    } else {
        PostMessageW(window, WM_CLOSE, 0, 0);
    }
}

void AppCloser::VisitAll(Pass pass, WindowQuestions& questions) const {
    const bool all = platform::ForEachWindow([&](HWND window) {
        Visit(window, pass, questions);
        return true;
    });
    if (!all) {
        throw faults::W32Fault();
    }
}

void AppCloser::CloseAllApps() {
    WindowQuestions questions;
    VisitAll(Pass::Ask, questions);
    VisitAll(Pass::Wait, questions);
    SetWindowPos(desktop_, spared_, 0, 0, 0, 0, SWP_NOSIZE | SWP_NOMOVE | SWP_NOACTIVATE);
}

}  // namespace views
