// The mouse's wheel over lists of every kind.
#include "tests/support/platform_hook.h"
#include "tests/ui/list/sample_list.h"
#include "ui/list/wheel_turns.h"

using namespace test;
using namespace ui;

namespace {

// The setting of a user; none where the system has no such setting.
UINT rowsPerNotch = 3;
BOOL hasSetting = TRUE;

BOOL WINAPI Setting(UINT action, UINT, void* value, UINT) {
    EXPECT_EQ(action, static_cast<UINT>(SPI_GETWHEELSCROLLLINES));
    *static_cast<UINT*>(value) = rowsPerNotch;
    return hasSetting;
}

class TouchListWheel : public ListTest {
 protected:
    TouchListWheel() {
        rowsPerNotch = 3;
        hasSetting = TRUE;
    }
    void Turn(int notches) {
        Run([&] { input.Play(Finger().Turn(At(60, 100), notches)); });
    }
    // What a wheel of high resolution, or a finger on a touch pad, sends.
    unsigned TopAfter(int part) {
        SendMessageW(list.Handle(), WM_MOUSEWHEEL, MAKEWPARAM(0, static_cast<WORD>(part)), 0);
        return list.GetTopIndex();
    }
    const PlatformHook<decltype(Setting)> setting{"SystemParametersInfoW", Setting};
};

}  // namespace

TEST_F(TouchListWheel, ANotchScrollsByThreeWholeRows) {
    Open(EqualHeights(40, 40));
    Turn(-1);
    EXPECT_EQ(list.GetTopIndex(), 3u);
    EXPECT_TRUE(PumpUntil([&] { return list.LastFrame() == Frame{3, 0}; }));
    Turn(-3);
    EXPECT_EQ(list.GetTopIndex(), 12u);
    Turn(2);
    EXPECT_EQ(list.GetTopIndex(), 6u);
    EXPECT_TRUE(PumpUntil([&] { return list.LastFrame() == Frame{6, 0}; }));
    EXPECT_TRUE(SelectionNotices().empty());
}

TEST_F(TouchListWheel, StopsAtTheEnds) {
    Open(EqualHeights(12, 40));
    ASSERT_EQ(list.GetMaxTop(), 5u);
    Turn(1);
    EXPECT_EQ(list.GetTopIndex(), 0u);
    Turn(-3);
    EXPECT_EQ(list.GetTopIndex(), 5u);
    Turn(1);
    EXPECT_EQ(list.GetTopIndex(), 2u);
    Turn(1);
    EXPECT_EQ(list.GetTopIndex(), 0u);
}

TEST_F(TouchListWheel, RowsThatFitStandStill) {
    Open(EqualHeights(3, 40));
    Turn(-2);
    EXPECT_EQ(list.GetTopIndex(), 0u);
}

TEST_F(TouchListWheel, TheUsersSettingTellsHowManyRows) {
    Open(EqualHeights(40, 40));
    rowsPerNotch = 5;
    EXPECT_EQ(TopAfter(-WHEEL_DELTA), 5u);
    rowsPerNotch = 0;
    EXPECT_EQ(TopAfter(-WHEEL_DELTA), 5u);
    hasSetting = FALSE;
    EXPECT_EQ(TopAfter(-WHEEL_DELTA), 8u);
}

TEST_F(TouchListWheel, APageIsWhatFitsIntoTheWindow) {
    Open(EqualHeights(40, 40));
    rowsPerNotch = WHEEL_PAGESCROLL;
    EXPECT_EQ(TopAfter(-WHEEL_DELTA), 7u);
    EXPECT_EQ(TopAfter(-2 * WHEEL_DELTA), 21u);
    EXPECT_EQ(TopAfter(WHEEL_DELTA), 13u);
}

TEST_F(TouchListWheel, PartsOfANotchAddUp) {
    Open(EqualHeights(40, 40));
    EXPECT_EQ(TopAfter(-30), 0u);
    EXPECT_EQ(TopAfter(-30), 1u);
    EXPECT_EQ(TopAfter(-60), 3u);
    EXPECT_EQ(TopAfter(-39), 3u);
    EXPECT_EQ(TopAfter(-1), 4u);
}

TEST_F(TouchListWheel, ATurnBackBeginsAnew) {
    Open(EqualHeights(40, 40));
    list.SetTopIndex(10);
    EXPECT_EQ(TopAfter(-39), 10u);
    EXPECT_EQ(TopAfter(39), 10u);
    EXPECT_EQ(TopAfter(1), 9u);
}

TEST_F(TouchListWheel, ATurnOfNothingKeepsThePartOfANotch) {
    Open(EqualHeights(40, 40));
    list.SetTopIndex(10);
    EXPECT_EQ(TopAfter(39), 10u);
    EXPECT_EQ(TopAfter(0), 10u);
    EXPECT_EQ(TopAfter(1), 9u);
}

TEST_F(TouchListWheel, ThatIsTurnedInADragDoesNothing) {
    Open(EqualHeights(40, 40));
    Run([&] {
        Finger().Down(At(60, 250)).DragTo(At(60, 250), At(60, 150), 6).Play();
        EXPECT_TRUE(Shows({2, -20}));
        input.Play(Finger().Turn(At(60, 150), -2));
        EXPECT_EQ(list.GetTopIndex(), 0u);
        input.Play(Finger().Up());
    });
    EXPECT_EQ(list.GetTopIndex(), 2u);
}

TEST_F(TouchListWheel, AnEmptyListIgnores) {
    Open({});
    EXPECT_EQ(TopAfter(-WHEEL_DELTA), 0u);
}
