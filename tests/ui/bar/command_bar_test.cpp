#include "res/resource.h"
#include "tests/support/platform_hook.h"
#include "tests/ui/bar/sample_bar.h"
#include "ui/paint/theme.h"
#include "ui/popup/popup_menu.h"

using namespace test;

namespace {

const std::vector<Item> twoCommands = {{10, L"One"}, {11, L"Two"}};

HWND WINAPI NoParent(HWND) {
    return nullptr;
}
BOOL WINAPI NoClient(HWND, RECT*) {
    return FALSE;
}
BOOL WINAPI NotOnScreen(HWND, POINT*) {
    return FALSE;
}

// Fails so many times after so many reads.
int reads = 0;
int failures = 0;
BOOL(WINAPI* readItem)(HMENU, UINT, BOOL, MENUITEMINFOW*) = nullptr;
BOOL WINAPI NoItem(HMENU menu, UINT position, BOOL byPosition, MENUITEMINFOW* info) {
    if (reads-- <= 0 && failures-- > 0) {
        return FALSE;
    }
    return readItem(menu, position, byPosition, info);
}
BOOL WINAPI NoChange(HMENU, UINT, BOOL, const MENUITEMINFOW*) {
    return FALSE;
}

// What was waited for; the first wait is woken by the lifted finger, if one is.
struct Waited {
    DWORD handles;
    DWORD milliseconds;
    DWORD mask;
    DWORD flags;
};
std::vector<Waited> waits;
DWORD(WINAPI* waitForInput)(DWORD, const HANDLE*, DWORD, DWORD, DWORD) = nullptr;
DWORD WINAPI NoteWait(DWORD count, const HANDLE* handles, DWORD milliseconds, DWORD mask,
                      DWORD flags) {
    waits.push_back(Waited{count, milliseconds, mask, flags});
    return waitForInput(count, handles, milliseconds, mask, flags);
}

// A clock that goes on by so much each time somebody looks at it.
constexpr DWORD clockStep = 100;
DWORD clockTime = 0;
DWORD WINAPI SteppingClock() {
    return clockTime += clockStep;
}
// The finger is lifted while the bar waits.
HWND pressedBar = nullptr;
DWORD WINAPI LiftMeanwhile(DWORD count, const HANDLE*, DWORD milliseconds, DWORD mask,
                           DWORD flags) {
    waits.push_back(Waited{count, milliseconds, mask, flags});
    PostMessageW(pressedBar, WM_LBUTTONUP, 0, 0);
    return WAIT_OBJECT_0;
}

class CommandBarTap : public BarTest {};
class CommandBarMenu : public BarTest {};
class CommandBarPress : public BarTest {
 protected:
    // Presses a button for longer than a quick tap; the bar follows the finger from then on.
    void PressLong(unsigned button) {
        EXPECT_TRUE(Finger().Down(ButtonPoint(button)).Wait(380).Play());
        EXPECT_TRUE(WaitFor([&] { return BarHasCapture(); }));
        EXPECT_TRUE(ShowsPressed(button));
    }
    void ExpectCancelled() {
        EXPECT_TRUE(WaitFor([&] { return !BarHasCapture(); }));
        EXPECT_TRUE(ShowsPressed(0, false));
        EXPECT_TRUE(ShowsPressed(1, false));
    }
    void Lift() { input.Play(Finger().Up()); }
};

}  // namespace

TEST_F(CommandBarTap, SendsTheItemsCommandToTheParent) {
    Open(twoCommands);
    Run([&] { input.Play(Finger().Tap(ButtonPoint(1))); });
    EXPECT_EQ(Commands(), (std::vector<Command>{CommandOf(11)}));
    Run([&] { input.Play(Finger().Tap(ButtonPoint(0))); });
    EXPECT_EQ(Commands(), (std::vector<Command>{CommandOf(11), CommandOf(10)}));
}

TEST_F(CommandBarTap, AQuickOneIsNotTracked) {
    Open(twoCommands);
    Run([&] {
        Finger().Down(ButtonPoint(0)).Wait(60).Play();
        EXPECT_FALSE(BarHasCapture());
        EXPECT_FALSE(Has(PictureOfButton(0), ui::barPressedColor));
        input.Play(Finger().Up());
    });
    EXPECT_EQ(Commands(), (std::vector<Command>{CommandOf(10)}));
}

TEST_F(CommandBarTap, AQuickOneIsWaitedForAsLongAsItMayStillLast) {
    Open(twoCommands);
    {
        const PlatformHook<decltype(LiftMeanwhile)> wait("MsgWaitForMultipleObjectsEx",
                                                         LiftMeanwhile);
        const PlatformHook<decltype(SteppingClock)> clock("GetTickCount", SteppingClock);
        pressedBar = bar.Handle();
        waits.clear();
        SendMessageW(bar.Handle(), WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 5));
    }
    ASSERT_EQ(waits.size(), 1u);
    EXPECT_EQ(waits[0].milliseconds, 350 - clockStep);
    EXPECT_EQ(waits[0].mask, static_cast<DWORD>(QS_MOUSEBUTTON));
}

TEST_F(CommandBarTap, AQuickOneCountsWhereItBegan) {
    Open(twoCommands);
    Run([&] { input.Play(Finger().Down(ButtonPoint(0)).MoveTo(ButtonPoint(1)).Wait(60).Up()); });
    EXPECT_EQ(Commands(), (std::vector<Command>{CommandOf(10)}));
}

TEST_F(CommandBarTap, ADisabledButtonDoesNothing) {
    Open({{10, L"One", MF_STRING | MF_GRAYED}, {11, L"Two"}});
    Run([&] { input.Play(Finger().Tap(ButtonPoint(0))); });
    EXPECT_TRUE(Commands().empty());
}

TEST_F(CommandBarTap, ABarWithOneItemLeavesItsRightHalfEmpty) {
    Open({{10, L"One"}});
    Run([&] {
        input.Play(Finger().Tap(ButtonPoint(1)));
        EXPECT_TRUE(Commands().empty());
        EXPECT_FALSE(Has(PictureOfButton(1), ui::barTextColor));
        EXPECT_TRUE(Has(PictureOfButton(0), ui::barTextColor));
        input.Play(Finger().Tap(ButtonPoint(0)));
    });
    EXPECT_EQ(Commands(), (std::vector<Command>{CommandOf(10)}));
}

TEST_F(CommandBarTap, TheRemainderAtTheRightEdgeIsNoButton) {
    Open({{10, L"One"},
          {11, L"Two"},
          {12, L"Three"},
          {13, L"Four"},
          {14, L"Five"},
          {15, L"Six"},
          {16, L"Seven"}});
    const RECT area = ScreenRectangleOf(bar.Handle());
    ASSERT_NE(ui::Width(area) % 7, 0);
    Run([&] {
        input.Play(Finger().Tap(area.right - 1, area.top + 20));
        EXPECT_TRUE(Commands().empty());
        input.Play(Finger().Tap(ButtonPoint(6)));
    });
    EXPECT_EQ(Commands(), (std::vector<Command>{CommandOf(16)}));
}

TEST_F(CommandBarTap, WithoutAParentOrAPlaceNothingHappens) {
    Open({{10, L"One"}, {0, L"Menu", MF_STRING, {{20, L"First"}}}});
    {
        const PlatformHook parent("GetParent", NoParent);
        bar.ActivateButton(0);
    }
    {
        const PlatformHook client("GetClientRect", NoClient);
        bar.ActivateButton(1);
    }
    const PlatformHook screen("ClientToScreen", NotOnScreen);
    bar.ActivateButton(1);
    EXPECT_TRUE(Commands().empty());
    EXPECT_TRUE(Popups().empty());
    bar.ActivateButton(2);
    bar.ActivateButton(~0u);
}

TEST_F(CommandBarMenu, IsLoadedFromTheResources) {
    OpenWith(nullptr);
    EXPECT_TRUE(bar.LoadBar(IDR_DONE_CANCEL));
    EXPECT_EQ(bar.ButtonCount(), 2u);
    Run([&] { input.Play(Finger().Tap(ButtonPoint(1))); });
    EXPECT_EQ(Commands(), (std::vector<Command>{CommandOf(2)}));
    EXPECT_TRUE(bar.LoadBar(IDR_DONE));
    EXPECT_EQ(bar.ButtonCount(), 1u);
}

TEST_F(CommandBarMenu, AMissingOneLeavesTheBarAsItWasAndIsReported) {
    OpenWith(nullptr);
    EXPECT_FALSE(bar.LoadBar(9999));
    EXPECT_EQ(bar.ButtonCount(), 0u);
    Run([&] { input.Play(Finger().Tap(ButtonPoint(0))); });
    EXPECT_TRUE(Commands().empty());
    ASSERT_TRUE(bar.LoadBar(IDR_DONE_CANCEL));
    EXPECT_FALSE(bar.LoadBar(9999));
    EXPECT_EQ(bar.ButtonCount(), 2u);
    Run([&] { input.Play(Finger().Tap(ButtonPoint(1))); });
    EXPECT_EQ(Commands(), (std::vector<Command>{CommandOf(2)}));
}

TEST_F(CommandBarMenu, OneThatCannotBeReadLeavesTheBarAsItWas) {
    Open(twoCommands);
    const HMENU before = bar.Menu();
    {
        const PlatformHook<BOOL WINAPI(HMENU, UINT, BOOL, MENUITEMINFOW*)> hook("GetMenuItemInfoW",
                                                                                NoItem);
        failures = 1000;
        EXPECT_FALSE(bar.LoadBar(IDR_DONE));
        EXPECT_FALSE(bar.Cover(IDR_DONE));
    }
    {
        const PlatformHook<BOOL WINAPI(HMENU, UINT, BOOL, const MENUITEMINFOW*)> hook(
            "SetMenuItemInfoW", NoChange);
        EXPECT_FALSE(bar.LoadBar(IDR_DONE));
        EXPECT_FALSE(bar.Cover(IDR_DONE));
    }
    EXPECT_EQ(bar.Menu(), before);
    EXPECT_EQ(bar.ButtonCount(), 2u);
}

// The end of a menu is told by a failure as well.
TEST_F(CommandBarMenu, ALoadedOneHasAllItsButtonsThoughACallFails) {
    OpenWith(nullptr);
    const PlatformHook<BOOL WINAPI(HMENU, UINT, BOOL, MENUITEMINFOW*)> hook("GetMenuItemInfoW",
                                                                            NoItem);
    readItem = hook.Original();
    for (int call = 0; call < 9; ++call) {
        reads = call;
        failures = 1;
        ASSERT_TRUE(bar.LoadBar(IDR_DONE_CANCEL)) << call;
        EXPECT_EQ(bar.ButtonCount(), 2u) << call;
    }
}

TEST_F(CommandBarMenu, ACoveredOneComesBackThoughNothingCanBeRead) {
    Open(twoCommands);
    ASSERT_TRUE(bar.Cover(IDR_DONE));
    EXPECT_EQ(bar.ButtonCount(), 1u);
    ASSERT_TRUE(bar.Cover(IDR_DONE_CANCEL));
    {
        const PlatformHook<BOOL WINAPI(HMENU, UINT, BOOL, MENUITEMINFOW*)> hook("GetMenuItemInfoW",
                                                                                NoItem);
        reads = 0;
        failures = 1000;
        bar.Uncover();
    }
    Run([&] { input.Play(Finger().Tap(ButtonPoint(1))); });
    EXPECT_EQ(Commands(), (std::vector<Command>{CommandOf(11)}));
    bar.Uncover();
    EXPECT_EQ(bar.ButtonCount(), 2u);
}

TEST_F(CommandBarMenu, BelongsToTheBar) {
    const HMENU first = MakeMenu(twoCommands, false);
    OpenWith(first);
    const HMENU second = MakeMenu({{12, L"Three"}}, false);
    bar.SetMenu(second);
    EXPECT_FALSE(IsMenu(first));
    EXPECT_TRUE(IsMenu(second));
    EXPECT_EQ(bar.Menu(), second);
    const HMENU third = MakeMenu(twoCommands, false);
    {
        ui::CommandBar other;
        ASSERT_TRUE(other.Open(owner.Handle(), RECT{0, 0, 50, 20}));
        other.SetMenu(third);
    }
    EXPECT_FALSE(IsMenu(third));
}

TEST_F(CommandBarMenu, MayBeSetAgain) {
    const HMENU menu = MakeMenu(twoCommands, false);
    OpenWith(menu);
    bar.SetMenu(bar.Menu());
    EXPECT_TRUE(IsMenu(menu));
    EXPECT_EQ(bar.Menu(), menu);
    EXPECT_EQ(bar.ButtonCount(), 2u);
}

TEST_F(CommandBarMenu, SeparatorsAreNoButtons) {
    Open({{10, L"One"}, {0, nullptr, MF_SEPARATOR}, {11, L"Two"}});
    EXPECT_EQ(bar.ButtonCount(), 2u);
    Run([&] { input.Play(Finger().Tap(ButtonPoint(1))); });
    EXPECT_EQ(Commands(), (std::vector<Command>{CommandOf(11)}));
}

TEST_F(CommandBarPress, ALongOneShowsThePressAndActsWhenLifted) {
    Open(twoCommands);
    Run([&] {
        PressLong(1);
        EXPECT_TRUE(Commands().empty());
        EXPECT_FALSE(Has(PictureOfButton(0), ui::barPressedColor));
        Lift();
        ExpectCancelled();
    });
    EXPECT_EQ(Commands(), (std::vector<Command>{CommandOf(11)}));
}

TEST_F(CommandBarPress, SlidingToTheOtherButtonActivatesThatOne) {
    Open(twoCommands);
    Run([&] {
        PressLong(0);
        Finger().MoveTo(ButtonPoint(1)).Play();
        EXPECT_TRUE(ShowsPressed(1));
        EXPECT_TRUE(ShowsPressed(0, false));
        Lift();
    });
    EXPECT_EQ(Commands(), (std::vector<Command>{CommandOf(11)}));
}

TEST_F(CommandBarPress, SlidingOffTheBarCancels) {
    Open(twoCommands);
    Run([&] {
        PressLong(0);
        const POINT away = {ButtonPoint(0).x, ButtonPoint(0).y - 60};
        Finger().MoveTo(away).Play();
        ExpectCancelled();
        // Coming back does not take it up again.
        input.Play(Finger().MoveTo(ButtonPoint(0)).Wait(30).Up());
    });
    EXPECT_TRUE(Commands().empty());
}

TEST_F(CommandBarPress, SlidingOntoAnEmptySlotCancels) {
    Open({{10, L"One"}});
    Run([&] {
        PressLong(0);
        Finger().MoveTo(ButtonPoint(1)).Play();
        EXPECT_TRUE(WaitFor([&] { return !BarHasCapture(); }));
        Lift();
    });
    EXPECT_TRUE(Commands().empty());
}

TEST_F(CommandBarPress, EscapeCancels) {
    Open(twoCommands);
    Run([&] {
        PressLong(0);
        input.Play(Finger().Key("Escape"));
        ExpectCancelled();
        Lift();
    });
    EXPECT_TRUE(Commands().empty());
}

TEST_F(CommandBarPress, OtherKeysAreDispatchedMeanwhile) {
    Open(twoCommands);
    std::atomic<int> keys = 0;
    more = [&](UINT message, WPARAM wParam, LPARAM, LRESULT*) {
        keys += message == WM_KEYDOWN && wParam == 'A';
        return false;
    };
    Run([&] {
        PressLong(0);
        input.Play(Finger().Key("a"));
        EXPECT_EQ(keys, 1);
        EXPECT_TRUE(BarHasCapture());
        Lift();
    });
    EXPECT_EQ(Commands().size(), 1u);
}

TEST_F(CommandBarPress, ASystemKeyCancelsAndIsDispatched) {
    Open(twoCommands);
    std::atomic<int> keys = 0;
    more = [&](UINT message, WPARAM, LPARAM, LRESULT*) {
        keys += message == WM_SYSKEYDOWN;
        // No menu of the system's is to open.
        return message == WM_SYSKEYDOWN || message == WM_SYSKEYUP || message == WM_SYSCOMMAND;
    };
    Run([&] {
        PressLong(0);
        Finger().KeyDown("alt").Play();
        ExpectCancelled();
        Finger().KeyUp("alt").Play();
        Lift();
    });
    EXPECT_EQ(keys, 1);
    EXPECT_TRUE(Commands().empty());
}

TEST_F(CommandBarPress, TheRightButtonCancels) {
    Open(twoCommands);
    Run([&] {
        PressLong(0);
        mouse_event(MOUSEEVENTF_RIGHTDOWN, 0, 0, 0, 0);
        ExpectCancelled();
        mouse_event(MOUSEEVENTF_RIGHTUP, 0, 0, 0, 0);
        Lift();
    });
    EXPECT_TRUE(Commands().empty());
}

TEST_F(CommandBarPress, WaitsForAButtonOfTheMouseAtFirst) {
    Open(twoCommands);
    {
        // The test waits by another call.
        const PlatformHook wait("MsgWaitForMultipleObjectsEx", NoteWait);
        waitForInput = wait.Original();
        waits.clear();
        Run([&] {
            PressLong(0);
            Lift();
        });
    }
    ASSERT_FALSE(waits.empty());
    DWORD before = 351;
    for (const Waited& wait : waits) {
        EXPECT_EQ(wait.handles, 0u);
        EXPECT_LE(wait.milliseconds, before);
        EXPECT_EQ(wait.mask, static_cast<DWORD>(QS_MOUSEBUTTON));
        EXPECT_EQ(wait.flags, static_cast<DWORD>(MWMO_INPUTAVAILABLE));
        before = wait.milliseconds;
    }
}

TEST_F(CommandBarPress, ASecondPressCancels) {
    Open(twoCommands);
    Run([&] {
        PressLong(0);
        // A finger cannot press again before it is lifted, but what the system sends may be lost.
        PostMessageW(bar.Handle(), WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 5));
        ExpectCancelled();
        Lift();
    });
    EXPECT_TRUE(Commands().empty());
}

TEST_F(CommandBarPress, TheRightButtonsReleaseActsLikeALift) {
    Open(twoCommands);
    Run([&] {
        PressLong(1);
        PostMessageW(bar.Handle(), WM_RBUTTONUP, 0, MAKELPARAM(5, 5));
        ExpectCancelled();
        EXPECT_EQ(Commands(), (std::vector<Command>{CommandOf(11)}));
        Lift();
    });
    EXPECT_EQ(Commands(), (std::vector<Command>{CommandOf(11)}));
}

TEST_F(CommandBarPress, TimersGoOnMeanwhile) {
    Open(twoCommands);
    std::atomic<int> ticks = 0;
    more = [&](UINT message, WPARAM, LPARAM, LRESULT*) {
        ticks += message == WM_TIMER;
        return false;
    };
    SetTimer(owner.Handle(), 5, 20, nullptr);
    Run([&] {
        PressLong(0);
        const int before = ticks;
        EXPECT_TRUE(WaitFor([&] { return ticks >= before + 5; }));
        Lift();
    });
    KillTimer(owner.Handle(), 5);
}

TEST_F(CommandBarPress, LosingTheCaptureCancels) {
    Open(twoCommands);
    Run([&] {
        PressLong(0);
        SendMessageW(bar.Handle(), WM_CANCELMODE, 0, 0);
        input.Play(Finger().Key("a"));
        ExpectCancelled();
        Lift();
    });
    EXPECT_TRUE(Commands().empty());
}

TEST_F(CommandBarPress, AQuitIsPostedAgain) {
    Open(twoCommands);
    const DWORD program = GetCurrentThreadId();
    int code = 0;
    WhileUser(
        [&] {
            PressLong(0);
            PostThreadMessageW(program, WM_QUIT, 9, 0);
        },
        [&] {
            MSG message;
            while (GetMessageW(&message, nullptr, 0, 0) > 0) {
                DispatchMessageW(&message);
            }
            code = static_cast<int>(message.wParam);
        });
    EXPECT_EQ(code, 9);
    EXPECT_TRUE(Commands().empty());
    Run([&] { Lift(); });
}

TEST_F(CommandBarPress, ADestroyedBarEndsIt) {
    Open(twoCommands);
    more = [&](UINT message, WPARAM, LPARAM, LRESULT*) {
        if (message == WM_APP + 1) {
            bar.Destroy();
        }
        return false;
    };
    const DWORD program = GetCurrentThreadId();
    const HWND parent = owner.Handle();
    bool left = false;
    WhileUser(
        [&] {
            PressLong(0);
            PostMessageW(parent, WM_APP + 1, 0, 0);
            // Whoever takes messages now takes this one.
            PostMessageW(parent, WM_APP + 2, 0, 0);
            WaitFor([&] { return !IsWindow(bar.Handle()); });
            Finger().Up().Play();
            PostThreadMessageW(program, WM_QUIT, 0, 0);
        },
        [&] {
            MSG message;
            while (GetMessageW(&message, nullptr, 0, 0) > 0) {
                left = left || message.message == WM_APP + 2;
                DispatchMessageW(&message);
            }
        });
    EXPECT_TRUE(left) << "the press went on without its bar";
    EXPECT_TRUE(Commands().empty());
}
