#include "tests/support/keyboard.h"
#include "tests/support/platform_hook.h"
#include "tests/ui/failing_drawing.h"
#include "tests/ui/list/sample_list.h"

using namespace test;
using namespace ui;

namespace {

class TouchListDrag : public ListTest {
 protected:
    // Presses at y and moves up by a distance in steps, the last of which the list must show.
    Finger Pull(int fromY, int toY) {
        Finger finger;
        finger.Down(At(60, fromY)).DragTo(At(60, fromY), At(60, toY), 6);
        return finger;
    }
    // A pull that is held, and shown so.
    void PullAndHold(int fromY, int toY, Frame shown) {
        EXPECT_TRUE(Pull(fromY, toY).Play());
        Shows(shown);
    }
    void Lift() { input.Play(Finger().Up()); }
};

class TouchListSnap : public TouchListDrag {};
class TouchListRefusal : public TouchListDrag {};

// What was asked to be drawn anew: the whole window or not, with its background or not.
std::vector<std::pair<bool, bool>> invalidated;
BOOL WINAPI NoteInvalid(HWND, const RECT* area, BOOL erase) {
    invalidated.emplace_back(area == nullptr, erase != FALSE);
    return TRUE;
}

}  // namespace

TEST_F(TouchListDrag, TheRowsFollowTheFingerOneToOne) {
    Open(EqualHeights(20, 40));
    Run([&] {
        PullAndHold(250, 150, {2, -20});
        Finger().MoveTo(At(60, 149)).Play();
        Shows({2, -21});
        Finger().MoveTo(At(60, 170)).Play();
        Shows({2, 0});
        Finger().MoveTo(At(60, 171)).Play();
        Shows({1, -39});
        // At rest nothing has changed before the finger is lifted.
        EXPECT_EQ(list.GetTopIndex(), 0u);
        Lift();
    });
    EXPECT_EQ(list.GetTopIndex(), 2u);
    EXPECT_TRUE(list.taps.empty());
    EXPECT_TRUE(SelectionNotices().empty());
}

TEST_F(TouchListDrag, SidewaysMovesDuringItDoNotCount) {
    Open(EqualHeights(20, 40));
    Run([&] {
        PullAndHold(250, 150, {2, -20});
        Finger().MoveTo(At(190, 150)).MoveTo(At(190, 148)).Play();
        Shows({2, -22});
        Lift();
    });
}

TEST_F(TouchListDrag, StartsWithTheListAsItWas) {
    Open(EqualHeights(20, 40));
    list.SetTopIndex(4);
    ASSERT_TRUE(PumpUntil([&] { return list.LastFrame() == Frame{4, 0}; }));
    list.ForgetFrames();
    Run([&] {
        PullAndHold(250, 150, {6, -20});
        Lift();
    });
    EXPECT_EQ(list.Frames().front(), (Frame{4, 0}));
}

TEST_F(TouchListDrag, TheFirstRowIsHeldAtHalfTheWindow) {
    Open(EqualHeights(20, 40));
    Run([&] {
        PullAndHold(20, 280, {0, 150});
        Finger().MoveTo(At(60, 270)).Play();
        Shows({0, 140});
        Lift();
    });
    EXPECT_EQ(list.GetTopIndex(), 0u);
    EXPECT_EQ(list.LastFrame(), (Frame{0, 0}));
}

TEST_F(TouchListDrag, TheLastPageIsHeldAtHalfTheWindow) {
    Open(EqualHeights(20, 40));
    list.SetTopIndex(13);
    Run([&] {
        PullAndHold(280, 20, {13, -150});
        Lift();
    });
    EXPECT_EQ(list.GetTopIndex(), 13u);
    EXPECT_EQ(list.LastFrame(), (Frame{13, 0}));
}

TEST_F(TouchListDrag, ShowsTheBackgroundPastTheEnds) {
    Open(EqualHeights(20, 40));
    Run([&] {
        PullAndHold(20, 280, {0, 150});
        const RECT area = {At(0, 0).x, At(0, 0).y, At(width, 0).x, At(0, height).y};
        EXPECT_TRUE(WaitFor([&] {
            const Picture picture = Picture::OfScreen(area);
            return picture.At(30, 149) == SampleList::background &&
                   picture.At(30, 150) == SampleList::ColorOf(0) &&
                   picture.At(30, 0) == SampleList::background &&
                   picture.At(30, 190) == SampleList::ColorOf(1);
        }));
        Lift();
    });
}

TEST_F(TouchListDrag, ScrollsAHundredThousandRowsFromEndToEnd) {
    Open(EqualHeights(100000, 40));
    const unsigned last = 100000 - 7;
    EXPECT_EQ(list.GetMaxTop(), last);
    list.SetTopIndex(last - 5);
    Run([&] {
        PullAndHold(280, 30, {last, -50});
        Lift();
    });
    EXPECT_EQ(list.GetTopIndex(), last);
    list.SetTopIndex(5);
    Run([&] {
        PullAndHold(30, 280, {0, 50});
        Lift();
    });
    EXPECT_EQ(list.GetTopIndex(), 0u);
}

TEST_F(TouchListDrag, CrossesAllOfAHundredThousandRows) {
    Open(EqualHeights(100000, 40));
    GestureInfo info;
    info.result = GestureDrag;
    ASSERT_TRUE(
        SendMessageW(list.Handle(), WM_QUERYDRAGTRACKER, 0, reinterpret_cast<LPARAM>(&info)));
    ASSERT_TRUE(info.tracker->Start(60, 0));
    for (int row = 1; row <= 100000; ++row) {
        // A finger far longer than any screen; only some of the frames are looked at.
        const int y = -40 * row;
        if (row % 997 == 0 && static_cast<unsigned>(row) < list.GetMaxTop()) {
            ASSERT_TRUE(info.tracker->Move(60, y - 7));
            ASSERT_EQ(list.LastFrame(), (Frame{static_cast<unsigned>(row), -7}));
        }
    }
    info.tracker->Move(60, -40 * 100000);
    EXPECT_EQ(list.LastFrame(), (Frame{list.GetMaxTop(), -150}));
    info.tracker->Release();
    EXPECT_EQ(list.GetTopIndex(), list.GetMaxTop());
}

TEST_F(TouchListSnap, MoreThanHalfARowGoesOnToTheNext) {
    Open(EqualHeights(20, 100));
    Run([&] {
        PullAndHold(250, 199, {0, -51});
        Lift();
    });
    EXPECT_EQ(list.GetTopIndex(), 1u);
}

TEST_F(TouchListSnap, ExactlyHalfARowGoesBack) {
    Open(EqualHeights(20, 100));
    Run([&] {
        PullAndHold(250, 200, {0, -50});
        Lift();
    });
    EXPECT_EQ(list.GetTopIndex(), 0u);
}

TEST_F(TouchListSnap, DrawsTheWholeListAnewWhereTheLastFrameIsNotTheListAtRest) {
    Open(EqualHeights(20, 100));
    // Drags from y by steps, and tells what was asked to be drawn at the release.
    const auto afterDragBy = [&](const std::vector<int>& steps) {
        GestureInfo info;
        info.result = GestureHold;
        SendMessageW(list.Handle(), WM_QUERYDRAGTRACKER, 0, reinterpret_cast<LPARAM>(&info));
        EXPECT_TRUE(info.tracker && info.tracker->Start(60, 200));
        int y = 200;
        for (const int step : steps) {
            info.tracker->Move(60, y += step);
        }
        const PlatformHook hook("InvalidateRect", NoteInvalid);
        invalidated.clear();
        info.tracker->Release();
        return invalidated;
    };
    const std::vector<std::pair<bool, bool>> all = {{true, true}};
    EXPECT_TRUE(afterDragBy({-30}).empty());
    EXPECT_EQ(afterDragBy({-60}), all);
    EXPECT_EQ(list.GetTopIndex(), 1u);
    // Back to the row of before, but the last frame's indicator stood for the one above.
    EXPECT_EQ(afterDragBy({30}), all);
    EXPECT_EQ(list.GetTopIndex(), 1u);
}

TEST_F(TouchListSnap, SlidesInStepsOfTheMeanHeightToTheRowsEdge) {
    std::vector<int> heights = EqualHeights(20, 20);
    heights[0] = 220;
    // 220 + 19 * 20 = 600, mean 30.
    Open(heights);
    Run([&] {
        PullAndHold(280, 120, {0, -160});
        list.ForgetFrames();
        Lift();
    });
    // 60 left: the first frame keeps whole steps of 30.
    const std::vector<Frame> expected = {{0, -160}, {0, -190}, {0, -220}};
    std::vector<Frame> frames = list.Frames();
    ASSERT_GE(frames.size(), expected.size());
    frames.resize(expected.size());
    EXPECT_EQ(frames, expected);
    EXPECT_EQ(list.GetTopIndex(), 1u);
    EXPECT_EQ(list.LastFrame(), (Frame{1, 0}));
}

TEST_F(TouchListSnap, SlidesBackWithARemainderInItsFirstFrame) {
    std::vector<int> heights = EqualHeights(20, 20);
    heights[0] = 220;
    Open(heights);
    Run([&] {
        PullAndHold(280, 180, {0, -100});
        list.ForgetFrames();
        Lift();
    });
    const std::vector<Frame> expected = {{0, -90}, {0, -60}, {0, -30}, {0, 0}};
    EXPECT_EQ(list.Frames(), expected);
    EXPECT_EQ(list.GetTopIndex(), 0u);
}

TEST_F(TouchListRefusal, RowsThatFitDoNotMove) {
    Open(EqualHeights(7, 40));
    Run([&] { input.Play(Pull(250, 50).Up()); });
    EXPECT_TRUE(list.Frames().empty());
    EXPECT_TRUE(list.taps.empty());
}

TEST_F(TouchListRefusal, AnEmptyListDoesNotMove) {
    Open({});
    Run([&] { input.Play(Pull(250, 50).Up()); });
    EXPECT_TRUE(list.Frames().empty());
}

TEST_F(TouchListRefusal, ADragMoreSidewaysThanUprightIsLeftToOthers) {
    Open(EqualHeights(20, 40));
    // Each move is looked at before the next: two at once would have the direction of the second.
    const auto captured = [] { return LookAtKeyboard().captured; };
    Run([&] {
        Finger().Down(At(60, 200)).Play();
        EXPECT_TRUE(WaitFor(captured));
        Finger().MoveTo(At(131, 130)).Play();
        EXPECT_TRUE(WaitFor([&] { return !captured(); }));
        input.Play(Finger().MoveTo(At(60, 50)).Up());
    });
    EXPECT_TRUE(list.Frames().empty());
    EXPECT_TRUE(list.taps.empty());
    Run([&] {
        Finger().Down(At(60, 200)).Play();
        EXPECT_TRUE(WaitFor(captured));
        Finger().MoveTo(At(130, 130)).Play();
        EXPECT_TRUE(WaitFor([&] { return !list.Frames().empty(); }));
        input.Play(Finger().MoveTo(At(60, 50)).Up());
    });
    EXPECT_FALSE(list.Frames().empty());
    EXPECT_GT(list.GetTopIndex(), 0u);
}

TEST_F(TouchListRefusal, AHoldIsAcceptedInAnyDirectionAndATapNever) {
    Open(EqualHeights(20, 40));
    GestureInfo info;
    info.x = 100;
    const auto ask = [&](GestureResult gesture) {
        info.result = gesture;
        info.tracker.reset();
        return SendMessageW(list.Handle(), WM_QUERYDRAGTRACKER, 0,
                            reinterpret_cast<LPARAM>(&info)) != 0 &&
               info.tracker;
    };
    EXPECT_TRUE(ask(GestureHold));
    EXPECT_FALSE(ask(GestureDrag));
    EXPECT_FALSE(ask(GestureTap));
    EXPECT_FALSE(ask(GestureNone));
    info.y = -100;
    EXPECT_TRUE(ask(GestureDrag));
}

TEST_F(TouchListRefusal, AWindowThatCannotBeMeasuredIsNotDragged) {
    Open(EqualHeights(20, 40));
    GestureInfo info;
    info.result = GestureHold;
    SendMessageW(list.Handle(), WM_QUERYDRAGTRACKER, 0, reinterpret_cast<LPARAM>(&info));
    ASSERT_TRUE(info.tracker);
    const PlatformHook client("GetClientRect", NoClient);
    EXPECT_FALSE(info.tracker->Start(5, 5));
}

TEST_F(TouchListDrag, AFrameWithoutMemoryIsSkippedAndTheRestIsKept) {
    Open(EqualHeights(20, 40));
    for (const bool noDC : {true, false}) {
        list.SetTopIndex(0);
        list.ForgetFrames();
        GestureInfo info;
        info.result = GestureHold;
        SendMessageW(list.Handle(), WM_QUERYDRAGTRACKER, 0, reinterpret_cast<LPARAM>(&info));
        ASSERT_TRUE(info.tracker);
        std::unique_ptr<PlatformHook<decltype(NoDC)>> dc;
        std::unique_ptr<PlatformHook<decltype(NoBitmap)>> bitmap;
        if (noDC) {
            dc = std::make_unique<PlatformHook<decltype(NoDC)>>("CreateCompatibleDC", NoDC);
        } else {
            bitmap = std::make_unique<PlatformHook<decltype(NoBitmap)>>("CreateCompatibleBitmap",
                                                                        NoBitmap);
        }
        ASSERT_TRUE(info.tracker->Start(60, 250));
        EXPECT_TRUE(info.tracker->Move(60, 150));
        info.tracker->Release();
        EXPECT_TRUE(list.Frames().empty());
        EXPECT_EQ(list.GetTopIndex(), 2u);
    }
}
