#include "tests/support/heaps.h"
#include "tests/support/platform_hook.h"
#include "tests/support/world.h"
#include "tests/ui/dialog/sample_form.h"

using namespace test;
using ui::noRow;

namespace {

class FormListMeasure : public FormTest {};
class FormListKeys : public FormTest {};
class FormListTap : public FormTest {};
class FormListFailure : public FormTest {};

int border = 1;
int(WINAPI* systemMetric)(int) = nullptr;
int WINAPI OtherBorder(int index) {
    return index == SM_CXBORDER ? border : systemMetric(index);
}
HDC WINAPI NoMemoryDC(HDC) {
    return nullptr;
}
HBITMAP WINAPI NoBitmap(HDC, int, int) {
    return nullptr;
}

bool Is(const RECT& area, const RECT& expected) {
    return EqualRect(&area, &expected) != FALSE;
}

}  // namespace

TEST_F(FormListMeasure, LeavesSixteenBordersAndAThirdOfTheHeight) {
    PlatformHook<int(int)> hook("GetSystemMetrics", OtherBorder);
    systemMetric = hook.Original();
    for (const int wide : {1, 2, 3}) {
        border = wide;
        std::vector<RowScript> rows(2);
        rows[1].size = SIZE{70, 20};
        Open(rows);
        EXPECT_EQ(rows[0].room.cx, width - 16 * wide);
        EXPECT_EQ(rows[0].room.cy, (height - 2 * (wide + 1)) / 3);
        EXPECT_EQ(list.GetMaxItemWidth(), 70 + 16 * wide);
        EXPECT_EQ(list.GetTotalHeight(), 34 + 20 + 2 * 2 * (wide + 1));
        EXPECT_TRUE(Is(rows[1].drawn, RECT{8 * wide, 34 + 3 * (wide + 1), width - 8 * wide,
                                           34 + 3 * (wide + 1) + 20}));
        list.Destroy();
        owner.Destroy();
    }
}

TEST_F(FormListMeasure, OwnsItsRowsWithAWindowAndWithout) {
    std::vector<RowScript> none;
    Open(none);
    for (const bool opened : {true, false}) {
        RowScript script;
        {
            ui::FormList form;
            if (opened) {
                ASSERT_TRUE(form.Open(owner.Handle(), RECT{0, 0, 100, 100}, 7));
            }
            form.AddRow(std::make_unique<SampleRow>(script));
            EXPECT_EQ(script.deleted, 0);
        }
        EXPECT_EQ(script.deleted, 1) << opened;
    }
}

TEST_F(FormListMeasure, AWindowWithoutRoomHasNone) {
    std::vector<RowScript> rows(1);
    Open(rows);
    MoveWindow(list.Handle(), 0, 0, 1, 1, TRUE);
    EXPECT_EQ(rows[0].room.cx, 0);
    EXPECT_EQ(rows[0].room.cy, 0);
}

TEST_F(FormListMeasure, ResizingMeasuresAnewAndKeepsSelectionAndTop) {
    std::vector<RowScript> rows = EqualRows(20);
    Open(rows);
    list.SetSelection(12);
    const unsigned top = list.GetTopIndex();
    EXPECT_GT(top, 0u);
    MoveWindow(list.Handle(), 20, 10, width - 40, height, TRUE);
    EXPECT_EQ(list.GetSelection(), 12u);
    EXPECT_EQ(list.GetTopIndex(), top);
    EXPECT_EQ(rows[0].room.cx, width - 40 - 16 * GetSystemMetrics(SM_CXBORDER));
}

TEST_F(FormListMeasure, KeepsTheRowAtTheTopWhenValuesAboveItWrapAnew) {
    OpenEmpty();
    Add<ui::ValueRow>(L"Path", std::wstring(400, L'w'));
    std::vector<RowScript> rows = EqualRows(30);
    for (RowScript& row : rows) {
        Add<SampleRow>(row);
    }
    list.Layout();
    unsigned first = list.GetCount() - 30;
    list.SetTopIndex(first + 12);
    const ui::FormRow* const top = &list.RowAt(first + 12);
    MoveWindow(list.Handle(), 20, 10, width / 2, height, TRUE);
    ASSERT_GT(list.GetCount() - 30, first);
    EXPECT_EQ(&list.RowAt(list.GetTopIndex()), top);
    MoveWindow(list.Handle(), 20, 10, width, height, TRUE);
    EXPECT_EQ(&list.RowAt(list.GetTopIndex()), top);
    // A further line of the value stands for the value.
    list.SetTopIndex(1);
    MoveWindow(list.Handle(), 20, 10, width / 2, height, TRUE);
    EXPECT_EQ(list.GetTopIndex(), 0u);
}

TEST_F(FormListKeys, UpAndDownSkipRowsThatRefuseAndScrollBehindTheLast) {
    std::vector<RowScript> rows = EqualRows(20);
    for (RowScript& row : rows) {
        row.accepts = false;
    }
    rows[3].accepts = rows[9].accepts = rows[17].accepts = true;
    Open(rows);
    for (const unsigned expected : {3u, 9u, 17u}) {
        EXPECT_EQ(SelectionAfter("Down"), expected);
    }
    const unsigned shown = list.GetTopIndex();
    EXPECT_GT(shown, 9u);
    EXPECT_EQ(SelectionAfter("Down"), 17u);
    EXPECT_EQ(list.GetTopIndex(), shown + 1);
    for (const unsigned expected : {9u, 3u}) {
        EXPECT_EQ(SelectionAfter("Up"), expected);
    }
    EXPECT_EQ(list.GetTopIndex(), 3u);
    EXPECT_EQ(SelectionAfter("Up"), 3u);
    EXPECT_EQ(list.GetTopIndex(), 2u);
}

TEST_F(FormListKeys, UpWithNothingSelectedStartsAtTheEnd) {
    std::vector<RowScript> rows = EqualRows(20);
    rows[19].accepts = rows[18].accepts = false;
    Open(rows);
    EXPECT_EQ(SelectionAfter("Up"), 17u);
}

TEST_F(FormListKeys, HomeAndEndSkipRowsThatRefuse) {
    std::vector<RowScript> rows = EqualRows(20);
    rows[0].accepts = rows[19].accepts = rows[18].accepts = false;
    Open(rows);
    EXPECT_EQ(SelectionAfter("End"), 17u);
    EXPECT_EQ(SelectionAfter("Home"), 1u);
}

TEST_F(FormListKeys, PageKeysDoNothing) {
    std::vector<RowScript> rows = EqualRows(20);
    Open(rows);
    EXPECT_EQ(SelectionAfter("Next"), noRow);
    list.SetSelection(10);
    const unsigned top = list.GetTopIndex();
    EXPECT_EQ(SelectionAfter("Next"), 10u);
    EXPECT_EQ(SelectionAfter("Prior"), 10u);
    EXPECT_EQ(list.GetTopIndex(), top);
}

TEST_F(FormListKeys, WithNothingToSelectUpAndDownScrollByOneRowWithinBounds) {
    std::vector<RowScript> rows = EqualRows(9);
    for (RowScript& row : rows) {
        row.accepts = false;
    }
    Open(rows);
    const unsigned last = list.GetMaxTop();
    ASSERT_EQ(last, 2u);
    for (const unsigned expected : {1u, 2u, 2u}) {
        EXPECT_EQ(SelectionAfter("Down"), noRow);
        EXPECT_EQ(list.GetTopIndex(), expected);
    }
    Press("Home");
    Press("End");
    EXPECT_EQ(list.GetTopIndex(), last);
    for (const unsigned expected : {1u, 0u, 0u}) {
        EXPECT_EQ(SelectionAfter("Up"), noRow);
        EXPECT_EQ(list.GetTopIndex(), expected);
    }
}

TEST_F(FormListKeys, TheSelectedRowIsOfferedAKeyFirst) {
    std::vector<RowScript> rows = EqualRows(5);
    rows[1].takes = VK_DOWN;
    Open(rows);
    EXPECT_EQ(SelectionAfter("Down"), 0u);
    EXPECT_EQ(SelectionAfter("Down"), 1u);
    EXPECT_TRUE(InputTaken::IsMarker(rows[0].keys[0]));
    EXPECT_EQ(rows[0].keys[1], static_cast<WPARAM>(VK_DOWN));
    EXPECT_EQ(rows[0].keyFlags[1] & 0x1FF, 0x150u);
    EXPECT_EQ(SelectionAfter("Down"), 1u);
    EXPECT_EQ(SelectionAfter("Up"), 0u);
}

TEST_F(FormListKeys, TheParentIsNotAskedFirst) {
    std::vector<RowScript> rows = EqualRows(5);
    Open(rows);
    int offered = 0;
    owner.answer = [&](UINT message, WPARAM, LPARAM lParam, LRESULT*) {
        offered +=
            message == WM_NOTIFY && reinterpret_cast<const NMHDR*>(lParam)->code == NM_KEYDOWN;
        return false;
    };
    EXPECT_EQ(SelectionAfter("a"), noRow);
    EXPECT_EQ(SelectionAfter("Down"), 0u);
    EXPECT_EQ(SelectionAfter("a"), 0u);
    EXPECT_EQ(offered, 0);
}

TEST_F(FormListKeys, AnEmptyListIgnoresThem) {
    OpenEmpty();
    for (const char* key : {"Up", "Down", "Home", "End", "Prior", "Next", "Return", "space"}) {
        EXPECT_EQ(SelectionAfter(key), noRow) << key;
    }
}

TEST_F(FormListTap, SelectsARowAndTellsIt) {
    std::vector<RowScript> rows = EqualRows(5);
    Open(rows);
    Tap(60, 60);
    EXPECT_EQ(list.GetSelection(), 1u);
    EXPECT_EQ(rows[1].taps, 1);
    Show();
    EXPECT_TRUE(rows[1].drawnSelected);
    EXPECT_FALSE(rows[0].drawnSelected);
}

TEST_F(FormListTap, ARowThatRefusesIgnoresIt) {
    std::vector<RowScript> rows = EqualRows(5);
    rows[1].accepts = false;
    Open(rows);
    list.SetSelection(3);
    Tap(60, 60);
    EXPECT_EQ(list.GetSelection(), 3u);
    EXPECT_EQ(rows[1].taps, 0);
}

TEST_F(FormListTap, ADragIsTakenEvenWhenAllRowsFit) {
    std::vector<RowScript> rows = EqualRows(3);
    Open(rows);
    ASSERT_EQ(list.GetMaxTop(), 0u);
    const int resting = rows[0].drawn.top;
    Run([&] {
        input.Play(Finger().Down(At(60, 20)).DragTo(At(60, 20), At(60, 110), 6));
        EXPECT_TRUE(WaitFor([&] { return rows[0].drawn.top > resting + 40; }));
        input.Play(Finger().Up());
        EXPECT_TRUE(WaitFor([&] { return rows[0].drawn.top == resting; }));
    });
    EXPECT_EQ(list.GetTopIndex(), 0u);
    EXPECT_EQ(list.GetSelection(), noRow);
    EXPECT_EQ(rows[0].taps, 0);
}

TEST_F(FormListFailure, WithoutOffscreenBitmapsTheKeysStillWork) {
    std::vector<RowScript> rows = EqualRows(20);
    Open(rows);
    {
        PlatformHook<HDC(HDC)> noDC("CreateCompatibleDC", NoMemoryDC);
        EXPECT_EQ(SelectionAfter("End"), 19u);
        EXPECT_EQ(SelectionAfter("Home"), 0u);
    }
    PlatformHook<HBITMAP(HDC, int, int)> none("CreateCompatibleBitmap", NoBitmap);
    EXPECT_EQ(SelectionAfter("End"), 19u);
    EXPECT_FALSE(rows[19].drawnSelected);
}

TEST_F(FormListFailure, RowsAreFreedOnceWithTheList) {
    std::vector<RowScript> rows = EqualRows(20);
    Open(rows);
    DestroyWindow(owner.Handle());
    for (const RowScript& row : rows) {
        EXPECT_EQ(row.deleted, 1);
    }
}

TEST_F(FormListFailure, AThousandFillingsLeaveNothingBehind) {
    OpenEmpty();
    std::vector<RowScript> rows = EqualRows(20);
    const auto fill = [&] {
        list.Clear();
        for (RowScript& row : rows) {
            Add<SampleRow>(row);
        }
        list.Layout();
        list.SetSelection(19);
        Show();
    };
    fill();
    const Held held = CountHeld();
    const size_t bytes = BytesOnAllHeaps();
    for (int round = 0; round < 1000; ++round) {
        fill();
    }
    EXPECT_EQ(CountHeld().gdiObjects, held.gdiObjects);
    EXPECT_LT(BytesOnAllHeaps(), bytes + 16000);
}
