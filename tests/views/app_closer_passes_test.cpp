#include "views/app_closer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <set>
#include <string>
#include <vector>

#include "faults/fault.h"
#include "tests/support/platform_hook.h"

using namespace test;
using namespace views;

namespace {

// A window of some application; all of them are this process's.
class AppWindow {
 public:
    explicit AppWindow(const wchar_t* title, DWORD style = WS_POPUP | WS_VISIBLE,
                       HWND owner = nullptr, const wchar_t* className = L"VantorTestApp") {
        WNDCLASSW windowClass = {};
        windowClass.lpfnWndProc = Procedure;
        windowClass.hInstance = GetModuleHandleW(nullptr);
        windowClass.lpszClassName = L"VantorTestApp";
        RegisterClassW(&windowClass);
        window_ = CreateWindowExW(0, className, title, style, 0, 0, 20, 20, owner, nullptr,
                                  GetModuleHandleW(nullptr), nullptr);
        EXPECT_TRUE(window_);
        shown_.push_back(window_);
    }
    ~AppWindow() {
        std::erase(shown_, window_);
        DestroyWindow(window_);
    }
    AppWindow(const AppWindow&) = delete;
    AppWindow& operator=(const AppWindow&) = delete;

    operator HWND() const { return window_; }
    static const std::vector<HWND>& Shown() { return shown_; }

 private:
    // Refuses to close, as an application may.
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
        return message == WM_CLOSE ? 0 : DefWindowProcW(window, message, wParam, lParam);
    }

    static inline std::vector<HWND> shown_;
    HWND window_;
};

std::set<HWND> asked;
std::vector<DWORD> waits;
// What was done, one after the other: 'a' for a window that was asked, 'w' for a wait.
std::string steps;
DWORD waitResult = WAIT_TIMEOUT;
HWND shellDesktop = nullptr;
bool enumerationFails = false;

struct Placement {
    HWND window;
    HWND behind;
    UINT flags;
};
std::vector<Placement> placed;

BOOL WINAPI OnlyOurs(WNDENUMPROC visit, LPARAM parameter) {
    if (enumerationFails) {
        SetLastError(ERROR_NOT_ENOUGH_MEMORY);
        return FALSE;
    }
    for (const HWND window : AppWindow::Shown()) {
        if (!visit(window, parameter)) {
            return FALSE;
        }
    }
    return TRUE;
}

BOOL WINAPI NotePost(HWND window, UINT message, WPARAM, LPARAM) {
    if (message == WM_CLOSE) {
        asked.insert(window);
        steps += 'a';
    }
    return TRUE;
}

DWORD(WINAPI* realWait)(HANDLE, DWORD) = nullptr;

DWORD WINAPI NoteWait(HANDLE handle, DWORD milliseconds) {
    if (milliseconds == INFINITE) {
        // The test framework's own.
        return realWait(handle, milliseconds);
    }
    waits.push_back(milliseconds);
    steps += 'w';
    SetLastError(ERROR_INVALID_HANDLE);
    return waitResult;
}

HWND WINAPI FindShell() {
    return shellDesktop;
}
HWND WINAPI NoDesktop() {
    return nullptr;
}

BOOL WINAPI NotePlacement(HWND window, HWND behind, int, int, int, int, UINT flags) {
    placed.push_back(Placement{window, behind, flags});
    return TRUE;
}

HWND hungWindow = nullptr;
LRESULT(WINAPI* realSend)(HWND, UINT, WPARAM, LPARAM, UINT, UINT, DWORD_PTR*) = nullptr;
int timesAsked = 0;
LRESULT WINAPI NoAnswer(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT flags,
                        UINT timeout, DWORD_PTR* answer) {
    timesAsked += window == hungWindow;
    return window == hungWindow ? 0
                                : realSend(window, message, wParam, lParam, flags, timeout, answer);
}

HRESULT CodeOf(const std::function<void()>& action) {
    try {
        action();
    } catch (const faults::W32Fault& fault) {
        return fault.Code();
    }
    return S_OK;
}

class HidesOne final : public HiddenApps {
 public:
    explicit HidesOne(HWND window) : window_(window) {}
    bool IsHidden(HWND window) const override { return window == window_; }
    bool Hides(const std::wstring&) const override { return false; }
    void HideApp(HWND) override {}

 private:
    HWND window_;
};

class ClosingPasses : public testing::Test {
 protected:
    ClosingPasses() {
        realWait = wait_.Original();
        asked.clear();
        waits.clear();
        steps.clear();
        placed.clear();
        waitResult = WAIT_TIMEOUT;
        shellDesktop = nullptr;
        enumerationFails = false;
    }
    static HRESULT Code(DWORD error) { return faults::ResultFromError(error); }

    PlatformHook<BOOL WINAPI(WNDENUMPROC, LPARAM)> windows_{"EnumWindows", OnlyOurs};
    PlatformHook<BOOL WINAPI(HWND, UINT, WPARAM, LPARAM)> post_{"PostMessageW", NotePost};
    PlatformHook<DWORD WINAPI(HANDLE, DWORD)> wait_{"WaitForSingleObject", NoteWait};
    PlatformHook<HWND WINAPI()> shell_{"GetShellWindow", FindShell};
    PlatformHook<HWND WINAPI()> desktop_{"GetDesktopWindow", NoDesktop};
    PlatformHook<BOOL WINAPI(HWND, HWND, int, int, int, int, UINT)> place_{"SetWindowPos",
                                                                           NotePlacement};
};

class CriticalApps : public ClosingPasses {};
class WaitingForApps : public ClosingPasses {};

}  // namespace

TEST_F(CriticalApps, AreThoseOfTheShellsProcess) {
    const AppWindow window(L"App");
    shellDesktop = window;
    const AppCloser closer;
    EXPECT_EQ(closer.DesktopWindow(), window);
    EXPECT_EQ(closer.ShellProcessId(), GetCurrentProcessId());
    EXPECT_FALSE(closer.IsClosableApp(window, L"App"));
}

TEST_F(WaitingForApps, TakesThreeSecondsAtTheMost) {
    const AppWindow window(L"App");
    AppCloser::WaitForAppExit(window, GetCurrentProcessId());
    EXPECT_EQ(waits, (std::vector<DWORD>{3000}));
    waitResult = WAIT_FAILED;
    EXPECT_EQ(CodeOf([&] { AppCloser::WaitForAppExit(window, GetCurrentProcessId()); }),
              Code(ERROR_INVALID_HANDLE));
}

TEST_F(ClosingPasses, AsksAppsOnlyAndSparesItsOwnWindow) {
    const AppWindow own(L"Vantor");
    const AppWindow app(L"App");
    const AppWindow second(L"Second");
    const AppWindow untitled(L"   ");
    const AppWindow invisible(L"Invisible", WS_POPUP);
    const AppWindow owned(L"Owned", WS_POPUP | WS_VISIBLE, app);
    const AppWindow hiddenByUser(L"Hidden");
    AppCloser closer;
    closer.SpareWindow(own);
    HidesOne hidden(hiddenByUser);
    closer.SetHiddenApps(&hidden);
    closer.CloseAllApps();
    EXPECT_EQ(asked, (std::set<HWND>{app, second}));
    // Both are still there, so both are waited for.
    EXPECT_EQ(waits, (std::vector<DWORD>{3000, 3000}));
}

TEST_F(ClosingPasses, AsksAllBeforeItWaitsForTheFirst) {
    const AppWindow first(L"First");
    const AppWindow second(L"Second");
    const AppWindow third(L"Third");
    AppCloser closer;
    closer.CloseAllApps();
    EXPECT_EQ(steps, "aaawww");
}

TEST_F(ClosingPasses, AsksAWindowThatDoesNotAnswerAsWell) {
    const AppWindow app(L"App");
    const AppWindow hung(L"");
    const PlatformHook<decltype(NoAnswer)> send("SendMessageTimeoutW", NoAnswer);
    realSend = send.Original();
    hungWindow = hung;
    AppCloser closer;
    closer.CloseAllApps();
    EXPECT_EQ(asked, (std::set<HWND>{app, hung}));
    hungWindow = nullptr;
    asked.clear();
    closer.CloseAllApps();
    EXPECT_EQ(asked, (std::set<HWND>{app})) << "it answers that it has no title";
}

// All windows here are this thread's.
TEST_F(ClosingPasses, PutsNoQuestionTwiceToAWindowThatDoesNotAnswer) {
    const AppWindow hung(L"");
    const PlatformHook<decltype(NoAnswer)> send("SendMessageTimeoutW", NoAnswer);
    realSend = send.Original();
    hungWindow = hung;
    timesAsked = 0;
    AppCloser closer;
    closer.CloseAllApps();
    hungWindow = nullptr;
    EXPECT_EQ(asked, (std::set<HWND>{hung}));
    EXPECT_EQ(timesAsked, 1);
}

TEST_F(ClosingPasses, LeavesTheDesktopBehindItsOwnWindow) {
    const AppWindow own(L"Vantor");
    const AppWindow desktop(L"Desktop");
    shellDesktop = desktop;
    AppCloser closer;
    closer.SpareWindow(own);
    closer.CloseAllApps();
    ASSERT_EQ(placed.size(), 1u);
    EXPECT_EQ(placed[0].window, desktop);
    EXPECT_EQ(placed[0].behind, own);
    EXPECT_EQ(placed[0].flags, 0x13u);
    EXPECT_TRUE(asked.empty()) << "the shell's own windows are critical";
}

TEST_F(ClosingPasses, ThatFailsIsAFault) {
    const AppWindow app(L"App");
    AppCloser closer;
    enumerationFails = true;
    EXPECT_EQ(CodeOf([&] { closer.CloseAllApps(); }), Code(ERROR_NOT_ENOUGH_MEMORY));
    enumerationFails = false;
    // A failure within the platform's walk over the windows comes out of it whole.
    waitResult = WAIT_FAILED;
    EXPECT_EQ(CodeOf([&] { closer.CloseAllApps(); }), Code(ERROR_INVALID_HANDLE));
    EXPECT_EQ(asked, (std::set<HWND>{app}));
}
