#include "tests/support/box.h"
#include "tests/support/program.h"
#include "tests/support/world.h"
#include "tests/ui/bar/sample_bar.h"
#include "ui/dialog/message_box.h"
#include "ui/popup/popup_menu.h"

using namespace test;
using ui::noCommand;

namespace {

// Menu with a submenu in row 1 and a further one in that.
const std::vector<Item> nested = {
    {20, L"First of them all"},
    {0,
     L"More",
     MF_STRING,
     {{30, L"Deep"}, {31, L"Deeper"}, {0, L"Still", MF_STRING, {{40, L"Deepest"}}}}},
    {21, L"Third"},
    {0, L"Other", MF_STRING, {{50, L"Else"}}},
    {0, L"Closed", MF_STRING | MF_GRAYED, {{60, L"Never"}}}};

class PopupClosing : public BarTest {
 protected:
    void SetUp() override {
        Open({{10, L"One"}, {11, L"Two"}});
        more = [this](UINT message, WPARAM, LPARAM, LRESULT*) {
            presses += message == WM_LBUTTONDOWN;
            return false;
        };
    }
    std::atomic<int> presses = 0;
};

class Submenus : public PopupClosing {
 protected:
    // A point of a row beside the submenu, which is narrower than its parent.
    static POINT BesideSubmenu(HWND menu, unsigned row) {
        const POINT point = {ScreenRectangleOf(menu).right - 12, RowPoint(menu, row).y};
        EXPECT_EQ(WindowFromPoint(point), menu);
        return point;
    }
    // Opens the submenu of row 1; it.
    HWND OpenSubmenu(unsigned row = 1) {
        const HWND menu = WaitForPopups(1);
        Finger().Tap(RowPoint(menu, row)).Play();
        return WaitForPopups(2);
    }
    // Ends the menu, and with it the program's part of the test.
    void Escape() { Finger().Key("Escape").Play(); }
};

// A second window of the program in the upper right corner.
class OtherWindow : public SampleOwner {
 public:
    ~OtherWindow() override { Destroy(); }
    bool OpenSmall() {
        const int right = GetSystemMetrics(SM_CXSCREEN);
        return Create(L"TestOther", L"", WS_POPUP | WS_VISIBLE, RECT{right - 60, 0, right, 60},
                      nullptr);
    }
};

}  // namespace

TEST_F(PopupClosing, ATapOnAnotherWindowOnlyCloses) {
    const int command = Track(nested, [&] {
        WaitForPopups(1);
        Finger().Tap(GetSystemMetrics(SM_CXSCREEN) - 10, 5).Play();
    });
    EXPECT_EQ(command, noCommand);
    EXPECT_EQ(lastMessage.message, static_cast<UINT>(WM_LBUTTONDOWN));
    EXPECT_EQ(lastMessage.hwnd, owner.Handle());
    EXPECT_EQ(presses, 0);
}

TEST_F(PopupClosing, AMousesOtherButtonsBesideItOnlyClose) {
    const POINT beside = {GetSystemMetrics(SM_CXSCREEN) - 10, 5};
    int buttons = 0;
    more = [&buttons](UINT message, WPARAM, LPARAM, LRESULT*) {
        buttons += message == WM_RBUTTONDOWN || message == WM_XBUTTONDOWN;
        return false;
    };
    for (Finger button : {Finger().RightClick(beside), Finger().BackButton(beside)}) {
        EXPECT_EQ(Track(nested,
                        [&] {
                            WaitForPopups(1);
                            button.Play();
                        }),
                  noCommand);
        Run([&] { input.Play(Finger()); });
    }
    EXPECT_EQ(buttons, 0);
}

TEST_F(PopupClosing, ATapThatDeactivatesItDoesNothingElse) {
    OtherWindow other;
    std::atomic<int> taps = 0;
    other.answer = [&](UINT message, WPARAM, LPARAM, LRESULT*) {
        taps += message == WM_LBUTTONDOWN || message == WM_LBUTTONDBLCLK;
        return false;
    };
    ASSERT_TRUE(other.OpenSmall());
    EXPECT_EQ(Track(nested,
                    [&] {
                        WaitForPopups(1);
                        Finger().Tap(MiddleOf(other.Handle())).Play();
                    }),
              noCommand);
    Run([&] { input.Play(Finger()); });
    EXPECT_EQ(taps, 0);
}

TEST_F(PopupClosing, ModesCancelledAndSettingsChangedClose) {
    for (const UINT message : {WM_CANCELMODE, WM_SETTINGCHANGE}) {
        EXPECT_EQ(Track(nested, [&] { SendMessageW(WaitForPopups(1), message, 0, 0); }), noCommand)
            << message;
    }
}

TEST_F(PopupClosing, AModeCancelledDuringADragOfTheMenuCloses) {
    std::vector<Item> items;
    for (UINT id = 1; id <= 60; ++id) {
        items.push_back(Item{id, L"Item"});
    }
    EXPECT_EQ(Track(items,
                    [&] {
                        const HWND menu = WaitForPopups(1);
                        const POINT low = OnScreen(menu, 30, 300);
                        const POINT high = {low.x, low.y - 120};
                        input.Play(Finger().Down(low).DragTo(low, high, 6));
                        SendMessageW(menu, WM_CANCELMODE, 0, 0);
                        Finger().Up().Play();
                    }),
              noCommand);
}

TEST_F(PopupClosing, DeactivationByAnotherProgramCloses) {
    const CleanSettings settings;
    EXPECT_EQ(Track(nested,
                    [&] {
                        WaitForPopups(1);
                        Program program(L"-status");
                        EXPECT_TRUE(program.WaitForMainWindow());
                        EXPECT_TRUE(
                            WaitFor([&] { return GetForegroundWindow() == program.MainWindow(); }));
                        EXPECT_TRUE(AllPopupsClosed());
                    }),
              noCommand);
}

TEST_F(PopupClosing, DeactivationByAnotherProgramClosesAWholeChain) {
    const CleanSettings settings;
    EXPECT_EQ(Track(nested,
                    [&] {
                        Finger().Tap(RowPoint(WaitForPopups(1), 1)).Play();
                        WaitForPopups(2);
                        Program program(L"-status");
                        EXPECT_TRUE(program.WaitForMainWindow());
                        EXPECT_TRUE(AllPopupsClosed());
                    }),
              noCommand);
}

TEST_F(PopupClosing, AMessageThatComesMeanwhileClosesItAtOnce) {
    more = [this](UINT message, WPARAM, LPARAM, LRESULT*) {
        if (message == WM_APP + 1) {
            ui::ShowError(owner.Handle(), L"No such file.");
        }
        return false;
    };
    const int command = Track(nested, [&] {
        WaitForPopups(1);
        PostMessageW(owner.Handle(), WM_APP + 1, 0, 0);
        const HWND box = WaitForBox();
        EXPECT_TRUE(WaitFor([] { return Popups().empty(); }, 3000));
        AnswerBox(box, Finger().Key("Return"));
        if (!Popups().empty()) {
            Finger().Key("Escape").Play();
        }
    });
    EXPECT_EQ(command, noCommand);
    EXPECT_TRUE(Popups().empty());
}

TEST_F(Submenus, AMessageThatComesMeanwhileClosesTheWholeChainAtOnce) {
    more = [this](UINT message, WPARAM, LPARAM, LRESULT*) {
        if (message == WM_APP + 1) {
            ui::ShowError(owner.Handle(), L"No such file.");
        }
        return false;
    };
    const int command = Track(nested, [&] {
        OpenSubmenu();
        PostMessageW(owner.Handle(), WM_APP + 1, 0, 0);
        const HWND box = WaitForBox();
        EXPECT_TRUE(WaitFor([] { return Popups().empty(); }, 3000));
        AnswerBox(box, Finger().Key("Return"));
        if (!Popups().empty()) {
            Escape();
        }
    });
    EXPECT_EQ(command, noCommand);
    EXPECT_TRUE(Popups().empty());
}

TEST_F(Submenus, OpenAtTheMiddleOfTheirRow) {
    Track(nested, [&] {
        const HWND menu = WaitForPopups(1);
        const HWND submenu = OpenSubmenu();
        const RECT outer = ScreenRectangleOf(menu);
        const RECT inner = ScreenRectangleOf(submenu);
        const LONG middle = RowPoint(menu, 1).y;
        // Upwards where there is room, else downwards.
        const bool room = middle - (inner.bottom - inner.top) >= 0;
        EXPECT_NEAR(room ? inner.bottom : inner.top, middle, 1);
        EXPECT_EQ(inner.left, outer.left);
        EXPECT_EQ(GetWindow(submenu, GW_OWNER), menu);
        EXPECT_EQ(RowCount(submenu), 3u);
        Escape();
    });
}

TEST_F(Submenus, AChoiceClosesTheWholeChain) {
    EXPECT_EQ(Track(nested, [&] { Finger().Tap(RowPoint(OpenSubmenu(), 1)).Play(); }), 31);
    EXPECT_TRUE(Popups().empty());
}

TEST_F(Submenus, AChoiceInTheThirdMenuClosesTheWholeChain) {
    EXPECT_EQ(Track(nested,
                    [&] {
                        Finger().Tap(RowPoint(OpenSubmenu(), 2)).Play();
                        Finger().Tap(RowPoint(WaitForPopups(3), 0)).Play();
                    }),
              40);
}

TEST_F(Submenus, OpenByEnterAndAreChosenByEnter) {
    EXPECT_EQ(Track(nested,
                    [&] {
                        WaitForPopups(1);
                        Finger().Key("Down").Key("Down").Key("Return").Play();
                        WaitForPopups(2);
                        Finger().Key("Down").Key("Down").Key("Return").Play();
                    }),
              31);
}

TEST_F(Submenus, ADisabledOneDoesNotOpen) {
    EXPECT_EQ(Track(nested,
                    [&] {
                        const HWND menu = WaitForPopups(1);
                        input.Play(Finger().Tap(RowPoint(menu, 4)));
                        EXPECT_EQ(Popups().size(), 1u);
                        Escape();
                    }),
              noCommand);
}

TEST_F(Submenus, EscapeClosesTheWholeChain) {
    EXPECT_EQ(Track(nested,
                    [&] {
                        OpenSubmenu();
                        Escape();
                        EXPECT_TRUE(AllPopupsClosed());
                    }),
              noCommand);
}

TEST_F(Submenus, SoftKeysCloseTheWholeChain) {
    for (const char* key : {"F1", "F2"}) {
        EXPECT_EQ(Track(nested,
                        [&] {
                            OpenSubmenu();
                            Finger().Key(key).Play();
                            EXPECT_TRUE(AllPopupsClosed());
                        }),
                  noCommand);
    }
}

TEST_F(Submenus, ModesCancelledAndSettingsChangedCloseTheWholeChain) {
    for (const UINT message : {WM_CANCELMODE, WM_SETTINGCHANGE}) {
        EXPECT_EQ(Track(nested,
                        [&] {
                            SendMessageW(OpenSubmenu(), message, 0, 0);
                            EXPECT_TRUE(AllPopupsClosed());
                        }),
                  noCommand);
    }
}

TEST_F(Submenus, EnterWithoutASelectionClosesTheWholeChain) {
    EXPECT_EQ(Track(nested,
                    [&] {
                        OpenSubmenu();
                        Finger().Key("Return").Play();
                        EXPECT_TRUE(AllPopupsClosed());
                    }),
              noCommand);
}

TEST_F(Submenus, ATapOnTheirOwnRowOnlyClosesThem) {
    EXPECT_EQ(Track(nested,
                    [&] {
                        const HWND menu = WaitForPopups(1);
                        OpenSubmenu(3);
                        input.Play(Finger().Tap(BesideSubmenu(menu, 3)));
                        EXPECT_EQ(WaitForPopups(1), menu);
                        Finger().Tap(BesideSubmenu(menu, 2)).Play();
                    }),
              21);
}

TEST_F(Submenus, ATapOnAnotherRowOfTheirParentChoosesThatRow) {
    EXPECT_EQ(Track(nested,
                    [&] {
                        const HWND menu = WaitForPopups(1);
                        OpenSubmenu();
                        Finger().Tap(BesideSubmenu(menu, 2)).Play();
                    }),
              21);
}

TEST_F(Submenus, ATapOnAnotherSubmenusRowOpensThatOne) {
    EXPECT_EQ(Track(nested,
                    [&] {
                        const HWND menu = WaitForPopups(1);
                        const HWND first = OpenSubmenu();
                        Finger().Tap(BesideSubmenu(menu, 3)).Play();
                        HWND second = nullptr;
                        EXPECT_TRUE(WaitFor([&] {
                            const std::vector<HWND> popups = Popups();
                            second = popups.size() == 2 ? popups[0] : nullptr;
                            return second && second != first;
                        }));
                        Finger().Tap(RowPoint(second, 0)).Play();
                    }),
              50);
}

TEST_F(Submenus, ATapOnAGrayedRowOfTheirParentLeavesTheParentOpen) {
    EXPECT_EQ(Track(nested,
                    [&] {
                        const HWND menu = WaitForPopups(1);
                        OpenSubmenu();
                        input.Play(Finger().Tap(BesideSubmenu(menu, 4)));
                        EXPECT_EQ(WaitForPopups(1), menu);
                        Escape();
                    }),
              noCommand);
}

TEST_F(Submenus, ATapElsewhereClosesTheWholeChainAndDoesNothingElse) {
    EXPECT_EQ(Track(nested,
                    [&] {
                        OpenSubmenu();
                        Finger().Tap(GetSystemMetrics(SM_CXSCREEN) - 10, 5).Play();
                        EXPECT_TRUE(AllPopupsClosed());
                    }),
              noCommand);
    EXPECT_EQ(presses, 0);
    EXPECT_EQ(lastMessage.message, static_cast<UINT>(WM_LBUTTONDOWN));
}

TEST_F(Submenus, AQuitClosesTheWholeChainAndIsPostedAgain) {
    const DWORD program = GetCurrentThreadId();
    const platform::UniqueMenu menu(MakeMenu(nested));
    int code = 0;
    WhileUser(
        [&] {
            OpenSubmenu();
            PostThreadMessageW(program, WM_QUIT, 6, 0);
        },
        [&] {
            EXPECT_EQ(ui::TrackPopup(owner.Handle(), ButtonArea(0), menu.Get(), 0, &lastMessage),
                      noCommand);
            MSG message;
            while (GetMessageW(&message, nullptr, 0, 0) > 0) {
            }
            code = static_cast<int>(message.wParam);
        });
    EXPECT_EQ(code, 6);
    EXPECT_TRUE(Popups().empty());
}
