#include <gtest/gtest.h>

#include "ui/bar/buttons_bar.h"
#include "ui/bar/command_bar.h"

using namespace ui;

TEST(CommandBarSlots, ShareTheWidthEqually) {
    const RECT bar = {10, 5, 251, 45};
    const RECT second = BarButtonBounds(bar, 3, 1);
    EXPECT_EQ(second.left, 10 + 80);
    EXPECT_EQ(second.right, 10 + 160);
    EXPECT_EQ(second.top, 5);
    EXPECT_EQ(second.bottom, 45);
}

TEST(CommandBarSlots, AreNeverFewerThanTwo) {
    EXPECT_EQ(BarButtonBounds({0, 0, 241, 40}, 1, 0).right, 120);
    EXPECT_EQ(BarButtonBounds({0, 0, 241, 40}, 2, 0).right, 120);
    EXPECT_EQ(BarButtonBounds({0, 0, 241, 40}, 2, 1).right, 240);
}

TEST(MessageButtons, ShareTheWidthWithGapsAtBothEnds) {
    // Height 20, gap 5: (240 - 3 * 5) / 2 = 112, the row is 2 * 117 - 5 = 229 wide.
    const ButtonsLayout layout = LayOutButtons(240, 40, 2, 20);
    EXPECT_EQ(layout.height, 20);
    EXPECT_EQ(layout.gap, 5);
    EXPECT_EQ(layout.width, 112);
    EXPECT_EQ(layout.left, 5);
    EXPECT_EQ(layout.top, 10);
    EXPECT_EQ(layout.Bounds(1).left, 5 + 117);
    EXPECT_EQ(layout.Bounds(1).right, 5 + 229);
    EXPECT_EQ(layout.Bounds(1).top, 10);
    EXPECT_EQ(layout.Bounds(1).bottom, 30);
}

TEST(MessageButtons, TheRowIsCentredWhenDivisionLeavesARest) {
    // (203 - 4 * 6) / 3 = 59, row 3 * 65 - 6 = 189, rest 14.
    const ButtonsLayout layout = LayOutButtons(203, 24, 3, 25);
    EXPECT_EQ(layout.height, 24);
    EXPECT_EQ(layout.gap, 6);
    EXPECT_EQ(layout.width, 59);
    EXPECT_EQ(layout.left, 7);
    EXPECT_EQ(layout.top, 0);
}

TEST(MessageButtons, AreNeverTallerThanTheBar) {
    EXPECT_EQ(LayOutButtons(240, 12, 1, 20).height, 12);
    EXPECT_EQ(LayOutButtons(240, 12, 1, 20).gap, 3);
    EXPECT_EQ(LayOutButtons(240, 12, 1, 20).width, 240 - 6);
}

TEST(MessageButtons, ABarTooNarrowForTheGapsStartsAtItsLeftEdge) {
    const ButtonsLayout layout = LayOutButtons(10, 40, 3, 40);
    EXPECT_EQ(layout.left, 0);
    EXPECT_EQ(layout.width, 0);
}

TEST(MessageButtons, ABarWithoutButtonsHasNoRow) {
    EXPECT_EQ(LayOutButtons(240, 40, 0, 20).width, 0);
}

TEST(ButtonSteps, GoRoundBothEndsAndSaySo) {
    EXPECT_EQ(StepButton(0, 3, true).index, 1u);
    EXPECT_FALSE(StepButton(0, 3, true).wrapped);
    EXPECT_EQ(StepButton(2, 3, true).index, 0u);
    EXPECT_TRUE(StepButton(2, 3, true).wrapped);
    EXPECT_EQ(StepButton(2, 3, false).index, 1u);
    EXPECT_FALSE(StepButton(2, 3, false).wrapped);
    EXPECT_EQ(StepButton(0, 3, false).index, 2u);
    EXPECT_TRUE(StepButton(0, 3, false).wrapped);
    EXPECT_TRUE(StepButton(0, 1, true).wrapped);
    EXPECT_EQ(StepButton(0, 1, false).index, 0u);
}
