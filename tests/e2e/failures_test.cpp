// What a person is told when the system refuses what the program needs.
#include <shlobj.h>

#include "res/resource.h"
#include "tests/e2e/files_fixture.h"
#include "tests/support/sample_program.h"
#include "tests/support/shell_clipboard.h"

using namespace test;

namespace {

// INVALID_HANDLE_VALUE and WAIT_FAILED.
constexpr DWORD64 failed = ~0ull;
constexpr unsigned always = 0x7FFFFFFF;

class Failures : public FilesProgram {
 protected:
    // The caption of the box that opens; the box stays.
    std::wstring CaptionOfBox(HWND previous = nullptr) const { return TextOf(Dialog(previous)); }
    void HoldFirstRow() {
        ASSERT_TRUE(Finger().Hold(RowPoint(0)).Play());
        ASSERT_TRUE(ShowsSelected(0));
    }
};

}  // namespace

TEST_F(Failures, OfTheMainWindowAreToldBeforeTheProgramEnds) {
    const Program program(L"", FailingCall{"CreateWindowExW", 0, ERROR_NOT_ENOUGH_MEMORY, 1});
    const HWND box = Dialog();
    ASSERT_TRUE(box);
    EXPECT_EQ(TextOf(box), L"Application execution failed.");
    EXPECT_FALSE(program.MainWindow());
    ASSERT_TRUE(Finger().Key("Return").Play());
    EXPECT_EQ(program.WaitForExit(), 0u);
}

TEST_F(Failures, OfTheSnapshotLeaveAnEmptyListOfProcesses) {
    StartWith(L"-status", L"System Status", FailingCall{"CreateToolhelp32Snapshot", failed});
    ASSERT_TRUE(Finger().Key("3").Play());
    EXPECT_EQ(CaptionOfBox(), L"Error");
    Answer(Finger().Key("Return"));
    EXPECT_TRUE(ShowsCaption(L"Processes (0)"));
    ASSERT_TRUE(Finger().Key("4").Play());
    EXPECT_TRUE(ShowsCaption(L"System Status"));
}

// The system tells the thread of a window, but not its process.
TEST_F(Failures, ToTellAWindowsProcessLeaveItToItsThread) {
    const SampleProgram sample(L"stubborn", L"! sample");
    const DWORD thread = GetWindowThreadProcessId(sample.Window(), nullptr);
    // The shell's desktop is then the sample's as well, which makes that critical.
    CleanSettings::SetNumber(L"flags", 0x0010);
    StartWith(L"-apps  ", L"Applications (",
              FailingCall{"GetWindowThreadProcessId", thread, ERROR_SUCCESS, always});
    HoldFirstRow();
    ChooseCommand(IDR_APPLICATIONS, ID_GO_TO_PROCESS);
    ASSERT_TRUE(ShowsCaption(L"Processes ("));
    ChooseCommand(IDR_PROCESSES, ID_STOP);
    Answer(Finger().Key("Left").Key("Return"));
    EXPECT_TRUE(WaitFor([&] { return !sample.Runs(); }));
}

TEST_F(Failures, OfOpeningAProcessLeaveItRunning) {
    const SampleProgram sample(L"polite", L"! sample");
    StartWith(L"-apps  ", L"Applications (", FailingCall{"OpenProcess"});
    HoldFirstRow();
    ChooseCommand(IDR_APPLICATIONS, ID_GO_TO_PROCESS);
    ASSERT_TRUE(ShowsCaption(L"Processes ("));
    ChooseCommand(IDR_PROCESSES, ID_STOP);
    const HWND question = Dialog();
    EXPECT_EQ(TextOf(question), L"Warning");
    ASSERT_TRUE(Finger().Key("Left").Key("Return").Play());
    EXPECT_TRUE(WaitFor([&] { return TextOf(FindVisible(L"#32770", true)) == L"Error"; }));
    Answer(Finger().Key("Return"));
    EXPECT_TRUE(sample.Runs());
    EXPECT_TRUE(ShowsCaption(L"Processes ("));
}

TEST_F(Failures, OfWaitingForAnApplicationAreTold) {
    const SampleProgram sample(L"stubborn", L"! sample");
    StartWith(L"-apps  ", L"Applications (", FailingCall{"WaitForSingleObject", failed});
    HoldFirstRow();
    ChooseCommand(IDR_APPLICATIONS, ID_STOP);
    EXPECT_EQ(CaptionOfBox(), L"Error");
    Answer(Finger().Key("Return"));
    EXPECT_TRUE(sample.Runs());
    EXPECT_TRUE(ShowsCaption(L"Applications ("));
}

TEST_F(Failures, OfMemoryAreToldAndTheProgramGoesOn) {
    constexpr DWORD large = 0x200000;
    const FailingCall noLargeBlocks =
        RunsOnHandheld() ? FailingCall{"LocalAlloc", 0, ERROR_NOT_ENOUGH_MEMORY, always, 1, large}
                         : FailingCall{"malloc", 0, ERROR_NOT_ENOUGH_MEMORY, always, 0, large};
    CleanSettings::SetText(L"path", folder.Path());
    folder.MakeFile(L"a");
    StartWith(L"-explorer ", folder.Path(), noLargeBlocks);
    DROPFILES header = {};
    header.pFiles = sizeof header;
    header.fWide = TRUE;
    PutOnClipboard(header, large, 1);
    ChooseCommand(IDR_FILES, ID_PASTE);
    EXPECT_EQ(CaptionOfBox(), L"Error");
    Answer(Finger().Key("Return"));
    // The clipboard is free for others again.
    ClearClipboard();
    ASSERT_TRUE(Finger().Key("Left").Play());
    EXPECT_TRUE(Shows(L"\\Temp"));
}

// The number of the clipboard's format is asked for again.
TEST_F(Failures, OfACutEndWithTheirCause) {
    const std::wstring file = folder.MakeFile(L"a.txt", "a");
    CleanSettings::SetText(L"path", folder.Path());
    ClearClipboard();
    StartWith(L"-explorer ", folder.Path(),
              FailingCall{"RegisterClipboardFormatW", 0, ERROR_NOT_ENOUGH_MEMORY, 1});
    HoldFirstRow();
    ChooseCommand(IDR_FILES, ID_CUT);
    EXPECT_EQ(CaptionOfBox(), L"Error");
    Answer(Finger().Key("Return"));
    EXPECT_FALSE(IsClipboardFormatAvailable(CF_HDROP)) << "it would be pasted as a copy";
    ChooseCommand(IDR_FILES, ID_CUT);
    const UINT effect = RegisterClipboardFormatW(L"Preferred DropEffect");
    EXPECT_TRUE(WaitFor([&] { return IsClipboardFormatAvailable(effect) != FALSE; }));
    EXPECT_TRUE(
        WaitFor([&] { return PathsOnClipboard(nullptr) == std::vector{PathForOthers(file)}; }));
    ClearClipboard();
}
