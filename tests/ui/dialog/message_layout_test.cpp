#include "ui/dialog/message_layout.h"

#include <gtest/gtest.h>

using namespace ui;

namespace {

MessageParts Parts(LONG textWidth, LONG textHeight) {
    MessageParts parts;
    parts.text = SIZE{textWidth, textHeight};
    parts.margin = 15;
    parts.captionHeight = 29;
    parts.barHeight = 60;
    parts.barWidth = 80;
    parts.titleWidth = 40;
    return parts;
}

}  // namespace

TEST(MessageLayout, TheTextHasAMarginOnBothSides) {
    EXPECT_EQ(WidestMessageText({10, 0, 250, 320}, 15), 210);
    EXPECT_EQ(WidestMessageText({0, 0, 20, 320}, 15), 0);
}

TEST(MessageLayout, TheBoxIsTextMarginsCaptionAndBarInTheMiddle) {
    RECT place = {};
    ASSERT_TRUE(PlaceMessage({10, 20, 250, 340}, Parts(101, 50), &place));
    EXPECT_EQ(place.right - place.left, 131);
    EXPECT_EQ(place.bottom - place.top, 50 + 29 + 30 + 60);
    EXPECT_EQ(place.left, 10 + (240 - 131) / 2);
    EXPECT_EQ(place.top, 20 + (320 - 169) / 2);
}

TEST(MessageLayout, TheCaptionAndTheButtonsWidenTheBox) {
    RECT place = {};
    ASSERT_TRUE(PlaceMessage({0, 0, 240, 320}, Parts(10, 50), &place));
    EXPECT_EQ(place.right - place.left, 80);
    MessageParts wideTitle = Parts(10, 50);
    wideTitle.titleWidth = 100;
    ASSERT_TRUE(PlaceMessage({0, 0, 240, 320}, wideTitle, &place));
    EXPECT_EQ(place.right - place.left, 130);
}

TEST(MessageLayout, NothingLeavesTheWorkArea) {
    RECT place = {};
    MessageParts parts = Parts(1000, 5000);
    parts.barWidth = 900;
    ASSERT_TRUE(PlaceMessage({7, 9, 247, 329}, parts, &place));
    EXPECT_EQ(place.left, 7);
    EXPECT_EQ(place.top, 9);
    EXPECT_EQ(place.right, 247);
    EXPECT_EQ(place.bottom, 329);
}

TEST(MessageLayout, AWorkAreaNotTallerThanTheBarIsRefused) {
    RECT place = {};
    EXPECT_FALSE(PlaceMessage({0, 0, 240, 60}, Parts(10, 10), &place));
    EXPECT_TRUE(PlaceMessage({0, 0, 240, 61}, Parts(10, 10), &place));
    EXPECT_EQ(place.bottom - place.top, 61);
}
