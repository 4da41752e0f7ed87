// The program's Processes view, with another program beside it.
#include <gtest/gtest.h>

#include "tests/e2e/files_fixture.h"
#include "tests/support/sample_program.h"

using namespace test;

namespace {

class ProcessesProgram : public FilesProgram {
 protected:
    // Places in the popups, counted from the top.
    enum ApplicationAction { goToProcess = 4 };
    enum ProcessAction { kill = 0, loadedDlls = 1, information = 2, goToModule = 3 };

    // Starts, selects the sample among the applications and goes to its process.
    void StartOnSample() {
        folder.MakeFile(L"a");
        Start();
        Finger().Key("2").Play();
        ASSERT_TRUE(Shows(L"Applications"));
        ASSERT_TRUE(Finger().Hold(RowPoint(0)).Play());
        ASSERT_TRUE(ShowsSelected(0));
        Choose(0, goToProcess);
        ASSERT_TRUE(Shows(L"Processes"));
    }
    // Whether the caption begins like this.
    bool Shows(const std::wstring& caption) const {
        return WaitFor([&] { return TextOf(Window()).starts_with(caption); });
    }
    // Presses the keys in the dialog that opens and waits until it is gone.
    void Answer(Finger keys) {
        const HWND box = WaitForWindow(L"#32770", true);
        ASSERT_TRUE(box);
        ASSERT_TRUE(WaitFor([&] { return GetForegroundWindow() == box; }));
        ASSERT_TRUE(keys.Play());
        ASSERT_TRUE(WaitFor([&] { return !IsWindow(box); }));
    }

    const SampleProgram sample{L"stubborn", L"! first"};
};

}  // namespace

TEST_F(ProcessesProgram, AnApplicationsProcessIsKilled) {
    StartOnSample();
    Choose(0, kill);
    Answer(Finger().Key("Left").Key("Return"));
    EXPECT_TRUE(WaitFor([&] { return !sample.Runs(); }));
    DWORD exitCode = 0;
    EXPECT_TRUE(GetExitCodeProcess(sample.Process(), &exitCode));
    EXPECT_EQ(exitCode, 0x80004004u);
    EXPECT_TRUE(Shows(L"Processes"));
}

TEST_F(ProcessesProgram, AnApplicationsProcessIsDescribedAndItsModulesAreListed) {
    StartOnSample();
    Choose(0, information);
    // The page is left as a person leaves it; the process stays selected behind it.
    Answer(Finger().Key("F1"));
    Choose(0, loadedDlls);
    EXPECT_TRUE(Shows(L"Dlls ("));
    EXPECT_NE(TextOf(Window()), L"Dlls (0)");
    EXPECT_TRUE(sample.Runs());
}

TEST_F(ProcessesProgram, GoesToTheExecutableOfAProcess) {
    StartOnSample();
    Choose(0, goToModule);
    EXPECT_TRUE(WaitFor([&] { return !TextOf(Window()).starts_with(L"Processes"); }));
    const std::wstring shown = TextOf(Window());
    EXPECT_NE(GetFileAttributesW((shown + L"\\sample_program.exe").c_str()),
              INVALID_FILE_ATTRIBUTES);
}
