// A program that ends in another way than it should fails the test that started it.
#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>
#include <shlobj.h>

#include "res/resource.h"
#include "tests/support/program.h"
#include "tests/support/shell_clipboard.h"
#include "tests/support/wait.h"
#include "tests/support/world.h"

using namespace test;

namespace {

constexpr DWORD large = 0x200000;

// Where the program expects a large block of memory it gets an address that is none.
FailingCall NoMemoryButAnAddress() {
    FailingCall call{RunsOnHandheld() ? "LocalAlloc" : "malloc", 16};
    call.argument = RunsOnHandheld() ? 1 : 0;
    call.atLeast = large;
    return call;
}

void CrashInAWindowProcedure() {
    const Program program(L"-explorer ", NoMemoryButAnAddress());
    ASSERT_TRUE(program.WaitForMainWindow());
    DROPFILES header = {};
    header.pFiles = sizeof header;
    header.fWide = TRUE;
    PutOnClipboard(header, large, 1);
    PostMessageW(program.MainWindow(), WM_COMMAND, ID_PASTE, 0);
    EXPECT_EQ(program.WaitForExit(), 99u);
}

void EndFromOutside(DWORD code) {
    Program program;
    ASSERT_TRUE(program.WaitForMainWindow());
    TerminateProcess(program.Process(), code);
    EXPECT_EQ(program.WaitForExit(), code);
}

}  // namespace

TEST(WatchedProgram, ThatCrashesInAWindowProcedureFailsTheTest) {
    const CleanSettings settings;
    EXPECT_NONFATAL_FAILURE(CrashInAWindowProcedure(), "the program ended with the code 99, not 0");
    ClearClipboard();
}

TEST(WatchedProgram, ThatCrashesIsToldWithTheFunction) {
    if (RunsOnHandheld()) {
        // There the emulator tells it.
        return;
    }
    const CleanSettings settings;
    EXPECT_NONFATAL_FAILURE(CrashInAWindowProcedure(), "CRASH: a write at ");
    EXPECT_NONFATAL_FAILURE(CrashInAWindowProcedure(), "FilesView::Command(");
    ClearClipboard();
}

TEST(WatchedProgram, ThatEndsWithAnotherCodeFailsTheTest) {
    const CleanSettings settings;
    EXPECT_NONFATAL_FAILURE(EndFromOutside(3), "the program ended with the code 3, not 0");
}

TEST(WatchedProgram, MayBeExpectedToEndWithAnotherCode) {
    const CleanSettings settings;
    Program program;
    program.ExpectExit(3);
    ASSERT_TRUE(program.WaitForMainWindow());
    TerminateProcess(program.Process(), 3);
}
