#include "views/app_closer.h"

#include <gtest/gtest.h>

#include "faults/fault.h"
#include "tests/support/platform_hook.h"
#include "tests/support/program.h"
#include "tests/support/sample_program.h"
#include "tests/support/wait.h"
#include "tests/support/world.h"
// Behind the platform's own declarations.
#include <tlhelp32.h>

using namespace test;
using namespace views;

namespace {

std::wstring TitleOf(HWND window) {
    WindowQuestions questions;
    return NameOfApp(window, questions).text;
}

class SampleWindow {
 public:
    explicit SampleWindow(const wchar_t* title, const wchar_t* windowClass = L"STATIC")
        : window_(CreateWindowExW(0, windowClass, title, WS_POPUP | WS_VISIBLE, 0, 0, 20, 20,
                                  nullptr, nullptr, GetModuleHandleW(nullptr), nullptr)) {}
    ~SampleWindow() { DestroyWindow(window_); }
    SampleWindow(const SampleWindow&) = delete;
    SampleWindow& operator=(const SampleWindow&) = delete;
    HWND Handle() const { return window_; }

 private:
    HWND window_;
};

// A window class for as long as it lives, unless the system has it.
class SampleClass {
 public:
    explicit SampleClass(const wchar_t* name) : name_(name) {
        WNDCLASSW windowClass = {};
        windowClass.lpfnWndProc = DefWindowProcW;
        windowClass.hInstance = GetModuleHandleW(nullptr);
        windowClass.lpszClassName = name;
        RegisterClassW(&windowClass);
    }
    ~SampleClass() { UnregisterClassW(name_, GetModuleHandleW(nullptr)); }
    SampleClass(const SampleClass&) = delete;
    SampleClass& operator=(const SampleClass&) = delete;

 private:
    const wchar_t* name_;
};

DWORD WINAPI ThreadAlone(HWND, DWORD* process) {
    *process = 0;
    return GetCurrentThreadId();
}
DWORD otherThread = 0;
DWORD WINAPI OtherThread(HWND, DWORD* process) {
    *process = 0;
    return otherThread;
}
DWORD WINAPI ThreadUnknown(HWND, DWORD* process) {
    *process = 0;
    return 0xFFFFFFF0;
}
HANDLE WINAPI NoSnapshot(DWORD, DWORD) {
    SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    return INVALID_HANDLE_VALUE;
}
DWORD threadsEnd = ERROR_NO_MORE_FILES;
BOOL WINAPI NoThread(HANDLE, THREADENTRY32*) {
    SetLastError(threadsEnd);
    return FALSE;
}
HANDLE WINAPI NoProcess(DWORD, BOOL, DWORD) {
    SetLastError(ERROR_ACCESS_DENIED);
    return nullptr;
}
std::vector<DWORD> sleeps;
HWND goesAfterThird = nullptr;
void WINAPI NotedSleep(DWORD milliseconds) {
    sleeps.push_back(milliseconds);
    if (sleeps.size() == 3 && goesAfterThird) {
        DestroyWindow(goesAfterThird);
    }
}

using OwnerHook = PlatformHook<DWORD WINAPI(HWND, DWORD*)>;

class Hiding final : public HiddenApps {
 public:
    explicit Hiding(HWND window) : window_(window) {}
    bool IsHidden(HWND window) const override { return window == window_; }
    bool Hides(const std::wstring&) const override { return false; }
    void HideApp(HWND) override {}

 private:
    HWND window_;
};

}  // namespace

TEST(WindowTitles, LoseTheBlanksAtTheirEnds) {
    EXPECT_EQ(TitleOf(SampleWindow(L"  two words ").Handle()), L"two words");
    EXPECT_EQ(TitleOf(SampleWindow(L"   ").Handle()), L"");
    EXPECT_EQ(TitleOf(SampleWindow(L"").Handle()), L"");
    EXPECT_EQ(TitleOf(SampleWindow(L"\ttab\t").Handle()), L"\ttab\t");
    const std::wstring endless(5000, L'w');
    EXPECT_EQ(TitleOf(SampleWindow(endless.c_str()).Handle()), endless);
    EXPECT_EQ(TitleOf(nullptr), L"");
}

TEST(AppOwners, AreFoundByTheWindowOrByItsThread) {
    const SampleWindow window(L"A");
    EXPECT_EQ(AppCloser::ProcessIdOfWindow(window.Handle()), GetCurrentProcessId());
    {
        const OwnerHook hook("GetWindowThreadProcessId", ThreadAlone);
        EXPECT_EQ(AppCloser::ProcessIdOfWindow(window.Handle()), GetCurrentProcessId());
        const PlatformHook<HANDLE WINAPI(DWORD, DWORD)> none("CreateToolhelp32Snapshot",
                                                             NoSnapshot);
        EXPECT_THROW(AppCloser::ProcessIdOfWindow(window.Handle()), faults::W32Fault);
    }
    const OwnerHook hook("GetWindowThreadProcessId", ThreadUnknown);
    EXPECT_EQ(AppCloser::ProcessIdOfWindow(window.Handle()), 0u);
}

TEST(AppOwners, OfOtherProgramsAreFoundByTheThreadAsWell) {
    const SampleProgram sample(L"polite", L"Sample");
    otherThread = GetWindowThreadProcessId(sample.Window(), nullptr);
    const OwnerHook hook("GetWindowThreadProcessId", OtherThread);
    EXPECT_EQ(AppCloser::ProcessIdOfWindow(sample.Window()), sample.ProcessId());
}

TEST(AppOwners, AreAFaultWhereTheThreadsAreNotToldToTheirEnd) {
    const SampleWindow window(L"A");
    for (const char* step : {"Thread32First", "Thread32Next"}) {
        const OwnerHook unknown("GetWindowThreadProcessId", ThreadUnknown);
        const PlatformHook<BOOL WINAPI(HANDLE, THREADENTRY32*)> threads(step, NoThread);
        for (const DWORD error : {5ul, 6ul, 8ul, 87ul}) {
            threadsEnd = error;
            try {
                AppCloser::ProcessIdOfWindow(window.Handle());
                ADD_FAILURE() << step << ' ' << error;
            } catch (const faults::W32Fault& fault) {
                EXPECT_EQ(fault.Code(), faults::ResultFromError(error)) << step;
            }
        }
        threadsEnd = ERROR_NO_MORE_FILES;
        EXPECT_EQ(AppCloser::ProcessIdOfWindow(window.Handle()), 0u) << step;
    }
}

TEST(ClosableApps, HaveATitleAndAreNeitherHiddenNorTheCursor) {
    AppCloser closer;
    const SampleWindow window(L"A");
    EXPECT_TRUE(closer.IsClosableApp(window.Handle(), L"A"));
    EXPECT_FALSE(closer.IsClosableApp(window.Handle(), L""));
    EXPECT_FALSE(closer.IsClosableApp(window.Handle(), L"cursorWINDOW"));
    Hiding hiding(window.Handle());
    closer.SetHiddenApps(&hiding);
    EXPECT_FALSE(closer.IsClosableApp(window.Handle(), L"A"));
}

TEST(ClosableApps, TheCursorIsKnownByTitleAndClass) {
    const SampleWindow cursor(L"CursorWindow");
    EXPECT_TRUE(AppCloser::IsCursorWindow(cursor.Handle(), L"CURSORwindow"));
    EXPECT_FALSE(AppCloser::IsCursorWindow(cursor.Handle(), L"CursorWindows"));
    for (const wchar_t* name : {L"EDIT", L"Stati", L"BUTTON"}) {
        const SampleClass known(name);
        const SampleWindow other(L"CursorWindow", name);
        ASSERT_TRUE(other.Handle());
        EXPECT_FALSE(AppCloser::IsCursorWindow(other.Handle(), L"CursorWindow"));
    }
    // Of a longer name as much is looked at as the cursor's own is long.
    const SampleClass known(L"StaticX");
    const SampleWindow longer(L"CursorWindow", L"StaticX");
    ASSERT_TRUE(longer.Handle());
    EXPECT_TRUE(AppCloser::IsCursorWindow(longer.Handle(), L"CursorWindow"));
}

TEST(ClosingApps, WaitsForAWindowWhoseProcessCannotBeOpened) {
    const PlatformHook<HANDLE WINAPI(DWORD, BOOL, DWORD)> process("OpenProcess", NoProcess);
    const PlatformHook<void WINAPI(DWORD)> sleep("Sleep", NotedSleep);
    sleeps.clear();
    const SampleWindow stays(L"A");
    goesAfterThird = nullptr;
    AppCloser::WaitForAppExit(stays.Handle(), 4);
    EXPECT_EQ(sleeps, std::vector<DWORD>(10, 300));
    sleeps.clear();
    const SampleWindow goes(L"B");
    goesAfterThird = goes.Handle();
    AppCloser::WaitForAppExit(goes.Handle(), 4);
    EXPECT_EQ(sleeps, std::vector<DWORD>(3, 300));
}

TEST(ClosingApps, EndsOtherProgramsAndSparesOurOwn) {
    const CleanSettings settings;
    const SampleWindow own(L"Our own");
    Program program(L"-status");
    ASSERT_TRUE(program.WaitForMainWindow());
    AppCloser closer;
    closer.SpareWindow(own.Handle());
    closer.CloseAllApps();
    EXPECT_TRUE(WaitFor([&] { return !IsWindow(program.MainWindow()); }));
    EXPECT_TRUE(IsWindow(own.Handle()));
    MSG message;
    EXPECT_FALSE(PeekMessageW(&message, own.Handle(), WM_CLOSE, WM_CLOSE, PM_REMOVE));
}
