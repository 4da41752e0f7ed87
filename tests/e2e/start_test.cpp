#include <gtest/gtest.h>

#include "tests/support/finger.h"
#include "tests/support/program.h"
#include "tests/support/wait.h"
#include "tests/support/windows_seen.h"
#include "tests/support/world.h"

using namespace test;

TEST(Start, AFreshDeviceOpensOnTheRootOfFiles) {
    const CleanSettings settings;
    Program program;
    ASSERT_TRUE(program.WaitForMainWindow());
    EXPECT_TRUE(WaitFor([&] { return TextOf(program.MainWindow()) == L"\\"; }));
    EXPECT_FALSE(CleanSettings::Number(L"view"));
    EXPECT_FALSE(CleanSettings::Number(L"flags"));
}

TEST(Start, AFingerOpensAFolder) {
    const CleanSettings settings;
    Program program;
    ASSERT_TRUE(program.WaitForMainWindow());
    const HWND list = FindChild(program.MainWindow(), L"kx::TouchList");
    ASSERT_TRUE(list);
    ASSERT_TRUE(Finger().Tap(OnScreen(list, 60, 20)).Play());
    EXPECT_TRUE(WaitFor([&] { return TextOf(program.MainWindow()) == L"\\My Documents"; }));
}

TEST(Start, QuittingKeepsViewFlagsAndFolder) {
    const CleanSettings settings;
    CleanSettings::SetNumber(L"flags", 4);
    {
        Program program(L"-status");
        ASSERT_TRUE(program.WaitForMainWindow());
        EXPECT_TRUE(WaitFor([&] { return TextOf(program.MainWindow()) == L"System Status"; }));
        PostMessageW(program.MainWindow(), WM_COMMAND, 57665, 0);
        EXPECT_EQ(program.WaitForExit(), 0u);
    }
    EXPECT_EQ(CleanSettings::Number(L"view"), 3u);
    EXPECT_EQ(CleanSettings::Number(L"flags"), 4u);
    EXPECT_EQ(CleanSettings::Text(L"path"), L"");
}
