// The program's Processes view, with another program beside it.
#include <gtest/gtest.h>

#include "tests/e2e/files_fixture.h"
#include "tests/support/sample_program.h"

using namespace test;

namespace {

class ProcessesProgram : public FilesProgram {
 protected:
    enum Menu : UINT { applicationsMenu = 501, processesMenu = 503, dllsMenu = 505 };
    enum Command : UINT {
        refresh = 610,
        information = 614,
        kill = 615,
        loadedDlls = 620,
        goToProcess = 670,
        goToModule = 671,
        showImagePath = 691,
        showProcessId = 692,
        showVirtualMemory = 693,
        showBaseAddress = 698,
        showSize = 699
    };

    // Starts, selects the sample among the applications and goes to its process.
    void StartOnSample() {
        folder.MakeFile(L"a");
        Start();
        Finger().Key("2").Play();
        ASSERT_TRUE(ShowsCaption(L"Applications"));
        ASSERT_TRUE(Finger().Hold(RowPoint(0)).Play());
        ASSERT_TRUE(ShowsSelected(0));
        ChooseCommand(applicationsMenu, goToProcess);
        ASSERT_TRUE(ShowsCaption(L"Processes"));
    }

    const SampleProgram sample{L"stubborn", L"! first"};
};

}  // namespace

TEST_F(ProcessesProgram, AnApplicationsProcessIsKilled) {
    StartOnSample();
    ChooseCommand(processesMenu, kill);
    Answer(Finger().Key("Left").Key("Return"));
    EXPECT_TRUE(WaitFor([&] { return !sample.Runs(); }));
    DWORD exitCode = 0;
    EXPECT_TRUE(GetExitCodeProcess(sample.Process(), &exitCode));
    EXPECT_EQ(exitCode, 0x80004004u);
    EXPECT_TRUE(ShowsCaption(L"Processes"));
}

TEST_F(ProcessesProgram, AnApplicationsProcessIsDescribedAndItsModulesAreListed) {
    StartOnSample();
    ChooseCommand(processesMenu, information);
    // The page is left as a person leaves it; the process stays selected behind it.
    Answer(Finger().Key("F1"));
    ChooseCommand(processesMenu, loadedDlls);
    EXPECT_TRUE(ShowsCaption(L"Dlls ("));
    EXPECT_NE(TextOf(Window()), L"Dlls (0)");
    EXPECT_TRUE(sample.Runs());
}

TEST_F(ProcessesProgram, TheModulesOfAnEndedProcessCannotBeListed) {
    StartOnSample();
    ChooseCommand(processesMenu, loadedDlls);
    ASSERT_TRUE(ShowsCaption(L"Dlls ("));
    ASSERT_FALSE(ShowsCaption(L"Dlls (0)", 0));
    TerminateProcess(sample.Process(), 0);
    ASSERT_TRUE(WaitFor([&] { return !sample.Runs(); }));
    // The window comes to the front when the popup has gone, which refreshes as the command does,
    // and both tell.
    ChooseCommand(dllsMenu, refresh);
    Answer(Finger().Key("Return"));
    Answer(Finger().Key("Return"));
    EXPECT_TRUE(ShowsCaption(L"Dlls (0)"));
}

TEST_F(ProcessesProgram, TheDisplayOptionsShowAndHideLines) {
    StartOnSample();
    const Picture plain = StillListPicture();
    for (const UINT command : {showImagePath, showProcessId, showVirtualMemory, showBaseAddress}) {
        ChooseCommand(processesMenu, command);
        EXPECT_TRUE(WaitFor([&] { return ListPicture() != plain; })) << command;
        ChooseCommand(processesMenu, command);
        EXPECT_TRUE(WaitFor([&] { return ListPicture() == plain; })) << command;
    }
    ChooseCommand(processesMenu, loadedDlls);
    ASSERT_TRUE(ShowsCaption(L"Dlls ("));
    const Picture names = StillListPicture();
    for (const UINT command : {showImagePath, showBaseAddress, showSize}) {
        ChooseCommand(dllsMenu, command);
        EXPECT_TRUE(WaitFor([&] { return ListPicture() != names; })) << command;
        ChooseCommand(dllsMenu, command);
        EXPECT_TRUE(WaitFor([&] { return ListPicture() == names; })) << command;
    }
}

TEST_F(ProcessesProgram, AModuleHasPropertiesAndAFile) {
    StartOnSample();
    ChooseCommand(processesMenu, loadedDlls);
    ASSERT_TRUE(ShowsCaption(L"Dlls ("));
    const Picture plain = StillListPicture();
    ASSERT_TRUE(Finger().Key("End").Play());
    ASSERT_TRUE(WaitFor([&] { return ListPicture() != plain; }));
    ChooseCommand(dllsMenu, information);
    ASSERT_TRUE(Dialog());
    EXPECT_EQ(TextOf(Dialog()), L"Properties");
    Answer(Finger().Key("F1"));
    ChooseCommand(dllsMenu, goToModule);
    EXPECT_TRUE(WaitFor([&] { return TextOf(Window()).find(L'\\') != std::wstring::npos; }));
}

TEST_F(ProcessesProgram, GoesToTheExecutableOfAProcess) {
    StartOnSample();
    ChooseCommand(processesMenu, goToModule);
    EXPECT_TRUE(WaitFor([&] { return !TextOf(Window()).starts_with(L"Processes"); }));
    const std::wstring shown = TextOf(Window());
    EXPECT_NE(GetFileAttributesW((shown + L"\\sample_program.exe").c_str()),
              INVALID_FILE_ATTRIBUTES);
}
