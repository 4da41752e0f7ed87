// The program's Applications view, with other programs beside it.
#include <gtest/gtest.h>

#include "res/resource.h"
#include "tests/e2e/files_fixture.h"
#include "tests/support/hidden_apps_folder.h"
#include "tests/support/sample_program.h"

using namespace test;

namespace {

class ApplicationsProgram : public FilesProgram {
 protected:
    void StartOnApplications() {
        folder.MakeFile(L"a");
        Start();
        Finger().Key("2").Play();
        ASSERT_TRUE(WaitFor([&] { return Count() != none; }));
    }
    // How many applications the caption tells; `none` for another caption.
    int Count() const {
        int count = none;
        return swscanf(TextOf(Window()).c_str(), L"Applications (%d)", &count) == 1 ? count : none;
    }
    bool Counts(int count) const {
        return WaitFor([&] { return Count() == count; });
    }
    // The next window that a person can see behind a window, but for the shell's strip above it.
    static HWND SeenBehind(HWND window) {
        do {
            window = GetWindow(window, GW_HWNDNEXT);
        } while (window && (!IsWindowVisible(window) || ClassOf(window) == L"HHTaskBar"));
        return window;
    }
    void HoldFirstRow() {
        ASSERT_TRUE(Finger().Hold(RowPoint(0)).Play());
        ASSERT_TRUE(ShowsSelected(0));
    }

    static constexpr int none = -1;

    const HiddenAppsFolder hiddenApps;
};

}  // namespace

TEST_F(ApplicationsProgram, ATapSwitchesAndComingBackListsAnew) {
    const SampleProgram sample(L"polite", L"! first");
    StartOnApplications();
    const int count = Count();
    EXPECT_GE(count, 1);
    ASSERT_TRUE(Finger().Tap(RowPoint(0)).Play());
    EXPECT_TRUE(WaitFor([&] { return GetForegroundWindow() == sample.Window(); }));
    const SampleProgram another(L"polite", L"! second");
    ASSERT_TRUE(BringToFront(Window()));
    EXPECT_TRUE(Counts(count + 1));
}

// The bar would take no input; a PC knows of no such windows.
TEST_F(ApplicationsProgram, ATapSwitchesToTheWindowAboveItsMenuBar) {
    const SampleProgram sample(L"barred", L"! first");
    HWND bar = nullptr;
    ASSERT_TRUE(WaitFor([&] {
        bar = FindWindowW(L"menu_worker", nullptr);
        return bar && IsWindowVisible(bar);
    }));
    StartOnApplications();
    ASSERT_TRUE(Finger().Tap(RowPoint(0)).Play());
    const HWND expected = RunsOnHandheld() ? sample.Window() : bar;
    EXPECT_TRUE(WaitFor([&] { return GetForegroundWindow() == expected; }));
}

TEST_F(ApplicationsProgram, AHeldApplicationIsStopped) {
    const SampleProgram sample(L"polite", L"! first");
    StartOnApplications();
    const int count = Count();
    HoldFirstRow();
    ChooseCommand(IDR_APPLICATIONS, ID_STOP);
    EXPECT_TRUE(WaitFor([&] { return !sample.Runs(); }));
    EXPECT_TRUE(Counts(count - 1));
}

TEST_F(ApplicationsProgram, StopAllLeavesTheProgramItself) {
    const SampleProgram one(L"polite", L"! first");
    const SampleProgram other(L"dialogs", L"! second");
    const SampleProgram refuses(L"stubborn", L"! third");
    StartOnApplications();
    const int count = Count();
    ChooseCommand(IDR_APPLICATIONS, ID_STOP_ALL);
    Answer(Finger().Key("Left").Key("Return"));
    EXPECT_TRUE(Counts(count - 2));
    EXPECT_FALSE(one.Runs());
    EXPECT_FALSE(other.Runs());
    EXPECT_TRUE(refuses.Runs());
    EXPECT_TRUE(IsWindow(Window()));
}

TEST_F(ApplicationsProgram, InformationAndModuleOfAnApplication) {
    const SampleProgram sample(L"polite", L"! first");
    StartOnApplications();
    HoldFirstRow();
    ChooseCommand(IDR_APPLICATIONS, ID_PROPERTIES);
    // The page is left as a person leaves it, by its key.
    Answer(Finger().Key("F1"));
    ASSERT_TRUE(WaitFor([&] { return GetForegroundWindow() == Window(); }));
    ASSERT_TRUE(ShowsSelected(0));
    ChooseCommand(IDR_APPLICATIONS, ID_GO_TO_MODULE);
    EXPECT_TRUE(WaitFor([&] { return Count() == none; }));
    EXPECT_TRUE(WaitFor([&] {
        const std::wstring shown = TextOf(Window()) + L"\\sample_program.exe";
        return GetFileAttributesW(shown.c_str()) != INVALID_FILE_ATTRIBUTES;
    }));
}

TEST_F(ApplicationsProgram, AHiddenOneIsShownWithTheHiddenOnesOnly) {
    // A program that starts without hidden applications hides none until its next start.
    hiddenApps.Write("<hide><application name=\"nothing.exe\"/></hide>");
    const SampleProgram sample(L"polite", L"! first");
    StartOnApplications();
    const int count = Count();
    HoldFirstRow();
    ChooseCommand(IDR_APPLICATIONS, ID_HIDE);
    EXPECT_TRUE(Counts(count - 1));
    ChooseCommand(IDR_APPLICATIONS, ID_SHOW_HIDDEN_APPLICATIONS);
    EXPECT_TRUE(Counts(count));
    ChooseCommand(IDR_APPLICATIONS, ID_SHOW_HIDDEN_APPLICATIONS);
    EXPECT_TRUE(Counts(count - 1));
}

TEST_F(ApplicationsProgram, StoppingAHiddenOneIsAskedFor) {
    hiddenApps.Write("<hide><application name=\"sample_program.exe\"/></hide>");
    const SampleProgram sample(L"polite", L"! first");
    StartOnApplications();
    const int count = Count();
    ChooseCommand(IDR_APPLICATIONS, ID_SHOW_HIDDEN_APPLICATIONS);
    ASSERT_TRUE(Counts(count + 1));
    HoldFirstRow();
    // "No" has the focus.
    ChooseCommand(IDR_APPLICATIONS, ID_STOP);
    Answer(Finger().Key("Return"));
    EXPECT_TRUE(sample.Runs());
    HoldFirstRow();
    ChooseCommand(IDR_APPLICATIONS, ID_STOP);
    Answer(Finger().Key("Left").Key("Return"));
    EXPECT_TRUE(WaitFor([&] { return !sample.Runs(); }));
}

// A handheld's shell is known by its desktop's window; a PC tells its shell by itself.
TEST_F(ApplicationsProgram, AWindowOfTheShellIsListedWithTheCriticalOnesOnly) {
    const SampleProgram shell(L"shell", L"! shell");
    ASSERT_TRUE(
        WaitFor([&] { return FindWindowW(L"DesktopExplorerWindow", L"Desktop") != nullptr; }));
    const SampleProgram sample(L"stubborn", L"! the first");
    StartOnApplications();
    const int count = Count();
    const bool critical = RunsOnHandheld();
    ChooseCommand(IDR_APPLICATIONS, ID_STOP_ALL);
    Answer(Finger().Key("Left").Key("Return"));
    if (critical) {
        // The last thing that is done.
        EXPECT_TRUE(
            WaitFor([&] { return ClassOf(SeenBehind(Window())) == L"DesktopExplorerWindow"; }));
    }
    // It has two windows.
    EXPECT_TRUE(Counts(critical ? count : count - 2));
    EXPECT_EQ(shell.Runs(), critical);
    EXPECT_TRUE(sample.Runs());
    if (critical) {
        ChooseCommand(IDR_APPLICATIONS, ID_SHOW_CRITICAL_APPLICATIONS);
        EXPECT_TRUE(Counts(count + 2));
    }
}

TEST_F(ApplicationsProgram, TheChoiceOfCriticalAndHiddenOnesIsKept) {
    StartOnApplications();
    ChooseCommand(IDR_APPLICATIONS, ID_SHOW_CRITICAL_APPLICATIONS);
    ChooseCommand(IDR_APPLICATIONS, ID_SHOW_HIDDEN_APPLICATIONS);
    EXPECT_EQ(Running().Close(), 0u);
    EXPECT_EQ(CleanSettings::Number(L"flags"), 0x30u);
}
