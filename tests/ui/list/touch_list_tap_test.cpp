#include "tests/support/double_click.h"
#include "tests/support/keyboard.h"
#include "tests/support/platform_hook.h"
#include "tests/ui/list/sample_list.h"

using namespace test;
using namespace ui;

namespace {

// What other programs and other parts of this one count on.
static_assert(GestureNone == 0 && GestureTap == 2 && GestureHold == 3 && GestureDrag == 4);
static_assert(WM_QUERYDRAGTRACKER == 0x8001);

RECT hookedMonitor = {};
BOOL WINAPI OtherMonitor(HMONITOR, MONITORINFO* monitor) {
    monitor->rcMonitor = hookedMonitor;
    return hookedMonitor.right > 0;
}

DWORD WINAPI WaitTimesOut(DWORD, const HANDLE*, DWORD, DWORD, DWORD) {
    return WAIT_TIMEOUT;
}
DWORD WINAPI WaitFails(DWORD, const HANDLE*, DWORD, DWORD, DWORD) {
    return WAIT_FAILED;
}

DWORD WINAPI WaitLosesTheCapture(DWORD, const HANDLE*, DWORD, DWORD, DWORD) {
    ReleaseCapture();
    return WAIT_TIMEOUT;
}

// A clock of the test's own; every wait is woken by something that is no input after its time.
struct WaitAsked {
    DWORD handles;
    bool anyHandle;
    DWORD milliseconds;
    DWORD mask;
    DWORD flags;
};
DWORD testTime = 0;
std::vector<WaitAsked> waits;
std::vector<DWORD> waited;
// The window whose press is lifted after the last of the waits; null for none.
HWND liftedAfterwards = nullptr;
DWORD WINAPI TestTime() {
    return testTime;
}
DWORD WINAPI WaitWakesEarly(DWORD count, const HANDLE* handles, DWORD milliseconds, DWORD mask,
                            DWORD flags) {
    waits.push_back(WaitAsked{count, handles != nullptr, milliseconds, mask, flags});
    testTime += waited.at(waits.size() - 1);
    if (liftedAfterwards && waits.size() == waited.size()) {
        PostMessageW(liftedAfterwards, WM_LBUTTONUP, 0, 0);
    }
    return WAIT_OBJECT_0;
}

// The finger leaves the threshold and is lifted before anybody looks.
HWND pressed = nullptr;
DWORD WINAPI WaitForAFlick(DWORD, const HANDLE*, DWORD, DWORD, DWORD) {
    POINT finger = {};
    GetCursorPos(&finger);
    ScreenToClient(pressed, &finger);
    const LPARAM place = MAKELPARAM(finger.x, finger.y + 200);
    PostMessageW(pressed, WM_MOUSEMOVE, MK_LBUTTON, place);
    PostMessageW(pressed, WM_LBUTTONUP, 0, place);
    return WAIT_OBJECT_0;
}
DWORD WINAPI WaitForAFarMove(DWORD, const HANDLE*, DWORD, DWORD, DWORD) {
    PostMessageW(pressed, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(5, 200));
    return WAIT_OBJECT_0;
}

// Moves far just after the second look for a lifted finger, the last one before the wait.
decltype(PeekMessageW)* peekMessage = nullptr;
int looks = 0;
BOOL WINAPI MoveBehindTheLook(MSG* message, HWND window, UINT first, UINT last, UINT remove) {
    const BOOL found = peekMessage(message, window, first, last, remove);
    if (first == WM_LBUTTONDOWN && !found && ++looks == 2) {
        mouse_event(MOUSEEVENTF_MOVE, 0, 150, 0, 0);
    }
    return found;
}

// Lifts the finger just after the first look for it, and presses it elsewhere.
BOOL WINAPI LiftBehindTheLook(MSG* message, HWND window, UINT first, UINT last, UINT remove) {
    const BOOL found = peekMessage(message, window, first, last, remove);
    if (first == WM_LBUTTONDOWN && !found && ++looks == 1) {
        PostMessageW(pressed, WM_LBUTTONUP, 0, MAKELPARAM(5, 5));
        PostMessageW(pressed, WM_MOUSEMOVE, 0, MAKELPARAM(5, 200));
    }
    return found;
}

// Something comes after the second look at what waits, and before it is asked whether anything
// does.
decltype(GetQueueStatus)* getQueueStatus = nullptr;
int questions = 0;
DWORD WINAPI PostBeforeTheQuestion(UINT flags) {
    if (++questions == 2) {
        PostMessageW(pressed, WM_APP, 0, 0);
    }
    return getQueueStatus(flags);
}

// A tracker that does not want the drag after all.
class RefusingTracker final : public DragTracker {
 public:
    bool Begin(HWND) override { return calls += "begin ", false; }
    bool Start(int x, int y) override {
        EXPECT_EQ(x, 5);
        EXPECT_EQ(y, 6);
        calls += "start ";
        return false;
    }
    void Destroy() override { calls += "destroy "; }
    bool Move(int, int) override { return calls += "move ", true; }
    void Release() override { calls += "release "; }
    std::string calls;
};

using Taps = std::vector<std::pair<unsigned, GestureResult>>;

class TouchListTap : public ListTest {};
class QuickPairs : public ListTest {
 private:
    const LongDoubleClick pairs_;
};

class DragThresholdTest : public ListTest {
 protected:
    DragThreshold On(LONG monitorWidth, LONG monitorHeight) {
        hookedMonitor = RECT{100, 50, 100 + monitorWidth, 50 + monitorHeight};
        const PlatformHook hook("GetMonitorInfoW", OtherMonitor);
        return DragThreshold::ForWindow(owner.Handle());
    }
    // Presses, moves by a distance and lifts.
    void PressAndMove(int x, int y) {
        const POINT start = At(60, 100);
        Run([&] {
            // A finger that is lifted before its move is looked at has tapped.
            input.Play(
                Finger().Down(start).Followed().MoveTo(start.x + x, start.y + y).Taken().Up());
        });
    }
};

using DragThresholds = DragThresholdTest;

class GestureTracking : public ListTest {
 protected:
    // A press where the finger is: what the window learns of it as it opens is no move.
    GestureInfo PressAtTheFinger() const {
        POINT finger = {};
        GetCursorPos(&finger);
        ScreenToClient(owner.Handle(), &finger);
        GestureInfo info;
        info.startX = finger.x;
        info.startY = finger.y;
        return info;
    }
    // What the recognizer makes of a press at this time that rests for these times and is lifted
    // then, if at all.
    GestureResult AfterWaits(DWORD start, const std::vector<DWORD>& milliseconds, bool lifted) {
        GestureInfo info = PressAtTheFinger();
        testTime = start;
        waited = milliseconds;
        waits.clear();
        liftedAfterwards = lifted ? owner.Handle() : nullptr;
        const PlatformHook time("GetTickCount", TestTime);
        const PlatformHook wait("MsgWaitForMultipleObjectsEx", WaitWakesEarly);
        const GestureResult result = TrackGesture(owner.Handle(), info, gestureTimeout);
        MSG message;
        while (PeekMessageW(&message, owner.Handle(), WM_MOUSEFIRST, WM_MOUSELAST, PM_REMOVE)) {
        }
        return result;
    }
    // Runs the recognizer for a press that the script makes.
    GestureResult Track(const std::function<void()>& script, GestureInfo& info) {
        GestureResult result = GestureIdle;
        owner.answer = [&](UINT message, WPARAM, LPARAM lParam, LRESULT*) {
            if (message == WM_LBUTTONDOWN) {
                const POINT point = PointOf(lParam);
                info.startX = point.x;
                info.startY = point.y;
                result = TrackGesture(owner.Handle(), info, 60000);
                captureAfter = GetCapture();
                return true;
            }
            return false;
        };
        Run(script);
        return result;
    }
    void OpenOwner() {
        ASSERT_TRUE(owner.Open());
        ASSERT_TRUE(PumpUntil([&] { return GetForegroundWindow() == owner.Handle(); }));
    }
    HWND captureAfter = nullptr;
};

}  // namespace

TEST_F(TouchListTap, SelectsTheRowAndTakesTheFocus) {
    Open(EqualHeights(20, 40));
    SetFocus(owner.Handle());
    Run([&] { input.Play(Finger().Tap(At(60, 90))); });
    EXPECT_EQ(list.taps, (Taps{{2, GestureTap}}));
    EXPECT_EQ(list.GetSelection(), 2u);
    EXPECT_EQ(GetFocus(), list.Handle());
    EXPECT_EQ(SelectionNotices().size(), 2u);
}

TEST_F(TouchListTap, APressOfMoreThanHalfASecondIsAHoldAndSelectsLikeATap) {
    Open(EqualHeights(20, 40));
    Run([&] { input.Play(Finger().Down(At(60, 90)).Wait(600).Up()); });
    EXPECT_EQ(list.taps, (Taps{{2, GestureHold}}));
    EXPECT_EQ(list.GetSelection(), 2u);
}

TEST_F(TouchListTap, AHoldIsDecidedWhenTheFingerIsLifted) {
    Open(EqualHeights(20, 40));
    Run([&] {
        Finger().Down(At(60, 90)).Wait(800).Play();
        EXPECT_TRUE(list.taps.empty());
        input.Play(Finger().Up());
    });
    EXPECT_EQ(list.taps, (Taps{{2, GestureHold}}));
}

TEST_F(TouchListTap, SmallMovesAreStillATapOnTheRowFirstTouched) {
    Open(EqualHeights(20, 40));
    Run([&] { input.Play(Finger().Down(At(60, 85)).Wait(20).MoveTo(At(68, 77)).Wait(20).Up()); });
    EXPECT_EQ(list.taps, (Taps{{2, GestureTap}}));
}

TEST_F(TouchListTap, BelowTheRowsTouchesNoneButTakesTheFocus) {
    Open({40, 40});
    SetFocus(owner.Handle());
    Run([&] { input.Play(Finger().Tap(At(60, 200))); });
    EXPECT_TRUE(list.taps.empty());
    EXPECT_EQ(GetFocus(), list.Handle());
}

TEST_F(TouchListTap, CountsFromTheTopRow) {
    Open(EqualHeights(20, 40));
    list.SetTopIndex(5);
    Run([&] { input.Play(Finger().Tap(At(60, 90))); });
    EXPECT_EQ(list.taps, (Taps{{7, GestureTap}}));
}

TEST_F(TouchListTap, AVetoKeepsTheOldSelection) {
    Open(EqualHeights(20, 40));
    list.SetSelection(1);
    veto = true;
    Run([&] { input.Play(Finger().Tap(At(60, 90))); });
    EXPECT_EQ(list.GetSelection(), 1u);
    EXPECT_EQ(Notices().back(), (Notice{-100, 2, 1}));
}

TEST_F(TouchListTap, OutsideTheClientAreaStartsNothing) {
    Open(EqualHeights(20, 40));
    SetFocus(owner.Handle());
    SendMessageW(list.Handle(), WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(width, 10));
    SendMessageW(list.Handle(), WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(10, -1));
    EXPECT_EQ(GetFocus(), owner.Handle());
}

TEST_F(QuickPairs, TheSecondTapDoesNothingWhereTheFirstOneHasOpenedSomething) {
    Open(EqualHeights(20, 40));
    list.tapsOpen = true;
    Run([&] { input.Play(Finger().Tap(At(60, 90)).Tap(At(60, 90))); });
    EXPECT_EQ(list.taps, (Taps{{2, GestureTap}}));
    // A third one is a first one again.
    Run([&] { input.Play(Finger().Tap(At(60, 170)).Tap(At(60, 170)).Tap(At(60, 170))); });
    EXPECT_EQ(list.taps, (Taps{{2, GestureTap}, {4, GestureTap}, {4, GestureTap}}));
}

TEST_F(QuickPairs, BothTapsCountWhereTheyOpenNothing) {
    Open(EqualHeights(20, 40));
    Run([&] { input.Play(Finger().Tap(At(60, 79)).Tap(At(60, 80))); });
    EXPECT_EQ(list.taps, (Taps{{1, GestureTap}, {2, GestureTap}}));
}

TEST_F(QuickPairs, AHoldCountsAfterATapThatHasOpenedSomething) {
    Open(EqualHeights(20, 40));
    list.tapsOpen = true;
    Run([&] { input.Play(Finger().Tap(At(60, 90)).Hold(At(60, 90))); });
    EXPECT_EQ(list.taps, (Taps{{2, GestureTap}, {2, GestureHold}}));
    EXPECT_EQ(list.GetSelection(), 2u);
}

TEST_F(QuickPairs, ATapCountsAfterAFlick) {
    Open(EqualHeights(20, 40));
    list.tapsOpen = true;
    const POINT start = At(60, 250);
    Run([&] {
        // A finger that has been lifted before its move is looked at has tapped.
        Finger().Down(start).Play();
        EXPECT_TRUE(WaitFor([] { return LookAtKeyboard().captured; }));
        list.ForgetFrames();
        Finger().MoveTo(start.x, start.y - 150).Play();
        EXPECT_TRUE(WaitFor([&] { return list.LastFrame().top != noRow; }));
        input.Play(Finger().Up().Tap(start));
    });
    ASSERT_GT(list.GetTopIndex(), 0u);
    ASSERT_EQ(list.taps.size(), 1u);
    EXPECT_EQ(list.taps[0].second, GestureTap);
}

TEST_F(DragThresholds, AreTwentiethsOfTheMonitor) {
    Open({40});
    EXPECT_EQ(On(240, 320).horizontal, 12);
    EXPECT_EQ(On(240, 320).vertical, 16);
    EXPECT_EQ(On(480, 640).horizontal, 24);
    EXPECT_EQ(On(480, 640).vertical, 32);
    EXPECT_EQ(On(799, 479).horizontal, 39);
    EXPECT_EQ(On(799, 479).vertical, 23);
}

TEST_F(DragThresholds, AreThirtyWhenTheMonitorCannotBeRead) {
    Open({40});
    hookedMonitor = RECT{};
    const PlatformHook hook("GetMonitorInfoW", OtherMonitor);
    EXPECT_EQ(DragThreshold::ForWindow(owner.Handle()).horizontal, 30);
    EXPECT_EQ(DragThreshold::ForWindow(owner.Handle()).vertical, 30);
}

TEST_F(DragThresholds, ThirteenPixelsSidewaysAreADragOnASmallScreen) {
    Open(EqualHeights(20, 40));
    hookedMonitor = RECT{0, 0, 240, 320};
    const PlatformHook hook("GetMonitorInfoW", OtherMonitor);
    PressAndMove(13, 0);
    EXPECT_TRUE(list.taps.empty());
    PressAndMove(12, 0);
    EXPECT_EQ(list.taps.size(), 1u);
}

TEST_F(DragThresholds, SeventeenPixelsUprightAreADragOnASmallScreen) {
    Open(EqualHeights(20, 40));
    hookedMonitor = RECT{0, 0, 240, 320};
    const PlatformHook hook("GetMonitorInfoW", OtherMonitor);
    PressAndMove(0, -17);
    EXPECT_TRUE(list.taps.empty());
    PressAndMove(0, 16);
    EXPECT_EQ(list.taps.size(), 1u);
}

TEST_F(DragThresholds, TheSameDistanceIsATapOnALargerScreen) {
    Open(EqualHeights(20, 40));
    hookedMonitor = RECT{0, 0, 480, 640};
    const PlatformHook hook("GetMonitorInfoW", OtherMonitor);
    PressAndMove(13, 0);
    EXPECT_EQ(list.taps.size(), 1u);
}

TEST_F(GestureTracking, ATapTellsThePlaceAndGivesTheCaptureBack) {
    OpenOwner();
    GestureInfo info;
    const GestureResult result = Track([&] { input.Play(Finger().Tap(50, 60)); }, info);
    EXPECT_EQ(result, GestureTap);
    EXPECT_EQ(info.result, GestureTap);
    EXPECT_EQ(info.startX, 50);
    EXPECT_EQ(info.startY, 60);
    EXPECT_EQ(captureAfter, nullptr);
}

TEST_F(GestureTracking, TheLiftIsLeftInTheQueue) {
    OpenOwner();
    GestureInfo info;
    const LONG before = InputTaken::Count(WM_LBUTTONUP);
    LONG during = before;
    owner.answer = [&](UINT message, WPARAM, LPARAM, LRESULT*) {
        if (message == WM_LBUTTONDOWN) {
            TrackGesture(owner.Handle(), info, 60000);
            during = InputTaken::Count(WM_LBUTTONUP);
        }
        return false;
    };
    Run([&] { input.Play(Finger().Tap(50, 60)); });
    EXPECT_EQ(during, before);
    EXPECT_EQ(InputTaken::Count(WM_LBUTTONUP), before + 1);
}

TEST_F(GestureTracking, ADragTellsTheLastPoint) {
    OpenOwner();
    GestureInfo info;
    const GestureResult result = Track(
        [&] { input.Play(Finger().Down(50, 60).Wait(30).MoveTo(55, 150).Wait(150).Up()); }, info);
    EXPECT_EQ(result, GestureDrag);
    EXPECT_EQ(info.x, 55);
    EXPECT_EQ(info.y, 150);
    EXPECT_EQ(captureAfter, nullptr);
}

TEST_F(GestureTracking, AnotherButtonEndsThePressAsWell) {
    OpenOwner();
    GestureInfo info;
    const GestureResult result = Track(
        [&] {
            Finger().Down(50, 60).Wait(30).Play();
            mouse_event(MOUSEEVENTF_RIGHTDOWN, 0, 0, 0, 0);
            WaitFor([&] { return info.result != GestureNone; });
            mouse_event(MOUSEEVENTF_RIGHTUP, 0, 0, 0, 0);
            input.Play(Finger().Up());
        },
        info);
    EXPECT_EQ(result, GestureTap);
}

TEST_F(GestureTracking, ALostCaptureIsNoGesture) {
    OpenOwner();
    GestureInfo info;
    info.result = GestureTap;
    const LONG before = InputTaken::Count(WM_LBUTTONDOWN);
    const GestureResult result = Track(
        [&] {
            Finger().Down(50, 60).Wait(30).Play();
            WaitFor([&] { return InputTaken::Count(WM_LBUTTONDOWN) > before; });
            SendNotifyMessageW(owner.Handle(), WM_CANCELMODE, 0, 0);
            // Nothing else need happen.
            EXPECT_TRUE(WaitFor([&] { return info.result == GestureNone; }));
            input.Play(Finger().Up());
        },
        info);
    EXPECT_EQ(result, GestureNone);
    EXPECT_EQ(info.result, GestureNone);
}

TEST_F(GestureTracking, AWaitThatTimesOutIsAHold) {
    OpenOwner();
    GestureInfo info = PressAtTheFinger();
    const PlatformHook wait("MsgWaitForMultipleObjectsEx", WaitTimesOut);
    EXPECT_EQ(TrackGesture(owner.Handle(), info, 60000), GestureHold);
    EXPECT_EQ(GetCapture(), nullptr);
}

TEST_F(GestureTracking, AWaitThatTimesOutWithoutTheCaptureIsNoGesture) {
    OpenOwner();
    GestureInfo info = PressAtTheFinger();
    const PlatformHook wait("MsgWaitForMultipleObjectsEx", WaitLosesTheCapture);
    EXPECT_EQ(TrackGesture(owner.Handle(), info, 60000), GestureNone);
}

TEST_F(GestureTracking, AWaitThatFailsIsNoGesture) {
    OpenOwner();
    GestureInfo info = PressAtTheFinger();
    const PlatformHook wait("MsgWaitForMultipleObjectsEx", WaitFails);
    EXPECT_EQ(TrackGesture(owner.Handle(), info, 60000), GestureNone);
    EXPECT_EQ(StartDrag(owner.Handle(), info.startX, info.startY), GestureIdle);
}

TEST_F(GestureTracking, APressIsFollowedForItsTimeAtTheMost) {
    OpenOwner();
    EXPECT_EQ(AfterWaits(1000, {40, 59959, 1}, false), GestureHold);
    ASSERT_EQ(waits.size(), 3u);
    EXPECT_EQ(waits[0].milliseconds, 60000u);
    EXPECT_EQ(waits[1].milliseconds, 59960u);
    EXPECT_EQ(waits[2].milliseconds, 1u);
}

TEST_F(GestureTracking, WaitsForTheMouseAndForWhatIsNoInput) {
    OpenOwner();
    EXPECT_EQ(AfterWaits(1000, {60000}, false), GestureHold);
    ASSERT_EQ(waits.size(), 1u);
    EXPECT_EQ(waits[0].handles, 0u);
    EXPECT_FALSE(waits[0].anyHandle);
    constexpr DWORD mouse = QS_MOUSEMOVE | QS_MOUSEBUTTON;
    EXPECT_EQ(waits[0].mask & QS_INPUT, mouse);
    EXPECT_EQ(waits[0].mask & QS_ALLINPUT & ~QS_INPUT,
              static_cast<DWORD>(QS_POSTMESSAGE | QS_TIMER | QS_PAINT | QS_SENDMESSAGE));
    EXPECT_EQ(waits[0].flags, 0u);
}

// What was there before the wait does not end it.
TEST_F(GestureTracking, AMoveBetweenTheLookAndTheWaitIsSeen) {
    OpenOwner();
    looks = 0;
    GestureInfo info = PressAtTheFinger();
    const PlatformHook wait("MsgWaitForMultipleObjectsEx", WaitTimesOut);
    const PlatformHook peek("PeekMessageW", MoveBehindTheLook);
    peekMessage = peek.Original();
    EXPECT_EQ(TrackGesture(owner.Handle(), info, gestureTimeout), GestureDrag);
}

// A key that was posted stays in the queue for as long as the finger rests.
TEST_F(GestureTracking, WhatIsPostedIsServedAlsoBesideAKeyThatWaits) {
    OpenOwner();
    pressed = owner.Handle();
    questions = 0;
    bool served = false;
    owner.answer = [&](UINT message, WPARAM, LPARAM, LRESULT*) {
        if (message == WM_APP) {
            served = true;
            ReleaseCapture();
        }
        return message == WM_APP;
    };
    PostMessageW(owner.Handle(), WM_CHAR, L'a', 1);
    GestureInfo info = PressAtTheFinger();
    {
        const PlatformHook status("GetQueueStatus", PostBeforeTheQuestion);
        getQueueStatus = status.Original();
        EXPECT_EQ(TrackGesture(owner.Handle(), info, longestWait), GestureNone);
    }
    EXPECT_TRUE(served);
    MSG message;
    while (PeekMessageW(&message, owner.Handle(), 0, 0, PM_REMOVE)) {
    }
}

TEST_F(GestureTracking, TheMoveToTheNextPressIsNoneOfThisOne) {
    OpenOwner();
    pressed = owner.Handle();
    looks = 0;
    GestureInfo info = PressAtTheFinger();
    {
        const PlatformHook peek("PeekMessageW", LiftBehindTheLook);
        peekMessage = peek.Original();
        EXPECT_EQ(TrackGesture(owner.Handle(), info, gestureTimeout), GestureTap);
    }
    MSG message;
    while (PeekMessageW(&message, owner.Handle(), WM_MOUSEFIRST, WM_MOUSELAST, PM_REMOVE)) {
    }
}

TEST_F(GestureTracking, ATapLastsHalfASecondAtTheMost) {
    OpenOwner();
    // The clock goes round every 50 days.
    for (const DWORD start : {1000u, 0xFFFFFFFFu - 200u}) {
        EXPECT_EQ(AfterWaits(start, {100, 400}, true), GestureTap);
        EXPECT_EQ(AfterWaits(start, {100, 401}, true), GestureHold);
        EXPECT_EQ(AfterWaits(start, {59999}, true), GestureHold);
    }
}

TEST_F(GestureTracking, AFingerLiftedBeforeAnybodyLookedHasTapped) {
    OpenOwner();
    pressed = owner.Handle();
    GestureInfo info = PressAtTheFinger();
    const PlatformHook wait("MsgWaitForMultipleObjectsEx", WaitForAFlick);
    EXPECT_EQ(TrackGesture(owner.Handle(), info, gestureTimeout), GestureTap);
    MSG message;
    while (PeekMessageW(&message, owner.Handle(), WM_MOUSEFIRST, WM_MOUSELAST, PM_REMOVE)) {
    }
}

TEST_F(GestureTracking, ATrackerThatDoesNotStartIsDestroyedOnceAndNothingElse) {
    OpenOwner();
    pressed = owner.Handle();
    RefusingTracker tracker;
    owner.answer = [&](UINT message, WPARAM, LPARAM lParam, LRESULT* result) {
        if (message == WM_QUERYDRAGTRACKER) {
            reinterpret_cast<GestureInfo*>(lParam)->tracker = DragTrackerOwner(&tracker);
            *result = TRUE;
            return true;
        }
        return false;
    };
    const PlatformHook wait("MsgWaitForMultipleObjectsEx", WaitForAFarMove);
    EXPECT_EQ(StartDrag(owner.Handle(), 5, 6), GestureDrag);
    EXPECT_EQ(tracker.calls, "start destroy ");
    EXPECT_EQ(GetCapture(), nullptr);
}

TEST(InputLookedFor, AQuitIsLeftInTheQueue) {
    PostQuitMessage(7);
    MSG message;
    EXPECT_FALSE(ui::PeekInput(&message, nullptr, WM_LBUTTONUP, WM_LBUTTONUP, PM_REMOVE));
    EXPECT_FALSE(ui::PeekInput(&message, nullptr, WM_MOUSEMOVE, WM_MOUSEMOVE, PM_NOREMOVE));
    ASSERT_TRUE(PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE));
    EXPECT_EQ(message.message, static_cast<UINT>(WM_QUIT));
    EXPECT_EQ(message.wParam, 7u);
    EXPECT_FALSE(PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE));
}
