// The program's Processes view, with another program beside it.
#include <gtest/gtest.h>

#include "res/resource.h"
#include "tests/e2e/files_fixture.h"
#include "tests/support/sample_program.h"

using namespace test;

namespace {

class ProcessesProgram : public FilesProgram {
 protected:
    // Starts, selects the sample among the applications and goes to its process.
    void StartOnSample() {
        folder.MakeFile(L"a");
        Start();
        Finger().Key("2").Play();
        ASSERT_TRUE(ShowsCaption(L"Applications"));
        ASSERT_TRUE(Finger().Hold(RowPoint(0)).Play());
        ASSERT_TRUE(ShowsSelected(0));
        ChooseCommand(IDR_APPLICATIONS, ID_GO_TO_PROCESS);
        ASSERT_TRUE(ShowsCaption(L"Processes"));
    }

    const SampleProgram sample{L"stubborn", L"! first"};
};

class HangingProgram : public FilesProgram {};

}  // namespace

TEST_F(ProcessesProgram, AnApplicationsProcessIsKilled) {
    StartOnSample();
    ChooseCommand(IDR_PROCESSES, ID_STOP);
    Answer(Finger().Key("Left").Key("Return"));
    EXPECT_TRUE(WaitFor([&] { return !sample.Runs(); }));
    DWORD exitCode = 0;
    EXPECT_TRUE(GetExitCodeProcess(sample.Process(), &exitCode));
    EXPECT_EQ(exitCode, 0x80004004u);
    EXPECT_TRUE(ShowsCaption(L"Processes"));
}

TEST_F(ProcessesProgram, AnApplicationsProcessIsDescribedAndItsModulesAreListed) {
    StartOnSample();
    ChooseCommand(IDR_PROCESSES, ID_PROPERTIES);
    // The page is left as a person leaves it; the process stays selected behind it.
    Answer(Finger().Key("F1"));
    ChooseCommand(IDR_PROCESSES, ID_SHOW_DLLS);
    EXPECT_TRUE(ShowsCaption(L"Dlls ("));
    EXPECT_NE(TextOf(Window()), L"Dlls (0)");
    EXPECT_TRUE(sample.Runs());
}

TEST_F(ProcessesProgram, TheModulesOfAnEndedProcessCannotBeListed) {
    StartOnSample();
    ChooseCommand(IDR_PROCESSES, ID_SHOW_DLLS);
    ASSERT_TRUE(ShowsCaption(L"Dlls ("));
    ASSERT_FALSE(ShowsCaption(L"Dlls (0)", 0));
    TerminateProcess(sample.Process(), 0);
    ASSERT_TRUE(WaitFor([&] { return !sample.Runs(); }));
    // Told once: that a popup or a box has gone refreshes nothing.
    ChooseCommand(IDR_DLLS, ID_REFRESH);
    Answer(Finger().Key("Return"));
    EXPECT_TRUE(ShowsCaption(L"Dlls (0)"));
}

TEST_F(ProcessesProgram, TheDisplayOptionsShowAndHideLines) {
    StartOnSample();
    const Picture plain = StillListPicture();
    for (const UINT command :
         {ID_SHOW_IMAGE_PATH, ID_SHOW_PROCESS_ID, ID_SHOW_VIRTUAL_MEMORY, ID_SHOW_BASE_ADDRESS}) {
        ChooseCommand(IDR_PROCESSES, command);
        EXPECT_TRUE(WaitFor([&] { return ListPicture() != plain; })) << command;
        ChooseCommand(IDR_PROCESSES, command);
        EXPECT_TRUE(WaitFor([&] { return ListPicture() == plain; })) << command;
    }
    ChooseCommand(IDR_PROCESSES, ID_SHOW_DLLS);
    ASSERT_TRUE(ShowsCaption(L"Dlls ("));
    const Picture names = StillListPicture();
    for (const UINT command : {ID_SHOW_IMAGE_PATH, ID_SHOW_BASE_ADDRESS, ID_SHOW_SIZE}) {
        ChooseCommand(IDR_DLLS, command);
        EXPECT_TRUE(WaitFor([&] { return ListPicture() != names; })) << command;
        ChooseCommand(IDR_DLLS, command);
        EXPECT_TRUE(WaitFor([&] { return ListPicture() == names; })) << command;
    }
}

TEST_F(ProcessesProgram, AModuleHasPropertiesAndAFile) {
    StartOnSample();
    ChooseCommand(IDR_PROCESSES, ID_SHOW_DLLS);
    ASSERT_TRUE(ShowsCaption(L"Dlls ("));
    const Picture plain = StillListPicture();
    ASSERT_TRUE(Finger().Key("End").Play());
    ASSERT_TRUE(WaitFor([&] { return ListPicture() != plain; }));
    ChooseCommand(IDR_DLLS, ID_PROPERTIES);
    ASSERT_TRUE(Dialog());
    EXPECT_EQ(TextOf(Dialog()), L"Properties");
    Answer(Finger().Key("F1"));
    ChooseCommand(IDR_DLLS, ID_GO_TO_MODULE);
    EXPECT_TRUE(WaitFor([&] { return TextOf(Window()).find(L'\\') != std::wstring::npos; }));
}

TEST_F(ProcessesProgram, GoesToTheExecutableOfAProcess) {
    StartOnSample();
    ChooseCommand(IDR_PROCESSES, ID_GO_TO_MODULE);
    // A window that is busy has no text for a moment.
    EXPECT_TRUE(WaitFor([&] {
        const std::wstring shown = TextOf(Window()) + L"\\sample_program.exe";
        return GetFileAttributesW(shown.c_str()) != INVALID_FILE_ATTRIBUTES;
    }));
}

// A program that hangs does not tell its title, and nothing but Kill ends it.
TEST_F(HangingProgram, IsKilledByWayOfItsProcess) {
    const SampleProgram hung(L"hung", L"! first");
    folder.MakeFile(L"a");
    Start();
    Finger().Key("2").Play();
    // It has two windows.
    ASSERT_TRUE(ShowsCaption(L"Applications (2)"));
    ASSERT_TRUE(Finger().Hold(RowPoint(0)).Play());
    ASSERT_TRUE(ShowsSelected(0));
    ChooseCommand(IDR_APPLICATIONS, ID_GO_TO_PROCESS);
    ASSERT_TRUE(ShowsCaption(L"Processes"));
    ChooseCommand(IDR_PROCESSES, ID_STOP);
    Answer(Finger().Key("Left").Key("Return"));
    EXPECT_TRUE(WaitFor([&] { return !hung.Runs(); }));
    Finger().Key("2").Play();
    EXPECT_TRUE(ShowsCaption(L"Applications (0)"));
}
