#include <set>

#include "res/resource.h"
#include "tests/support/drawn_texts.h"
#include "tests/support/monitor.h"
#include "tests/ui/dialog/sample_box.h"

using namespace test;

namespace {

class MessageBoxTall : public BoxTest {
 protected:
    static std::wstring Line(int number) { return L"line number " + Digits(number); }
    static std::wstring Digits(int number) {
        return {static_cast<wchar_t>(L'0' + number / 10), static_cast<wchar_t>(L'0' + number % 10)};
    }
    static std::wstring FortyLines() {
        std::wstring text;
        for (int number = 0; number < 40; ++number) {
            text += (number == 0 ? L"" : L"\n") + Line(number);
        }
        return text;
    }
    static HWND Lines(HWND box) { return FindChild(box, L"DlgControlList"); }
    bool FocusIs(HWND window) {
        return WaitFor([&] {
            GUITHREADINFO info = {};
            info.cbSize = sizeof info;
            return GetGUIThreadInfo(GetWindowThreadProcessId(owner.Handle(), nullptr), &info) &&
                   info.hwndFocus == window;
        });
    }

    Monitor screen{RECT{0, 0, 240, 320}};
};

}  // namespace

TEST_F(MessageBoxTall, AShortTextHasNoList) {
    Show(L"Really?", {IDS_BUTTON_YES, IDS_BUTTON_NO}, 0, [&] {
        EXPECT_FALSE(Lines(WaitForBox()));
        End();
    });
}

TEST_F(MessageBoxTall, KeysReachEveryLine) {
    DrawnTexts drawn;
    EXPECT_EQ(Show(FortyLines(), {IDS_BUTTON_OK}, 0,
                   [&] {
                       const HWND box = WaitForBox();
                       ASSERT_TRUE(Lines(box));
                       EXPECT_TRUE(WaitFor([&] { return drawn.Has(Line(0)); }, 2000))
                           << drawn.All();
                       EXPECT_FALSE(drawn.Has(Line(39)));
                       input.Play(Finger().Key("Tab"));
                       EXPECT_TRUE(FocusIs(Lines(box)));
                       for (int step = 0; step < 40; ++step) {
                           input.Play(Finger().Key("Down"));
                       }
                       for (int number = 0; number < 40; ++number) {
                           EXPECT_TRUE(drawn.Shows(Line(number))) << number;
                       }
                       input.Play(Finger().Key("Tab"));
                       EXPECT_TRUE(FocusIs(Bar(box)));
                       Finger().Key("Return").Play();
                   }),
              IDS_BUTTON_OK);
}

TEST_F(MessageBoxTall, EnterOnTheLinesIsTheDefaultButton) {
    EXPECT_EQ(Show(FortyLines(), {IDS_BUTTON_YES, IDS_BUTTON_NO}, 1,
                   [&] {
                       const HWND box = WaitForBox();
                       input.Play(Finger().Key("Tab"));
                       EXPECT_TRUE(FocusIs(Lines(box)));
                       input.Play(Finger().Key("Down"));
                       Finger().Key("Return").Play();
                       if (!WaitFor([&] { return !IsWindow(box); }, 3000)) {
                           End();
                       }
                   }),
              IDS_BUTTON_NO);
}

TEST_F(MessageBoxTall, AFingerReachesEveryLineAndTheButtonsWork) {
    DrawnTexts drawn;
    EXPECT_EQ(Show(FortyLines(), {IDS_BUTTON_YES, IDS_BUTTON_NO}, 0,
                   [&] {
                       const HWND box = WaitForBox();
                       const RECT lines = ScreenRectangleOf(Lines(box));
                       const POINT low = {(lines.left + lines.right) / 2, lines.bottom - 10};
                       const POINT high = {low.x, lines.top + 10};
                       for (int pull = 0; pull < 20 && !drawn.Has(Line(39)); ++pull) {
                           input.Play(Finger().Down(low).DragTo(low, high, 10).Up());
                       }
                       for (int number = 0; number < 40; ++number) {
                           EXPECT_TRUE(drawn.Shows(Line(number))) << number;
                       }
                       End(Finger().Tap(ButtonPoint(box, 1, 2)));
                   }),
              IDS_BUTTON_NO);
}

TEST_F(MessageBoxTall, TheWheelReachesEveryLine) {
    DrawnTexts drawn;
    Show(FortyLines(), {IDS_BUTTON_YES, IDS_BUTTON_NO}, 0, [&] {
        const HWND box = WaitForBox();
        EXPECT_TRUE(WaitFor([&] { return drawn.Has(Line(0)); }));
        EXPECT_FALSE(drawn.Has(Line(39)));
        // The buttons have the keyboard.
        for (int turn = 0; turn < 7; ++turn) {
            input.Play(Finger().Turn(MiddleOf(Lines(box)), -1));
            input.Play(Finger().Turn(MiddleOf(Bar(box)), -1));
        }
        for (int number = 0; number < 40; ++number) {
            EXPECT_TRUE(drawn.Shows(Line(number))) << number;
        }
        End();
    });
}

TEST_F(MessageBoxTall, ShowsRoomForATab) {
    DrawnTexts drawn;
    Show(L"one\ttwo\n" + FortyLines(), {IDS_BUTTON_OK}, 0, [&] {
        WaitForBox();
        EXPECT_TRUE(WaitFor([&] { return drawn.Has(L"one    two"); })) << drawn.All();
        EXPECT_FALSE(drawn.Contains(L"\t"));
        End();
    });
}

TEST_F(MessageBoxTall, StaysInTheWorkArea) {
    Show(FortyLines(), {IDS_BUTTON_OK}, 0, [&] {
        const HWND box = WaitForBox();
        const RECT place = ScreenRectangleOf(box);
        EXPECT_GE(place.top, 0);
        EXPECT_LE(place.bottom, 320);
        EXPECT_LE(place.right, 240);
        EXPECT_LE(ScreenRectangleOf(Lines(box)).bottom, ScreenRectangleOf(Bar(box)).top);
        End();
    });
}

TEST_F(MessageBoxTall, ATextOfTenThousandCharactersIsShown) {
    EXPECT_EQ(Show(std::wstring(10000, L'w'), {IDS_BUTTON_OK}, 0,
                   [&] {
                       EXPECT_TRUE(Lines(WaitForBox()));
                       Finger().Key("Return").Play();
                   }),
              IDS_BUTTON_OK);
}

// Beside a word that has to be broken, the other lines are as long as ever.
TEST_F(MessageBoxTall, HasRoomForTheLinesBesideABrokenWord) {
    screen.SetWorkArea(RECT{0, 0, 480, 640});
    const auto heightOf = [&](const std::wstring& text) {
        int shown = 0;
        Show(text, {IDS_BUTTON_OK}, 0, [&] {
            const HWND box = WaitForBox();
            EXPECT_FALSE(Lines(box));
            const RECT place = ScreenRectangleOf(box);
            shown = place.bottom - place.top;
            End();
        });
        return shown;
    };
    const std::wstring word(60, L'w');
    const std::wstring words =
        L"some short words that do not fit into one line of the box, not at all";
    EXPECT_GE(heightOf(word + L"\n" + words) - heightOf(word),
              heightOf(L"one\n" + words) - heightOf(L"one"));
}

TEST_F(MessageBoxTall, KeepsItsPlaceInTheTextWhenTheScreenChanges) {
    Show(FortyLines(), {IDS_BUTTON_YES, IDS_BUTTON_NO}, 1, [&] {
        const HWND box = WaitForBox();
        input.Play(Finger().Key("Tab"));
        ASSERT_TRUE(FocusIs(Lines(box)));
        for (int step = 0; step < 20; ++step) {
            input.Play(Finger().Key("Down"));
        }
        const DrawnTexts drawn;
        screen.SetWorkArea(RECT{0, 0, 240, 300});
        SendMessageW(box, WM_SETTINGCHANGE, 0, 0);
        EXPECT_TRUE(WaitFor([&] { return drawn.Has(Line(20)); })) << drawn.All();
        EXPECT_FALSE(drawn.Has(Line(0))) << drawn.All();
        End();
    });
}

TEST_F(MessageBoxTall, FollowsTheScreen) {
    std::wstring text;
    for (int number = 0; number < 12; ++number) {
        text += Line(number) + L"\n";
    }
    Show(text, {IDS_BUTTON_YES, IDS_BUTTON_NO}, 1, [&] {
        const HWND box = WaitForBox();
        input.Play(Finger().Key("Tab").Key("Down").Key("Down"));
        const HWND lines = Lines(box);
        ASSERT_TRUE(FocusIs(lines));
        screen.SetWorkArea(RECT{0, 0, 320, 240});
        SendMessageW(box, WM_SETTINGCHANGE, 0, 0);
        RECT place = ScreenRectangleOf(box);
        EXPECT_LE(place.bottom, 240);
        EXPECT_LE(place.right, 320);
        ASSERT_TRUE(Lines(box));
        EXPECT_TRUE(FocusIs(Lines(box)));
        EXPECT_LE(ScreenRectangleOf(Lines(box)).bottom, ScreenRectangleOf(Bar(box)).top);
        // A screen that holds the whole text needs no list.
        screen.SetWorkArea(RECT{0, 0, 480, 640});
        SendMessageW(box, WM_DISPLAYCHANGE, 0, 0);
        EXPECT_FALSE(Lines(box));
        EXPECT_TRUE(FocusIs(Bar(box)));
        place = ScreenRectangleOf(box);
        EXPECT_NEAR(place.top + place.bottom, 640, 2);
        screen.SetWorkArea(RECT{0, 0, 240, 320});
        SendMessageW(box, WM_DISPLAYCHANGE, 0, 0);
        EXPECT_TRUE(Lines(box));
        End();
    });
}
