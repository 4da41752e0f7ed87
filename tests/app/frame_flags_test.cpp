#include <algorithm>
#include <vector>

#include "tests/app/frame_fixture.h"

using namespace test;

namespace {

constexpr UINT noItem = ~0u;

struct Flag {
    UINT command;
    DWORD mask;
    // The commands of the views whose menus carry it.
    std::vector<UINT> views;
};

const std::vector<Flag> flags = {
    {687, 0x0001, {600}},      {688, 0x0002, {600}},      {689, 0x0004, {600}},
    {690, 0x0008, {600}},      {691, 0x0040, {602, 620}}, {692, 0x0080, {602}},
    {693, 0x0100, {602}},      {696, 0x0020, {601}},      {697, 0x0010, {601}},
    {698, 0x1000, {602, 620}}, {699, 0x2000, {620}},
};

constexpr UINT viewCommands[] = {600, 601, 602, 603, 620};

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
    CheckMenuItem(frame.Bar().Menu(), 687, MF_BYCOMMAND | MF_UNCHECKED);
    CheckMenuItem(frame.Bar().Menu(), 688, MF_BYCOMMAND | MF_CHECKED);
    SendMessageW(frame.Handle(), WM_INITMENUPOPUP,
                 reinterpret_cast<WPARAM>(GetSubMenu(frame.Bar().Menu(), 1)), 1);
    EXPECT_TRUE(IsChecked(687));
    EXPECT_FALSE(IsChecked(688));
}

TEST_F(FrameFlags, HaveTwoCommandsBetweenThemThatDoNothing) {
    Open();
    Command(694);
    Command(695);
    EXPECT_EQ(frame.Flags(), 0u);
    EXPECT_EQ(ItemState(694), noItem);
}

TEST_F(FrameEnd, SavesViewAndFlagsAndQuitsWithOne) {
    Open();
    Command(603);
    Command(691);
    RunFrame([] {});
    EXPECT_EQ(CleanSettings::Number(L"view"), 3u);
    EXPECT_EQ(CleanSettings::Number(L"flags"), 0x40u);
    EXPECT_EQ(loopResult, 1);
    EXPECT_FALSE(frame.Handle());
}

TEST_F(FrameEnd, ComesWithTheExitCommand) {
    Open();
    const HWND window = frame.Handle();
    Command(57665);
    EXPECT_TRUE(IsWindow(window)) << "the window is closed by a message of its own";
    RunFrame([] {});
    EXPECT_EQ(loopResult, 1);
    EXPECT_EQ(CleanSettings::Number(L"view"), 0u);
    EXPECT_EQ(CleanSettings::Number(L"flags"), 0u);
}

TEST_F(FrameEnd, StoresDllsAsProcesses) {
    Open();
    Command(620);
    RunFrame([] {});
    EXPECT_EQ(CleanSettings::Number(L"view"), 2u);
}

TEST_F(FrameEnd, KeepsTheSettingsUnwrittenUntilThen) {
    Open();
    Command(601);
    Command(697);
    EXPECT_FALSE(CleanSettings::Number(L"view"));
    EXPECT_FALSE(CleanSettings::Number(L"flags"));
}
