#include <algorithm>
#include <vector>

#include "res/resource.h"
#include "tests/app/frame_fixture.h"

using namespace test;

namespace {

struct Flag {
    UINT command;
    DWORD mask;
    // The commands of the views whose menus carry it.
    std::vector<UINT> views;
};

const std::vector<Flag> flags = {
    {ID_SHOW_HIDDEN, 0x0001, {ID_SHOW_FILES}},
    {ID_SHOW_SYSTEM, 0x0002, {ID_SHOW_FILES}},
    {ID_SHOW_FILE_SIZE, 0x0004, {ID_SHOW_FILES}},
    {ID_SHOW_FILE_DATE, 0x0008, {ID_SHOW_FILES}},
    {ID_SHOW_IMAGE_PATH, 0x0040, {ID_SHOW_PROCESSES, ID_SHOW_DLLS}},
    {ID_SHOW_PROCESS_ID, 0x0080, {ID_SHOW_PROCESSES}},
    {ID_SHOW_VIRTUAL_MEMORY, 0x0100, {ID_SHOW_PROCESSES}},
    {ID_SHOW_HIDDEN_APPLICATIONS, 0x0020, {ID_SHOW_APPLICATIONS}},
    {ID_SHOW_CRITICAL_APPLICATIONS, 0x0010, {ID_SHOW_APPLICATIONS}},
    {ID_SHOW_BASE_ADDRESS, 0x1000, {ID_SHOW_PROCESSES, ID_SHOW_DLLS}},
    {ID_SHOW_SIZE, 0x2000, {ID_SHOW_DLLS}},
};

constexpr UINT viewCommands[] = {ID_SHOW_FILES, ID_SHOW_APPLICATIONS, ID_SHOW_PROCESSES,
                                 ID_SHOW_SYSTEM_STATUS, ID_SHOW_DLLS};

class FrameFlags : public FrameFixture {};
class FrameEnd : public FrameFixture {};

}  // namespace

TEST_F(FrameFlags, AreCarriedByTheMenusTheyBelongTo) {
    Open();
    for (const UINT view : viewCommands) {
        Command(view);
        for (const Flag& flag : flags) {
            const bool carried =
                std::find(flag.views.begin(), flag.views.end(), view) != flag.views.end();
            EXPECT_EQ(ItemState(flag.command) != noItem, carried) << view << ' ' << flag.command;
        }
    }
}

TEST_F(FrameFlags, AreFlippedByTheirCommands) {
    Open();
    DWORD expected = 0;
    for (const Flag& flag : flags) {
        Command(flag.command);
        expected |= flag.mask;
        EXPECT_EQ(frame.Flags(), expected) << flag.command;
    }
    EXPECT_EQ(expected, 0x31FFu);
    for (const Flag& flag : flags) {
        Command(flag.command);
        expected &= ~flag.mask;
        EXPECT_EQ(frame.Flags(), expected) << flag.command;
    }
}

TEST_F(FrameFlags, AreShownByCheckMarksOnEveryMenu) {
    Open();
    for (const UINT view : viewCommands) {
        Command(view);
        for (const Flag& flag : flags) {
            if (ItemState(flag.command) == noItem) {
                continue;
            }
            EXPECT_FALSE(IsChecked(flag.command)) << view << ' ' << flag.command;
            Command(flag.command);
            EXPECT_TRUE(IsChecked(flag.command)) << view << ' ' << flag.command;
            Command(flag.command);
            EXPECT_FALSE(IsChecked(flag.command)) << view << ' ' << flag.command;
        }
    }
}

TEST_F(FrameFlags, ThatAreStoredAreCheckedFromTheStart) {
    CleanSettings::SetNumber(L"flags", 0x31FF);
    Open();
    EXPECT_EQ(frame.Flags(), 0x31FFu);
    for (const UINT view : viewCommands) {
        Command(view);
        for (const Flag& flag : flags) {
            EXPECT_EQ(IsChecked(flag.command), ItemState(flag.command) != noItem) << flag.command;
        }
    }
}

TEST_F(FrameFlags, AreCheckedAnewBeforeAMenuOpens) {
    CleanSettings::SetNumber(L"flags", 1);
    Open();
    CheckMenuItem(frame.Bar().Menu(), ID_SHOW_HIDDEN, MF_BYCOMMAND | MF_UNCHECKED);
    CheckMenuItem(frame.Bar().Menu(), ID_SHOW_SYSTEM, MF_BYCOMMAND | MF_CHECKED);
    SendMessageW(frame.Handle(), WM_INITMENUPOPUP,
                 reinterpret_cast<WPARAM>(GetSubMenu(frame.Bar().Menu(), 1)), 1);
    EXPECT_TRUE(IsChecked(ID_SHOW_HIDDEN));
    EXPECT_FALSE(IsChecked(ID_SHOW_SYSTEM));
}

TEST_F(FrameFlags, HaveTwoCommandsBetweenThemThatDoNothing) {
    Open();
    Command(ID_SPARE_OPTION_1);
    Command(ID_SPARE_OPTION_2);
    EXPECT_EQ(frame.Flags(), 0u);
    EXPECT_EQ(ItemState(ID_SPARE_OPTION_1), noItem);
}

TEST_F(FrameEnd, SavesViewAndFlagsAndQuitsWithOne) {
    Open();
    Command(ID_SHOW_SYSTEM_STATUS);
    Command(ID_SHOW_IMAGE_PATH);
    RunFrame([] {});
    EXPECT_EQ(CleanSettings::Number(L"view"), 3u);
    EXPECT_EQ(CleanSettings::Number(L"flags"), 0x40u);
    EXPECT_EQ(loopResult, 1);
    EXPECT_FALSE(frame.Handle());
}

TEST_F(FrameEnd, ComesWithTheExitCommand) {
    Open();
    const HWND window = frame.Handle();
    Command(ID_EXIT);
    EXPECT_TRUE(IsWindow(window)) << "the window is closed by a message of its own";
    RunFrame([] {});
    EXPECT_EQ(loopResult, 1);
    EXPECT_EQ(CleanSettings::Number(L"view"), 0u);
    EXPECT_EQ(CleanSettings::Number(L"flags"), 0u);
}

TEST_F(FrameEnd, StoresDllsAsProcesses) {
    Open();
    Command(ID_SHOW_DLLS);
    RunFrame([] {});
    EXPECT_EQ(CleanSettings::Number(L"view"), 2u);
}

TEST_F(FrameEnd, KeepsTheSettingsUnwrittenUntilThen) {
    Open();
    Command(ID_SHOW_APPLICATIONS);
    Command(ID_SHOW_CRITICAL_APPLICATIONS);
    EXPECT_FALSE(CleanSettings::Number(L"view"));
    EXPECT_FALSE(CleanSettings::Number(L"flags"));
}
