#include <climits>

#include "tests/support/platform_hook.h"
#include "tests/support/world.h"
#include "tests/ui/failing_drawing.h"
#include "tests/ui/list/sample_list.h"

using namespace test;
using ui::noRow;

namespace {

class TouchListState : public ListTest {};
class TouchListSelection : public ListTest {};
class TouchListHits : public ListTest {};
class TouchListSize : public ListTest {};

}  // namespace

TEST_F(TouchListState, LayoutMeasuresEveryRowForTheWindowsSize) {
    Open({40, 50, 60});
    EXPECT_EQ(list.measured, (std::vector<unsigned>{0, 1, 2}));
    EXPECT_EQ(list.measuredFor.cx, width);
    EXPECT_EQ(list.measuredFor.cy, height);
    EXPECT_EQ(list.GetTotalHeight(), 150);
    EXPECT_EQ(list.GetMaxItemWidth(), 12);
    EXPECT_EQ(list.GetMaxTop(), 0u);
    EXPECT_EQ(list.GetCount(), 3u);
    EXPECT_EQ(list.GetItemData(2), SampleList::firstData + 2);
}

TEST_F(TouchListState, LayoutDropsTheSelectionAndGoesToTheTop) {
    Open(EqualHeights(20, 40));
    list.SetSelection(19);
    ASSERT_GT(list.GetTopIndex(), 0u);
    list.Layout();
    EXPECT_EQ(list.GetSelection(), noRow);
    EXPECT_EQ(list.GetTopIndex(), 0u);
    EXPECT_EQ(list.GetMaxTop(), 13u);
    RECT all;
    ASSERT_TRUE(GetUpdateRect(list.Handle(), &all, FALSE));
    EXPECT_EQ(all.bottom, height);
}

TEST_F(TouchListState, RowsThatFitExactlyDoNotScroll) {
    Open(EqualHeights(6, 50));
    EXPECT_EQ(list.GetMaxTop(), 0u);
    list.Fill({50, 50, 50, 50, 50, 51});
    EXPECT_EQ(list.GetMaxTop(), 1u);
}

TEST_F(TouchListState, ARowBehindTheLastPixelHasNoPlace) {
    Open(EqualHeights(20, 50));
    RECT row;
    ASSERT_TRUE(list.RowRectangle(5, &row));
    EXPECT_EQ(row.top, 250);
    EXPECT_EQ(row.bottom, height);
    EXPECT_FALSE(list.RowRectangle(6, &row));
}

TEST_F(TouchListState, ARowThatDoesNotExistIsAnError) {
    Open({40});
    EXPECT_THROW(list.GetItemData(1), std::out_of_range);
    EXPECT_THROW(list.GetItemData(noRow), std::out_of_range);
    EXPECT_THROW(list.InsertItem(2, 0), std::out_of_range);
    EXPECT_EQ(list.GetCount(), 1u);
}

TEST_F(TouchListState, EveryRowIsFreedOnce) {
    Open({40, 40, 40});
    list.Clear();
    EXPECT_EQ(list.deleted, (std::vector<ULONG_PTR>{5000, 5001, 5002}));
    EXPECT_EQ(list.GetCount(), 0u);
    EXPECT_EQ(list.GetTotalHeight(), 0);
    list.deleted.clear();
    list.Fill({40, 40});
    list.Destroy();
    EXPECT_EQ(list.deleted, (std::vector<ULONG_PTR>{5000, 5001}));
    list.Clear();
    EXPECT_EQ(list.deleted.size(), 2u);
}

TEST_F(TouchListSelection, TellsTheParentBeforeAndAfter) {
    Open(EqualHeights(20, 40));
    EXPECT_EQ(list.SetSelection(2), 2u);
    EXPECT_EQ(list.SetSelection(5), 5u);
    EXPECT_EQ(list.SetSelection(noRow), noRow);
    const std::vector<Notice> expected = {{-100, 2, UINT_MAX}, {-101, 2, UINT_MAX},
                                          {-100, 5, 2},        {-101, 5, 2},
                                          {-100, UINT_MAX, 5}, {-101, UINT_MAX, 5}};
    EXPECT_EQ(Notices(), expected);
}

TEST_F(TouchListSelection, IsNotYetChangedWhenTheParentIsAsked) {
    Open(EqualHeights(20, 40));
    const auto note = owner.answer;
    std::vector<unsigned> seen;
    owner.answer = [&](UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result) {
        if (message == WM_NOTIFY) {
            seen.push_back(list.GetSelection());
        }
        return note(message, wParam, lParam, result);
    };
    list.SetSelection(3);
    EXPECT_EQ(seen, (std::vector<unsigned>{noRow, 3}));
    owner.answer = note;
}

TEST_F(TouchListSelection, IsInViewWhenTheParentIsTold) {
    Open(EqualHeights(20, 40));
    std::vector<unsigned> tops;
    owner.answer = [&, note = owner.answer](UINT message, WPARAM wParam, LPARAM lParam,
                                            LRESULT* result) {
        if (message == WM_NOTIFY) {
            tops.push_back(list.GetTopIndex());
        }
        return note(message, wParam, lParam, result);
    };
    list.SetSelection(19);
    EXPECT_EQ(tops, (std::vector<unsigned>{0, 13}));
}

TEST_F(TouchListSelection, AVetoKeepsTheOldOneSilently) {
    Open(EqualHeights(20, 40));
    list.SetSelection(4);
    veto = true;
    EXPECT_EQ(list.SetSelection(19), 4u);
    EXPECT_EQ(list.GetSelection(), 4u);
    EXPECT_EQ(list.GetTopIndex(), 0u);
    EXPECT_EQ(Notices().back(), (Notice{-100, 19, 4}));
}

TEST_F(TouchListSelection, SelectingTheSelectedRowTellsNobody) {
    Open(EqualHeights(20, 40));
    EXPECT_EQ(list.SetSelection(noRow), noRow);
    EXPECT_TRUE(Notices().empty());
    list.SetSelection(4);
    list.SetSelection(4);
    EXPECT_EQ(Notices().size(), 2u);
}

TEST_F(TouchListSelection, AnIndexPastTheEndIsTheLastRow) {
    Open(EqualHeights(20, 40));
    EXPECT_EQ(list.SetSelection(20), 19u);
    EXPECT_EQ(list.SetSelection(noRow - 1), 19u);
    EXPECT_EQ(Notices().size(), 2u);
    list.Fill({});
    EXPECT_EQ(list.SetSelection(3), noRow);
}

TEST_F(TouchListSelection, BringsTheRowIntoViewWithTheLeastScrolling) {
    Open(EqualHeights(20, 40));
    // Seven rows and a half: row 7 is not fully visible.
    list.SetSelection(6);
    EXPECT_EQ(list.GetTopIndex(), 0u);
    list.SetSelection(7);
    EXPECT_EQ(list.GetTopIndex(), 1u);
    list.SetSelection(19);
    EXPECT_EQ(list.GetTopIndex(), 13u);
    list.SetSelection(13);
    EXPECT_EQ(list.GetTopIndex(), 13u);
    list.SetSelection(12);
    EXPECT_EQ(list.GetTopIndex(), 12u);
    list.SetSelection(noRow);
    EXPECT_EQ(list.GetTopIndex(), 12u);
}

TEST_F(TouchListSelection, RepaintsOnlyTheOldAndTheNewRowWhenNothingScrolls) {
    Open(EqualHeights(20, 40));
    list.SetSelection(2);
    ValidateRect(list.Handle(), nullptr);
    list.SetSelection(3);
    RECT dirty = {};
    ASSERT_TRUE(GetUpdateRect(list.Handle(), &dirty, FALSE));
    EXPECT_EQ(dirty.top, 80);
    EXPECT_EQ(dirty.bottom, 160);
    ValidateRect(list.Handle(), nullptr);
    list.SetSelection(19);
    ASSERT_TRUE(GetUpdateRect(list.Handle(), &dirty, FALSE));
    EXPECT_EQ(dirty.top, 0);
    EXPECT_EQ(dirty.bottom, height);
}

TEST_F(TouchListHits, AreCountedFromTheTopRow) {
    Open({30, 50, 70, 90, 110, 130});
    list.SetTopIndex(1);
    RECT row = {};
    EXPECT_EQ(list.HitTest(POINT{0, 0}, &row), 1u);
    EXPECT_EQ(row.top, 0);
    EXPECT_EQ(row.bottom, 50);
    EXPECT_EQ(list.HitTest(POINT{199, 49}), 1u);
    EXPECT_EQ(list.HitTest(POINT{199, 50}, &row), 2u);
    EXPECT_EQ(row.top, 50);
    EXPECT_EQ(row.bottom, 120);
    EXPECT_EQ(row.left, 0);
    EXPECT_EQ(row.right, width);
    EXPECT_EQ(list.HitTest(POINT{0, 299}, &row), 4u);
    EXPECT_EQ(row.bottom, 320);
}

TEST_F(TouchListHits, AreNoneOutsideTheWindowAndBehindTheRows) {
    Open({30, 50});
    EXPECT_EQ(list.HitTest(POINT{10, 79}), 1u);
    EXPECT_EQ(list.HitTest(POINT{10, 80}), noRow);
    EXPECT_EQ(list.HitTest(POINT{-1, 10}), noRow);
    EXPECT_EQ(list.HitTest(POINT{10, -1}), noRow);
    EXPECT_EQ(list.HitTest(POINT{width, 10}), noRow);
    list.Fill(EqualHeights(20, 40));
    EXPECT_EQ(list.HitTest(POINT{10, height}), noRow);
    list.Fill({});
    EXPECT_EQ(list.HitTest(POINT{10, 10}), noRow);
}

TEST_F(TouchListHits, AreNoneWhenTheWindowCannotBeMeasured) {
    Open({30, 50});
    const PlatformHook client("GetClientRect", NoClient);
    EXPECT_EQ(list.HitTest(POINT{10, 10}), noRow);
}

TEST_F(TouchListSelection, ScrollsNothingInAWindowThatCannotBeMeasured) {
    Open(EqualHeights(20, 40));
    list.SetTopIndex(4);
    list.SetSelection(5);
    const PlatformHook client("GetClientRect", NoClient);
    EXPECT_EQ(list.SetSelection(19), 19u);
    EXPECT_EQ(list.GetTopIndex(), 4u);
    for (const WPARAM key : {VK_PRIOR, VK_NEXT}) {
        list.SetSelection(10);
        SendMessageW(list.Handle(), WM_KEYDOWN, key, 0);
        EXPECT_EQ(list.GetSelection(), 10u);
    }
}

TEST_F(TouchListSize, OneThatCannotBeReadChangesNothing) {
    Open(EqualHeights(20, 40));
    list.SetTopIndex(4);
    list.SetSelection(5);
    list.measured.clear();
    const PlatformHook client("GetClientRect", NoClient);
    MoveWindow(list.Handle(), 0, 0, width, 390, FALSE);
    EXPECT_EQ(list.GetMaxTop(), 13u);
    list.Layout();
    list.Remeasure();
    EXPECT_TRUE(list.measured.empty());
    EXPECT_EQ(list.GetTopIndex(), 4u);
    EXPECT_EQ(list.GetSelection(), 5u);
    EXPECT_EQ(list.GetTotalHeight(), 20 * 40);
}

TEST_F(TouchListSize, AHigherWindowThatShowsAllGoesToTheTop) {
    Open(EqualHeights(10, 40));
    list.SetSelection(9);
    ASSERT_EQ(list.GetTopIndex(), 3u);
    MoveWindow(list.Handle(), 0, 0, width, 400, FALSE);
    EXPECT_EQ(list.GetTopIndex(), 0u);
    EXPECT_EQ(list.GetMaxTop(), 0u);
    EXPECT_EQ(list.GetSelection(), 9u);
}

TEST_F(TouchListSize, AHigherWindowKeepsTheLastPageFull) {
    Open(EqualHeights(20, 40));
    list.SetTopIndex(13);
    MoveWindow(list.Handle(), 0, 0, width, 390, FALSE);
    EXPECT_EQ(list.GetMaxTop(), 11u);
    EXPECT_EQ(list.GetTopIndex(), 11u);
    MoveWindow(list.Handle(), 0, 0, width, 100, FALSE);
    EXPECT_EQ(list.GetMaxTop(), 18u);
    EXPECT_EQ(list.GetTopIndex(), 11u);
}

TEST_F(TouchListSize, AMoveAloneChangesNothing) {
    Open(EqualHeights(20, 40));
    list.SetTopIndex(13);
    {
        // A size that must not be looked at.
        const PlatformHook client("GetClientRect", NoClient);
        SetWindowPos(list.Handle(), nullptr, 5, 5, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
    }
    EXPECT_EQ(list.GetTopIndex(), 13u);
    EXPECT_EQ(list.GetMaxTop(), 13u);
}

TEST_F(TouchListSize, TheChangeIsPassedOn) {
    Open(EqualHeights(20, 40));
    // The platform's own answer to it is WM_SIZE.
    list.sizeMessages = 0;
    MoveWindow(list.Handle(), 0, 0, width, 390, TRUE);
    EXPECT_EQ(list.sizeMessages, 1);
}

TEST_F(TouchListState, RowsReplacedByTheOneWhoIsAskedKeepNoSelectionThatIsGone) {
    Open(EqualHeights(20, 40));
    owner.answer = [this, answer = owner.answer](UINT message, WPARAM wParam, LPARAM lParam,
                                                 LRESULT* result) {
        const auto& header = *reinterpret_cast<const NMHDR*>(lParam);
        if (message == WM_NOTIFY && static_cast<int>(header.code) == ui::LSN_SELCHANGING) {
            list.Fill(EqualHeights(2, 40));
        }
        return answer(message, wParam, lParam, result);
    };
    EXPECT_EQ(list.SetSelection(12), noRow);
    EXPECT_EQ(list.GetSelection(), noRow);
    EXPECT_EQ(list.SetSelection(1), 1u);
}
