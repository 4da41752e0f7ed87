#include "ui/popup/popup_placement.h"

#include <gtest/gtest.h>

using ui::PlacePopup;

namespace {

constexpr RECT workArea = {0, 20, 240, 320};

void ExpectPlace(const RECT& place, LONG left, LONG top, LONG right, LONG bottom) {
    EXPECT_EQ(place.left, left);
    EXPECT_EQ(place.top, top);
    EXPECT_EQ(place.right, right);
    EXPECT_EQ(place.bottom, bottom);
}

}  // namespace

TEST(PopupPlacement, OpensUpwardsAtTheAnchorsLeft) {
    ExpectPlace(PlacePopup({0, 300, 120, 320}, {100, 80}, workArea), 0, 220, 100, 300);
}

TEST(PopupPlacement, MayTouchTheRightEdgeButNotPassIt) {
    ExpectPlace(PlacePopup({120, 300, 230, 320}, {120, 80}, workArea), 120, 220, 240, 300);
    ExpectPlace(PlacePopup({120, 300, 230, 320}, {121, 80}, workArea), 109, 220, 230, 300);
}

TEST(PopupPlacement, AMenuTooWideForRightAlignmentStartsAtTheLeftEdge) {
    ExpectPlace(PlacePopup({120, 300, 200, 320}, {200, 80}, workArea), 0, 220, 200, 300);
    ExpectPlace(PlacePopup({120, 300, 200, 320}, {201, 80}, workArea), 0, 220, 201, 300);
    ExpectPlace(PlacePopup({120, 300, 200, 320}, {400, 80}, workArea), 0, 220, 240, 300);
}

TEST(PopupPlacement, AWorkAreaOffTheOriginIsKeptTo) {
    const RECT second = {240, 0, 480, 320};
    ExpectPlace(PlacePopup({360, 300, 480, 320}, {130, 80}, second), 350, 220, 480, 300);
    ExpectPlace(PlacePopup({360, 300, 400, 320}, {170, 80}, second), 240, 220, 410, 300);
}

TEST(PopupPlacement, FillsTheSpaceAboveExactlyBeforeItTurnsDown) {
    ExpectPlace(PlacePopup({0, 120, 50, 140}, {100, 100}, workArea), 0, 20, 100, 120);
    ExpectPlace(PlacePopup({0, 120, 50, 140}, {100, 101}, workArea), 0, 140, 100, 241);
}

TEST(PopupPlacement, FillsTheSpaceBelowExactlyBeforeItIsCut) {
    ExpectPlace(PlacePopup({0, 120, 50, 140}, {100, 180}, workArea), 0, 140, 100, 320);
    ExpectPlace(PlacePopup({0, 120, 50, 140}, {100, 181}, workArea), 0, 140, 100, 320);
}

TEST(PopupPlacement, ATallMenuTakesTheLargerSpace) {
    ExpectPlace(PlacePopup({0, 200, 50, 220}, {100, 500}, workArea), 0, 20, 100, 200);
    // Equal spaces: 130 above and below.
    ExpectPlace(PlacePopup({0, 150, 50, 190}, {100, 500}, workArea), 0, 190, 100, 320);
    ExpectPlace(PlacePopup({0, 151, 50, 190}, {100, 500}, workArea), 0, 20, 100, 151);
}
