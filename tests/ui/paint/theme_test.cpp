#include "ui/paint/theme.h"

#include <gtest/gtest.h>

using namespace ui;

namespace {

constexpr COLORREF white = RGB(255, 255, 255);
constexpr COLORREF otherwise = RGB(1, 2, 3);

COLORREF On(COLORREF background, COLORREF color, Contrast least = Contrast::Text) {
    return ReadableOn(background, color, otherwise, least);
}

}  // namespace

TEST(ReadableColors, AreLeftAsTheyAre) {
    EXPECT_EQ(On(white, 0), 0u);
    EXPECT_EQ(On(0, white), white);
    // The title and the links on a page, the system's gray on a bar.
    EXPECT_EQ(On(white, RGB(29, 99, 161)), RGB(29, 99, 161));
    EXPECT_EQ(On(white, RGB(0, 0, 255)), RGB(0, 0, 255));
    EXPECT_EQ(On(barColor, RGB(128, 128, 128), Contrast::Disabled), RGB(128, 128, 128));
}

TEST(ReadableColors, AreReplacedWhereNobodyCouldReadThem) {
    EXPECT_EQ(On(0, RGB(29, 99, 161)), otherwise);
    EXPECT_EQ(On(RGB(32, 32, 32), RGB(0, 0, 255)), otherwise);
    EXPECT_EQ(On(white, RGB(128, 128, 128)), otherwise);
    EXPECT_EQ(On(barColor, RGB(96, 0, 0), Contrast::Disabled), otherwise);
    EXPECT_EQ(On(white, white, Contrast::Disabled), otherwise);
}
