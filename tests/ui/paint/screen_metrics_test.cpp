#include "ui/paint/screen_metrics.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "platform/drawing.h"
#include "tests/support/platform_hook.h"

using namespace ui;

namespace {

RECT hookedScreen = {};

BOOL WINAPI OtherMonitor(HMONITOR, MONITORINFO* monitor) {
    monitor->rcMonitor = monitor->rcWork = hookedScreen;
    return hookedScreen.right != 0;
}

}  // namespace

TEST(ScreenMetrics, AreSixthsAndFifthsOfTheShortSide) {
    const ScreenMetrics metrics = MetricsForShortSide(485);
    EXPECT_EQ(metrics.iconSize, 80u);
    EXPECT_EQ(metrics.touchWidth, 97u);
    EXPECT_EQ(metrics.touchHeight, 97u);
    EXPECT_EQ(metrics.touchSize, 97u);
    EXPECT_EQ(MetricsForShortSide(240).iconSize, 40u);
    EXPECT_EQ(MetricsForShortSide(911).iconSize, 151u);
    EXPECT_EQ(MetricsForShortSide(912).iconSize, 152u);
}

TEST(ScreenMetrics, AScreenWithoutExtentHasNone) {
    EXPECT_EQ(MetricsForShortSide(0).iconSize, 0u);
    EXPECT_EQ(MetricsForShortSide(0).touchSize, 0u);
}

TEST(ScreenMetrics, FollowThisScreensShorterSide) {
    const int side = std::min(GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN));
    EXPECT_EQ(GetScreenMetrics().shortSide, static_cast<unsigned>(side));
    EXPECT_EQ(GetScreenMetrics().iconSize, static_cast<unsigned>(side) / 6);
    EXPECT_EQ(GetScreenMetrics().touchSize, static_cast<unsigned>(side) / 5);
}

TEST(ScreenMetrics, AreMeasuredOnceAndKept) {
    const unsigned before = GetScreenMetrics().iconSize;
    hookedScreen = RECT{0, 0, 300, 301};
    const test::PlatformHook monitor("GetMonitorInfoW", OtherMonitor);
    EXPECT_EQ(GetScreenMetrics().iconSize, before);
}

TEST(ScreenMetrics, TheScreenIsTheMonitorsWholeRectangle) {
    hookedScreen = RECT{5, 7, 245, 327};
    const test::PlatformHook monitor("GetMonitorInfoW", OtherMonitor);
    RECT screen = {};
    ASSERT_TRUE(platform::ScreenRectangle(&screen));
    EXPECT_TRUE(EqualRect(&screen, &hookedScreen));
    hookedScreen = RECT{};
    EXPECT_FALSE(platform::ScreenRectangle(&screen));
}
