// What a mouse and letters do in a list that owns its rows.
#include "platform/handles.h"
#include "tests/support/platform_hook.h"
#include "tests/ui/list/sample_list.h"
#include "ui/list/row_list.h"

using namespace test;
using namespace ui;

namespace {

struct Word {
    std::wstring text;
};

bool OrdersBefore(const Word& first, const Word& second) {
    return first.text < second.text;
}

constexpr int rowHeight = 40;

class WordsOwner final : public RowListOwner, public RowPainter<Word> {
 public:
    bool MaySelect() override { return maySelect; }
    bool OnKey(WPARAM key) override { return key == taken; }
    void OnMenu(const RECT& anchor) override { menus.push_back(anchor); }
    void OnMouseBack() override { ++backs; }
    void OnMarksChanged() override { ++marksChanges; }
    std::wstring_view RowName(unsigned row) const override { return (*list)[row].text; }
    int RowHeight(const Word&) const override { return rowHeight; }
    void DrawRow(const DRAWITEMSTRUCT& place, const Word&) const override {
        DrawRowBackground(place.hDC, place.rcItem, false);
    }

    const RowList<Word>* list = nullptr;
    bool maySelect = true;
    WPARAM taken = 0;
    std::vector<RECT> menus;
    int backs = 0;
    int marksChanges = 0;
};

DWORD testTime = 0;
DWORD WINAPI TestTime() {
    return testTime;
}

class RowListInput : public testing::Test {
 protected:
    void Open(std::initializer_list<const wchar_t*> words) {
        wordsOwner.list = &list;
        ASSERT_TRUE(owner.Open());
        ASSERT_TRUE(list.Open(owner.Handle(), 1, L"TestRowListInput", childStyle));
        MoveWindow(list.Handle(), 20, 10, 200, 300, TRUE);
        RowList<Word>::Rows rows;
        for (const wchar_t* word : words) {
            rows.Add(std::make_unique<Word>(Word{word}));
        }
        list.Show(std::move(rows));
        SetFocus(list.Handle());
        ASSERT_TRUE(PumpUntil([&] { return GetForegroundWindow() == owner.Handle(); }));
    }
    void OpenMany(unsigned count) {
        Open({});
        RowList<Word>::Rows rows;
        for (unsigned row = 0; row < count; ++row) {
            rows.Add(std::make_unique<Word>());
        }
        list.Show(std::move(rows));
    }
    POINT At(int x, int y) const { return OnScreen(list.Handle(), x, y); }
    POINT InRow(int row) const { return At(70, row * rowHeight + 15); }
    void Play(Finger& finger) {
        PumpWhileUser([&] { input.Play(finger); });
    }
    unsigned SelectionAfter(const std::string& key) {
        Play(Finger().Key(key));
        return list.GetSelection();
    }
    unsigned SelectionAfterCharacter(wchar_t character) {
        SendMessageW(list.Handle(), WM_CHAR, character, 0);
        return list.GetSelection();
    }
    void PushWheel(int part) {
        SendMessageW(list.Handle(), WM_MOUSEHWHEEL, MAKEWPARAM(0, static_cast<WORD>(part)), 0);
    }
    std::vector<unsigned> Marks() const { return list.MarkedRows(); }

    InputTaken input;
    SampleOwner owner;
    WordsOwner wordsOwner;
    RowList<Word> list{wordsOwner, wordsOwner};
};

using RightButton = RowListInput;
using MouseBack = RowListInput;
using TypedLetters = RowListInput;
using MarkingAlong = RowListInput;
using PointerOverRows = RowListInput;

}  // namespace

TEST_F(RightButton, SelectsItsRowAndAsksForTheMenuThere) {
    Open({L"a", L"b", L"c"});
    Play(Finger().RightDown(InRow(1)));
    EXPECT_EQ(list.GetSelection(), 1u);
    EXPECT_TRUE(wordsOwner.menus.empty());
    Play(Finger().RightUp());
    ASSERT_EQ(wordsOwner.menus.size(), 1u);
    const POINT top = At(70, rowHeight);
    const RECT beside = {top.x, top.y, top.x, top.y + rowHeight};
    EXPECT_TRUE(EqualRect(&wordsOwner.menus[0], &beside));
    EXPECT_EQ(GetCapture(), nullptr);
}

TEST_F(RightButton, ReleasedOnAnotherRowOnlySelects) {
    Open({L"a", L"b", L"c"});
    Play(Finger().RightDown(InRow(1)).MoveTo(InRow(2)).RightUp());
    EXPECT_EQ(list.GetSelection(), 1u);
    EXPECT_TRUE(wordsOwner.menus.empty());
}

TEST_F(RightButton, ReleasedBesideTheListOnlySelects) {
    Open({L"a", L"b", L"c"});
    Play(Finger().RightDown(InRow(1)).MoveTo(At(70, 400)).RightUp());
    EXPECT_EQ(list.GetSelection(), 1u);
    EXPECT_TRUE(wordsOwner.menus.empty());
    EXPECT_EQ(GetCapture(), nullptr);
    // And one that was pressed elsewhere asks for nothing.
    Play(Finger().RightDown(At(70, 400)).MoveTo(InRow(1)).RightUp());
    EXPECT_TRUE(wordsOwner.menus.empty());
}

TEST_F(RightButton, DoesNothingBelowTheRows) {
    Open({L"a", L"b", L"c"});
    list.SetSelection(0);
    Play(Finger().RightClick(InRow(4)));
    EXPECT_EQ(list.GetSelection(), 0u);
    EXPECT_TRUE(wordsOwner.menus.empty());
}

TEST_F(RightButton, DoesNothingWhileTheSelectionIsKept) {
    Open({L"a", L"b", L"c"});
    list.SetSelection(1);
    wordsOwner.maySelect = false;
    Play(Finger().RightClick(InRow(1)));
    Play(Finger().Key("Menu"));
    EXPECT_TRUE(wordsOwner.menus.empty());
}

TEST_F(RightButton, AsksForNoMenuOfRowsThatHaveGone) {
    Open({L"a", L"b", L"c"});
    Play(Finger().RightDown(InRow(1)));
    list.RemoveItem(0);
    list.SetSelection(1);
    Play(Finger().RightUp());
    EXPECT_TRUE(wordsOwner.menus.empty());
}

TEST_F(RightButton, TheMenuKeyAsksForTheMenuOfTheSelectedRow) {
    OpenMany(30);
    Play(Finger().Key("Menu"));
    EXPECT_TRUE(wordsOwner.menus.empty());
    list.SetSelection(20);
    list.SetTopIndex(0);
    Play(Finger().Key("Menu"));
    ASSERT_EQ(wordsOwner.menus.size(), 1u);
    // The last that the window shows in full, which is as wide as the list.
    const POINT top = At(0, 6 * rowHeight);
    const RECT row = {top.x, top.y, top.x + 200, top.y + rowHeight};
    EXPECT_TRUE(EqualRect(&wordsOwner.menus[0], &row));
}

TEST_F(MouseBack, IsTheBackButtonWhenItIsReleased) {
    Open({L"a"});
    Play(Finger().BackButton(InRow(0)));
    EXPECT_EQ(wordsOwner.backs, 1);
    Play(Finger().BackButton(InRow(4)));
    EXPECT_EQ(wordsOwner.backs, 2);
    // The forward button, and the back button pressed elsewhere.
    for (const UINT message : {WM_XBUTTONDOWN, WM_XBUTTONUP}) {
        SendMessageW(list.Handle(), message, MAKEWPARAM(0, XBUTTON2), 0);
    }
    SendMessageW(list.Handle(), WM_XBUTTONUP, MAKEWPARAM(0, XBUTTON1), 0);
    EXPECT_EQ(wordsOwner.backs, 2);
}

TEST_F(MouseBack, IsAPushOfTheWheelToTheLeftOnceForEachPush) {
    Open({L"a"});
    testTime = 10000;
    const PlatformHook time("GetTickCount", TestTime);
    PushWheel(-60);
    EXPECT_EQ(wordsOwner.backs, 0);
    testTime += 300;
    PushWheel(-60);
    EXPECT_EQ(wordsOwner.backs, 1);
    for (int part = 0; part < 5; ++part) {
        testTime += 300;
        PushWheel(-WHEEL_DELTA);
    }
    EXPECT_EQ(wordsOwner.backs, 1);
    testTime += 301;
    PushWheel(-WHEEL_DELTA);
    EXPECT_EQ(wordsOwner.backs, 2);
    // What was left of a push does not count for the next one.
    testTime += 301;
    PushWheel(-60);
    testTime += 301;
    PushWheel(-60);
    EXPECT_EQ(wordsOwner.backs, 2);
    testTime += 301;
    PushWheel(2 * WHEEL_DELTA);
    EXPECT_EQ(wordsOwner.backs, 2);
}

TEST_F(MouseBack, DoesNothingWhileTheSelectionIsKept) {
    Open({L"a"});
    wordsOwner.maySelect = false;
    Play(Finger().BackButton(InRow(0)));
    PushWheel(-WHEEL_DELTA);
    EXPECT_EQ(wordsOwner.backs, 0);
}

TEST_F(TypedLetters, GoToTheNextRowThatBeginsSo) {
    Open({L"beta", L"Alpha", L"ALMOND", L"beet"});
    EXPECT_EQ(SelectionAfter("a"), 1u);
    EXPECT_EQ(SelectionAfter("a"), 2u);
    EXPECT_EQ(SelectionAfter("a"), 1u);
    // Nothing begins so.
    EXPECT_EQ(SelectionAfter("z"), 1u);
}

TEST_F(TypedLetters, GoOnWithWhatWasTypedShortlyBefore) {
    Open({L"beta", L"beer", L"bee", L"7zip"});
    testTime = 10000;
    const PlatformHook time("GetTickCount", TestTime);
    EXPECT_EQ(SelectionAfterCharacter(L'b'), 0u);
    testTime += 1000;
    EXPECT_EQ(SelectionAfterCharacter(L'e'), 0u);
    testTime += 1000;
    EXPECT_EQ(SelectionAfterCharacter(L'e'), 1u);
    testTime += 1001;
    EXPECT_EQ(SelectionAfterCharacter(L'7'), 3u);
}

TEST_F(TypedLetters, BeginAnewBehindAKeyThatDoesSomethingElse) {
    Open({L"beta", L"east", L"echo"});
    testTime = 10000;
    const PlatformHook time("GetTickCount", TestTime);
    EXPECT_EQ(SelectionAfterCharacter(L'b'), 0u);
    SendMessageW(list.Handle(), WM_KEYDOWN, VK_HOME, 0);
    EXPECT_EQ(SelectionAfterCharacter(L'e'), 1u);
    wordsOwner.taken = VK_F3;
    SendMessageW(list.Handle(), WM_KEYDOWN, VK_F3, 0);
    SendMessageW(list.Handle(), WM_KEYUP, VK_F3, 0);
    EXPECT_EQ(SelectionAfterCharacter(L'e'), 2u);
    EXPECT_EQ(SelectionAfterCharacter(L'b'), 2u);
}

TEST_F(TypedLetters, OfAKeyThatIsTakenDoNotCount) {
    Open({L"beta", L"alpha"});
    wordsOwner.taken = 'A';
    EXPECT_EQ(SelectionAfter("a"), noRow);
    EXPECT_EQ(SelectionAfter("b"), 0u);
    // A key that gives no character leaves the next one alone.
    wordsOwner.taken = VK_F3;
    Play(Finger().Key("F3"));
    testTime = 10000;
    const PlatformHook time("GetTickCount", TestTime);
    EXPECT_EQ(SelectionAfterCharacter(L'a'), 1u);
}

TEST_F(TypedLetters, MeanNothingInAnEmptyListAndNoControlCharacterDoes) {
    Open({});
    EXPECT_EQ(SelectionAfter("a"), noRow);
    list.Insert(std::make_unique<Word>(Word{L"\x1b"}));
    EXPECT_EQ(SelectionAfter("Escape"), noRow);
}

TEST_F(MarkingAlong, MarksEveryRowOnTheWayAndUnmarksOnTheWayBack) {
    OpenMany(10);
    list.SetMarking(true);
    list.SetSelection(3);
    list.MarkAlong(VK_DOWN);
    EXPECT_EQ(Marks(), (std::vector<unsigned>{3, 4}));
    list.MarkAlong(VK_DOWN);
    EXPECT_EQ(Marks(), (std::vector<unsigned>{3, 4, 5}));
    list.MarkAlong(VK_UP);
    EXPECT_EQ(Marks(), (std::vector<unsigned>{3, 4}));
    list.MarkAlong(VK_HOME);
    EXPECT_EQ(Marks(), (std::vector<unsigned>{0, 1, 2, 3}));
    EXPECT_EQ(list.GetSelection(), 0u);
    EXPECT_EQ(wordsOwner.marksChanges, 4);
}

TEST_F(MarkingAlong, BeginsAnewWhereTheSelectionHasComeOtherwise) {
    OpenMany(10);
    list.SetMarking(true);
    list.MarkAlong(VK_DOWN);
    EXPECT_EQ(Marks(), (std::vector<unsigned>{0}));
    list.SetSelection(5);
    list.MarkAlong(VK_DOWN);
    EXPECT_EQ(Marks(), (std::vector<unsigned>{0, 5, 6}));
    list.ToggleMark(6);
    list.MarkAlong(VK_DOWN);
    EXPECT_EQ(Marks(), (std::vector<unsigned>{0, 5, 6, 7}));
    list.MarkAlong(VK_UP);
    EXPECT_EQ(Marks(), (std::vector<unsigned>{0, 5, 6}));
}

TEST_F(MarkingAlong, MarksNothingOutsideTheMode) {
    OpenMany(10);
    list.MarkAlong(VK_DOWN);
    EXPECT_EQ(list.GetSelection(), 0u);
    EXPECT_TRUE(Marks().empty());
    list.MarkAll();
    EXPECT_TRUE(Marks().empty());
}

TEST_F(PointerOverRows, IsAnArrowWhateverItWasBefore) {
    Open({L"a", L"b"});
    Play(Finger().MoveTo(At(-15, 100)));
    SetCursor(LoadCursorW(nullptr, IDC_SIZEWE));
    Play(Finger().MoveTo(InRow(0)).Wait(20).MoveTo(InRow(1)));
    EXPECT_EQ(GetCursor(), LoadCursorW(nullptr, IDC_ARROW));
}

TEST_F(PointerOverRows, StaysTheWaitCursorWhileThatIsShown) {
    Open({L"a", L"b"});
    {
        const platform::WaitCursor wait;
        Play(Finger().MoveTo(InRow(0)).Wait(20).MoveTo(InRow(1)));
        EXPECT_EQ(GetCursor(), LoadCursorW(nullptr, IDC_WAIT));
        {
            const platform::ArrowCursor arrow;
            Play(Finger().MoveTo(InRow(0)).Wait(20).MoveTo(InRow(1)));
            EXPECT_EQ(GetCursor(), LoadCursorW(nullptr, IDC_ARROW));
        }
        Play(Finger().MoveTo(InRow(0)).Wait(20).MoveTo(InRow(1)));
        EXPECT_EQ(GetCursor(), LoadCursorW(nullptr, IDC_WAIT));
    }
    Play(Finger().MoveTo(InRow(0)).Wait(20).MoveTo(InRow(1)));
    EXPECT_EQ(GetCursor(), LoadCursorW(nullptr, IDC_ARROW));
}
