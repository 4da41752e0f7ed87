#include "res/resource.h"
#include "tests/support/finger.h"
#include "tests/support/input_taken.h"
#include "tests/support/user.h"
#include "tests/support/wait.h"
#include "tests/support/windows_seen.h"
#include "tests/views/files_fixture.h"
#include "views/commands.h"
#include "views/display_flags.h"

using namespace test;
using namespace views;

namespace {

class Marking : public FilesFixture {
 protected:
    Marking() {
        folder.MakeFolder(L"Sub");
        for (const wchar_t* name : {L"a.txt", L"b.txt", L"c.txt"}) {
            folder.MakeFile(name);
        }
    }
    // Shows the folder and gives its list the keyboard.
    void Show() {
        OpenFolder();
        SetForegroundWindow(frame.Handle());
        View().Focus();
        ASSERT_TRUE(PumpUntil([this] {
            return GetForegroundWindow() == frame.Handle() && GetFocus() == List().Handle();
        }));
    }
    void ShowMarking() {
        Show();
        View().Command(ID_SELECT);
    }
    void Play(Finger& finger) {
        PumpWhileUser([&] { input.Play(finger); });
    }
    void Play(Finger&& finger) { Play(finger); }
    int RowHeight() const { return List().GetTotalHeight() / static_cast<int>(List().GetCount()); }
    POINT RowPoint(int row) const {
        return OnScreen(List().Handle(), 150, row * RowHeight() + RowHeight() / 2);
    }
    Names MarkedNames() const {
        Names names;
        for (unsigned row = 0; row < List().GetCount(); ++row) {
            if (List().Marked(row)) {
                names.push_back(Item(row).name);
            }
        }
        return names;
    }
    std::wstring Caption(int marks) const {
        return folder.Path() + L" (" + std::to_wstring(marks) + L")";
    }
    bool Grayed(UINT command) {
        View().UpdateMenu(frame.Bar().Menu());
        return (GetMenuState(frame.Bar().Menu(), command, MF_BYCOMMAND) & MF_GRAYED) != 0;
    }
    // The list as it is drawn now.
    Picture Drawn() const {
        UpdateWindow(List().Handle());
        return Picture::OfWindow(List().Handle());
    }
    // The square at the right end of a row where its box is.
    RECT BoxArea(int row) const {
        const int height = RowHeight();
        const int right = ui::Width(List().ClientRectangle());
        return RECT{right - height, row * height, right, (row + 1) * height - 2};
    }
    static int Count(const Picture& picture, const RECT& area, COLORREF color) {
        int count = 0;
        for (int y = area.top; y < area.bottom; ++y) {
            for (int x = area.left; x < area.right; ++x) {
                count += picture.At(x, y) == color;
            }
        }
        return count;
    }
    // Pixels of a box and of the tick inside it, in the colour of the row's text.
    int BoxPixels(int row, COLORREF color) const { return Count(Drawn(), BoxArea(row), color); }
    int TickPixels(int row, COLORREF color) const {
        RECT inside = BoxArea(row);
        const int inset = RowHeight() * 3 / 8;
        InflateRect(&inside, -inset, -inset);
        return Count(Drawn(), inside, color);
    }

    InputTaken input;
    const COLORREF textColor = GetSysColor(COLOR_WINDOWTEXT);
    const COLORREF selectedTextColor = GetSysColor(COLOR_HIGHLIGHTTEXT);
};

}  // namespace

TEST_F(Marking, IsEnteredByItsCommandWithoutMarks) {
    Show();
    EXPECT_FALSE(List().Marking());
    View().Command(ID_SELECT);
    EXPECT_TRUE(List().Marking());
    EXPECT_EQ(List().MarkedCount(), 0u);
    EXPECT_EQ(View().Title(), Caption(0));
}

TEST_F(Marking, HasABarOfItsOwn) {
    Show();
    const Names texts = {L"Delete", L"Copy", L"Cut", L"Cancel"};
    View().Command(ID_SELECT);
    ASSERT_EQ(frame.Bar().ButtonCount(), 4u);
    for (UINT position = 0; position < 4; ++position) {
        wchar_t text[20] = {};
        GetMenuStringW(frame.Bar().Menu(), position, text, 20, MF_BYPOSITION);
        EXPECT_EQ(text, texts[position]);
    }
    View().Command(IDCANCEL);
    EXPECT_EQ(frame.Bar().ButtonCount(), 2u);
    EXPECT_TRUE(GetSubMenu(frame.Bar().Menu(), 0));
}

TEST_F(Marking, ATapTogglesTheMarkAndOpensNothing) {
    ShowMarking();
    Play(Finger().Tap(RowPoint(0)));
    Play(Finger().Tap(RowPoint(2)));
    EXPECT_EQ(MarkedNames(), (Names{L"Sub", L"b.txt"}));
    EXPECT_EQ(View().Title(), Caption(2));
    Play(Finger().Tap(RowPoint(0)));
    EXPECT_EQ(MarkedNames(), Names{L"b.txt"});
    EXPECT_EQ(View().Title(), Caption(1));
    EXPECT_TRUE(List().Marking());
    EXPECT_EQ(Rows().size(), 4u);
}

TEST_F(Marking, AHoldTogglesTheMark) {
    ShowMarking();
    Play(Finger().Hold(RowPoint(1)));
    EXPECT_EQ(MarkedNames(), Names{L"a.txt"});
}

TEST_F(Marking, ATapBelowTheRowsDoesNothing) {
    ShowMarking();
    Play(Finger().Tap(RowPoint(5)));
    EXPECT_EQ(List().MarkedCount(), 0u);
    EXPECT_TRUE(List().Marking());
}

TEST_F(Marking, DraggingScrollsAndMarksNothing) {
    for (int count = 100; count < 130; ++count) {
        folder.MakeFile(L"x" + std::to_wstring(count));
    }
    ShowMarking();
    Play(Finger().Down(RowPoint(6)).DragTo(RowPoint(6), RowPoint(1)).Up());
    EXPECT_EQ(List().GetTopIndex(), 5u);
    EXPECT_EQ(List().MarkedCount(), 0u);
    Play(Finger().Tap(RowPoint(0)));
    EXPECT_TRUE(List().Marked(5));
    EXPECT_EQ(List().MarkedCount(), 1u);
}

TEST_F(Marking, EveryRowShowsABoxAndOnlyMarkedOnesATick) {
    Show();
    for (int row = 0; row < 4; ++row) {
        EXPECT_TRUE(PumpUntil([&] { return BoxPixels(row, textColor) == 0; })) << row;
    }
    View().Command(ID_SELECT);
    List().ToggleMark(2);
    for (int row = 0; row < 4; ++row) {
        EXPECT_TRUE(PumpUntil([&] { return BoxPixels(row, textColor) > RowHeight(); })) << row;
        EXPECT_TRUE(PumpUntil([&] { return (TickPixels(row, textColor) > 0) == (row == 2); }))
            << row;
    }
    // Below the rows there is nothing to mark.
    EXPECT_TRUE(PumpUntil([&] { return BoxPixels(4, textColor) == 0; }));
}

TEST_F(Marking, TheSelectedRowShowsItsBoxInTheSelectionsColor) {
    ShowMarking();
    List().SetSelection(1);
    EXPECT_TRUE(PumpUntil([&] { return BoxPixels(1, selectedTextColor) > RowHeight(); }));
    EXPECT_TRUE(
        PumpUntil([&] { return BoxPixels(1, GetSysColor(COLOR_HIGHLIGHT)) > RowHeight(); }));
    EXPECT_TRUE(PumpUntil([&] { return TickPixels(1, selectedTextColor) == 0; }));
    List().ToggleMark(1);
    EXPECT_TRUE(PumpUntil([&] { return TickPixels(1, selectedTextColor) > 0; }));
    List().ToggleMark(1);
    EXPECT_TRUE(PumpUntil([&] { return TickPixels(1, selectedTextColor) == 0; }));
}

TEST_F(Marking, ALongNameEndsBeforeTheBox) {
    folder.MakeFile(std::wstring(120, L'W') + L".txt");
    ShowMarking();
    ASSERT_EQ(List().GetCount(), 5u);
    RECT gap = BoxArea(4);
    gap.right = gap.left + RowHeight() / 5;
    EXPECT_TRUE(PumpUntil([&] { return BoxPixels(4, textColor) > RowHeight(); }));
    EXPECT_EQ(Count(Drawn(), gap, textColor), 0);
}

TEST_F(Marking, LeavesTheListAsItWasWhenItEnds) {
    Show();
    ASSERT_TRUE(PumpUntil([&] { return Drawn().At(2, 2) == GetSysColor(COLOR_WINDOW); }));
    const Picture before = Drawn();
    View().Command(ID_SELECT);
    ASSERT_TRUE(PumpUntil([&] { return Drawn() != before; }));
    List().ToggleMark(0);
    View().Command(IDCANCEL);
    EXPECT_TRUE(PumpUntil([&] { return Drawn() == before; }));
}

TEST_F(Marking, EndsWithCancelAndForgetsTheMarks) {
    ShowMarking();
    List().ToggleMark(1);
    View().Command(IDCANCEL);
    EXPECT_FALSE(List().Marking());
    EXPECT_EQ(View().Title(), folder.Path());
    View().Command(ID_SELECT);
    EXPECT_EQ(List().MarkedCount(), 0u);
}

TEST_F(Marking, EndsWithEscape) {
    ShowMarking();
    List().ToggleMark(1);
    Play(Finger().Key("Escape"));
    EXPECT_FALSE(List().Marking());
    EXPECT_EQ(List().MarkedCount(), 0u);
    EXPECT_EQ(View().Title(), folder.Path());
}

TEST_F(Marking, EndsWithTheBackKeyWhichGoesUpOnlyTheNextTime) {
    ShowMarking();
    List().ToggleMark(1);
    EXPECT_TRUE(View().Back());
    EXPECT_FALSE(List().Marking());
    EXPECT_EQ(View().Title(), folder.Path());
    EXPECT_TRUE(View().Back());
    EXPECT_EQ(View().Title(), L"\\Temp");
}

TEST_F(Marking, GoesOnInTheParentFolder) {
    ShowMarking();
    List().ToggleMark(1);
    Play(Finger().Key("Left"));
    EXPECT_TRUE(List().Marking());
    EXPECT_EQ(List().MarkedCount(), 0u);
    EXPECT_EQ(View().Title(), L"\\Temp (0)");
}

TEST_F(Marking, SpaceAndEnterToggleTheSelectedRow) {
    ShowMarking();
    Play(Finger().Key("Down").Key("space").Key("Down").Key("Return"));
    EXPECT_EQ(MarkedNames(), (Names{L"Sub", L"a.txt"}));
    Play(Finger().Key("space").Key("Up").Key("Return"));
    EXPECT_EQ(MarkedNames(), Names());
    EXPECT_TRUE(List().Marking());
    EXPECT_EQ(View().Title(), Caption(0));
}

TEST_F(Marking, SpaceAndEnterWithoutASelectionDoNothing) {
    ShowMarking();
    Play(Finger().Key("space").Key("Return"));
    EXPECT_EQ(List().MarkedCount(), 0u);
    EXPECT_TRUE(List().Marking());
    EXPECT_EQ(View().Title(), Caption(0));
}

TEST_F(Marking, EndsWhenTheViewIsLeft) {
    ShowMarking();
    List().ToggleMark(1);
    ui::RowListWindow& list = List();
    {
        const platform::WindowDC dc(frame.Handle());
        EXPECT_TRUE(View().Deactivate(dc));
        EXPECT_FALSE(list.Marking());
        View().Layout(dc);
    }
    EXPECT_TRUE(View().Activate(ViewArgument()));
    EXPECT_FALSE(List().Marking());
    EXPECT_EQ(List().MarkedCount(), 0u);
    EXPECT_EQ(View().Title(), folder.Path());
    EXPECT_EQ(frame.Bar().ButtonCount(), 2u);
}

TEST_F(Marking, ARefreshDropsTheMarksAndGoesOn) {
    ShowMarking();
    Select(L"b.txt");
    List().ToggleMark(1);
    List().ToggleMark(3);
    const int titles = frame.titleChanges;
    View().Command(ID_REFRESH);
    EXPECT_TRUE(List().Marking());
    EXPECT_EQ(List().MarkedCount(), 0u);
    EXPECT_EQ(View().Title(), Caption(0));
    EXPECT_GT(frame.titleChanges, titles);
    EXPECT_EQ(Selected(), L"b.txt");
    EXPECT_EQ(frame.Bar().ButtonCount(), 4u);
}

TEST_F(Marking, ChangedOptionsDropTheMarksAndGoOn) {
    ShowMarking();
    List().ToggleMark(1);
    frame.flags = flagShowFileSize;
    View().FlagsChanged(flagShowFileSize, flagShowFileSize);
    EXPECT_TRUE(List().Marking());
    EXPECT_EQ(List().MarkedCount(), 0u);
}

TEST_F(Marking, ItsCommandsAreGrayedWithoutMarks) {
    ShowMarking();
    Select(L"a.txt");
    for (const UINT command : {612u, 57634u, 57635u}) {
        EXPECT_TRUE(Grayed(command)) << command;
    }
    EXPECT_FALSE(Grayed(IDCANCEL));
    List().ToggleMark(2);
    for (const UINT command : {612u, 57634u, 57635u, 2u}) {
        EXPECT_FALSE(Grayed(command)) << command;
    }
    List().ToggleMark(2);
    EXPECT_TRUE(Grayed(ID_DELETE));
}

TEST_F(Marking, EachChangeIsToldToTheFrame) {
    ShowMarking();
    const int titles = frame.titleChanges;
    const int menus = frame.menuChanges;
    List().ToggleMark(0);
    EXPECT_EQ(frame.titleChanges, titles + 1);
    EXPECT_EQ(frame.menuChanges, menus + 1);
    List().ToggleMark(99);
    EXPECT_EQ(frame.titleChanges, titles + 1);
}

TEST_F(Marking, TheSelectionSurvivesItsStartAndItsEnd) {
    Show();
    Select(L"b.txt");
    View().Command(ID_SELECT);
    EXPECT_EQ(Selected(), L"b.txt");
    List().ToggleMark(0);
    EXPECT_EQ(Selected(), L"b.txt");
    View().Command(IDCANCEL);
    EXPECT_EQ(Selected(), L"b.txt");
}

TEST_F(Marking, EnteredAgainKeepsTheMarks) {
    ShowMarking();
    List().ToggleMark(1);
    View().Command(ID_SELECT);
    EXPECT_EQ(MarkedNames(), Names{L"a.txt"});
}

TEST_F(Marking, OutsideItNothingIsMarked) {
    Show();
    List().ToggleMark(1);
    EXPECT_EQ(List().MarkedCount(), 0u);
    View().Command(IDCANCEL);
    EXPECT_EQ(View().Title(), folder.Path());
    EXPECT_EQ(frame.Bar().ButtonCount(), 2u);
}

TEST_F(Marking, MarksGoWithTheirRows) {
    ShowMarking();
    List().ToggleMark(1);
    List().ToggleMark(3);
    List().RemoveItem(1);
    EXPECT_EQ(MarkedNames(), Names{L"c.txt"});
    List().RemoveItem(0);
    EXPECT_EQ(MarkedNames(), Names{L"c.txt"});
    List().Layout();
}
