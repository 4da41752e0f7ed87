#include "tests/support/platform_hook.h"
#include "tests/ui/sample_list.h"

using namespace test;
using namespace ui;

namespace {

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

// A clock of the test's own; every wait is woken by something that is no input after 40 ms.
DWORD testTime = 0;
std::vector<DWORD> asked;
DWORD WINAPI TestTime() {
    return testTime;
}
DWORD WINAPI WaitWakesEarly(DWORD, const HANDLE*, DWORD milliseconds, DWORD, DWORD) {
    asked.push_back(milliseconds);
    testTime += 40;
    return WAIT_OBJECT_0;
}

using Taps = std::vector<std::pair<unsigned, GestureResult>>;

class TouchListTap : public ListTest {};

class DragThresholdTest : public ListTest {
 protected:
    DragThreshold On(LONG monitorWidth, LONG monitorHeight) {
        hookedMonitor = RECT{100, 50, 100 + monitorWidth, 50 + monitorHeight};
        const PlatformHook hook("GetMonitorInfoW", OtherMonitor);
        return DragThreshold::ForWindow(owner.Handle());
    }
    // Presses, moves by a distance and lifts; each time elsewhere, since a second press in the same
    // place is a repeated tap.
    void PressAndMove(int x, int y) {
        place_ += 40;
        const POINT start = At(20 + place_, 60 + place_);
        Run([&] {
            input.Play(
                Finger().Down(start).Wait(30).MoveTo(start.x + x, start.y + y).Wait(60).Up());
        });
    }

 private:
    int place_ = 0;
};

using DragThresholds = DragThresholdTest;

class GestureTracking : public ListTest {
 protected:
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
        [&] { input.Play(Finger().Down(50, 60).Wait(30).MoveTo(55, 150).Wait(60).Up()); }, info);
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
            // The loss is noticed at the next input.
            SendNotifyMessageW(owner.Handle(), WM_CANCELMODE, 0, 0);
            input.Play(Finger().MoveTo(52, 62).Wait(60).Up());
        },
        info);
    EXPECT_EQ(result, GestureNone);
    EXPECT_EQ(info.result, GestureNone);
}

TEST_F(GestureTracking, AWaitThatTimesOutIsAHold) {
    OpenOwner();
    GestureInfo info;
    const PlatformHook wait("MsgWaitForMultipleObjectsEx", WaitTimesOut);
    EXPECT_EQ(TrackGesture(owner.Handle(), info, 60000), GestureHold);
    EXPECT_EQ(GetCapture(), nullptr);
}

TEST_F(GestureTracking, AWaitThatFailsIsNoGesture) {
    OpenOwner();
    GestureInfo info;
    const PlatformHook wait("MsgWaitForMultipleObjectsEx", WaitFails);
    EXPECT_EQ(TrackGesture(owner.Handle(), info, 60000), GestureNone);
    EXPECT_EQ(StartDrag(owner.Handle(), 5, 5), GestureIdle);
}

TEST_F(GestureTracking, APressIsFollowedForItsTimeAtTheMost) {
    OpenOwner();
    GestureInfo info;
    {
        const PlatformHook time("GetTickCount", TestTime);
        const PlatformHook wait("MsgWaitForMultipleObjectsEx", WaitWakesEarly);
        testTime = 1000;
        asked.clear();
        EXPECT_EQ(TrackGesture(owner.Handle(), info, 120), GestureHold);
    }
    EXPECT_EQ(asked, (std::vector<DWORD>{120, 80, 40}));
    EXPECT_EQ(gestureTimeout, 60000u);
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
