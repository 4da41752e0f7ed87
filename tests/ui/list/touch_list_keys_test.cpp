#include <climits>

#include "tests/ui/list/sample_list.h"

using namespace test;
using ui::noRow;

namespace {

class TouchListKeys : public ListTest {
 protected:
    // Presses a key and waits until the list has acted on it.
    void Press(const std::string& name) {
        Run([&] { input.Play(Finger().Key(name)); });
    }
    unsigned SelectionAfter(const std::string& name) {
        Press(name);
        return list.GetSelection();
    }
    // How often the list has told of a key or of Enter.
    size_t CountOf(int code) const {
        size_t count = 0;
        for (const Notice& notice : Notices()) {
            count += notice.code == code;
        }
        return count;
    }
};

class TouchListTab : public ListTest {};

std::vector<MSG> TakeDialogSteps() {
    std::vector<MSG> steps;
    MSG message;
    while (PeekMessageW(&message, nullptr, WM_NEXTDLGCTL, WM_NEXTDLGCTL, PM_REMOVE)) {
        steps.push_back(message);
    }
    return steps;
}

LRESULT AskAboutKey(HWND list, WPARAM key, UINT kind = WM_KEYDOWN) {
    MSG message = {};
    message.hwnd = list;
    message.message = kind;
    message.wParam = key;
    return SendMessageW(list, WM_GETDLGCODE, key, reinterpret_cast<LPARAM>(&message));
}

}  // namespace

TEST_F(TouchListKeys, UpWithNothingSelectedSelectsTheLastRow) {
    Open(EqualHeights(20, 40));
    EXPECT_EQ(SelectionAfter("Up"), 19u);
    EXPECT_EQ(list.GetTopIndex(), 13u);
    EXPECT_EQ(SelectionAfter("Up"), 18u);
}

TEST_F(TouchListKeys, UpOnTheFirstRowDoesNothing) {
    Open(EqualHeights(20, 40));
    list.SetSelection(0);
    EXPECT_EQ(SelectionAfter("Up"), 0u);
    EXPECT_EQ(SelectionNotices().size(), 2u);
}

TEST_F(TouchListKeys, DownGoesToTheNextRowAndFromNoneToTheFirst) {
    Open(EqualHeights(20, 40));
    EXPECT_EQ(SelectionAfter("Down"), 0u);
    EXPECT_EQ(SelectionAfter("Down"), 1u);
}

TEST_F(TouchListKeys, DownOnTheLastRowDoesNothing) {
    Open(EqualHeights(20, 40));
    list.SetSelection(19);
    EXPECT_EQ(SelectionAfter("Down"), 19u);
    EXPECT_EQ(SelectionNotices().size(), 2u);
}

TEST_F(TouchListKeys, HomeAndEndGoToTheEnds) {
    Open(EqualHeights(20, 40));
    EXPECT_EQ(SelectionAfter("End"), 19u);
    EXPECT_EQ(list.GetTopIndex(), 13u);
    EXPECT_EQ(SelectionAfter("Home"), 0u);
    EXPECT_EQ(list.GetTopIndex(), 0u);
}

TEST_F(TouchListKeys, HomeAndEndWorkWithNothingSelected) {
    Open(EqualHeights(20, 40));
    EXPECT_EQ(SelectionAfter("Home"), 0u);
    list.Layout();
    EXPECT_EQ(SelectionAfter("End"), 19u);
}

TEST_F(TouchListKeys, PageDownGoesOneWindowBelowTheSelectionsTop) {
    Open(EqualHeights(20, 40));
    list.SetSelection(2);
    EXPECT_EQ(SelectionAfter("Next"), 9u);
    EXPECT_EQ(SelectionAfter("Next"), 16u);
    EXPECT_EQ(SelectionAfter("Next"), 19u);
    EXPECT_EQ(SelectionAfter("Next"), 19u);
    EXPECT_EQ(SelectionNotices().size(), 2u * 4);
}

TEST_F(TouchListKeys, PageUpGoesBackUntilAWindowIsFull) {
    Open(EqualHeights(20, 40));
    list.SetSelection(17);
    EXPECT_EQ(SelectionAfter("Prior"), 9u);
    EXPECT_EQ(SelectionAfter("Prior"), 1u);
    EXPECT_EQ(SelectionAfter("Prior"), 0u);
    EXPECT_EQ(SelectionAfter("Prior"), 0u);
    EXPECT_EQ(SelectionNotices().size(), 2u * 4);
}

TEST_F(TouchListKeys, PagesStartAtTheFirstRowWhenNothingIsSelected) {
    Open(EqualHeights(20, 40));
    EXPECT_EQ(SelectionAfter("Next"), 7u);
    list.Layout();
    EXPECT_EQ(SelectionAfter("Prior"), 0u);
}

TEST_F(TouchListKeys, OtherKeysAreIgnored) {
    Open(EqualHeights(20, 40));
    list.SetSelection(3);
    for (const char* key : {"Left", "Right", "a", "5", "Delete", "BackSpace", "space", "F3"}) {
        EXPECT_EQ(SelectionAfter(key), 3u) << key;
    }
    EXPECT_EQ(SelectionNotices().size(), 2u);
    EXPECT_EQ(CountOf(-15), 8u);
    EXPECT_EQ(CountOf(-4), 0u);
}

TEST_F(TouchListKeys, EnterIsTold) {
    Open(EqualHeights(20, 40));
    list.SetSelection(3);
    Press("Return");
    EXPECT_EQ(Notices().back(), (Notice{-4, 0, 0}));
    EXPECT_EQ(CountOf(-4), 1u);
    EXPECT_EQ(list.GetSelection(), 3u);
}

TEST_F(TouchListKeys, EachKeyIsOfferedToTheParentFirst) {
    Open(EqualHeights(20, 40));
    Press("Down");
    const std::vector<Notice> notices = Notices();
    ASSERT_EQ(notices.size(), 3u);
    EXPECT_EQ(notices[0].code, -15);
    EXPECT_EQ(notices[0].first, static_cast<unsigned>(VK_DOWN));
    // The high word of the key message: an extended key with its scan code.
    EXPECT_EQ(notices[0].second & 0x1FFu, 0x150u);
    EXPECT_EQ(notices[1].code, -100);
    EXPECT_EQ(notices[2].code, -101);
}

TEST_F(TouchListKeys, AKeyThatTheParentTakesDoesNothingMore) {
    Open(EqualHeights(20, 40));
    takesKeys = true;
    EXPECT_EQ(SelectionAfter("Down"), noRow);
    Press("Return");
    EXPECT_EQ(CountOf(-15), 2u);
    EXPECT_EQ(Notices().size(), 2u);
}

TEST_F(TouchListKeys, AnEmptyListOnlyOffersThem) {
    Open({});
    for (const char* key : {"Up", "Down", "Home", "End", "Prior", "Next", "Return"}) {
        Press(key);
    }
    EXPECT_EQ(CountOf(-15), 7u);
    EXPECT_EQ(Notices().size(), 7u);
    EXPECT_EQ(list.GetSelection(), noRow);
}

TEST_F(TouchListKeys, AVetoHoldsAgainstThem) {
    Open(EqualHeights(20, 40));
    list.SetSelection(3);
    veto = true;
    for (const char* key : {"Up", "Down", "Home", "End", "Prior", "Next"}) {
        EXPECT_EQ(SelectionAfter(key), 3u) << key;
    }
}

TEST_F(TouchListTab, AsksForAllKeys) {
    Open(EqualHeights(20, 40));
    EXPECT_EQ(SendMessageW(list.Handle(), WM_GETDLGCODE, 0, 0), DLGC_WANTALLKEYS);
    EXPECT_EQ(AskAboutKey(list.Handle(), VK_DOWN), DLGC_WANTALLKEYS);
    EXPECT_TRUE(TakeDialogSteps().empty());
}

TEST_F(TouchListTab, StepsForwardWithOne) {
    Open(EqualHeights(20, 40));
    EXPECT_EQ(AskAboutKey(list.Handle(), VK_TAB), DLGC_WANTALLKEYS);
    const std::vector<MSG> steps = TakeDialogSteps();
    ASSERT_EQ(steps.size(), 1u);
    EXPECT_EQ(steps[0].hwnd, owner.Handle());
    EXPECT_EQ(steps[0].wParam, 1u);
    EXPECT_EQ(steps[0].lParam, 0);
}

TEST_F(TouchListTab, StepsBackWithZeroWhileShiftIsHeld) {
    Open(EqualHeights(20, 40));
    Run([] {
        Finger().KeyDown("shift").Play();
        EXPECT_TRUE(WaitFor([] { return GetAsyncKeyState(VK_SHIFT) < 0; }));
    });
    AskAboutKey(list.Handle(), VK_TAB);
    const std::vector<MSG> steps = TakeDialogSteps();
    Run([] {
        Finger().KeyUp("shift").Play();
        EXPECT_TRUE(WaitFor([] { return GetAsyncKeyState(VK_SHIFT) >= 0; }));
    });
    ASSERT_EQ(steps.size(), 1u);
    EXPECT_EQ(steps[0].wParam, 0u);
}

TEST_F(TouchListTab, OtherMessagesOfTheKeyDoNotStep) {
    Open(EqualHeights(20, 40));
    EXPECT_EQ(AskAboutKey(list.Handle(), VK_TAB, WM_CHAR), DLGC_WANTALLKEYS);
    EXPECT_EQ(AskAboutKey(list.Handle(), VK_TAB, WM_KEYUP), DLGC_WANTALLKEYS);
    EXPECT_TRUE(TakeDialogSteps().empty());
}
