#include "tests/support/platform_hook.h"
#include "tests/ui/list/sample_list.h"

using namespace test;
using namespace ui;

namespace {

// Ends of a drag other than the lifted finger: the rows come to rest all the same.
class TouchListAbort : public ListTest {
 protected:
    // Drags row 2 a quarter out at the top and holds it there.
    void PullAndHold() {
        EXPECT_TRUE(Finger().Down(At(60, 250)).DragTo(At(60, 250), At(60, 160), 6).Play());
        Shows({2, -10});
    }
    void ExpectRest(unsigned top) {
        EXPECT_TRUE(WaitFor([&] { return list.LastFrame() == Frame{top, 0}; }));
        // The last frame of a drag is drawn before the drag has ended.
        EXPECT_TRUE(WaitFor([&] { return list.GetTopIndex() == top; }))
            << list.GetTopIndex() << " instead of " << top;
    }
    void Lift() { input.Play(Finger().Up()); }
};

// Takes the capture away while a message of this kind is waited for, once.
std::atomic<UINT> capturedUntil = 0;
decltype(GetMessageW)* getMessage = nullptr;
BOOL WINAPI GetMessageAndLoseTheCapture(MSG* message, HWND window, UINT first, UINT last) {
    const BOOL got = getMessage(message, window, first, last);
    if (got > 0 && message->message == capturedUntil) {
        capturedUntil = 0;
        ReleaseCapture();
    }
    return got;
}

class TouchListQuit : public TouchListAbort {};
class TouchListTimers : public TouchListAbort {};

}  // namespace

TEST_F(TouchListAbort, EscapeSnapsLikeARelease) {
    Open(EqualHeights(20, 40));
    Run([&] {
        PullAndHold();
        EXPECT_TRUE(Captured());
        input.Play(Finger().Key("Escape"));
        ExpectRest(2);
        EXPECT_FALSE(Captured());
        // The finger is still down and moves nothing any more.
        input.Play(Finger().MoveTo(At(60, 50)).Wait(30).Up());
    });
    EXPECT_EQ(list.GetTopIndex(), 2u);
    EXPECT_TRUE(list.taps.empty());
}

TEST_F(TouchListAbort, OtherKeysAreDispatchedAndTheDragGoesOn) {
    Open(EqualHeights(20, 40));
    Run([&] {
        PullAndHold();
        input.Play(Finger().Key("Down"));
        EXPECT_TRUE(Captured());
        Finger().MoveTo(At(60, 155)).Play();
        Shows({2, -15});
        Lift();
    });
    EXPECT_EQ(list.GetSelection(), 0u);
    EXPECT_EQ(list.GetTopIndex(), 2u);
}

TEST_F(TouchListAbort, NoKeyTypesALetterDuringADrag) {
    Open(EqualHeights(20, 40));
    const LONG before = InputTaken::Count(WM_CHAR);
    Run([&] {
        PullAndHold();
        input.Play(Finger().Key("a").Key("space"));
        EXPECT_EQ(InputTaken::Count(WM_CHAR), before);
        Lift();
        input.Play(Finger().Key("a"));
    });
    EXPECT_EQ(InputTaken::Count(WM_CHAR), before + 1);
}

TEST_F(TouchListAbort, RowsThatBecomeFewerUnderTheFingerComeToRest) {
    Open(EqualHeights(20, 40));
    owner.answer = [this](UINT message, WPARAM wParam, LPARAM, LRESULT*) {
        if (message == WM_APP) {
            list.Fill(EqualHeights(wParam, 40));
        }
        return false;
    };
    list.SetTopIndex(list.GetMaxTop());
    for (const size_t rows : {15u, 9u, 3u, 1u, 0u}) {
        Run([&] {
            input.Play(Finger().Down(At(60, 250)).DragTo(At(60, 250), At(60, 200), 6));
            SendMessageW(owner.Handle(), WM_APP, rows, 0);
            Lift();
        });
        EXPECT_LE(list.GetTopIndex(), list.GetMaxTop()) << rows;
        list.Fill(EqualHeights(20, 40));
        list.SetTopIndex(list.GetMaxTop());
    }
}

TEST_F(TouchListAbort, TheRightButtonSnaps) {
    Open(EqualHeights(20, 40));
    Run([&] {
        PullAndHold();
        mouse_event(MOUSEEVENTF_RIGHTDOWN, 0, 0, 0, 0);
        ExpectRest(2);
        EXPECT_TRUE(WaitFor([&] { return !Captured(); }));
        mouse_event(MOUSEEVENTF_RIGHTUP, 0, 0, 0, 0);
        Lift();
    });
}

TEST_F(TouchListAbort, ASystemKeySnapsAndIsDispatched) {
    Open(EqualHeights(20, 40));
    const LONG before = InputTaken::Count(WM_SYSKEYDOWN);
    Run([&] {
        PullAndHold();
        Finger().KeyDown("alt").Play();
        ExpectRest(2);
        Finger().KeyUp("alt").Play();
        Lift();
    });
    EXPECT_GT(InputTaken::Count(WM_SYSKEYDOWN), before);
    // A system key released alone enters the window's menu, which it does not have.
    SendMessageW(owner.Handle(), WM_CANCELMODE, 0, 0);
}

TEST_F(TouchListAbort, LostCaptureSnaps) {
    Open(EqualHeights(20, 40));
    Run([&] {
        PullAndHold();
        SendMessageW(list.Handle(), WM_CANCELMODE, 0, 0);
        // The loop looks at it with its next message.
        input.Play(Finger().MoveTo(At(60, 159)).Wait(20));
        ExpectRest(2);
        Lift();
    });
    EXPECT_TRUE(list.taps.empty());
}

TEST_F(TouchListAbort, WhatComesAfterALostCaptureIsNoPartOfTheDrag) {
    Open(EqualHeights(20, 40));
    const PlatformHook messages("GetMessageW", GetMessageAndLoseTheCapture);
    getMessage = messages.Original();
    Run([&] {
        PullAndHold();
        capturedUntil = WM_KEYDOWN;
        input.Play(Finger().Key("Escape"));
        ExpectRest(2);
        Lift();
    });
    const std::vector<Notice> notices = Notices();
    EXPECT_TRUE(std::any_of(notices.begin(), notices.end(), [](const Notice& notice) {
        return notice.code == -15 && notice.first == VK_ESCAPE;
    }));
}

TEST_F(TouchListAbort, ATapAfterALostCaptureCounts) {
    Open(EqualHeights(20, 40));
    const PlatformHook messages("GetMessageW", GetMessageAndLoseTheCapture);
    getMessage = messages.Original();
    Run([&] {
        PullAndHold();
        // The finger was lifted where another program saw it.
        capturedUntil = WM_LBUTTONDOWN;
        PostMessageW(list.Handle(), WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(60, 160));
        EXPECT_TRUE(WaitFor([&] { return Captured() && list.LastFrame() == Frame{2, 0}; }, 3000));
        Lift();
    });
    ASSERT_EQ(list.taps.size(), 1u);
    EXPECT_EQ(list.taps[0].first, 6u);
}

TEST_F(TouchListAbort, ADestroyedListEndsTheDrag) {
    Open(EqualHeights(20, 40));
    bool ended = false;
    owner.answer = [&](UINT message, WPARAM, LPARAM, LRESULT*) {
        if (message == WM_APP + 1) {
            list.Destroy();
            ended = true;
        }
        return false;
    };
    Run([&] {
        PullAndHold();
        PostMessageW(owner.Handle(), WM_APP + 1, 0, 0);
        SetForegroundWindow(owner.Handle());
        WaitFor([&] { return ended; });
        Finger().Up().Play();
    });
    EXPECT_TRUE(ended);
    EXPECT_FALSE(list.Handle());
    EXPECT_EQ(GetCapture(), nullptr);
}

TEST_F(TouchListTimers, GoOnDuringADrag) {
    Open(EqualHeights(20, 40));
    std::atomic<int> ticks = 0;
    owner.answer = [&](UINT message, WPARAM, LPARAM, LRESULT*) {
        ticks += message == WM_TIMER;
        return false;
    };
    SetTimer(owner.Handle(), 5, 20, nullptr);
    Run([&] {
        PullAndHold();
        const int before = ticks;
        EXPECT_TRUE(WaitFor([&] { return ticks >= before + 5; }));
        EXPECT_TRUE(Captured());
        Lift();
    });
    KillTimer(owner.Handle(), 5);
}

TEST_F(TouchListTimers, GoOnWhileAFingerRests) {
    Open(EqualHeights(20, 40));
    std::atomic<int> ticks = 0;
    owner.answer = [&](UINT message, WPARAM, LPARAM, LRESULT*) {
        ticks += message == WM_TIMER;
        return false;
    };
    SetTimer(owner.Handle(), 5, 20, nullptr);
    Run([&] {
        Finger().Down(At(60, 90)).Play();
        EXPECT_TRUE(WaitFor([&] { return Captured(); }));
        const int before = ticks;
        EXPECT_TRUE(WaitFor([&] { return ticks >= before + 5; }));
        EXPECT_TRUE(Captured());
        Lift();
    });
    KillTimer(owner.Handle(), 5);
    EXPECT_EQ(list.taps.size(), 1u);
}

TEST_F(TouchListTimers, WhatIsPostedSentOrToBeDrawnIsServedWhileAFingerRests) {
    Open(EqualHeights(20, 40));
    std::atomic<int> posted = 0;
    owner.answer = [&](UINT message, WPARAM, LPARAM, LRESULT*) {
        posted += message == WM_APP + 1 || message == WM_COMMAND;
        return false;
    };
    Run([&] {
        Finger().Down(At(60, 90)).Play();
        EXPECT_TRUE(WaitFor([&] { return Captured(); }));
        list.ForgetFrames();
        InvalidateRect(list.Handle(), nullptr, FALSE);
        Shows({0, 0});
        PostMessageW(owner.Handle(), WM_APP + 1, 0, 0);
        EXPECT_TRUE(WaitFor([&] { return posted == 1; }));
        PostMessageW(owner.Handle(), WM_COMMAND, 0, 0);
        EXPECT_TRUE(WaitFor([&] { return posted == 2; }));
        DWORD_PTR answer = 0;
        EXPECT_TRUE(
            SendMessageTimeoutW(owner.Handle(), WM_NULL, 0, 0, SMTO_NORMAL, longestWait, &answer));
        // A key waits until the finger has been lifted.
        Finger().Key("Down").Play();
        PostMessageW(owner.Handle(), WM_APP + 1, 0, 0);
        EXPECT_TRUE(WaitFor([&] { return posted == 3; }));
        EXPECT_EQ(list.GetSelection(), noRow);
        EXPECT_TRUE(Captured());
        Lift();
    });
    EXPECT_EQ(list.GetSelection(), 3u);
}

TEST_F(TouchListTimers, AListDestroyedUnderARestingFingerIsLeftAlone) {
    Open(EqualHeights(20, 40));
    owner.answer = [&](UINT message, WPARAM, LPARAM, LRESULT*) {
        if (message == WM_APP + 1) {
            list.Destroy();
        }
        return false;
    };
    Run([&] {
        Finger().Down(At(60, 90)).Play();
        EXPECT_TRUE(WaitFor([&] { return Captured(); }));
        PostMessageW(owner.Handle(), WM_APP + 1, 0, 0);
        EXPECT_TRUE(WaitFor([&] { return !list.Handle(); }));
        Finger().Up().Play();
    });
    EXPECT_TRUE(list.taps.empty());
    EXPECT_EQ(GetCapture(), nullptr);
}

TEST_F(TouchListTimers, MayRefillTheListDuringADrag) {
    Open(EqualHeights(20, 40));
    owner.answer = [&](UINT message, WPARAM, LPARAM, LRESULT*) {
        if (message == WM_APP + 1) {
            list.Fill(EqualHeights(2, 40));
        } else if (message == WM_APP + 2) {
            list.Fill({});
        }
        return false;
    };
    Run([&] {
        PullAndHold();
        SendMessageW(owner.Handle(), WM_APP + 1, 0, 0);
        Finger().MoveTo(At(60, 100)).Play();
        EXPECT_TRUE(WaitFor([&] { return list.LastRows().size() <= 2; }));
        SendMessageW(owner.Handle(), WM_APP + 2, 0, 0);
        input.Play(Finger().MoveTo(At(60, 90)).Wait(30).Up());
    });
    EXPECT_EQ(list.GetTopIndex(), 0u);
    EXPECT_EQ(list.GetCount(), 0u);
}

TEST_F(TouchListQuit, EndsThePressOfARestingFinger) {
    Open(EqualHeights(20, 40));
    const DWORD program = GetCurrentThreadId();
    int code = 0;
    WhileUser(
        [&] {
            Finger().Down(At(60, 90)).Play();
            EXPECT_TRUE(WaitFor([&] { return Captured(); }));
            PostThreadMessageW(program, WM_QUIT, 7, 0);
        },
        [&] {
            MSG message;
            while (GetMessageW(&message, nullptr, 0, 0) > 0) {
                DispatchMessageW(&message);
            }
            code = static_cast<int>(message.wParam);
        });
    EXPECT_EQ(code, 7);
    EXPECT_TRUE(list.taps.empty());
    Run([&] { Lift(); });
}

TEST_F(TouchListQuit, IsPostedAgainForTheOuterLoop) {
    Open(EqualHeights(20, 40));
    const DWORD program = GetCurrentThreadId();
    int code = 0;
    WhileUser(
        [&] {
            PullAndHold();
            PostThreadMessageW(program, WM_QUIT, 7, 0);
        },
        [&] {
            MSG message;
            while (GetMessageW(&message, nullptr, 0, 0) > 0) {
                DispatchMessageW(&message);
            }
            code = static_cast<int>(message.wParam);
        });
    EXPECT_EQ(code, 7);
    EXPECT_EQ(GetCapture(), nullptr);
    EXPECT_EQ(list.GetTopIndex(), 2u);
    Run([&] { Lift(); });
}

namespace {

// A tracker that notes what the drag loop tells it.
class NotingTracker final : public DragTracker {
 public:
    bool Begin(HWND) override { return calls += "begin ", begins; }
    void End(bool cancelled) override { calls += cancelled ? "cancelled " : "end "; }
    void OnMoveRefused() override { calls += "refused "; }
    bool PreTranslate(const MSG& message) override {
        return takesMoves && message.message == WM_MOUSEMOVE;
    }
    bool Start(int, int) override { return true; }
    void Destroy() override {}
    bool Move(int, int) override { return moves; }
    void Release() override { calls += "release "; }

    std::string calls;
    bool begins = true;
    bool moves = true;
    bool takesMoves = false;
};

class DragLoop : public ListTest {
 protected:
    // Runs the loop for a drag that is lifted after two moves.
    bool RunLoop(NotingTracker& tracker) {
        bool result = false;
        owner.answer = [&](UINT message, WPARAM, LPARAM, LRESULT*) {
            if (message == WM_LBUTTONDOWN) {
                result = RunDragLoop(tracker, owner.Handle());
                return true;
            }
            return false;
        };
        EXPECT_TRUE(owner.Open());
        EXPECT_TRUE(PumpUntil([&] { return GetForegroundWindow() == owner.Handle(); }));
        Run([&] {
            input.Play(Finger()
                           .Down(30, 30)
                           .Wait(30)
                           .MoveTo(40, 40)
                           .Wait(30)
                           .MoveTo(50, 50)
                           .Wait(30)
                           .Up());
        });
        return result;
    }
};

HWND WINAPI NoCapture(HWND) {
    return nullptr;
}

}  // namespace

TEST_F(DragLoop, EndsWithTheLiftedFinger) {
    NotingTracker tracker;
    EXPECT_TRUE(RunLoop(tracker));
    EXPECT_EQ(tracker.calls, "begin release end ");
}

TEST_F(DragLoop, ARefusedMoveIsTold) {
    NotingTracker tracker;
    tracker.moves = false;
    EXPECT_TRUE(RunLoop(tracker));
    EXPECT_NE(tracker.calls.find("refused "), std::string::npos);
    EXPECT_TRUE(tracker.calls.ends_with("release end "));
}

TEST_F(DragLoop, ATrackerMayTakeMessagesFirst) {
    NotingTracker tracker;
    tracker.moves = false;
    tracker.takesMoves = true;
    EXPECT_TRUE(RunLoop(tracker));
    EXPECT_EQ(tracker.calls, "begin release end ");
}

TEST_F(DragLoop, ARefusedBeginStopsAtOnce) {
    NotingTracker tracker;
    tracker.begins = false;
    EXPECT_FALSE(RunLoop(tracker));
    EXPECT_EQ(tracker.calls, "begin ");
}

TEST_F(DragLoop, WithoutTheCaptureTheDragIsCancelled) {
    const PlatformHook capture("SetCapture", NoCapture);
    NotingTracker tracker;
    EXPECT_FALSE(RunLoop(tracker));
    EXPECT_EQ(tracker.calls, "begin cancelled ");
}
