#include "ui/bar/slide_bar.h"
#include "res/resource.h"
#include "tests/support/finger.h"
#include "tests/support/world.h"
#include "tests/ui/bar/sample_bar.h"
#include "ui/paint/drawing_resources.h"
#include "ui/paint/theme.h"

using namespace test;
using ui::PlaceSlideBar;
using ui::SlideBarPlace;

namespace {

// The views: four commands. The menu with popups.

class SlideBarFixture : public testing::Test {
 protected:
    SlideBarFixture() {
        owner.answer = [this](UINT message, WPARAM wParam, LPARAM lParam, LRESULT*) {
            if (message == WM_COMMAND || message == WM_INITMENUPOPUP) {
                const std::lock_guard lock(mutex_);
                (message == WM_COMMAND ? commands_ : popups_).push_back(Command{wParam, lParam});
                menusSeen_ += message == WM_INITMENUPOPUP ? Popups().size() : 0;
            }
            if (message == WM_COMMAND && destroys) {
                bar.Destroy();
            }
            return false;
        };
    }
    ~SlideBarFixture() override { ui::Resources().Load(); }

    void Open(UINT menu, const RECT& bounds) {
        ASSERT_TRUE(owner.Open());
        ASSERT_TRUE(bar.Open(owner.Handle()));
        ASSERT_TRUE(bar.LoadBar(menu));
        MoveWindow(bar.Handle(), bounds.left, bounds.top, ui::Width(bounds), ui::Height(bounds),
                   TRUE);
        ShowWindow(bar.Handle(), SW_SHOW);
        SetFocus(owner.Handle());
        ASSERT_TRUE(PumpUntil([&] {
            return GetForegroundWindow() == owner.Handle() &&
                   Has(Picture::OfWindow(bar.Handle()), ui::barColor);
        }));
    }
    void OpenLevel(UINT menu = IDR_SLIDE_BAR) { Open(menu, RECT{0, 100, 400, 195}); }
    void OpenUpright(UINT menu = IDR_SLIDE_BAR) { Open(menu, RECT{0, 20, 60, 600}); }

    POINT At(int x, int y) const { return OnScreen(bar.Handle(), x, y); }
    // An entry's part of a level bar of four entries and 400 pixels.
    RECT LevelEntry(int entry) const {
        RECT area = ScreenRectangleOf(bar.Handle());
        area.left += 100 * entry;
        area.right = area.left + 100;
        return area;
    }
    bool Shows(int entry, COLORREF color, bool shown = true) const {
        return WaitFor([&] { return Has(Picture::OfScreen(LevelEntry(entry)), color) == shown; });
    }
    Command CommandOf(UINT id) const { return Command{id, reinterpret_cast<LPARAM>(bar.Handle())}; }
    std::vector<Command> Commands() const {
        const std::lock_guard lock(mutex_);
        return commands_;
    }
    std::vector<Command> InitialisedPopups() const {
        const std::lock_guard lock(mutex_);
        return popups_;
    }
    void Run(const std::function<void()>& script) { PumpWhileUser(script); }

    InputTaken input;
    SampleOwner owner;
    ui::SlideBar bar;
    std::atomic<bool> destroys = false;
    // How many menus were on the screen when the parent was asked to prepare one.
    std::atomic<size_t> menusSeen_ = 0;

 private:
    mutable std::mutex mutex_;
    std::vector<Command> commands_;
    std::vector<Command> popups_;
};

class SlideBarWindow : public SlideBarFixture {};
class SlideBarTap : public SlideBarFixture {};
class SlideBarPopup : public SlideBarFixture {};
class SlideBarLook : public SlideBarFixture {};

}  // namespace

TEST(SlideBarPlacement, TakesNothingFromSmallUprightScreens) {
    EXPECT_EQ(PlaceSlideBar(240, 280, 30, 47), SlideBarPlace::None);
    EXPECT_EQ(PlaceSlideBar(480, 600, 60, 95), SlideBarPlace::None);
}

TEST(SlideBarPlacement, IsTheTopOfATallScreen) {
    EXPECT_EQ(PlaceSlideBar(480, 750, 60, 95), SlideBarPlace::Top);
    EXPECT_EQ(PlaceSlideBar(480, 635, 60, 95), SlideBarPlace::Top);
    EXPECT_EQ(PlaceSlideBar(480, 634, 60, 95), SlideBarPlace::None);
}

TEST(SlideBarPlacement, IsTheLeftOfAWideScreen) {
    EXPECT_EQ(PlaceSlideBar(800, 430, 60, 95), SlideBarPlace::Left);
    EXPECT_EQ(PlaceSlideBar(660, 440, 60, 95), SlideBarPlace::Left);
    EXPECT_EQ(PlaceSlideBar(659, 440, 60, 95), SlideBarPlace::None);
    EXPECT_EQ(PlaceSlideBar(570, 300, 60, 95), SlideBarPlace::Left);
    EXPECT_EQ(PlaceSlideBar(569, 300, 60, 95), SlideBarPlace::None);
}

TEST(SlideBarPlacement, IsNowhereWhileTheRowsHaveNoHeight) {
    EXPECT_EQ(PlaceSlideBar(480, 750, 0, 95), SlideBarPlace::None);
}

TEST_F(SlideBarWindow, IsAChildWithoutASizeAtFirst) {
    ASSERT_TRUE(owner.Open());
    ASSERT_TRUE(bar.Open(owner.Handle()));
    EXPECT_EQ(ClassOf(bar.Handle()), L"kx::SlideBar");
    EXPECT_EQ(GetWindowLongW(bar.Handle(), GWL_STYLE),
              static_cast<LONG>(WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS | WS_CLIPCHILDREN));
    EXPECT_EQ(bar.ClientRectangle().right, 0);
    EXPECT_EQ(GetParent(bar.Handle()), owner.Handle());
    EXPECT_EQ(GetClassLongW(bar.Handle(), GCL_STYLE), 0xBu);
}

TEST_F(SlideBarWindow, HasTheItemsOfItsMenu) {
    OpenLevel();
    ASSERT_TRUE(bar.Menu());
    EXPECT_EQ(GetMenuItemCount(bar.Menu()), 4);
    EXPECT_EQ(GetMenuItemID(bar.Menu(), 3), 603u);
}

TEST_F(SlideBarWindow, IsEmptyWithoutItsMenu) {
    OpenLevel();
    EXPECT_FALSE(bar.LoadBar(9999));
    EXPECT_FALSE(bar.Menu());
    Run([&] { input.Play(Finger().Tap(At(50, 50))); });
    EXPECT_TRUE(Commands().empty());
}

TEST_F(SlideBarWindow, OwnsItsMenu) {
    HMENU menu = nullptr;
    {
        ui::SlideBar other;
        ASSERT_TRUE(owner.Open());
        ASSERT_TRUE(other.Open(owner.Handle()));
        ASSERT_TRUE(other.LoadBar(IDR_SLIDE_BAR));
        menu = other.Menu();
        EXPECT_TRUE(IsMenu(menu));
    }
    EXPECT_FALSE(IsMenu(menu));
}

TEST_F(SlideBarWindow, IsAsThickAsAnIconWithAMargin) {
    OpenLevel();
    EXPECT_GT(bar.Thickness(), ui::Resources().MainStrip().IconSize());
    EXPECT_LE(bar.Thickness(), ui::Resources().MainStrip().IconSize() * 3 / 2);
}

TEST_F(SlideBarTap, SendsTheEntrysCommandToTheParent) {
    OpenLevel();
    Run([&] {
        input.Play(Finger().Tap(At(350, 50)));
        input.Play(Finger().Tap(At(5, 90)));
    });
    EXPECT_EQ(Commands(),
              (std::vector<Command>{CommandOf(ID_SHOW_SYSTEM_STATUS), CommandOf(ID_SHOW_FILES)}));
    EXPECT_TRUE(InitialisedPopups().empty());
}

TEST_F(SlideBarTap, FindsEntriesOneAboveTheOther) {
    OpenUpright();
    Run([&] {
        input.Play(Finger().Tap(At(30, 119)));
        input.Play(Finger().Tap(At(30, 121)));
        input.Play(Finger().Tap(At(30, 479)));
    });
    EXPECT_EQ(Commands(),
              (std::vector<Command>{CommandOf(ID_SHOW_FILES), CommandOf(ID_SHOW_APPLICATIONS),
                                    CommandOf(ID_SHOW_SYSTEM_STATUS)}));
}

TEST_F(SlideBarTap, BelowTheLastEntryDoesNothing) {
    OpenUpright();
    Run([&] { input.Play(Finger().Tap(At(30, 500))); });
    EXPECT_TRUE(Commands().empty());
}

TEST_F(SlideBarTap, AHoldCountsAsOne) {
    OpenLevel();
    Run([&] { input.Play(Finger().Hold(At(150, 50))); });
    EXPECT_EQ(Commands(), std::vector<Command>{CommandOf(ID_SHOW_APPLICATIONS)});
}

TEST_F(SlideBarTap, SlidingOffDoesNothing) {
    OpenLevel();
    Run([&] {
        const POINT from = At(150, 50);
        input.Play(Finger().Down(from).DragTo(from, POINT{from.x, from.y + 200}).Up());
        const POINT across = {from.x + 150, from.y};
        input.Play(Finger().Down(from).DragTo(from, across).Up());
        EXPECT_TRUE(Shows(1, ui::barPressedColor, false));
    });
    EXPECT_TRUE(Commands().empty());
}

TEST_F(SlideBarTap, OfADisabledEntryDoesNothing) {
    OpenLevel();
    EnableMenuItem(bar.Menu(), ID_SHOW_APPLICATIONS, MF_BYCOMMAND | MF_GRAYED);
    Run([&] { input.Play(Finger().Tap(At(150, 50))); });
    EXPECT_TRUE(Commands().empty());
}

TEST_F(SlideBarTap, MayDestroyTheBar) {
    OpenLevel();
    destroys = true;
    Run([&] { input.Play(Finger().Tap(At(150, 50))); });
    EXPECT_EQ(Commands().size(), 1u);
    EXPECT_FALSE(bar.Handle());
}

TEST_F(SlideBarPopup, IsPreparedByTheParentBeforeItOpens) {
    Open(IDR_FILES, RECT{0, 500, 400, 595});
    const HMENU popup = GetSubMenu(bar.Menu(), 1);
    Run([&] {
        EXPECT_TRUE(Finger().Tap(At(300, 50)).Play());
        WaitForPopups(1);
        EXPECT_EQ(InitialisedPopups(),
                  (std::vector<Command>{Command{reinterpret_cast<WPARAM>(popup), 1}}));
        EXPECT_EQ(menusSeen_, 0u);
        input.Play(Finger().Key("Escape"));
        EXPECT_TRUE(WaitFor([] { return Popups().empty(); }));
    });
    EXPECT_TRUE(Commands().empty());
}

TEST_F(SlideBarPopup, SendsWhatIsChosen) {
    Open(IDR_FILES, RECT{0, 500, 400, 595});
    Run([&] {
        EXPECT_TRUE(Finger().Tap(At(300, 50)).Play());
        const HWND popup = WaitForPopups(1);
        ASSERT_TRUE(popup);
        EXPECT_EQ(ScreenRectangleOf(popup).left, At(200, 0).x);
        input.Play(Finger().Tap(RowPoint(popup, 2)));
        EXPECT_TRUE(WaitFor([] { return Popups().empty(); }));
    });
    EXPECT_EQ(Commands(), std::vector<Command>{CommandOf(ID_SHOW_PROCESSES)});
}

TEST_F(SlideBarLook, ShowsThePressAtOnce) {
    OpenLevel();
    Run([&] {
        EXPECT_TRUE(Finger().Down(At(150, 50)).Play());
        EXPECT_TRUE(Shows(1, ui::barPressedColor));
        EXPECT_TRUE(Shows(0, ui::barPressedColor, false));
        input.Play(Finger().Up());
        EXPECT_TRUE(Shows(1, ui::barPressedColor, false));
    });
}

TEST_F(SlideBarLook, MarksTheCheckedEntryAlone) {
    OpenLevel();
    CheckMenuItem(bar.Menu(), ID_SHOW_PROCESSES, MF_BYCOMMAND | MF_CHECKED);
    InvalidateRect(bar.Handle(), nullptr, FALSE);
    Run([&] {
        EXPECT_TRUE(Shows(2, ui::barFocusColor));
        for (const int other : {0, 1, 3}) {
            EXPECT_TRUE(Shows(other, ui::barFocusColor, false));
        }
    });
}

TEST_F(SlideBarLook, EveryEntryHasAnIconOfItsOwn) {
    OpenLevel();
    const Picture first = Picture::OfScreen(LevelEntry(0));
    for (int entry = 0; entry < 4; ++entry) {
        const Picture picture = Picture::OfScreen(LevelEntry(entry));
        EXPECT_NE(picture, Picture(100, 95, std::vector<COLORREF>(100 * 95, ui::barColor)));
        EXPECT_EQ(picture == first, entry == 0) << entry;
    }
}

TEST_F(SlideBarLook, WithoutIconsShowsTheTexts) {
    OpenLevel();
    ui::Resources().MainStrip() = ui::ImageStrip();
    InvalidateRect(bar.Handle(), nullptr, FALSE);
    Run([&] {
        for (int entry = 0; entry < 4; ++entry) {
            EXPECT_TRUE(Shows(entry, ui::barTextColor)) << entry;
        }
    });
}

TEST_F(SlideBarLook, PaintingKeepsNothing) {
    OpenLevel();
    UpdateWindow(bar.Handle());
    const Held before = CountHeld();
    for (int round = 0; round < 20; ++round) {
        InvalidateRect(bar.Handle(), nullptr, FALSE);
        UpdateWindow(bar.Handle());
    }
    EXPECT_EQ(CountHeld(), before);
}
