#include <gtest/gtest.h>

#include "res/resource.h"
#include "tests/support/program.h"
#include "tests/support/wait.h"
#include "tests/support/windows_seen.h"
#include "tests/support/world.h"

using namespace test;

namespace {

// Starts the program and tells whether its first view's caption begins so.
bool OpensOn(const std::wstring& caption, const std::wstring& arguments = L"") {
    const Program program(arguments);
    return program.WaitForMainWindow() &&
           WaitFor([&] { return TextOf(program.MainWindow()).starts_with(caption); });
}

class StartView : public testing::Test {
 protected:
    const CleanSettings settings;
};

}  // namespace

TEST_F(StartView, IsNamedByAWordOfTheCommandLine) {
    EXPECT_TRUE(OpensOn(L"System Status", L"-STATUS"));
    CleanSettings::SetNumber(L"view", 3);
    EXPECT_TRUE(OpensOn(L"\\", L"-explorer "));
    CleanSettings::SetNumber(L"view", 3);
    EXPECT_TRUE(OpensOn(L"Applications (", L"-apps  "));
    CleanSettings::SetNumber(L"view", 3);
    EXPECT_TRUE(OpensOn(L"Processes (", L"-process   "));
}

TEST_F(StartView, IsTheStoredOneWhenTheWordIsNotKnown) {
    CleanSettings::SetNumber(L"view", 3);
    EXPECT_TRUE(OpensOn(L"System Status", L"-apps"));
    CleanSettings::SetNumber(L"view", 3);
    EXPECT_TRUE(OpensOn(L"System Status", L"explorer"));
}

TEST_F(StartView, IsFilesWhenTheStoredOneIsNone) {
    CleanSettings::SetNumber(L"view", 7);
    EXPECT_TRUE(OpensOn(L"\\"));
}

TEST_F(StartView, AfterDllsIsProcesses) {
    {
        const Program program;
        ASSERT_TRUE(program.WaitForMainWindow());
        PostMessageW(program.MainWindow(), WM_COMMAND, ID_SHOW_DLLS, 0);
        EXPECT_TRUE(WaitFor([&] { return TextOf(program.MainWindow()).starts_with(L"Dlls ("); }));
        EXPECT_EQ(program.Close(), 0u);
    }
    EXPECT_EQ(CleanSettings::Number(L"view"), 2u);
    EXPECT_TRUE(OpensOn(L"Processes ("));
}

TEST_F(StartView, OnAFreshDeviceIsWrittenAtTheEndOnly) {
    const Program program;
    ASSERT_TRUE(program.WaitForMainWindow());
    EXPECT_FALSE(CleanSettings::Number(L"view"));
    EXPECT_FALSE(CleanSettings::Number(L"flags"));
    EXPECT_FALSE(CleanSettings::Number(L"langid"));
    EXPECT_EQ(program.Close(), 0u);
    EXPECT_EQ(CleanSettings::Number(L"view"), 0u);
    EXPECT_EQ(CleanSettings::Number(L"flags"), 0u);
    EXPECT_FALSE(CleanSettings::Number(L"langid"));
}
