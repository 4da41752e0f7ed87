#include <gtest/gtest.h>

#include "res/resource.h"
#include "tests/support/finger.h"
#include "tests/support/program.h"
#include "tests/support/wait.h"
#include "tests/support/windows_seen.h"
#include "tests/support/world.h"
#include "tools/emulator/sweep_channel.h"

using namespace test;

namespace {

constexpr wchar_t popupClass[] = L"kx::PopupMenu";

// The program as it opens on a fresh device, in front.
class FrameOfTheProgram : public testing::Test {
 protected:
    FrameOfTheProgram() {
        EXPECT_TRUE(program.WaitForMainWindow());
        EXPECT_TRUE(BringToFront(program.MainWindow()));
    }
    bool Shows(const std::wstring& caption) const {
        return WaitFor(
            [&] { return TextOf(program.MainWindow()).compare(0, caption.size(), caption) == 0; });
    }
    HWND Bar() const { return FindChild(program.MainWindow(), L"kx::CmdBar"); }
    // Opens the right button's menu with a finger.
    HWND OpenMenu() const {
        const RECT bar = ScreenRectangleOf(Bar());
        EXPECT_TRUE(
            Finger().Tap((bar.left + 3 * bar.right) / 4, (bar.top + bar.bottom) / 2).Play());
        return WaitForWindow(popupClass, true);
    }
    // A point of an open menu's last row.
    static POINT LastRow(HWND menu) {
        const RECT place = ScreenRectangleOf(menu);
        return POINT{(place.left + place.right) / 2, place.bottom - 8};
    }

    const CleanSettings settings;
    const Program program;
};

}  // namespace

TEST_F(FrameOfTheProgram, SwitchesViewsByTheNumberKeys) {
    EXPECT_TRUE(Finger().Key("4").Play());
    EXPECT_TRUE(Shows(L"System Status"));
    EXPECT_TRUE(Finger().Key("2").Play());
    EXPECT_TRUE(Shows(L"Applications ("));
    EXPECT_TRUE(Finger().Key("3").Play());
    EXPECT_TRUE(Shows(L"Processes ("));
    EXPECT_TRUE(Finger().Key("1").Play());
    EXPECT_TRUE(Shows(L"\\"));
}

TEST_F(FrameOfTheProgram, OpensAMenuForEachSoftKey) {
    for (const char* key : {"F1", "F2"}) {
        EXPECT_TRUE(Finger().Key(key).Play());
        const HWND menu = WaitForWindow(popupClass, true);
        ASSERT_TRUE(menu) << key;
        EXPECT_TRUE(Finger().Key("Escape").Play());
        EXPECT_TRUE(WaitFor([=] { return !IsWindow(menu); })) << key;
    }
}

TEST_F(FrameOfTheProgram, EndsWithTheLastRowOfTheMenu) {
    EXPECT_TRUE(Finger().Key("4").Play());
    EXPECT_TRUE(Shows(L"System Status"));
    const HWND menu = OpenMenu();
    ASSERT_TRUE(menu);
    EXPECT_TRUE(Finger().Tap(LastRow(menu)).Play());
    EXPECT_EQ(program.WaitForExit(), 0u);
    EXPECT_EQ(CleanSettings::Number(L"view"), 3u);
}

TEST_F(FrameOfTheProgram, KeepsFlippedOptionsOverItsEnd) {
    PostMessageW(program.MainWindow(), WM_COMMAND, ID_SHOW_FILE_SIZE, 0);
    PostMessageW(program.MainWindow(), WM_COMMAND, ID_SHOW_FILE_DATE, 0);
    PostMessageW(program.MainWindow(), WM_COMMAND, ID_SPARE_OPTION_1, 0);
    PostMessageW(program.MainWindow(), WM_COMMAND, ID_SPARE_OPTION_2, 0);
    PostMessageW(program.MainWindow(), WM_COMMAND, ID_SHOW_FILE_SIZE, 0);
    PostMessageW(program.MainWindow(), WM_COMMAND, ID_EXIT, 0);
    EXPECT_EQ(program.WaitForExit(), 0u);
    EXPECT_EQ(CleanSettings::Number(L"flags"), 8u);
}

TEST_F(FrameOfTheProgram, FillsTheHandheldsScreen) {
    const RECT window = ScreenRectangleOf(program.MainWindow());
    RECT workArea = {};
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &workArea, 0);
    // A handheld's shell keeps a strip at the top.
    if (const HWND strip = FindVisible(L"HHTaskBar", true)) {
        workArea.top = ScreenRectangleOf(strip).bottom;
    }
    EXPECT_TRUE(EqualRect(&window, &workArea));
}

TEST_F(FrameOfTheProgram, FollowsAScreenThatIsTurned) {
    const RECT upright = ScreenRectangleOf(program.MainWindow());
    const auto fills = [this](const RECT& area) {
        return WaitFor([&] {
            const RECT window = ScreenRectangleOf(program.MainWindow());
            // Within the frame that a PC's window has.
            constexpr int widestFrame = 8;
            const RECT bar = ScreenRectangleOf(Bar());
            return EqualRect(&window, &area) && area.right - bar.right < widestFrame &&
                   area.bottom - bar.bottom < widestFrame;
        });
    };
    const HWND strip = FindVisible(L"HHTaskBar", true);
    ASSERT_EQ(strip != nullptr, RunsOnHandheld());
    if (strip) {
        const UINT turn = RegisterWindowMessageA(sweep::turnMessage);
        PostMessageW(strip, turn, 1, 0);
        EXPECT_TRUE(fills(
            RECT{0, upright.top, GetSystemMetrics(SM_CYSCREEN), GetSystemMetrics(SM_CXSCREEN)}));
        PostMessageW(strip, turn, 0, 0);
    } else {
        // A PC's screen is only said to have changed.
        SendMessageW(program.MainWindow(), WM_DISPLAYCHANGE, 32, 0);
    }
    EXPECT_TRUE(fills(upright));
    EXPECT_TRUE(OpenMenu());
}
