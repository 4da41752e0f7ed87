#include <memory>

#include "tests/support/drawn_texts.h"
#include "tests/support/finger.h"
#include "tests/support/platform_hook.h"
#include "tests/support/world.h"
#include "tests/ui/bar/sample_bar.h"
#include "ui/bar/page_slider.h"
#include "ui/bar/slide.h"

using namespace test;

namespace {

// A clock that stands still but for sleeping and for what the test lets pass.
DWORD now = 0;
std::vector<DWORD> sleeps;

DWORD WINAPI TestTime() {
    return now;
}
void WINAPI TestSleep(DWORD milliseconds) {
    sleeps.push_back(milliseconds);
    now += milliseconds;
}

class SlideSteps : public testing::Test {
 protected:
    SlideSteps() {
        now = ~DWORD{0} - 100;
        sleeps.clear();
    }
    std::vector<int> Slide(int from, int to, DWORD drawing = 0) {
        const PlatformHook<DWORD WINAPI()> time("GetTickCount", TestTime);
        const PlatformHook<void WINAPI(DWORD)> sleep("Sleep", TestSleep);
        std::vector<int> offsets;
        ui::Slide(from, to, [&](int offset) {
            offsets.push_back(offset);
            now += drawing;
        });
        return offsets;
    }
};

// A slider of 300 pixels, a third of which is 100.
class PageSliderFixture : public testing::Test {
 protected:
    PageSliderFixture() {
        owner.answer = [this](UINT message, WPARAM wParam, LPARAM lParam, LRESULT*) {
            if (message == WM_COMMAND) {
                const std::lock_guard lock(mutex_);
                commands_.push_back(Command{wParam, lParam});
            }
            if (message == WM_COMMAND && destroys) {
                slider.Destroy();
            }
            return false;
        };
    }

    void Open(unsigned count = 3) {
        ASSERT_TRUE(owner.Open());
        ASSERT_TRUE(slider.Open(owner.Handle(), RECT{90, 200, 390, 260}, owner.Handle()));
        const wchar_t* const texts[] = {L"iiii AAAA", L"BBBB WWWW", L"MM CC MMM"};
        std::vector<ui::PageSlider::Entry> entries;
        for (unsigned index = 0; index < count; ++index) {
            entries.push_back({texts[index], static_cast<WORD>(700 + index)});
        }
        slider.SetEntries(entries);
        SetFocus(slider.Handle());
        ASSERT_TRUE(PumpUntil([&] {
            return GetForegroundWindow() == owner.Handle() &&
                   (count == 0 || Has(Shown(), GetSysColor(COLOR_WINDOWTEXT)));
        }));
    }

    Picture Shown() const { return Picture::OfWindow(slider.Handle()); }
    POINT At(int x, int y = 30) const { return OnScreen(slider.Handle(), x, y); }
    // Down in the middle and so far sideways, in steps a person makes.
    Finger Swipe(int distance) const {
        Finger finger;
        finger.Down(At(150)).DragTo(At(150), At(150 + distance), 12);
        return finger;
    }
    std::vector<Command> Commands() const {
        const std::lock_guard lock(mutex_);
        return commands_;
    }
    Command Change(unsigned entry) const {
        return Command{MAKEWPARAM(700 + entry, 1), reinterpret_cast<LPARAM>(owner.Handle())};
    }
    void Run(const std::function<void()>& script) { PumpWhileUser(script); }

    InputTaken input;
    SampleOwner owner;
    ui::PageSlider slider;
    std::atomic<bool> destroys = false;

 private:
    mutable std::mutex mutex_;
    std::vector<Command> commands_;
};

class PageSliderSwipe : public PageSliderFixture {};
class PageSliderKeys : public PageSliderFixture {};
class PageSliderEntries : public PageSliderFixture {};
class PageSliderList : public PageSliderFixture {
 protected:
    // The list of entries, which a tap opens.
    HWND OpenList() {
        input.Play(Finger().Tap(At(150)));
        return WaitForWindow(L"InternalSpinnerMenu");
    }
    static bool Gone(HWND window) {
        return WaitFor([window] { return !IsWindow(window); });
    }

    std::vector<WORD> commands;
};

}  // namespace

TEST_F(SlideSteps, AreFiveEqualOnes) {
    EXPECT_EQ(Slide(0, 100), (std::vector<int>{20, 40, 60, 80, 100}));
    EXPECT_EQ(Slide(100, 300), (std::vector<int>{140, 180, 220, 260, 300}));
    EXPECT_EQ(Slide(-60, 0), (std::vector<int>{-48, -36, -24, -12, 0}));
}

TEST_F(SlideSteps, EndWhereTheyShall) {
    EXPECT_EQ(Slide(0, -303).back(), -303);
    EXPECT_EQ(Slide(7, 7).back(), 7);
}

TEST_F(SlideSteps, WaitOutTheirShareOf300Milliseconds) {
    Slide(0, 100);
    EXPECT_EQ(sleeps, std::vector<DWORD>(5, 60));
}

TEST_F(SlideSteps, CountTheTimeOfDrawing) {
    Slide(0, 100, 25);
    EXPECT_EQ(sleeps, std::vector<DWORD>(5, 35));
}

TEST_F(SlideSteps, DoNotWaitWhenDrawingIsSlow) {
    EXPECT_EQ(Slide(0, 100, 80).size(), 5u);
    EXPECT_TRUE(sleeps.empty());
}

TEST(NeighbourEntry, GoesRoundTheEnds) {
    EXPECT_EQ(ui::NeighbourEntry(0, 3, true), 1u);
    EXPECT_EQ(ui::NeighbourEntry(2, 3, true), 0u);
    EXPECT_EQ(ui::NeighbourEntry(0, 3, false), 2u);
    EXPECT_EQ(ui::NeighbourEntry(1, 3, false), 0u);
    EXPECT_EQ(ui::NeighbourEntry(0, 1, true), 0u);
    EXPECT_EQ(ui::NeighbourEntry(0, 0, false), 0u);
}

TEST_F(PageSliderSwipe, ToTheRightShowsTheNextEntry) {
    Open();
    Run([&] { input.Play(Swipe(120).Up()); });
    EXPECT_EQ(slider.Current(), 1u);
    EXPECT_EQ(Commands(), std::vector<Command>{Change(1)});
}

TEST_F(PageSliderSwipe, ToTheLeftOnTheFirstEntryShowsTheLast) {
    Open();
    Run([&] { input.Play(Swipe(-120).Up()); });
    EXPECT_EQ(slider.Current(), 2u);
    EXPECT_EQ(Commands(), std::vector<Command>{Change(2)});
}

TEST_F(PageSliderSwipe, ToTheRightOnTheLastEntryShowsTheFirst) {
    Open();
    Run([&] {
        for (int swipe = 0; swipe < 3; ++swipe) {
            input.Play(Swipe(120).Up());
        }
    });
    EXPECT_EQ(slider.Current(), 0u);
    EXPECT_EQ(Commands(), (std::vector<Command>{Change(1), Change(2), Change(0)}));
}

TEST_F(PageSliderSwipe, ChangesTheEntryBeforeTheFingerIsLifted) {
    Open();
    Run([&] {
        Swipe(100).Play();
        EXPECT_TRUE(WaitFor([&] { return !Commands().empty(); }));
        // The drag is over: what the finger does now changes nothing.
        input.Play(Finger().DragTo(At(250), At(20)).Up());
    });
    EXPECT_EQ(Commands(), std::vector<Command>{Change(1)});
}

TEST_F(PageSliderSwipe, ReleasedBeforeAThirdSlidesBack) {
    Open();
    const Picture before = Shown();
    Run([&] {
        Swipe(99).Play();
        EXPECT_TRUE(WaitFor([&] { return Shown() != before; }));
        input.Play(Finger().Up());
        EXPECT_TRUE(WaitFor([&] { return Shown() == before; }));
        Swipe(-99).Play();
        EXPECT_TRUE(WaitFor([&] { return Shown() != before; }));
        input.Play(Finger().Up());
        EXPECT_TRUE(WaitFor([&] { return Shown() == before; }));
    });
    EXPECT_EQ(slider.Current(), 0u);
    EXPECT_TRUE(Commands().empty());
}

TEST_F(PageSliderSwipe, EscapeSlidesBack) {
    Open();
    const Picture before = Shown();
    Run([&] {
        Swipe(80).Play();
        EXPECT_TRUE(WaitFor([&] { return Shown() != before; }));
        input.Play(Finger().Key("Escape"));
        EXPECT_TRUE(WaitFor([&] { return Shown() == before; }));
        input.Play(Finger().Up());
    });
    EXPECT_TRUE(Commands().empty());
}

TEST_F(PageSliderSwipe, ShowsBothEntriesUnderTheFinger) {
    Open();
    const Picture first = Shown();
    Run([&] { input.Play(Finger().Key("Right")); });
    const Picture second = Shown();
    Run([&] { input.Play(Finger().Key("Right")); });
    const Picture third = Shown();
    Run([&] { input.Play(Finger().Key("Right")); });
    ASSERT_EQ(slider.Current(), 0u);
    // Whether the slider shows two pictures side by side, the right one from `edge` on.
    const auto showsPair = [&](const Picture& left, const Picture& right, int edge) {
        return WaitFor([&] {
            const Picture shown = Shown();
            for (int y = 0; y < 60; ++y) {
                for (int x = 0; x < 300; ++x) {
                    const COLORREF expected =
                        x < edge ? left.At(300 - edge + x, y) : right.At(x - edge, y);
                    if (shown.At(x, y) != expected) {
                        return false;
                    }
                }
            }
            return true;
        });
    };
    Run([&] {
        Swipe(90).Play();
        EXPECT_TRUE(showsPair(second, first, 90));
        Finger().MoveTo(At(150 - 90)).Play();
        EXPECT_TRUE(showsPair(first, third, 210));
        input.Play(Finger().Up());
    });
}

TEST_F(PageSliderSwipe, UpAndDownIsIgnored) {
    Open();
    const Picture before = Shown();
    Run([&] {
        Finger().Down(At(150)).DragTo(At(150), At(150, 230)).Play();
        // The press is decided: going sideways now is no swipe any more.
        Finger().DragTo(At(150, 230), At(290, 230)).Play();
        EXPECT_EQ(Shown(), before);
        input.Play(Finger().Up());
    });
    EXPECT_EQ(slider.Current(), 0u);
    EXPECT_TRUE(Commands().empty());
}

TEST_F(PageSliderSwipe, MayDestroyTheSlider) {
    Open();
    destroys = true;
    Run([&] { input.Play(Swipe(120).Up()); });
    EXPECT_EQ(Commands().size(), 1u);
    EXPECT_FALSE(slider.Handle());
}

TEST_F(PageSliderSwipe, KeepsNothing) {
    Open();
    Run([&] { input.Play(Swipe(120).Up()); });
    const Held before = CountHeld();
    for (int key = 0; key < 4; ++key) {
        SendMessageW(slider.Handle(), WM_KEYDOWN, VK_RIGHT, 0);
        UpdateWindow(slider.Handle());
    }
    EXPECT_EQ(CountHeld(), before);
}

TEST_F(PageSliderKeys, RightAndLeftMoveToTheNextAndThePrevious) {
    Open();
    const Picture first = Shown();
    Run([&] {
        input.Play(Finger().Key("Right"));
        EXPECT_EQ(slider.Current(), 1u);
        EXPECT_TRUE(WaitFor([&] { return Shown() != first; }));
        input.Play(Finger().Key("Left"));
        EXPECT_EQ(slider.Current(), 0u);
        EXPECT_TRUE(WaitFor([&] { return Shown() == first; }));
        input.Play(Finger().Key("Left"));
    });
    EXPECT_EQ(slider.Current(), 2u);
    EXPECT_EQ(Commands(), (std::vector<Command>{Change(1), Change(0), Change(2)}));
}

TEST_F(PageSliderKeys, OtherKeysDoNothing) {
    Open();
    Run([&] { input.Play(Finger().Key("Up").Key("Down").Key("Return").Key("a")); });
    EXPECT_TRUE(Commands().empty());
}

TEST_F(PageSliderKeys, AreWantedInADialog) {
    Open();
    EXPECT_EQ(SendMessageW(slider.Handle(), WM_GETDLGCODE, 0, 0), DLGC_WANTARROWS);
}

TEST_F(PageSliderEntries, OneAloneStays) {
    Open(1);
    const Picture before = Shown();
    Run([&] {
        input.Play(Swipe(120).Up());
        input.Play(Swipe(-120).Up());
        input.Play(Finger().Key("Right").Key("Left"));
    });
    EXPECT_EQ(Shown(), before);
    EXPECT_TRUE(Commands().empty());
}

TEST_F(PageSliderEntries, MayBeMissing) {
    Open(0);
    Run([&] {
        input.Play(Swipe(120).Up());
        input.Play(Finger().Key("Right").Key("Left"));
    });
    EXPECT_EQ(slider.Count(), 0u);
    EXPECT_TRUE(Commands().empty());
}

TEST_F(PageSliderEntries, NewOnesStartAtTheFirst) {
    Open();
    Run([&] { input.Play(Finger().Key("Right")); });
    ASSERT_EQ(slider.Current(), 1u);
    slider.SetEntries({{L"X", 800}, {L"Y", 801}});
    EXPECT_EQ(slider.Current(), 0u);
    EXPECT_EQ(slider.Count(), 2u);
    EXPECT_TRUE(GetUpdateRect(slider.Handle(), nullptr, FALSE));
    Run([&] { input.Play(Finger().Key("Right")); });
    EXPECT_EQ(Commands().back().wParam, static_cast<WPARAM>(MAKEWPARAM(801, 1)));
}

TEST_F(PageSliderList, OpensBesideItWithTheEntriesAndACheckOnTheCurrentOne) {
    Open();
    const DrawnTexts texts;
    Run([&] {
        const HWND list = OpenList();
        ASSERT_TRUE(list);
        EXPECT_TRUE(WaitFor([&] {
            return texts.Has(L"iiii AAAA") && texts.Has(L"BBBB WWWW") && texts.Has(L"MM CC MMM");
        }));
        const RECT place = ScreenRectangleOf(list);
        const RECT anchor = ScreenRectangleOf(slider.Handle());
        EXPECT_EQ(place.left, anchor.left);
        EXPECT_EQ(place.bottom, anchor.top);
        // The check mark stands in the column left of the first text only.
        const Picture picture = Picture::OfWindow(list);
        const int row = (place.bottom - place.top) / 3;
        const auto marked = [&](int index) {
            for (int y = index * row + 2; y < (index + 1) * row - 2; ++y) {
                for (int x = 2; x < row / 3; ++x) {
                    if (picture.At(x, y) != GetSysColor(COLOR_WINDOW)) {
                        return true;
                    }
                }
            }
            return false;
        };
        EXPECT_TRUE(marked(0));
        EXPECT_FALSE(marked(1));
        EXPECT_FALSE(marked(2));
        input.Play(Finger().Key("Escape"));
        EXPECT_TRUE(Gone(list));
    });
    EXPECT_EQ(slider.Current(), 0u);
    EXPECT_TRUE(Commands().empty());
}

TEST_F(PageSliderList, AChosenEntryIsShownAndTold) {
    Open();
    Run([&] {
        const HWND list = OpenList();
        ASSERT_TRUE(list);
        const RECT place = ScreenRectangleOf(list);
        input.Play(Finger().Tap(place.left + 60, place.bottom - (place.bottom - place.top) / 6));
        EXPECT_TRUE(Gone(list));
        EXPECT_TRUE(WaitFor([&] { return !Commands().empty(); }));
    });
    EXPECT_EQ(slider.Current(), 2u);
    EXPECT_EQ(Commands(), std::vector<Command>{Change(2)});
}

TEST_F(PageSliderList, TheCurrentEntryIsNotToldAgain) {
    Open();
    Run([&] {
        const HWND list = OpenList();
        ASSERT_TRUE(list);
        input.Play(Finger().Key("Down").Key("Return"));
        EXPECT_TRUE(Gone(list));
    });
    EXPECT_EQ(slider.Current(), 0u);
    EXPECT_TRUE(Commands().empty());
}

TEST_F(PageSliderList, AnEntryThatHasGoneMeanwhileIsNotTaken) {
    Open();
    owner.answer = [this](UINT message, WPARAM wParam, LPARAM, LRESULT*) {
        if (message == WM_APP + 1) {
            slider.SetEntries({{L"one", 800}, {L"two", 801}});
        } else if (message == WM_COMMAND) {
            commands.push_back(LOWORD(wParam));
        }
        return false;
    };
    Run([&] {
        const HWND list = OpenList();
        ASSERT_TRUE(list);
        SendMessageW(owner.Handle(), WM_APP + 1, 0, 0);
        input.Play(Finger().Key("End").Key("Return"));
        EXPECT_TRUE(Gone(list));
    });
    EXPECT_EQ(slider.Current(), 0u);
    EXPECT_TRUE(commands.empty());
}

TEST_F(PageSliderList, AHoldOpensNone) {
    Open();
    Run([&] {
        input.Play(Finger().Hold(At(150)));
        EXPECT_FALSE(WaitFor([] { return FindVisible(L"InternalSpinnerMenu") != nullptr; }, 300));
    });
    EXPECT_EQ(slider.Current(), 0u);
    EXPECT_TRUE(Commands().empty());
}

TEST_F(PageSliderList, OneEntryHasNone) {
    Open(1);
    Run([&] {
        input.Play(Finger().Tap(At(150)));
        EXPECT_FALSE(WaitFor([] { return FindVisible(L"InternalSpinnerMenu") != nullptr; }, 300));
    });
}
