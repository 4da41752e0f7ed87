#include "tests/support/double_click.h"
#include "tests/ui/bar/sample_bar.h"
#include "ui/paint/theme.h"
#include "ui/popup/popup_menu.h"

using namespace test;

namespace {

const std::vector<Item> softKeys = {
    {0,
     L"Actions",
     MF_STRING,
     {{20, L"Copy"}, {21, L"Cut"}, {0, L"More", MF_STRING, {{30, L"Deep"}}}}},
    {0, L"Menu", MF_STRING, {{40, L"Files"}, {41, L"Exit"}}}};
const std::vector<Item> commandAndMenu = {
    {10, L"Refresh"},
    {0, L"Menu", MF_STRING, {{40, L"Files"}, {0, L"More", MF_STRING, {{50, L"Deep"}}}}}};

class CommandBarPopup : public BarTest {
 protected:
    // Opens a button's menu with a finger; its window.
    HWND OpenMenu(unsigned button) {
        Finger().Tap(ButtonPoint(button)).Play();
        return WaitForPopups(1);
    }
    void Close() {
        input.Play(Finger().Key("Escape"));
        EXPECT_TRUE(AllPopupsClosed());
    }
};

}  // namespace

TEST_F(CommandBarPopup, OpensAboveItsButton) {
    Open(softKeys);
    Run([&] {
        const RECT left = ScreenRectangleOf(OpenMenu(0));
        EXPECT_EQ(left.bottom, ButtonArea(0).top);
        EXPECT_EQ(left.left, ButtonArea(0).left);
        EXPECT_TRUE(ShowsPressed(0));
        Close();
        EXPECT_TRUE(ShowsPressed(0, false));
        const RECT right = ScreenRectangleOf(OpenMenu(1));
        EXPECT_EQ(right.bottom, ButtonArea(1).top);
        EXPECT_TRUE(right.left == ButtonArea(1).left || right.right == ButtonArea(1).right);
        EXPECT_LE(right.right, GetSystemMetrics(SM_CXSCREEN));
        Close();
    });
    EXPECT_TRUE(Commands().empty());
}

TEST_F(CommandBarPopup, AChoiceIsSentAsACommand) {
    Open(softKeys);
    Run([&] {
        const HWND menu = OpenMenu(0);
        input.Play(Finger().Tap(RowPoint(menu, 1)));
        EXPECT_TRUE(AllPopupsClosed());
    });
    EXPECT_EQ(Commands(), (std::vector<Command>{CommandOf(21)}));
}

TEST_F(CommandBarPopup, AChoiceInASubmenuIsSentAsACommand) {
    Open(softKeys);
    Run([&] {
        Finger().Tap(RowPoint(OpenMenu(0), 2)).Play();
        input.Play(Finger().Tap(RowPoint(WaitForPopups(2), 0)));
        EXPECT_TRUE(AllPopupsClosed());
    });
    EXPECT_EQ(Commands(), (std::vector<Command>{CommandOf(30)}));
}

TEST_F(CommandBarPopup, TheParentIsAskedToBringItUpToDateBeforeItOpens) {
    Open(softKeys);
    int asked = 0;
    more = [&](UINT message, WPARAM wParam, LPARAM lParam, LRESULT*) {
        if (message == WM_INITMENUPOPUP) {
            ++asked;
            EXPECT_TRUE(Popups().empty());
            EXPECT_EQ(lParam, 1);
            const auto menu = reinterpret_cast<HMENU>(wParam);
            EXPECT_EQ(menu, GetSubMenu(bar.Menu(), 1));
            EnableMenuItem(menu, 40, MF_BYCOMMAND | MF_GRAYED);
        }
        return false;
    };
    Run([&] {
        const HWND menu = OpenMenu(1);
        input.Play(Finger().Tap(RowPoint(menu, 0)));
        EXPECT_EQ(Popups().size(), 1u);
        Close();
    });
    EXPECT_EQ(asked, 1);
    EXPECT_TRUE(Commands().empty());
}

TEST_F(CommandBarPopup, TheParentIsDrawnBeforeItOpens) {
    Open(softKeys);
    std::string calls;
    more = [&](UINT message, WPARAM, LPARAM, LRESULT*) {
        if (message == WM_INITMENUPOPUP) {
            calls += "asked ";
        } else if (message == WM_PAINT && calls == "asked ") {
            calls += Popups().empty() ? "drawn " : "late ";
        }
        return false;
    };
    Run([&] {
        OpenMenu(1);
        Close();
    });
    EXPECT_EQ(calls, "asked drawn ");
}

TEST_F(CommandBarPopup, ATapOnTheOtherSoftKeyClosesItAndOpensThatOne) {
    Open(softKeys);
    Run([&] {
        const HWND right = OpenMenu(1);
        Finger().Tap(ButtonPoint(0)).Play();
        HWND left = nullptr;
        EXPECT_TRUE(WaitFor([&] {
            const std::vector<HWND> popups = Popups();
            left = popups.size() == 1 ? popups[0] : nullptr;
            return left && left != right && ScreenRectangleOf(left).left == ButtonArea(0).left;
        }));
        input.Play(Finger().Tap(RowPoint(left, 0)));
    });
    EXPECT_EQ(Commands(), (std::vector<Command>{CommandOf(20)}));
}

TEST_F(CommandBarPopup, TapsFromOneSoftKeyToTheOtherNeedNoMoreOfTheStack) {
    Open(softKeys);
    std::vector<uintptr_t> depths;
    more = [&](UINT message, WPARAM, LPARAM, LRESULT*) {
        if (message == WM_INITMENUPOPUP) {
            depths.push_back(reinterpret_cast<uintptr_t>(__builtin_frame_address(0)));
        }
        return false;
    };
    Run([&] {
        HWND menu = OpenMenu(0);
        for (unsigned tap = 1; tap < 6; ++tap) {
            Finger().Tap(ButtonPoint(tap % 2)).Play();
            HWND next = nullptr;
            EXPECT_TRUE(WaitFor([&] {
                const std::vector<HWND> popups = Popups();
                next = popups.size() == 1 ? popups[0] : nullptr;
                return next && next != menu;
            }));
            menu = next;
        }
        Close();
    });
    ASSERT_EQ(depths.size(), 6u);
    EXPECT_EQ(depths.front(), depths.back());
}

TEST_F(CommandBarPopup, ATapOnTheOtherSoftKeyRunsItsCommandAtOnce) {
    Open(commandAndMenu);
    Run([&] {
        OpenMenu(1);
        input.Play(Finger().Tap(ButtonPoint(0)));
        EXPECT_TRUE(AllPopupsClosed());
    });
    EXPECT_EQ(Commands(), (std::vector<Command>{CommandOf(10)}));
}

TEST_F(CommandBarPopup, ATapOnTheOtherSoftKeyClosesAWholeChainAndActs) {
    Open(commandAndMenu);
    Run([&] {
        Finger().Tap(RowPoint(OpenMenu(1), 1)).Play();
        WaitForPopups(2);
        input.Play(Finger().Tap(ButtonPoint(0)));
        EXPECT_TRUE(AllPopupsClosed());
    });
    EXPECT_EQ(Commands(), (std::vector<Command>{CommandOf(10)}));
}

TEST_F(CommandBarPopup, ATapOnItsOwnButtonOnlyClosesIt) {
    Open(softKeys);
    Run([&] {
        OpenMenu(1);
        const POINT elsewhere = {ButtonPoint(1).x + 20, ButtonPoint(1).y};
        input.Play(Finger().Tap(elsewhere));
        EXPECT_TRUE(AllPopupsClosed());
        EXPECT_TRUE(ShowsPressed(1, false));
    });
    EXPECT_TRUE(Commands().empty());
}

TEST_F(CommandBarPopup, ARepeatedTapOnItsOwnButtonOnlyClosesIt) {
    const LongDoubleClick pairs;
    Open(softKeys);
    Run([&] {
        Finger().Tap(ButtonPoint(1)).Wait(60).Tap(ButtonPoint(1)).Play();
        EXPECT_TRUE(AllPopupsClosed());
        input.Play(Finger());
        EXPECT_TRUE(Popups().empty());
    });
}

TEST_F(CommandBarPopup, ATapElsewhereOnlyClosesIt) {
    Open(softKeys);
    std::atomic<int> presses = 0;
    more = [&](UINT message, WPARAM, LPARAM, LRESULT*) {
        presses += message == WM_LBUTTONDOWN;
        return false;
    };
    Run([&] {
        OpenMenu(0);
        input.Play(Finger().Tap(GetSystemMetrics(SM_CXSCREEN) - 10, 5));
        EXPECT_TRUE(AllPopupsClosed());
    });
    EXPECT_EQ(presses, 0);
    EXPECT_TRUE(Commands().empty());
}

TEST_F(CommandBarPopup, ALongPressOpensItAsWell) {
    Open(softKeys);
    Run([&] {
        Finger().Down(ButtonPoint(0)).Wait(450).MoveTo(ButtonPoint(1)).Wait(60).Up().Play();
        const HWND menu = WaitForPopups(1);
        EXPECT_EQ(RowCount(menu), 2u);
        input.Play(Finger().Tap(RowPoint(menu, 0)));
    });
    EXPECT_EQ(Commands(), (std::vector<Command>{CommandOf(40)}));
}

TEST_F(CommandBarPopup, AnEmptySubmenuOpensNothing) {
    Open({{10, L"One"}, {0, L"Menu", MF_STRING, {{40, L"Files"}}}});
    RemoveMenu(GetSubMenu(bar.Menu(), 1), 0, MF_BYPOSITION);
    Run([&] {
        input.Play(Finger().Tap(ButtonPoint(1)));
        EXPECT_TRUE(Popups().empty());
        EXPECT_TRUE(ShowsPressed(1, false));
        EXPECT_EQ(GetForegroundWindow(), owner.Handle());
    });
    EXPECT_TRUE(Commands().empty());
}

TEST_F(CommandBarPopup, ABarDestroyedUnderItsMenuIsLeftAlone) {
    Open(softKeys);
    more = [&](UINT message, WPARAM, LPARAM, LRESULT*) {
        if (message == WM_APP + 1) {
            bar.Destroy();
        }
        return false;
    };
    Run([&] {
        const HWND menu = OpenMenu(0);
        SendMessageW(owner.Handle(), WM_APP + 1, 0, 0);
        input.Play(Finger().Tap(RowPoint(menu, 0)));
        EXPECT_TRUE(AllPopupsClosed());
    });
    EXPECT_TRUE(Commands().empty());
}
