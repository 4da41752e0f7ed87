#include "tests/support/world.h"
#include "tests/ui/dialog/sample_form.h"
#include "ui/paint/drawing_resources.h"

using namespace test;
using ui::noRow;

namespace {

class FormEditor : public FormTest {
 protected:
    // Six rows of which the second and the fourth are edited.
    void SetUp() override {
        rows = EqualRows(6);
        rows[1].edits = rows[3].edits = true;
    }
    std::vector<RowScript> rows;
};

// What the editor still had when its window went.
DWORD fontAtItsEnd = 0;
HFONT fontOfEditor = nullptr;
LRESULT CALLBACK NoteEditorsEnd(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    const auto before = reinterpret_cast<WNDPROC>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (message == WM_DESTROY) {
        fontAtItsEnd = GetObjectType(fontOfEditor);
    }
    return CallWindowProcW(before, window, message, wParam, lParam);
}

class FormTextRow : public FormTest {};

}  // namespace

TEST_F(FormEditor, OpensOverTheSelectedRowAndGetsTheFocus) {
    Open(rows);
    Tap(60, 60);
    ASSERT_TRUE(list.Editor());
    EXPECT_EQ(list.Editor(), rows[1].editor);
    EXPECT_EQ(GetFocus(), list.Editor());
    const RECT expected = {0, 40, width, 80};
    EXPECT_TRUE(EqualRect(&rows[1].editorRow, &expected));
}

TEST_F(FormEditor, StaysShutOnARowThatIsNotWhollyVisible) {
    rows[1].size.cy = 400;
    Open(rows);
    EXPECT_EQ(list.SetSelection(1), 1u);
    EXPECT_FALSE(list.Editor());
    EXPECT_EQ(GetFocus(), list.Handle());
}

TEST_F(FormEditor, LeavingDeletesEditorAndFontAndGivesTheFocusBack) {
    Open(rows);
    list.SetSelection(1);
    const HWND editor = list.Editor();
    ASSERT_TRUE(editor);
    ASSERT_EQ(GetObjectType(rows[1].font), static_cast<DWORD>(OBJ_FONT));
    Tap(60, 20);
    EXPECT_EQ(list.GetSelection(), 0u);
    EXPECT_EQ(rows[1].asked, 1);
    EXPECT_FALSE(list.Editor());
    EXPECT_FALSE(IsWindow(editor));
    EXPECT_EQ(GetObjectType(rows[1].font), 0u);
    EXPECT_EQ(GetFocus(), list.Handle());
}

TEST_F(FormEditor, ARowThatMayNotBeLeftKeepsSelectionAndEditor) {
    Open(rows);
    list.SetSelection(1);
    rows[1].mayLeave = false;
    const HWND editor = list.Editor();
    Tap(60, 20);
    EXPECT_EQ(list.GetSelection(), 1u);
    EXPECT_EQ(list.Editor(), editor);
    EXPECT_TRUE(IsWindow(editor));
    EXPECT_EQ(GetObjectType(rows[1].font), static_cast<DWORD>(OBJ_FONT));
    EXPECT_FALSE(list.CloseEditor());
    EXPECT_EQ(rows[0].taps, 0);
    rows[1].mayLeave = true;
    EXPECT_TRUE(list.CloseEditor());
    EXPECT_FALSE(list.Editor());
}

TEST_F(FormEditor, ATapThatMayNotLeaveGivesTheFocusBackToIt) {
    Open(rows);
    list.SetSelection(1);
    rows[1].mayLeave = false;
    Tap(60, 20);
    EXPECT_EQ(GetFocus(), rows[1].editor);
    rows[2].accepts = false;
    Tap(60, 100);
    EXPECT_EQ(GetFocus(), rows[1].editor);
}

TEST_F(FormEditor, ADragClosesItAndATapOnItsRowOpensItAgain) {
    Open(rows);
    list.SetSelection(1);
    const HWND editor = list.Editor();
    ASSERT_TRUE(editor);
    Run([&] { input.Play(Finger().Down(At(60, 200)).DragTo(At(60, 200), At(60, 120), 6).Up()); });
    EXPECT_FALSE(IsWindow(editor));
    EXPECT_FALSE(list.Editor());
    EXPECT_EQ(list.GetSelection(), 1u);
    EXPECT_EQ(rows[1].asked, 1);
    Tap(60, 60);
    ASSERT_TRUE(list.Editor());
    EXPECT_NE(rows[1].editor, editor);
    EXPECT_EQ(GetFocus(), rows[1].editor);
}

TEST_F(FormEditor, ADragIsRefusedWhileItsRowMayNotBeLeft) {
    Open(rows);
    list.SetSelection(1);
    rows[1].mayLeave = false;
    const HWND editor = list.Editor();
    const int resting = rows[0].drawn.top;
    Run([&] {
        // When the program has taken all of it, it has refused the drag or drawn its rows.
        input.Play(Finger().Down(At(60, 200)).DragTo(At(60, 200), At(60, 280), 6));
        EXPECT_EQ(rows[0].drawn.top, resting);
        input.Play(Finger().Up());
    });
    EXPECT_EQ(list.Editor(), editor);
    EXPECT_EQ(GetFocus(), editor);
}

TEST_F(FormEditor, TheWheelClosesItWhenItsRowMayBeLeft) {
    rows = EqualRows(20);
    rows[1].edits = true;
    Open(rows);
    list.SetSelection(1);
    rows[1].mayLeave = false;
    const HWND editor = list.Editor();
    Run([&] { input.Play(Finger().Turn(At(60, 200), -1)); });
    EXPECT_EQ(list.GetTopIndex(), 0u);
    EXPECT_EQ(list.Editor(), editor);
    rows[1].mayLeave = true;
    Run([&] { input.Play(Finger().Turn(At(60, 200), -1)); });
    EXPECT_EQ(list.GetTopIndex(), 3u);
    EXPECT_FALSE(IsWindow(editor));
}

TEST_F(FormEditor, GoesWithTheRowsThatAreLaidOutAnewOrCleared) {
    Open(rows);
    list.SetSelection(1);
    const HWND first = list.Editor();
    list.Layout();
    EXPECT_FALSE(IsWindow(first));
    EXPECT_FALSE(list.Editor());
    EXPECT_EQ(list.GetSelection(), noRow);
    list.SetSelection(3);
    const HWND second = list.Editor();
    ASSERT_TRUE(second);
    list.Clear();
    EXPECT_FALSE(IsWindow(second));
    EXPECT_FALSE(list.Editor());
    EXPECT_EQ(rows[3].asked, 0);
    EXPECT_EQ(GetObjectType(rows[3].font), 0u);
}

TEST_F(FormEditor, TheNextRowsEditorFollows) {
    Open(rows);
    list.SetSelection(1);
    list.SetSelection(3);
    EXPECT_EQ(list.Editor(), rows[3].editor);
    EXPECT_FALSE(IsWindow(rows[1].editor));
    EXPECT_EQ(GetFocus(), rows[3].editor);
}

TEST_F(FormEditor, AThousandRoundsHoldNothingMore) {
    Open(rows);
    const auto round = [&] {
        list.SetSelection(1);
        list.SetSelection(3);
        list.SetSelection(0);
    };
    for (int count = 0; count < 5; ++count) {
        round();
    }
    const unsigned before = CountHeld().gdiObjects;
    for (int count = 0; count < 1000; ++count) {
        round();
    }
    EXPECT_EQ(CountHeld().gdiObjects, before);
}

TEST_F(FormEditor, FollowsItsRowWhenTheListIsResized) {
    Open(rows);
    list.SetSelection(3);
    const HWND editor = list.Editor();
    MoveWindow(list.Handle(), 20, 10, width - 60, 100, TRUE);
    EXPECT_EQ(list.GetSelection(), 3u);
    ASSERT_EQ(list.Editor(), editor);
    RECT place = ScreenRectangleOf(editor);
    MapWindowPoints(nullptr, list.Handle(), reinterpret_cast<POINT*>(&place), 2);
    EXPECT_EQ(place.right - place.left, width - 60);
    EXPECT_EQ(place.top, static_cast<int>(3 - list.GetTopIndex()) * 40);
    EXPECT_LE(place.bottom, 100);
}

TEST_F(FormEditor, FollowsItsRowWhenTheRowsAreMeasuredAnew) {
    Open(rows);
    list.SetSelection(1);
    rows[0].size.cy += 40;
    list.Remeasure();
    RECT place = ScreenRectangleOf(list.Editor());
    MapWindowPoints(nullptr, list.Handle(), reinterpret_cast<POINT*>(&place), 2);
    EXPECT_EQ(place.top, 80);
}

TEST_F(FormEditor, GoesWithTheList) {
    Open(rows);
    list.SetSelection(1);
    const HWND editor = list.Editor();
    list.Destroy();
    EXPECT_FALSE(IsWindow(editor));
    EXPECT_FALSE(list.Editor());
    EXPECT_EQ(rows[1].deleted, 1);
}

TEST_F(FormEditor, KeepsItsFontUntilItHasGoneWithTheList) {
    Open(rows);
    list.SetSelection(1);
    fontOfEditor = rows[1].font;
    const LONG_PTR before = GetWindowLongPtrW(list.Editor(), GWLP_WNDPROC);
    SetWindowLongPtrW(list.Editor(), GWLP_USERDATA, before);
    SetWindowLongPtrW(list.Editor(), GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(NoteEditorsEnd));
    list.Destroy();
    EXPECT_EQ(fontAtItsEnd, static_cast<DWORD>(OBJ_FONT));
    EXPECT_EQ(GetObjectType(rows[1].font), 0u);
}

TEST_F(FormEditor, IsOneAloneWhereTheParentSelectsAnotherRowMeanwhile) {
    Open(rows);
    owner.answer = [this](UINT message, WPARAM, LPARAM lParam, LRESULT*) {
        if (message == WM_NOTIFY &&
            static_cast<int>(reinterpret_cast<const NMHDR*>(lParam)->code) == ui::LSN_SELCHANGED &&
            reinterpret_cast<const ui::ListSelectionChange*>(lParam)->newIndex == 1) {
            list.SetSelection(3);
        }
        return false;
    };
    list.SetSelection(1);
    EXPECT_EQ(list.GetSelection(), 3u);
    int editors = 0;
    for (HWND child = GetWindow(list.Handle(), GW_CHILD); child;
         child = GetWindow(child, GW_HWNDNEXT)) {
        ++editors;
    }
    EXPECT_EQ(editors, 1);
    EXPECT_EQ(list.Editor(), rows[3].editor);
    EXPECT_EQ(GetObjectType(rows[3].font), static_cast<DWORD>(OBJ_FONT));
}

TEST_F(FormEditor, IsAskedBeforeTheParentIs) {
    Open(rows);
    int told = 0;
    owner.answer = [&told](UINT message, WPARAM, LPARAM lParam, LRESULT*) {
        told +=
            message == WM_NOTIFY &&
            static_cast<int>(reinterpret_cast<const NMHDR*>(lParam)->code) == ui::LSN_SELCHANGING;
        return false;
    };
    list.SetSelection(1);
    EXPECT_EQ(told, 1);
    rows[1].mayLeave = false;
    EXPECT_EQ(list.SetSelection(3), 1u);
    EXPECT_EQ(told, 1);
}

TEST_F(FormEditor, StaysOpenWhereTheParentKeepsTheSelection) {
    Open(rows);
    list.SetSelection(1);
    const HWND editor = list.Editor();
    owner.answer = [](UINT message, WPARAM, LPARAM lParam, LRESULT* result) {
        *result =
            message == WM_NOTIFY &&
            static_cast<int>(reinterpret_cast<const NMHDR*>(lParam)->code) == ui::LSN_SELCHANGING;
        return *result != 0;
    };
    EXPECT_EQ(list.SetSelection(3), 1u);
    EXPECT_EQ(list.Editor(), editor);
}

TEST_F(FormEditor, ARefusedDragHasNoTracker) {
    Open(rows);
    list.SetSelection(1);
    rows[1].mayLeave = false;
    ui::GestureInfo info;
    info.y = 100;
    info.result = ui::GestureDrag;
    EXPECT_EQ(
        SendMessageW(list.Handle(), ui::WM_QUERYDRAGTRACKER, 0, reinterpret_cast<LPARAM>(&info)),
        0);
    EXPECT_FALSE(info.tracker);
}

TEST_F(FormTextRow, TakesWhatWasTyped) {
    OpenEmpty();
    ui::TextRow& row = Add<ui::TextRow>(L"old", nullptr);
    list.Layout();
    Tap(60, 10);
    ASSERT_TRUE(list.Editor());
    Press("a");
    Press("b");
    EXPECT_TRUE(list.CloseEditor());
    EXPECT_EQ(row.Text(), L"ab");
}

TEST_F(FormTextRow, KeepsALongTextWithCharactersOfTwoUnits) {
    OpenEmpty();
    std::wstring text;
    for (int count = 0; count < 2500; ++count) {
        text += L"a\xD83D\xDE00z";
    }
    ui::TextRow& row = Add<ui::TextRow>(text, nullptr);
    list.Layout();
    list.SetSelection(0);
    ASSERT_TRUE(list.Editor());
    EXPECT_TRUE(list.CloseEditor());
    EXPECT_EQ(row.Text(), text);
}

TEST_F(FormTextRow, ARefusedTextStaysOpen) {
    OpenEmpty();
    std::wstring refused;
    ui::TextRow& row = Add<ui::TextRow>(L"old", [&](const std::wstring& text) {
        refused = text;
        return text == L"good";
    });
    Add<ui::TextRow>(L"other", nullptr);
    list.Layout();
    list.SetSelection(0);
    SetWindowTextW(list.Editor(), L"bad");
    EXPECT_EQ(list.SetSelection(1), 0u);
    EXPECT_EQ(refused, L"bad");
    EXPECT_EQ(row.Text(), L"old");
    SetWindowTextW(list.Editor(), L"good");
    EXPECT_EQ(list.SetSelection(1), 1u);
    EXPECT_EQ(row.Text(), L"good");
}
