// The program's Applications view, with other programs beside it.
#include <gtest/gtest.h>

#include "tests/e2e/files_fixture.h"
#include "tests/support/sample_program.h"

using namespace test;

namespace {

class ApplicationsProgram : public FilesProgram {
 protected:
    // Places in the popups, counted from the top.
    enum Action {
        stop = 0,
        stopAll = 1,
        hide = 2,
        information = 3,
        goToProcess = 4,
        goToModule = 5
    };

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
    void HoldFirstRow() {
        ASSERT_TRUE(Finger().Hold(RowPoint(0)).Play());
        ASSERT_TRUE(ShowsSelected(0));
    }

    static constexpr int none = -1;
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
    SetForegroundWindow(Window());
    EXPECT_TRUE(Counts(count + 1));
}

TEST_F(ApplicationsProgram, AHeldApplicationIsStopped) {
    const SampleProgram sample(L"polite", L"! first");
    StartOnApplications();
    const int count = Count();
    HoldFirstRow();
    Choose(0, stop);
    EXPECT_TRUE(WaitFor([&] { return !sample.Runs(); }));
    EXPECT_TRUE(Counts(count - 1));
}

TEST_F(ApplicationsProgram, StopAllLeavesTheProgramItself) {
    const SampleProgram one(L"polite", L"! first");
    const SampleProgram other(L"dialogs", L"! second");
    const SampleProgram refuses(L"stubborn", L"! third");
    StartOnApplications();
    const int count = Count();
    ASSERT_TRUE(Finger().Key("0").Play());
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
    Choose(0, information);
    // The page is left as a person leaves it, by its key.
    Answer(Finger().Key("F1"));
    ASSERT_TRUE(WaitFor([&] { return GetForegroundWindow() == Window(); }));
    ASSERT_TRUE(ShowsSelected(0));
    Choose(0, goToModule);
    EXPECT_TRUE(WaitFor([&] { return Count() == none; }));
    const std::wstring folder = TextOf(Window());
    EXPECT_NE(GetFileAttributesW((folder + L"\\sample_program.exe").c_str()),
              INVALID_FILE_ATTRIBUTES);
}
