#include <atomic>

#include "res/resource.h"
#include "tests/support/drawn_texts.h"
#include "tests/support/heaps.h"
#include "tests/support/platform_hook.h"
#include "tests/support/world.h"
#include "tests/ui/dialog/sample_box.h"
#include "ui/paint/drawing_resources.h"
#include "ui/paint/paint.h"
#include "ui/paint/theme.h"

using namespace test;

namespace {

COLORREF Normal() {
    return GetSysColor(COLOR_BTNFACE);
}
// What is there before the bar is drawn is neither.
COLORREF Hot() {
    constexpr unsigned accentShare = 64;
    return ui::MixColors(GetSysColor(COLOR_HIGHLIGHT), GetSysColor(COLOR_BTNFACE), accentShare);
}
COLORREF Pressed() {
    return GetSysColor(COLOR_HIGHLIGHT);
}

std::atomic<bool> failed = false;
decltype(GetMessageW)* takeMessage = nullptr;
BOOL WINAPI FailOnce(MSG* message, HWND window, UINT first, UINT last) {
    if (!failed) {
        *message = MSG{};
        message->message = WM_LBUTTONUP;
        message->lParam = MAKELPARAM(3000, 3000);
        failed = true;
        return -1;
    }
    return takeMessage(message, window, first, last);
}

class MessageBoxStylus : public BoxTest {
 protected:
    static bool IsHot(HWND box, unsigned index) { return ShowsButtonColor(box, index, 2, Hot()); }
    // A point of the screen where no part of a box is.
    static POINT Away() { return POINT{3, 3}; }
};

class MessageBoxLook : public BoxTest {};

}  // namespace

TEST_F(MessageBoxStylus, ReleasedOutsideThePressedButtonSendsNothing) {
    EXPECT_EQ(
        Show(L"Really?", yesNo, 1,
             [&] {
                 const HWND box = WaitForBox();
                 const POINT yes = ButtonPoint(box, 0, 2);
                 Play(Finger().Down(yes).Wait(40).MoveTo(Away()).Wait(40).Up());
                 Play(Finger().Down(yes).Wait(40).MoveTo(ButtonPoint(box, 1, 2)).Wait(40).Up());
                 EXPECT_TRUE(IsWindowVisible(box));
                 End(Finger().Key("Return"));
             }),
        IDS_BUTTON_NO);
}

TEST_F(MessageBoxStylus, BackOnThePressedButtonItCounts) {
    EXPECT_EQ(Show(L"Really?", yesNo, 1,
                   [&] {
                       const HWND box = WaitForBox();
                       const POINT yes = ButtonPoint(box, 0, 2);
                       Finger().Down(yes).Wait(30).Play();
                       EXPECT_TRUE(ShowsButtonColor(box, 0, 2, Pressed()));
                       Finger().MoveTo(Away()).Play();
                       EXPECT_TRUE(ShowsButtonColor(box, 0, 2, Normal()));
                       Finger().MoveTo(yes).Play();
                       EXPECT_TRUE(ShowsButtonColor(box, 0, 2, Pressed()));
                       End(Finger().Up());
                   }),
              IDS_BUTTON_YES);
}

// What stands in the message then means nothing.
TEST_F(MessageBoxStylus, AMessageThatCannotBeTakenDoesNotEndAPress) {
    EXPECT_EQ(Show(L"Really?", yesNo, 1,
                   [&] {
                       const HWND box = WaitForBox();
                       Finger().Down(ButtonPoint(box, 0, 2)).Play();
                       EXPECT_TRUE(ShowsButtonColor(box, 0, 2, Pressed()));
                       takeMessage =
                           reinterpret_cast<decltype(takeMessage)>(*FindImport("GetMessageW"));
                       failed = false;
                       const PlatformHook<decltype(FailOnce)> hook("GetMessageW", FailOnce);
                       PostMessageW(Bar(box), WM_NULL, 0, 0);
                       EXPECT_TRUE(WaitFor([] { return failed.load(); }));
                       End(Finger().Up());
                   }),
              IDS_BUTTON_YES);
}

TEST_F(MessageBoxStylus, EscapeGivesAPressUpAndOtherKeysWait) {
    EXPECT_EQ(Show(L"Really?", yesNo, 1,
                   [&] {
                       const HWND box = WaitForBox();
                       const POINT yes = ButtonPoint(box, 0, 2);
                       Finger().Down(yes).Wait(30).Play();
                       EXPECT_TRUE(ShowsButtonColor(box, 0, 2, Pressed()));
                       Play(Finger().Key("Return"));
                       EXPECT_TRUE(IsWindowVisible(box));
                       Play(Finger().Key("Escape"));
                       Play(Finger().Up());
                       EXPECT_TRUE(IsWindowVisible(box));
                       End();
                   }),
              2);
}

TEST_F(MessageBoxStylus, CapturesTheStylusWhilePressed) {
    Show(L"Really?", yesNo, 1, [&] {
        const HWND box = WaitForBox();
        Finger().Down(ButtonPoint(box, 0, 2)).Wait(30).Play();
        GUITHREADINFO info = {};
        info.cbSize = sizeof info;
        EXPECT_TRUE(WaitFor([&] {
            GetGUIThreadInfo(GetWindowThreadProcessId(box, nullptr), &info);
            return info.hwndCapture == Bar(box);
        }));
        Play(Finger().MoveTo(Away()).Wait(30).Up());
        GetGUIThreadInfo(GetWindowThreadProcessId(box, nullptr), &info);
        EXPECT_EQ(info.hwndCapture, nullptr);
        End();
    });
}

TEST_F(MessageBoxStylus, BetweenTheButtonsPressesNone) {
    Show(L"Really?", yesNo, 1, [&] {
        const HWND box = WaitForBox();
        const RECT bar = ScreenRectangleOf(Bar(box));
        Play(Finger().Tap((bar.left + bar.right) / 2, (bar.top + bar.bottom) / 2));
        Play(Finger().Tap(bar.left + 1, bar.top + 5));
        EXPECT_TRUE(IsWindowVisible(box));
        End();
    });
}

TEST_F(MessageBoxStylus, MakesTheButtonUnderItHot) {
    Show(L"Really?", yesNo, 1, [&] {
        const HWND box = WaitForBox();
        Finger().MoveTo(ButtonPoint(box, 0, 2)).Play();
        EXPECT_TRUE(IsHot(box, 0));
        Finger().MoveTo(ButtonPoint(box, 1, 2)).Play();
        EXPECT_TRUE(IsHot(box, 1));
        EXPECT_TRUE(ShowsButtonColor(box, 0, 2, Normal()));
        End();
    });
}

TEST_F(MessageBoxStylus, ATimerNoticesThatItHasLeft) {
    Show(L"Really?", yesNo, 1, [&] {
        const HWND box = WaitForBox();
        const LONG ticks = InputTaken::Count(WM_TIMER);
        Finger().MoveTo(ButtonPoint(box, 0, 2)).Play();
        EXPECT_TRUE(IsHot(box, 0));
        Finger().MoveTo(Away()).Play();
        EXPECT_TRUE(ShowsButtonColor(box, 0, 2, Normal()));
        EXPECT_GT(InputTaken::Count(WM_TIMER), ticks);
        // The timer goes with it: two of its periods bring no other. The system may say once more
        // that the finger is where it was, when it has not heard yet.
        const auto rests = [] {
            const LONG before = InputTaken::Count(WM_TIMER);
            return !WaitFor([&] { return InputTaken::Count(WM_TIMER) != before; }, 700);
        };
        EXPECT_TRUE(WaitFor(rests));
        End();
    });
}

TEST_F(MessageBoxStylus, StaysHotUnderAStylusThatRests) {
    Show(L"Really?", yesNo, 1, [&] {
        const HWND box = WaitForBox();
        Finger().MoveTo(ButtonPoint(box, 0, 2)).Play();
        EXPECT_TRUE(IsHot(box, 0));
        // The bar looks where the stylus is.
        const LONG ticks = InputTaken::Count(WM_TIMER);
        EXPECT_TRUE(WaitFor([&] { return InputTaken::Count(WM_TIMER) > ticks; }));
        SendMessageW(Bar(box), WM_TIMER, 1, 0);
        const Picture bar = Picture::OfWindowDrawnAnew(Bar(box));
        EXPECT_EQ(bar.At(bar.Width() / 4, 4), Hot());
        EXPECT_EQ(bar.At(bar.Width() * 3 / 4, 4), Normal());
        End();
    });
}

TEST_F(MessageBoxStylus, TheHotButtonIsFoundAgainAfterARelease) {
    Show(L"Really?", yesNo, 1, [&] {
        const HWND box = WaitForBox();
        const POINT no = ButtonPoint(box, 1, 2);
        Play(Finger().Down(ButtonPoint(box, 0, 2)).Wait(40).MoveTo(no).Wait(40).Up());
        EXPECT_TRUE(IsHot(box, 1));
        EXPECT_TRUE(ShowsButtonColor(box, 0, 2, Normal()));
        End();
    });
}

TEST_F(MessageBoxStylus, TimersGoOnWhileAButtonIsPressed) {
    std::atomic<int> ticks = 0;
    owner.answer = [&](UINT message, WPARAM, LPARAM, LRESULT*) {
        ticks += message == WM_TIMER;
        return false;
    };
    SetTimer(owner.Handle(), 5, 20, nullptr);
    Show(L"Really?", yesNo, 1, [&] {
        const HWND box = WaitForBox();
        Finger().Down(ButtonPoint(box, 0, 2)).Wait(30).Play();
        EXPECT_TRUE(ShowsButtonColor(box, 0, 2, Pressed()));
        const int before = ticks;
        EXPECT_TRUE(WaitFor([&] { return ticks >= before + 5; }));
        Play(Finger().MoveTo(Away()).Wait(30).Up());
        End();
    });
    KillTimer(owner.Handle(), 5);
}

TEST_F(MessageBoxStylus, AQuitDuringAPressEndsTheBox) {
    const DWORD program = GetCurrentThreadId();
    int result = 0;
    int code = 0;
    WhileUser(
        [&] {
            const HWND box = WaitForBox();
            Finger().Down(ButtonPoint(box, 0, 2)).Wait(30).Play();
            EXPECT_TRUE(ShowsButtonColor(box, 0, 2, Pressed()));
            PostThreadMessageW(program, WM_QUIT, 3, 0);
        },
        [&] {
            result = ui::ShowMessage(owner.Handle(), L"Really?", IDS_WARNING, 2, yesNo.data(), 0);
            MSG message;
            while (GetMessageW(&message, nullptr, 0, 0) > 0) {
            }
            code = static_cast<int>(message.wParam);
        });
    EXPECT_NE(result, IDS_BUTTON_YES);
    EXPECT_EQ(code, 3);
    Run([&] { Finger().Up().Play(); });
}

TEST_F(MessageBoxStylus, AnOwnerDestroyedDuringAPressEndsTheBox) {
    owner.answer = [&](UINT message, WPARAM, LPARAM, LRESULT*) {
        if (message == WM_APP + 1) {
            owner.Destroy();
        }
        return false;
    };
    const int result = Show(L"Really?", yesNo, 0, [&] {
        const HWND box = WaitForBox();
        const HWND parent = owner.Handle();
        Finger().Down(ButtonPoint(box, 0, 2)).Wait(30).Play();
        EXPECT_TRUE(ShowsButtonColor(box, 0, 2, Pressed()));
        PostMessageW(parent, WM_APP + 1, 0, 0);
    });
    EXPECT_NE(result, IDS_BUTTON_YES);
    ASSERT_TRUE(owner.Open());
    Run([&] { Finger().Up().Play(); });
}

TEST_F(MessageBoxLook, StandsInTheMiddleOfTheWorkArea) {
    Show(L"Really?", yesNo, 0, [&] {
        const RECT box = ScreenRectangleOf(WaitForBox());
        EXPECT_NEAR(box.left + box.right, GetSystemMetrics(SM_CXSCREEN), 1);
        EXPECT_NEAR(box.top + box.bottom, GetSystemMetrics(SM_CYSCREEN), 1);
        End();
    });
}

TEST_F(MessageBoxLook, ALongMessageWrapsInsideTheWorkArea) {
    std::wstring text;
    for (int word = 0; word < 60; ++word) {
        text += L"Longish ";
    }
    LONG shortHeight = 0;
    Show(L"Really?", yesNo, 0, [&] {
        const RECT box = ScreenRectangleOf(WaitForBox());
        shortHeight = box.bottom - box.top;
        End();
    });
    Show(text, yesNo, 0, [&] {
        const RECT box = ScreenRectangleOf(WaitForBox());
        EXPECT_GE(box.left, 0);
        EXPECT_GE(box.top, 0);
        EXPECT_LE(box.right, GetSystemMetrics(SM_CXSCREEN));
        EXPECT_LE(box.bottom, GetSystemMetrics(SM_CYSCREEN));
        EXPECT_GT(box.bottom - box.top, shortHeight);
        End();
    });
}

TEST_F(MessageBoxLook, AWordLongerThanALineIsBrokenAndLosesNothing) {
    const std::wstring path = L"\\My_Documents\\" + std::wstring(150, L'm') + L"\\end.txt";
    const DrawnTexts drawn;
    Show(path, {IDS_BUTTON_OK}, 0, [&] {
        const HWND box = WaitForBox();
        EXPECT_TRUE(WaitFor([&] { return drawn.Has(L"Ok"); }));
        std::string all = drawn.All();
        std::erase(all, '\n');
        EXPECT_NE(all.find(std::string(path.begin(), path.end())), std::string::npos) << all;
        EXPECT_FALSE(drawn.Has(path));
        const RECT place = ScreenRectangleOf(box);
        EXPECT_GE(place.left, 0);
        EXPECT_LE(place.right, GetSystemMetrics(SM_CXSCREEN));
        End();
    });
}

TEST_F(MessageBoxLook, AnEndlessMessageStillHasItsButtons) {
    const std::wstring text(6000, L'W');
    EXPECT_EQ(Show(text + L" " + text, yesNo, 0,
                   [&] {
                       const HWND box = WaitForBox();
                       const RECT area = ScreenRectangleOf(box);
                       EXPECT_GE(area.top, 0);
                       EXPECT_LE(area.bottom, GetSystemMetrics(SM_CYSCREEN));
                       const RECT bar = ScreenRectangleOf(Bar(box));
                       EXPECT_LE(bar.bottom, area.bottom);
                       End(Finger().Tap(ButtonPoint(box, 1, 2)));
                   }),
              IDS_BUTTON_NO);
}

TEST_F(MessageBoxLook, CaptionTextAndButtonsAreSeen) {
    Show(L"Tom & Jerry\tIiI", yesNo, 0, [&] {
        const HWND box = WaitForBox();
        RECT client = {};
        GetClientRect(box, &client);
        const POINT corner = OnScreen(box, 0, 0);
        OffsetRect(&client, corner.x, corner.y);
        const Picture picture = Picture::OfScreen(client);
        EXPECT_EQ(picture.At(1, 1), ui::barColor);
        int caption = 0;
        while (picture.At(1, caption) == ui::barColor) {
            ++caption;
        }
        EXPECT_TRUE(Has(picture, RECT{0, 0, picture.Width(), caption}, RGB(255, 255, 255)));
        EXPECT_EQ(picture.At(1, caption), GetSysColor(COLOR_WINDOW));
        const RECT bar = ScreenRectangleOf(Bar(box));
        const int barTop = bar.top - client.top;
        const RECT middle = {0, caption, picture.Width(), barTop};
        EXPECT_TRUE(Has(picture, middle, GetSysColor(COLOR_WINDOWTEXT)));
        // The bar is the full width, half its height above the bottom.
        EXPECT_EQ(bar.left, client.left);
        EXPECT_EQ(bar.right, client.right);
        EXPECT_EQ(client.bottom - bar.bottom, (bar.bottom - bar.top) / 2);
        End();
    });
}

TEST_F(MessageBoxLook, AnAmpersandIsShownAsItIs) {
    LONG plain = 0;
    LONG ampersand = 0;
    const std::wstring wide = L"WWWWW";
    Show(wide + L"&&", {IDS_BUTTON_OK}, 0, [&] {
        const RECT box = ScreenRectangleOf(WaitForBox());
        ampersand = box.right - box.left;
        End();
    });
    Show(wide, {IDS_BUTTON_OK}, 0, [&] {
        const RECT box = ScreenRectangleOf(WaitForBox());
        plain = box.right - box.left;
        End();
    });
    const platform::WindowDC dc(nullptr);
    const platform::Selected font(dc, ui::Fonts().Base());
    SIZE both = {};
    GetTextExtentPoint32W(dc, L"&&", 2, &both);
    EXPECT_EQ(ampersand - plain, both.cx);
}

TEST_F(MessageBoxLook, TheBarFollowsTheBoxsSize) {
    Show(L"Really?", yesNo, 0, [&] {
        const HWND box = WaitForBox();
        RECT area = ScreenRectangleOf(box);
        MoveWindow(box, 0, 0, area.right - area.left - 20, area.bottom - area.top - 10, TRUE);
        RECT client = {};
        GetClientRect(box, &client);
        const RECT bar = ScreenRectangleOf(Bar(box));
        EXPECT_EQ(bar.right - bar.left, client.right);
        const LONG height = bar.bottom - bar.top;
        EXPECT_EQ(OnScreen(box, 0, client.bottom).y - bar.bottom, height / 2);
        End();
    });
}

TEST_F(MessageBoxLook, TheFocusOnTheBoxPassesToItsButtons) {
    Show(L"Really?", yesNo, 1, [&] {
        const HWND box = WaitForBox();
        SendMessageW(box, WM_SETFOCUS, 0, 0);
        GUITHREADINFO info = {};
        info.cbSize = sizeof info;
        GetGUIThreadInfo(GetWindowThreadProcessId(box, nullptr), &info);
        EXPECT_EQ(info.hwndFocus, Bar(box));
        End();
    });
}

TEST_F(MessageBoxLook, ShowingItGivesBackEveryObject) {
    // The platform tells the owner when the box waits for input.
    owner.answer = [&](UINT message, WPARAM, LPARAM lParam, LRESULT*) {
        if (message == WM_ENTERIDLE) {
            const auto box = reinterpret_cast<HWND>(lParam);
            UpdateWindow(box);
            PostMessageW(box, WM_COMMAND, IDS_BUTTON_OK, 0);
        }
        return false;
    };
    const auto round = [&] {
        ASSERT_EQ(ui::ShowError(owner.Handle(), L"No such file."), IDS_BUTTON_OK);
    };
    for (int count = 0; count < 10; ++count) {
        round();
    }
    const Held before = CountHeld();
    const size_t bytes = BytesOnAllHeaps();
    for (int count = 0; count < 200; ++count) {
        round();
    }
    EXPECT_EQ(CountHeld(), before);
    EXPECT_LT(BytesOnAllHeaps(), bytes + 3200);
}
