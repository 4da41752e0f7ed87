#include <gtest/gtest.h>

#include "app/main_frame.h"
#include "app/run.h"
#include "platform/handles.h"
#include "tests/support/finger.h"
#include "tests/support/keyboard.h"
#include "tests/support/program.h"
#include "tests/support/wait.h"
#include "tests/support/windows_seen.h"
#include "tests/support/world.h"

using namespace test;

namespace {

constexpr wchar_t popupClass[] = L"kx::PopupMenu";

BOOL CALLBACK CountMainWindow(HWND window, LPARAM count) {
    if (ClassOf(window) == app::mainWindowClass) {
        ++*reinterpret_cast<int*>(count);
    }
    return TRUE;
}

int MainWindows() {
    int count = 0;
    EnumWindows(CountMainWindow, reinterpret_cast<LPARAM>(&count));
    return count;
}

// A window of this process, of any class that the system has.
class OwnWindow {
 public:
    OwnWindow(const wchar_t* className, HWND owner, DWORD style = WS_VISIBLE)
        : handle_(CreateWindowExW(0, className, L"", WS_POPUP | style, 50, 50, 200, 200, owner,
                                  nullptr, nullptr, nullptr)) {}
    ~OwnWindow() { DestroyWindow(handle_); }
    OwnWindow(const OwnWindow&) = delete;
    OwnWindow& operator=(const OwnWindow&) = delete;
    operator HWND() const { return handle_; }

 private:
    HWND handle_;
};

bool Ends(const Program& program) {
    return PumpUntil([&] { return WaitForSingleObject(program.Process(), 0) == WAIT_OBJECT_0; });
}

// This process in the part of the first instance: it holds the event.
class Instances : public testing::Test {
 protected:
    void HoldEvent(bool signalled) {
        event.Reset(CreateEventW(nullptr, FALSE, signalled, app::instanceEventName));
        ASSERT_EQ(GetLastError(), static_cast<DWORD>(ERROR_SUCCESS));
    }
    bool EventIsSignalled() const { return WaitForSingleObject(event.Get(), 0) == WAIT_OBJECT_0; }

    const CleanSettings settings;
    platform::UniqueHandle event;
};

// Makes this process's window look like the main window of a first instance.
class FirstInstance : public Instances {
 protected:
    FirstInstance() {
        WNDCLASSW description = {};
        description.lpfnWndProc = DefWindowProcW;
        description.hInstance = GetModuleHandleW(nullptr);
        description.lpszClassName = app::mainWindowClass;
        RegisterClassW(&description);
        HoldEvent(true);
    }
    ~FirstInstance() override { UnregisterClassW(app::mainWindowClass, GetModuleHandleW(nullptr)); }
    // Starts the program, which finds this instance, and waits for its end.
    static void StartAnother() {
        const Program second;
        ASSERT_TRUE(second.Started());
        EXPECT_TRUE(Ends(second));
        EXPECT_EQ(second.WaitForExit(), 0u);
        EXPECT_FALSE(second.MainWindow());
    }
    static bool ComesForward(HWND window) {
        return PumpUntil([=] { return GetForegroundWindow() == window; });
    }
};

}  // namespace

TEST_F(Instances, AreOneOnADevice) {
    const Program first;
    ASSERT_TRUE(first.WaitForMainWindow());
    const HWND window = first.MainWindow();
    const OwnWindow other(L"STATIC", nullptr);
    ASSERT_TRUE(BringToFront(other));
    const Program second;
    EXPECT_TRUE(Ends(second));
    EXPECT_EQ(second.WaitForExit(), 0u);
    EXPECT_TRUE(PumpUntil([=] { return GetForegroundWindow() == window; }))
        << DescribeScreen(window);
    EXPECT_EQ(MainWindows(), 1);
    EXPECT_EQ(first.MainWindow(), window);
}

TEST_F(Instances, PassNothingOfTheirCommandLineOn) {
    const Program first;
    ASSERT_TRUE(first.WaitForMainWindow());
    EXPECT_TRUE(WaitFor([&] { return TextOf(first.MainWindow()) == L"\\"; }));
    const Program second(L"-status");
    EXPECT_EQ(second.WaitForExit(), 0u);
    EXPECT_EQ(TextOf(first.MainWindow()), L"\\");
}

TEST_F(Instances, LeaveAnOpenMenuOfTheFirstInFront) {
    const Program first;
    ASSERT_TRUE(first.WaitForMainWindow());
    ASSERT_TRUE(BringToFront(first.MainWindow()));
    ASSERT_TRUE(Finger().Key("F2").Play());
    const HWND menu = WaitForWindow(popupClass, true);
    ASSERT_TRUE(menu);
    ASSERT_TRUE(WaitFor([=] { return GetForegroundWindow() == menu; }));
    const Program second;
    EXPECT_EQ(second.WaitForExit(), 0u);
    EXPECT_EQ(GetForegroundWindow(), menu);
    EXPECT_TRUE(IsWindowVisible(menu));
    ASSERT_TRUE(Finger().Key("Escape").Play());
    EXPECT_TRUE(WaitFor([=] { return !IsWindow(menu); }));
}

TEST_F(Instances, ShowAHiddenMainWindow) {
    const Program first;
    ASSERT_TRUE(first.WaitForMainWindow());
    const HWND window = first.MainWindow();
    ShowWindow(window, SW_HIDE);
    ASSERT_TRUE(WaitFor([=] { return !IsWindowVisible(window); }));
    const Program second;
    EXPECT_EQ(second.WaitForExit(), 0u);
    EXPECT_TRUE(WaitFor([=] { return IsWindowVisible(window) != FALSE; }));
    EXPECT_EQ(first.MainWindow(), window);
}

TEST_F(FirstInstance, HasItsFrontmostOwnedWindowBroughtForward) {
    const OwnWindow main(app::mainWindowClass, nullptr);
    const OwnWindow dialog(L"STATIC", main);
    const OwnWindow question(L"STATIC", dialog);
    const OwnWindow hidden(L"STATIC", question, 0);
    const OwnWindow other(L"STATIC", nullptr);
    SetForegroundWindow(other);
    StartAnother();
    EXPECT_TRUE(ComesForward(question));
    EXPECT_TRUE(EventIsSignalled()) << "for the next one that waits";
}

// A PC knows of no menu bars that are windows.
TEST_F(FirstInstance, HasNoMenuBarOfAHandheldBroughtForward) {
    WNDCLASSW description = {};
    description.lpfnWndProc = DefWindowProcW;
    description.hInstance = GetModuleHandleW(nullptr);
    description.lpszClassName = L"menu_worker";
    RegisterClassW(&description);
    {
        const OwnWindow main(app::mainWindowClass, nullptr);
        const OwnWindow bar(L"menu_worker", main);
        const OwnWindow other(L"STATIC", nullptr);
        SetForegroundWindow(other);
        StartAnother();
        EXPECT_TRUE(ComesForward(RunsOnHandheld() ? main : bar));
    }
    UnregisterClassW(L"menu_worker", GetModuleHandleW(nullptr));
}

TEST_F(FirstInstance, HasItsMainWindowShownAndBroughtForward) {
    const OwnWindow main(app::mainWindowClass, nullptr, 0);
    const OwnWindow other(L"STATIC", nullptr);
    SetForegroundWindow(other);
    StartAnother();
    EXPECT_TRUE(PumpUntil([&] { return IsWindowVisible(main) != FALSE; }));
    EXPECT_TRUE(ComesForward(main));
}

TEST_F(Instances, WaitForTheFirstOnesWindow) {
    HoldEvent(false);
    const Program second;
    ASSERT_TRUE(second.Started());
    // Long enough for an instance that does not wait to show its window.
    EXPECT_EQ(WaitForSingleObject(second.Process(), 700), static_cast<DWORD>(WAIT_TIMEOUT));
    EXPECT_FALSE(second.MainWindow());
    SetEvent(event.Get());
    EXPECT_TRUE(second.WaitForMainWindow()) << "no window was found, so it is the first one now";
    EXPECT_EQ(second.Close(), 0u);
    EXPECT_TRUE(EventIsSignalled());
}

TEST_F(Instances, ThatComeJustAfterTheEndAreTheFirst) {
    HoldEvent(true);
    const Program second(L"-status");
    ASSERT_TRUE(second.WaitForMainWindow());
    EXPECT_TRUE(WaitFor([&] { return TextOf(second.MainWindow()) == L"System Status"; }));
    EXPECT_EQ(second.Close(), 0u);
}

TEST_F(Instances, ThatWaitPassOneAtATime) {
    HoldEvent(false);
    const Program programs[3];
    const auto running = [&] {
        int count = 0;
        for (const Program& program : programs) {
            count += WaitForSingleObject(program.Process(), 0) == WAIT_TIMEOUT;
        }
        return count;
    };
    EXPECT_EQ(running(), 3);
    SetEvent(event.Get());
    ASSERT_TRUE(WaitFor([&] { return running() == 1 && MainWindows() == 1; }));
    for (const Program& program : programs) {
        if (program.MainWindow()) {
            EXPECT_EQ(program.Close(), 0u);
        } else {
            EXPECT_EQ(program.WaitForExit(), 0u);
        }
    }
    EXPECT_EQ(MainWindows(), 0);
    EXPECT_TRUE(EventIsSignalled());
}
