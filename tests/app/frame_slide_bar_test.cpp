#include "tests/app/frame_fixture.h"
#include "tests/support/finger.h"
#include "tests/support/monitor.h"
#include "tests/support/wait.h"
#include "tests/support/windows_seen.h"
#include "ui/paint/theme.h"

using namespace test;

namespace {

WNDPROC frameProcedure = nullptr;

// Lets the frame be larger than this machine's screen.
LRESULT CALLBACK AnySize(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    const LRESULT result = CallWindowProcW(frameProcedure, window, message, wParam, lParam);
    if (message == WM_GETMINMAXINFO) {
        reinterpret_cast<MINMAXINFO*>(lParam)->ptMaxTrackSize = POINT{2000, 2000};
    }
    return result;
}

// The frame on a device with another screen; its upper left part is seen on this machine's.
class FrameSlideBar : public FrameFixture {
 protected:
    void OpenOn(int width, int height) {
        monitor_ = std::make_unique<Monitor>(RECT{0, 0, width, height});
        Open();
        frameProcedure = reinterpret_cast<WNDPROC>(
            SetWindowLongPtrW(frame.Handle(), GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(AnySize)));
        MoveWindow(frame.Handle(), 0, 0, width, height, TRUE);
        const RECT window = ScreenRectangleOf(frame.Handle());
        ASSERT_EQ(ui::Width(window), width);
        ASSERT_EQ(ui::Height(window), height);
    }
    HWND Bar() const { return FindChild(frame.Handle(), L"kx::SlideBar"); }
    RECT Client() const {
        RECT client = frame.ClientRectangle();
        MapWindowPoints(frame.Handle(), nullptr, reinterpret_cast<POINT*>(&client), 2);
        return client;
    }
    // An entry's part of the bar, in screen coordinates.
    RECT Entry(int entry) const {
        RECT area = ScreenRectangleOf(Bar());
        if (ui::Width(area) > ui::Height(area)) {
            const int slot = ui::Width(area) / 4;
            area.left += entry * slot;
            area.right = area.left + slot;
        } else {
            const int slot = std::min(ui::Height(area) / 4, 2 * ui::Width(area));
            area.top += entry * slot;
            area.bottom = area.top + slot;
        }
        return area;
    }
    POINT EntryPoint(int entry) const {
        const RECT area = Entry(entry);
        return POINT{(area.left + area.right) / 2, (area.top + area.bottom) / 2};
    }
    // Whether the entry comes to be the one that is marked as current.
    bool ShowsCurrent(int current) const {
        return WaitFor([&] {
            for (int entry = 0; entry < 4; ++entry) {
                const Picture picture = Picture::OfScreen(Entry(entry));
                bool marked = false;
                for (int y = 0; y < picture.Height() && !marked; ++y) {
                    for (int x = 0; x < picture.Width() && !marked; ++x) {
                        marked = picture.At(x, y) == ui::barFocusColor;
                    }
                }
                if (marked != (entry == current)) {
                    return false;
                }
            }
            return true;
        });
    }
    void ExpectTapsSwitchViews() {
        RunFrame([this] {
            SetForegroundWindow(frame.Handle());
            EXPECT_TRUE(ShowsCurrent(0));
            Finger().Tap(EntryPoint(3)).Play();
            EXPECT_TRUE(WaitForCaption(L"System Status"));
            EXPECT_TRUE(ShowsCurrent(3));
            Finger().Tap(EntryPoint(1)).Play();
            EXPECT_TRUE(WaitFor([this] { return Caption().starts_with(L"Applications ("); }));
            EXPECT_TRUE(ShowsCurrent(1));
            Finger().Tap(EntryPoint(2)).Play();
            EXPECT_TRUE(WaitFor([this] { return Caption().starts_with(L"Processes ("); }));
            EXPECT_TRUE(ShowsCurrent(2));
            Finger().Tap(EntryPoint(0)).Play();
            EXPECT_TRUE(WaitForCaption(L"\\"));
            EXPECT_TRUE(ShowsCurrent(0));
        });
    }

 private:
    std::unique_ptr<Monitor> monitor_;
};

}  // namespace

TEST_F(FrameSlideBar, IsNotSeenOnASmallUprightScreen) {
    OpenOn(480, 640);
    EXPECT_FALSE(Bar());
    EXPECT_EQ(ScreenRectangleOf(frame.Pane()).top, Client().top);
    EXPECT_EQ(ScreenRectangleOf(frame.Pane()).left, Client().left);
}

TEST_F(FrameSlideBar, IsAboveTheViewOnATallScreen) {
    OpenOn(480, 800);
    ASSERT_TRUE(Bar());
    const RECT bar = ScreenRectangleOf(Bar());
    const RECT pane = ScreenRectangleOf(frame.Pane());
    EXPECT_EQ(bar.top, Client().top);
    EXPECT_EQ(bar.left, Client().left);
    EXPECT_EQ(bar.right, Client().right);
    EXPECT_EQ(pane.top, bar.bottom);
    EXPECT_EQ(pane.left, bar.left);
    EXPECT_EQ(pane.right, bar.right);
    EXPECT_EQ(pane.bottom, ScreenRectangleOf(frame.Bar().Handle()).top);
}

TEST_F(FrameSlideBar, IsBesideTheViewOnAWideScreen) {
    OpenOn(800, 480);
    ASSERT_TRUE(Bar());
    const RECT bar = ScreenRectangleOf(Bar());
    const RECT pane = ScreenRectangleOf(frame.Pane());
    EXPECT_EQ(bar.left, Client().left);
    EXPECT_EQ(bar.top, Client().top);
    EXPECT_EQ(bar.bottom, ScreenRectangleOf(frame.Bar().Handle()).top);
    EXPECT_EQ(pane.left, bar.right);
    EXPECT_EQ(pane.right, Client().right);
    EXPECT_EQ(pane.top, bar.top);
    EXPECT_EQ(pane.bottom, bar.bottom);
}

TEST_F(FrameSlideBar, ComesAndGoesAsTheScreenTurns) {
    OpenOn(800, 480);
    ASSERT_TRUE(Bar());
    MoveWindow(frame.Handle(), 0, 0, 480, 640, TRUE);
    EXPECT_FALSE(Bar());
    EXPECT_EQ(ScreenRectangleOf(frame.Pane()).left, Client().left);
    MoveWindow(frame.Handle(), 0, 0, 480, 800, TRUE);
    ASSERT_TRUE(Bar());
    EXPECT_EQ(ScreenRectangleOf(Bar()).right, Client().right);
}

TEST_F(FrameSlideBar, AboveTheViewSwitchesViews) {
    OpenOn(480, 800);
    ExpectTapsSwitchViews();
}

TEST_F(FrameSlideBar, BesideTheViewSwitchesViews) {
    OpenOn(800, 480);
    ExpectTapsSwitchViews();
}

TEST_F(FrameSlideBar, FollowsViewsThatAreSwitchedOtherwise) {
    OpenOn(480, 800);
    RunFrame([this] {
        SetForegroundWindow(frame.Handle());
        Finger().Key("4").Play();
        EXPECT_TRUE(WaitForCaption(L"System Status"));
        EXPECT_TRUE(ShowsCurrent(3));
    });
}

TEST_F(FrameSlideBar, LeavesTheKeyboardToTheView) {
    OpenOn(480, 800);
    RunFrame([this] {
        SetForegroundWindow(frame.Handle());
        Finger().Tap(EntryPoint(3)).Play();
        EXPECT_TRUE(WaitForCaption(L"System Status"));
        Finger().Key("1").Play();
        EXPECT_TRUE(WaitForCaption(L"\\"));
    });
}

TEST_F(FrameSlideBar, SlidingOffItDoesNothing) {
    OpenOn(480, 800);
    RunFrame([this] {
        SetForegroundWindow(frame.Handle());
        ASSERT_TRUE(ShowsCurrent(0));
        const POINT from = EntryPoint(3);
        const POINT away = {from.x, from.y + 250};
        Finger().Down(from).DragTo(from, away).Up().Play();
        // The tap after it is taken later than anything that the slide would have done.
        Finger().Tap(EntryPoint(2)).Play();
        EXPECT_TRUE(WaitFor([this] { return Caption() != L"\\"; }));
        EXPECT_TRUE(Caption().starts_with(L"Processes ("));
    });
}
