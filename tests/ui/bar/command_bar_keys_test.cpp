#include "tests/support/finger.h"
#include "tests/ui/bar/sample_bar.h"
#include "ui/paint/theme.h"

using namespace test;

namespace {

const std::vector<Item> threeCommands = {{10, L"One"}, {11, L"Two"}, {12, L"Three"}};
const std::vector<Item> withPopup = {{10, L"One"},
                                     {0, L"Menu", MF_STRING, {{20, L"First"}, {21, L"Second"}}}};

// A bar that has the keyboard.
class CommandBarKeys : public BarTest {
 protected:
    CommandBarKeys() {
        more = [this](UINT message, WPARAM wParam, LPARAM, LRESULT*) {
            if (message == WM_NEXTDLGCTL) {
                tabs.push_back(wParam);
                ++tabCount;
            }
            return false;
        };
    }
    void OpenFocused(const std::vector<Item>& items) {
        Open(items);
        SetFocus(bar.Handle());
    }
    bool ShowsFocus(unsigned button, bool focused = true) const {
        return WaitFor([&] { return Has(PictureOfButton(button), ui::barFocusColor) == focused; });
    }

    std::vector<WPARAM> tabs;
    std::atomic<int> tabCount = 0;
};

}  // namespace

TEST_F(CommandBarKeys, TheFocusIsAFrameRoundOneButton) {
    Open(threeCommands);
    Run([&] {
        for (unsigned button = 0; button < 3; ++button) {
            EXPECT_TRUE(ShowsFocus(button, false));
        }
    });
    SetFocus(bar.Handle());
    Run([&] {
        EXPECT_TRUE(ShowsFocus(0));
        EXPECT_TRUE(ShowsFocus(1, false));
        const Picture picture = PictureOfButton(0);
        EXPECT_EQ(picture.At(0, picture.Height() - 1), ui::barFocusColor);
        EXPECT_EQ(picture.At(picture.Width() - 1, picture.Height() / 2), ui::barFocusColor);
    });
    SetFocus(owner.Handle());
    Run([&] { EXPECT_TRUE(ShowsFocus(0, false)); });
}

TEST_F(CommandBarKeys, RightAndLeftMoveTheFocusRound) {
    OpenFocused(threeCommands);
    Run([&] {
        unsigned expected[] = {1, 2, 0};
        for (const unsigned button : expected) {
            input.Play(Finger().Key("Right"));
            EXPECT_TRUE(ShowsFocus(button));
        }
        EXPECT_TRUE(ShowsFocus(2, false));
        input.Play(Finger().Key("Left"));
        EXPECT_TRUE(ShowsFocus(2));
        input.Play(Finger().Key("Left"));
        EXPECT_TRUE(ShowsFocus(1));
        EXPECT_TRUE(ShowsFocus(2, false));
    });
    EXPECT_TRUE(Commands().empty());
}

TEST_F(CommandBarKeys, EnterAndUpActivateTheFocusedButton) {
    OpenFocused(threeCommands);
    Run([&] { input.Play(Finger().Key("Return").Key("Right").Key("Up").Key("Return")); });
    EXPECT_EQ(Commands(), (std::vector<Command>{CommandOf(10), CommandOf(11), CommandOf(11)}));
}

TEST_F(CommandBarKeys, EnterOnADisabledButtonDoesNothing) {
    OpenFocused({{10, L"One", MF_STRING | MF_GRAYED}, {11, L"Two"}});
    Run([&] { input.Play(Finger().Key("Return").Key("Up")); });
    EXPECT_TRUE(Commands().empty());
}

TEST_F(CommandBarKeys, UpOpensTheFocusedButtonsMenu) {
    OpenFocused(withPopup);
    Run([&] {
        Finger().Key("Right").Key("Up").Play();
        ASSERT_TRUE(WaitForPopups(1));
        input.Play(Finger().Key("Down").Key("Down").Key("Return"));
        EXPECT_TRUE(AllPopupsClosed());
    });
    EXPECT_EQ(Commands(), std::vector<Command>{CommandOf(21)});
}

TEST_F(CommandBarKeys, EnterOpensTheFocusedButtonsMenuAndItStays) {
    OpenFocused(withPopup);
    Run([&] {
        input.Play(Finger().Key("Right").Key("Return"));
        ASSERT_TRUE(WaitForPopups(1));
        input.Play(Finger().Key("Down").Key("Return"));
        EXPECT_TRUE(AllPopupsClosed());
    });
    EXPECT_EQ(Commands(), std::vector<Command>{CommandOf(20)});
}

TEST_F(CommandBarKeys, EscapeCancels) {
    OpenFocused(threeCommands);
    Run([&] {
        input.Play(Finger().Key("Right").Key("Escape"));
        EXPECT_TRUE(WaitFor([&] { return !Commands().empty(); }));
    });
    EXPECT_EQ(Commands(), (std::vector<Command>{Command{IDCANCEL, 0}}));
}

TEST_F(CommandBarKeys, TabAsksTheParentToMoveOn) {
    OpenFocused(threeCommands);
    Run([&] {
        input.Play(Finger().Key("Tab"));
        EXPECT_TRUE(WaitFor([&] { return tabCount == 1; }));
        Finger().KeyDown("shift").Key("Tab").Play();
        EXPECT_TRUE(WaitFor([&] { return tabCount == 2; }));
        input.Play(Finger().KeyUp("shift"));
    });
    EXPECT_EQ(tabs, (std::vector<WPARAM>{1, 0}));
    EXPECT_TRUE(Commands().empty());
}

TEST_F(CommandBarKeys, OtherKeysDoNothing) {
    OpenFocused(threeCommands);
    Run([&] {
        input.Play(Finger().Key("Down").Key("a").Key("Home").Key("space"));
        EXPECT_TRUE(ShowsFocus(0));
    });
    EXPECT_TRUE(Commands().empty());
    EXPECT_TRUE(tabs.empty());
}

TEST_F(CommandBarKeys, ANewMenuHasTheFocusOnItsFirstButton) {
    OpenFocused(threeCommands);
    Run([&] { input.Play(Finger().Key("Left")); });
    bar.SetMenu(MakeMenu({{13, L"Four"}}, false));
    Run([&] {
        EXPECT_TRUE(ShowsFocus(0));
        input.Play(Finger().Key("Return"));
    });
    EXPECT_EQ(Commands(), std::vector<Command>{CommandOf(13)});
}

TEST_F(CommandBarKeys, AnEmptyBarIgnoresThem) {
    OpenFocused({});
    Run([&] { input.Play(Finger().Key("Right").Key("Left").Key("Return").Key("Up")); });
    EXPECT_TRUE(Commands().empty());
}
