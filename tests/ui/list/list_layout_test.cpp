#include "ui/list/list_layout.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <random>

using namespace ui;

namespace {

ItemRecords Rows(std::initializer_list<int> heights) {
    ItemRecords rows;
    for (const int height : heights) {
        rows.push_back(ItemRecord{0, height, 0});
    }
    return rows;
}

ItemRecords EqualRows(size_t count, int height) {
    return ItemRecords(count, ItemRecord{0, height, 0});
}

ItemRecords RandomRows(std::mt19937& random) {
    ItemRecords rows(1 + random() % 40);
    for (ItemRecord& row : rows) {
        row.height = 1 + static_cast<int>(random() % 120);
    }
    return rows;
}

int HeightFrom(const ItemRecords& rows, unsigned first) {
    int sum = 0;
    for (size_t index = first; index < rows.size(); ++index) {
        sum += rows[index].height;
    }
    return sum;
}

}  // namespace

TEST(LargestTopRow, IsTheFirstFromWhichTheRestNoLongerFillsTheWindow) {
    EXPECT_EQ(LargestTop(EqualRows(10, 40), 100), 8u);
    EXPECT_EQ(LargestTop(Rows({10, 20, 30, 40, 50}), 91), 3u);
    EXPECT_EQ(LargestTop(Rows({10, 20, 30, 40, 50}), 121), 2u);
}

TEST(LargestTopRow, RowsThatFillTheWindowExactlyLeaveOneMoreStep) {
    EXPECT_EQ(LargestTop(EqualRows(10, 50), 100), 9u);
    EXPECT_EQ(LargestTop(EqualRows(10, 50), 101), 8u);
    EXPECT_EQ(LargestTop(Rows({10, 20, 30, 40, 50}), 90), 4u);
}

TEST(LargestTopRow, ALastRowAsTallAsTheWindowStaysTheTop) {
    EXPECT_EQ(LargestTop(Rows({30, 30, 100}), 100), 2u);
    EXPECT_EQ(LargestTop(Rows({30, 30, 200}), 100), 2u);
    EXPECT_EQ(LargestTop(Rows({200}), 100), 0u);
}

TEST(LargestTopRow, HoldsForRandomRows) {
    std::mt19937 random(1);
    for (int round = 0; round < 2000; ++round) {
        const ItemRecords rows = RandomRows(random);
        const int total = HeightFrom(rows, 0);
        if (total < 2) {
            continue;
        }
        const int client = 1 + static_cast<int>(random() % static_cast<unsigned>(total - 1));
        const unsigned top = LargestTop(rows, client);
        if (rows.back().height < client) {
            ASSERT_LT(HeightFrom(rows, top), client);
        } else {
            ASSERT_EQ(top, rows.size() - 1);
        }
        if (top > 0) {
            ASSERT_GE(HeightFrom(rows, top - 1), client);
        } else {
            ASSERT_EQ(rows.size(), 1u);
        }
    }
}

TEST(RowUnderADistance, IsTheRowThatReachesPastIt) {
    const ItemRecords rows = Rows({10, 20, 30});
    EXPECT_EQ(RowBelow(rows, 0, 0).index, 0u);
    EXPECT_EQ(RowBelow(rows, 0, 9).index, 0u);
    const RowHit hit = RowBelow(rows, 0, 10);
    EXPECT_EQ(hit.index, 1u);
    EXPECT_EQ(hit.top, 10);
    EXPECT_EQ(hit.bottom, 30);
    EXPECT_EQ(RowBelow(rows, 1, 20).index, 2u);
    EXPECT_EQ(RowBelow(rows, 1, 20).top, 20);
    EXPECT_EQ(RowBelow(rows, 1, 20).bottom, 50);
}

TEST(RowUnderADistance, IsNoneBehindTheLastRow) {
    EXPECT_EQ(RowBelow(Rows({10, 20, 30}), 0, 59).index, 2u);
    EXPECT_EQ(RowBelow(Rows({10, 20, 30}), 0, 60).index, noRow);
    EXPECT_EQ(RowBelow({}, 0, 0).index, noRow);
}

TEST(TopThatShowsARow, IsTheSmallestWithTheRowFullyVisible) {
    EXPECT_EQ(TopToShow(EqualRows(10, 40), 5, 120), 3u);
    EXPECT_EQ(TopToShow(EqualRows(10, 40), 5, 119), 4u);
    EXPECT_EQ(TopToShow(EqualRows(10, 40), 1, 400), 0u);
    EXPECT_EQ(TopToShow(EqualRows(10, 40), 7, 30), 7u);
}

TEST(PageUpwards, StopsAtTheRowThatCompletesAPage) {
    EXPECT_EQ(PageUp(EqualRows(20, 40), 10, 120), 7u);
    EXPECT_EQ(PageUp(EqualRows(20, 40), 10, 121), 6u);
    EXPECT_EQ(PageUp(EqualRows(20, 40), 2, 120), 0u);
    EXPECT_EQ(PageUp(EqualRows(20, 40), 0, 120), 0u);
    EXPECT_EQ(PageUp(Rows({10, 300, 10, 10}), 3, 100), 1u);
}

TEST(PageDownwards, ReachesTheRowOnePageBelowTheSelectionsTop) {
    EXPECT_EQ(PageDown(EqualRows(20, 40), 3, 120), 6u);
    EXPECT_EQ(PageDown(EqualRows(20, 40), 3, 119), 5u);
    EXPECT_EQ(PageDown(EqualRows(20, 40), 18, 120), 19u);
    EXPECT_EQ(PageDown(EqualRows(20, 40), 19, 120), 19u);
}

TEST(FollowingTheFinger, ScrollsUpOneToOne) {
    const ItemRecords rows = EqualRows(20, 40);
    DragPosition at = FollowFinger(rows, 17, 120, {0, 0}, 30);
    EXPECT_EQ(at.top, 0u);
    EXPECT_EQ(at.offset, 30);
    at = FollowFinger(rows, 17, 120, at, 10);
    EXPECT_EQ(at.top, 1u);
    EXPECT_EQ(at.offset, 0);
    at = FollowFinger(rows, 17, 120, at, 95);
    EXPECT_EQ(at.top, 3u);
    EXPECT_EQ(at.offset, 15);
}

TEST(FollowingTheFinger, ScrollsDownAcrossRows) {
    const ItemRecords rows = Rows({10, 20, 30, 40, 50, 60});
    DragPosition at = FollowFinger(rows, 5, 60, {4, 5}, -6);
    EXPECT_EQ(at.top, 3u);
    EXPECT_EQ(at.offset, 39);
    at = FollowFinger(rows, 5, 60, at, -70);
    EXPECT_EQ(at.top, 1u);
    EXPECT_EQ(at.offset, 19);
    at = FollowFinger(rows, 5, 60, at, -29);
    EXPECT_EQ(at.top, 0u);
    EXPECT_EQ(at.offset, 0);
}

TEST(FollowingTheFinger, HoldsTheFirstRowAtHalfTheWindow) {
    const ItemRecords rows = EqualRows(20, 40);
    EXPECT_EQ(FollowFinger(rows, 17, 121, {0, 0}, -59).offset, -59);
    EXPECT_EQ(FollowFinger(rows, 17, 121, {0, 0}, -60).offset, -60);
    const DragPosition held = FollowFinger(rows, 17, 121, {0, 0}, -61);
    EXPECT_EQ(held.top, 0u);
    EXPECT_EQ(held.offset, -60);
    EXPECT_EQ(FollowFinger(rows, 17, 121, {2, 10}, -1000).offset, -60);
}

TEST(FollowingTheFinger, HoldsTheLastPageAtHalfTheWindow) {
    const ItemRecords rows = EqualRows(20, 40);
    const DragPosition held = FollowFinger(rows, 17, 121, {17, 0}, 61);
    EXPECT_EQ(held.top, 17u);
    EXPECT_EQ(held.offset, 60);
    EXPECT_EQ(FollowFinger(rows, 17, 121, {16, 0}, 10000).top, 17u);
    EXPECT_EQ(FollowFinger(rows, 17, 121, {16, 0}, 10000).offset, 60);
}

TEST(FollowingTheFinger, KeepsEveryPixelBetweenTheEnds) {
    std::mt19937 random(2);
    for (int round = 0; round < 2000; ++round) {
        const ItemRecords rows = RandomRows(random);
        const auto last = static_cast<unsigned>(rows.size()) - 1;
        DragPosition at = {last / 2, 0};
        int scrolled = HeightFrom(rows, 0) - HeightFrom(rows, at.top);
        for (int step = 0; step < 20; ++step) {
            const int distance = static_cast<int>(random() % 101) - 50;
            scrolled += distance;
            at = FollowFinger(rows, last, 300, at, distance);
            const int above = HeightFrom(rows, 0) - HeightFrom(rows, at.top);
            if (scrolled < -150 || (at.top == last && at.offset == 150)) {
                break;
            }
            ASSERT_EQ(above + at.offset, scrolled);
            // Only an end shows anything but a part of the top row.
            ASSERT_TRUE(at.offset >= 0 || at.top == 0);
            ASSERT_TRUE(at.offset < rows[at.top].height || at.top == last);
        }
    }
}

TEST(SlidingToRest, MoreThanHalfARowGoesOnToTheNext) {
    const SlideToRest slide = PlanSlide(EqualRows(20, 40), 17, 800, {3, 21});
    EXPECT_EQ(slide.newTop, 4u);
    EXPECT_EQ(slide.target, -40);
    EXPECT_EQ(slide.first, -21);
    EXPECT_EQ(slide.step, -19);
}

TEST(SlidingToRest, ExactlyHalfARowGoesBack) {
    const SlideToRest slide = PlanSlide(EqualRows(20, 40), 17, 800, {3, 20});
    EXPECT_EQ(slide.newTop, 3u);
    EXPECT_EQ(slide.target, 0);
    EXPECT_EQ(slide.first, -20);
    EXPECT_EQ(slide.step, 20);
    // Half of an odd height is rounded down.
    EXPECT_EQ(PlanSlide(EqualRows(20, 41), 17, 820, {3, 20}).newTop, 3u);
    EXPECT_EQ(PlanSlide(EqualRows(20, 41), 17, 820, {3, 21}).newTop, 4u);
}

TEST(SlidingToRest, TheLastPageAlwaysGoesBack) {
    const SlideToRest slide = PlanSlide(EqualRows(20, 40), 17, 800, {17, 55});
    EXPECT_EQ(slide.newTop, 17u);
    EXPECT_EQ(slide.target, 0);
    // 55 = 15 + 40: the first frame leaves whole steps.
    EXPECT_EQ(slide.first, 15 - 55);
    EXPECT_EQ(slide.step, 40);
}

TEST(SlidingToRest, APulledDownListGoesUpToItsFirstRow) {
    const SlideToRest slide = PlanSlide(EqualRows(20, 40), 17, 800, {0, -90});
    EXPECT_EQ(slide.newTop, 0u);
    EXPECT_EQ(slide.target, 0);
    EXPECT_EQ(slide.first, -10 + 90);
    EXPECT_EQ(slide.step, -40);
    EXPECT_EQ(PlanSlide(EqualRows(20, 40), 17, 800, {0, -39}).step, -39);
    EXPECT_EQ(PlanSlide(EqualRows(20, 40), 17, 800, {0, -40}).step, -40);
}

TEST(SlidingToRest, ATallRowTakesStepsOfTheMeanHeight) {
    // Heights 10, 10, 100: mean 40.
    const SlideToRest back = PlanSlide(Rows({10, 10, 100}), 2, 120, {2, 50});
    EXPECT_EQ(back.step, 40);
    EXPECT_EQ(back.first, 10 - 50);
    const SlideToRest on = PlanSlide(Rows({100, 10, 10}), 2, 120, {0, 55});
    EXPECT_EQ(on.newTop, 1u);
    EXPECT_EQ(on.target, -100);
    EXPECT_EQ(on.step, -40);
    EXPECT_EQ(on.first, -45 % 40 - 55);
}

TEST(SlidingToRest, AtRestNothingMoves) {
    const SlideToRest slide = PlanSlide(EqualRows(20, 40), 17, 800, {5, 0});
    EXPECT_EQ(slide.first, slide.target);
    EXPECT_EQ(slide.newTop, 5u);
}

TEST(SlidingToRest, RowsWithoutHeightMoveInOneStep) {
    const SlideToRest slide = PlanSlide(EqualRows(3, 0), 0, 0, {0, -12});
    EXPECT_EQ(slide.first, 12);
    EXPECT_EQ(slide.first + slide.step, slide.target);
}

TEST(SlidingToRest, StepsEndExactlyOnTheTargetForRandomRows) {
    std::mt19937 random(3);
    for (int round = 0; round < 20000; ++round) {
        const ItemRecords rows = RandomRows(random);
        const int total = HeightFrom(rows, 0);
        const int client = 1 + static_cast<int>(random() % 300);
        const unsigned maxTop = total > client ? LargestTop(rows, client) : 0;
        const DragPosition from = {static_cast<unsigned>(random() % (maxTop + 1)), 0};
        const DragPosition at =
            FollowFinger(rows, maxTop, client, from, static_cast<int>(random() % 2001) - 1000);
        const SlideToRest slide = PlanSlide(rows, maxTop, total, at);
        const int distance = std::abs(slide.target + at.offset);
        const int mean = total / static_cast<int>(rows.size());
        int y = slide.first;
        int frames = 1;
        while (y != slide.target && frames <= distance / mean + 1) {
            y += slide.step;
            ++frames;
        }
        ASSERT_EQ(y, slide.target) << "from row " << at.top << " at " << at.offset;
        // The frames never go away from where the finger left the rows.
        ASSERT_LE(std::abs(slide.first - slide.target), distance);
    }
}

TEST(ScrollThumb, IsAsLongAsTheVisibleShare) {
    const RECT client = {0, 0, 200, 300};
    const RECT thumb = ScrollThumb(client, 900, 0, 30, 3, 9);
    EXPECT_EQ(thumb.left, 197);
    EXPECT_EQ(thumb.right, 200);
    EXPECT_EQ(thumb.top, 0);
    EXPECT_EQ(thumb.bottom, 100);
    EXPECT_EQ(ScrollThumb(client, 900, 15, 30, 3, 9).top, 150);
}

TEST(ScrollThumb, NeverShorterThanItsLeastLengthNorBelowTheBottom) {
    const RECT client = {0, 10, 200, 310};
    const RECT thumb = ScrollThumb(client, 4000000, 99999, 100000, 3, 9);
    EXPECT_EQ(thumb.bottom, 310);
    EXPECT_EQ(thumb.top, 301);
    EXPECT_EQ(ScrollThumb(client, 900, 29, 30, 3, 9).bottom, 310);
    EXPECT_EQ(ScrollThumb(client, 900, 29, 30, 3, 9).top, 210);
    EXPECT_EQ(ScrollThumb(client, 900, 3, 30, 3, 9).top, 40);
}

TEST(ScrollThumb, IsEmptyWhenTheRowsFit) {
    const RECT client = {0, 0, 200, 300};
    const RECT fits = ScrollThumb(client, 300, 0, 3, 3, 9);
    EXPECT_EQ(fits.top, fits.bottom);
    const RECT over = ScrollThumb(client, 301, 0, 3, 3, 9);
    EXPECT_EQ(over.bottom - over.top, 299);
}
