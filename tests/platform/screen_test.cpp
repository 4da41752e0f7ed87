#include "platform/desktop/screen.h"

#include <gtest/gtest.h>

#include <vector>

#include "platform/aygshell.h"
#include "platform/drawing.h"
#include "platform/handles.h"
#include "tests/support/monitor.h"

using namespace test;
using platform::desktop::WindowPlace;

namespace {

using EdgeList = std::vector<LONG>;

// The edges as a failure shows them.
EdgeList Edges(const RECT& rectangle) {
    return {rectangle.left, rectangle.top, rectangle.right, rectangle.bottom};
}

RECT Place(const RECT& workArea, int dotsPerInch = 96) {
    return WindowPlace(workArea, dotsPerInch);
}

RECT Screen() {
    RECT rectangle = {-1, -1, -1, -1};
    EXPECT_TRUE(platform::ScreenRectangle(&rectangle));
    return rectangle;
}

int dots = 0;

int WINAPI TellDots(HDC, int) {
    return dots;
}

using DeviceCaps = int(HDC, int);

class PlainWindow {
 public:
    explicit PlainWindow(DWORD style)
        : handle_(CreateWindowExW(0, L"STATIC", L"", WS_POPUP | style, 10, 20, 100, 50, nullptr,
                                  nullptr, nullptr, nullptr)) {}
    ~PlainWindow() { DestroyWindow(handle_); }
    HWND Handle() const { return handle_; }

 private:
    HWND handle_;
};

}  // namespace

TEST(WindowPlace, IsTheWholeOfASmallWorkArea) {
    EXPECT_EQ(Edges(Place(RECT{0, 0, 480, 640})), (EdgeList{0, 0, 480, 640}));
    EXPECT_EQ(Edges(Place(RECT{0, 26, 240, 294})), (EdgeList{0, 26, 240, 294}));
    EXPECT_EQ(Edges(Place(RECT{0, 0, 800, 480}, 192)), (EdgeList{0, 0, 800, 480}));
    EXPECT_EQ(Edges(Place(RECT{0, 0, 1, 1})), (EdgeList{0, 0, 1, 1}));
    EXPECT_EQ(Edges(Place(RECT{5, 0, 605, 2000})), (EdgeList{5, 0, 605, 2000}));
}

TEST(WindowPlace, HasAHandheldsProportionsInTheMiddleOfALargeWorkArea) {
    EXPECT_EQ(Edges(Place(RECT{0, 0, 1920, 1040})), (EdgeList{720, 200, 1200, 840}));
    EXPECT_EQ(Edges(Place(RECT{1000, 40, 2920, 1080})), (EdgeList{1720, 240, 2200, 880}));
}

TEST(WindowPlace, GrowsWithTheResolution) {
    EXPECT_EQ(Edges(Place(RECT{0, 0, 4000, 2000}, 192)), (EdgeList{1520, 360, 2480, 1640}));
}

TEST(WindowPlace, IsNoHigherOrWiderThanTheWorkArea) {
    EXPECT_EQ(Edges(Place(RECT{0, 0, 1200, 612})), (EdgeList{370, 0, 829, 612}));
    EXPECT_EQ(Edges(Place(RECT{0, 0, 700, 2000}, 192)), (EdgeList{0, 360, 700, 1640}));
}

TEST(ScreenRectangle, OfAHandheldIsItsScreen) {
    const Monitor monitor(RECT{0, 0, 240, 320});
    EXPECT_EQ(Edges(Screen()), (EdgeList{0, 0, 240, 320}));
}

TEST(ScreenRectangle, CountsTheWholeScreenNotTheWorkArea) {
    const Monitor monitor(RECT{0, 0, 480, 640}, RECT{0, 52, 480, 600});
    EXPECT_EQ(Edges(Screen()), (EdgeList{0, 0, 480, 640}));
}

TEST(ScreenRectangle, OfALargeScreenIsAHandheldsAtTheSameResolution) {
    const Monitor monitor(RECT{0, 0, 1920, 1080});
    const PlatformHook<DeviceCaps> hook("GetDeviceCaps", TellDots);
    dots = 96;
    EXPECT_EQ(Edges(Screen()), (EdgeList{0, 0, 240, 320}));
    dots = 192;
    EXPECT_EQ(Edges(Screen()), (EdgeList{0, 0, 480, 640}));
    dots = 0;
    EXPECT_EQ(Edges(Screen()), (EdgeList{0, 0, 240, 320}));
}

TEST(ScreenRectangle, ThatCannotBeReadFails) {
    Monitor monitor(RECT{0, 0, 480, 640});
    monitor.Fail();
    RECT rectangle;
    EXPECT_FALSE(platform::ScreenRectangle(&rectangle));
}

TEST(VisibleArea, IsTheWorkAreaOfASmallScreen) {
    const Monitor monitor(RECT{0, 0, 480, 640}, RECT{0, 52, 480, 588});
    const PlainWindow window(WS_VISIBLE);
    RECT area = {};
    ASSERT_TRUE(platform::VisibleArea(window.Handle(), &area));
    EXPECT_EQ(Edges(area), (EdgeList{0, 52, 480, 588}));
}

TEST(VisibleArea, OfALargeScreenIsWhereAPersonHasPutTheWindow) {
    const Monitor monitor(RECT{0, 0, 1920, 1080});
    RECT area = {};
    {
        const PlainWindow hidden(0);
        ASSERT_TRUE(platform::VisibleArea(hidden.Handle(), &area));
        EXPECT_EQ(Edges(area),
                  Edges(Place(RECT{0, 0, 1920, 1080}, platform::desktop::DotsPerInch())));
    }
    const PlainWindow window(WS_VISIBLE);
    ASSERT_TRUE(platform::VisibleArea(window.Handle(), &area));
    EXPECT_EQ(Edges(area), (EdgeList{10, 20, 110, 70}));
}

TEST(VisibleArea, ThatCannotBeReadFails) {
    Monitor monitor(RECT{0, 0, 480, 640});
    monitor.Fail();
    RECT area;
    EXPECT_FALSE(platform::VisibleArea(nullptr, &area));
}

TEST(SystemFont, IsReadableAtAHandheldsProportions) {
    LOGFONTW font = {};
    ASSERT_TRUE(GetObjectW(platform::SystemFont(), sizeof font, &font));
    EXPECT_EQ(font.lfHeight, -MulDiv(12, platform::desktop::DotsPerInch(), 96));
    EXPECT_EQ(font.lfWeight, FW_NORMAL);
    EXPECT_EQ(platform::SystemFont(), platform::SystemFont());
    const PlatformHook<DeviceCaps> hook("GetDeviceCaps", TellDots);
    dots = 480;
    const platform::UniqueFont large(platform::desktop::CreateSystemFont());
    ASSERT_TRUE(GetObjectW(large.Get(), sizeof font, &font));
    EXPECT_EQ(font.lfHeight, -60);
}

TEST(MenuBarOfAWindow, IsAbsentOnAPC) {
    const PlainWindow window(WS_VISIBLE);
    EXPECT_FALSE(platform::FindMenuBar(window.Handle()));
}

TEST(RescaledPlace, KeepsTheMiddleAndTheSizeInInches) {
    const RECT workArea = {0, 0, 3000, 2000};
    const auto rescaled = [&](const RECT& place, int before, int now) {
        return Edges(platform::desktop::RescaledPlace(place, workArea, before, now));
    };
    EXPECT_EQ(rescaled(RECT{1000, 600, 1480, 1240}, 96, 192), (EdgeList{760, 280, 1720, 1560}));
    EXPECT_EQ(rescaled(RECT{760, 280, 1720, 1560}, 192, 96), (EdgeList{1000, 600, 1480, 1240}));
    EXPECT_EQ(rescaled(RECT{100, 100, 300, 400}, 96, 144), (EdgeList{50, 25, 350, 475}));
}

TEST(RescaledPlace, StaysInsideTheWorkArea) {
    const RECT workArea = {1000, 40, 2000, 1040};
    const auto rescaled = [&](const RECT& place) {
        return Edges(platform::desktop::RescaledPlace(place, workArea, 96, 192));
    };
    EXPECT_EQ(rescaled(RECT{900, 0, 1200, 300}), (EdgeList{1000, 40, 1600, 640}));
    EXPECT_EQ(rescaled(RECT{1900, 900, 2200, 1200}), (EdgeList{1400, 440, 2000, 1040}));
    EXPECT_EQ(rescaled(RECT{1100, 100, 1900, 900}), (EdgeList{1000, 40, 2000, 1040}));
}

TEST(RescaledPlace, IsTheWholeOfASmallWorkArea) {
    const RECT place =
        platform::desktop::RescaledPlace(RECT{10, 10, 200, 200}, RECT{0, 20, 480, 640}, 96, 192);
    EXPECT_EQ(Edges(place), (EdgeList{0, 20, 480, 640}));
}
