#include "tests/support/platform_hook.h"
#include "tests/support/world.h"
#include "tests/ui/canvas.h"
#include "tests/ui/failing_drawing.h"
#include "tests/ui/list/sample_list.h"
#include "ui/list/scroll_indicator.h"
#include "ui/paint/paint.h"

using namespace test;
using namespace ui;

namespace {

// A device of 192 dots per inch has borders of two pixels.
int border = 1;
int(WINAPI* systemMetric)(int) = nullptr;
int WINAPI WideBorders(int index) {
    return index == SM_CXBORDER ? border : systemMetric(index);
}

class TouchListPaint : public ListTest {
 protected:
    // Paints at once and returns the rows that were drawn.
    std::vector<DRAWITEMSTRUCT> Paint() {
        list.ForgetFrames();
        InvalidateRect(list.Handle(), nullptr, FALSE);
        UpdateWindow(list.Handle());
        return list.LastRows();
    }
    Picture PictureOfList() {
        GdiFlush();
        const RECT area = {At(0, 0).x, At(0, 0).y, At(width, 0).x, At(0, height).y};
        return Picture::OfScreen(area);
    }
};

class ScrollIndicator : public testing::Test {
 protected:
    ~ScrollIndicator() override { border = 1; }

    // Compares what is drawn over a colorful background with what the rules say.
    void ExpectIndicator(int clientHeight, int totalHeight, unsigned top, unsigned count) {
        constexpr int clientWidth = 40;
        const RECT client = {0, 0, clientWidth, clientHeight};
        const Canvas canvas(clientWidth, clientHeight);
        for (int y = 0; y < clientHeight; ++y) {
            for (int x = 0; x < clientWidth; ++x) {
                SetPixel(canvas.DC(), x, y, RGB(x * 6, y % 256, (x + y) % 256));
            }
        }
        const std::vector<COLORREF> before = canvas.Pixels();
        DrawScrollIndicator(canvas.DC(), client, totalHeight, top, count);
        const int length = std::max(clientHeight * clientHeight / totalHeight, 9 * border);
        const int thumb = std::min<int>(static_cast<int>(int64_t{clientHeight} * top / count),
                                        clientHeight - length);
        for (int y = 0; y < clientHeight; ++y) {
            for (int x = 0; x < clientWidth; ++x) {
                const COLORREF old = before[static_cast<size_t>(y * clientWidth + x)];
                COLORREF expected = old;
                const int inBar = x - (clientWidth - 3 * border);
                if (totalHeight > clientHeight && inBar >= 0 && y >= thumb && y < thumb + length &&
                    inBar >= Inset(std::min(y - thumb, thumb + length - 1 - y))) {
                    expected =
                        RGB(Blend(GetRValue(old)), Blend(GetGValue(old)), Blend(GetBValue(old)));
                }
                ASSERT_EQ(canvas.At(x, y), expected) << x << ',' << y << " border " << border;
            }
        }
    }

 private:
    static int Blend(int old) {
        const int sum = 0x80 * 200 + old * 55 + 128;
        return (sum + (sum >> 8)) >> 8;
    }
    // The corners of radius 3 and 6, line by line.
    static int Inset(int line) {
        constexpr int small[] = {2, 1, 0};
        constexpr int large[] = {4, 3, 2, 1, 0, 0};
        return line >= 3 * border ? 0 : border == 1 ? small[line] : large[line];
    }
};

}  // namespace

TEST_F(TouchListPaint, EachRowGetsAListBoxRecord) {
    Open({40, 50, 60});
    list.SetSelection(1);
    const std::vector<DRAWITEMSTRUCT> rows = Paint();
    ASSERT_EQ(rows.size(), 3u);
    const int tops[] = {0, 40, 90, 150};
    for (unsigned index = 0; index < 3; ++index) {
        const DRAWITEMSTRUCT& row = rows[index];
        EXPECT_EQ(row.CtlType, 2u);
        EXPECT_EQ(row.CtlID, SampleList::id);
        EXPECT_EQ(row.itemID, index);
        EXPECT_EQ(row.itemAction, 1u);
        EXPECT_EQ(row.itemState, index == 1 ? 1u : 0u);
        EXPECT_EQ(row.hwndItem, list.Handle());
        EXPECT_TRUE(row.hDC);
        EXPECT_EQ(row.rcItem.left, 0);
        EXPECT_EQ(row.rcItem.right, width);
        EXPECT_EQ(row.rcItem.top, tops[index]);
        EXPECT_EQ(row.rcItem.bottom, tops[index + 1]);
        EXPECT_EQ(row.itemData, SampleList::firstData + index);
    }
}

TEST_F(TouchListPaint, DrawsFromTheTopRowUntilTheWindowIsFull) {
    Open(EqualHeights(20, 40));
    list.SetTopIndex(3);
    const std::vector<DRAWITEMSTRUCT> rows = Paint();
    ASSERT_EQ(rows.size(), 8u);
    EXPECT_EQ(rows.front().itemID, 3u);
    EXPECT_EQ(rows.front().rcItem.top, 0);
    EXPECT_EQ(rows.back().itemID, 10u);
    EXPECT_EQ(rows.back().rcItem.bottom, 320);
}

TEST_F(TouchListPaint, RowsThatFillTheWindowExactlyAreNotFollowedByAnother) {
    Open(EqualHeights(20, 50));
    EXPECT_EQ(Paint().size(), 6u);
}

TEST_F(TouchListPaint, AnEmptyListShowsItsBackgroundAlone) {
    Open({});
    EXPECT_TRUE(Paint().empty());
    EXPECT_EQ(list.Frames().size(), 1u);
    EXPECT_TRUE(PumpUntil([&] {
        const Picture picture = PictureOfList();
        return picture.At(0, 0) == SampleList::background &&
               picture.At(width - 1, height - 1) == SampleList::background;
    }));
}

TEST_F(TouchListPaint, IsSeenOnTheScreenRowByRow) {
    Open({30, 50, 70});
    list.SetTopIndex(0);
    Paint();
    EXPECT_TRUE(PumpUntil([&] {
        const Picture picture = PictureOfList();
        return picture.At(5, 0) == SampleList::ColorOf(0) &&
               picture.At(5, 29) == SampleList::ColorOf(0) &&
               picture.At(5, 30) == SampleList::ColorOf(1) &&
               picture.At(5, 149) == SampleList::ColorOf(2) &&
               picture.At(width - 1, 149) == SampleList::ColorOf(2) &&
               picture.At(5, 150) == SampleList::background;
    }));
}

TEST_F(TouchListPaint, TheIndicatorIsSeenAtTheRightEdge) {
    Open(EqualHeights(20, 40));
    list.SetTopIndex(10);
    Paint();
    const int b = GetSystemMetrics(SM_CXBORDER);
    // 300 * 300 / 800 long from 300 * 10 / 20.
    EXPECT_TRUE(PumpUntil([&] {
        const Picture picture = PictureOfList();
        const auto plain = [&](int y) {
            return SampleList::ColorOf(10 + static_cast<unsigned>(y) / 40);
        };
        return picture.At(width - 1, 149) == plain(149) &&
               picture.At(width - 1, 150) != plain(150) &&
               picture.At(width - 1, 261) != plain(261) &&
               picture.At(width - 1, 262) == plain(262) &&
               picture.At(width - 3 * b, 200) != plain(200) &&
               picture.At(width - 3 * b - 1, 200) == plain(200);
    }));
}

TEST_F(TouchListPaint, AskingToEraseIsAnsweredWithoutDrawing) {
    Open({40});
    EXPECT_EQ(SendMessageW(list.Handle(), WM_ERASEBKGND, 0, 0), 1);
    EXPECT_TRUE(list.Frames().empty());
}

TEST_F(TouchListPaint, AFrameWithoutMemoryOrExtentIsSkippedSilently) {
    Open({40, 40});
    {
        const PlatformHook dc("CreateCompatibleDC", NoDC);
        Paint();
    }
    {
        const PlatformHook bitmap("CreateCompatibleBitmap", NoBitmap);
        Paint();
    }
    {
        const PlatformHook client("GetClientRect", NoClient);
        Paint();
    }
    EXPECT_TRUE(list.Frames().empty());
    // The update region is taken, so that the window is not asked for ever.
    EXPECT_FALSE(GetUpdateRect(list.Handle(), nullptr, FALSE));
    EXPECT_EQ(Paint().size(), 2u);
}

TEST_F(TouchListPaint, PaintingAndDraggingGiveBackEveryObject) {
    Open(EqualHeights(50, 40));
    const auto round = [&] {
        Paint();
        GestureInfo info;
        info.result = GestureHold;
        SendMessageW(list.Handle(), WM_QUERYDRAGTRACKER, 0, reinterpret_cast<LPARAM>(&info));
        ASSERT_TRUE(info.tracker && info.tracker->Start(60, 250));
        info.tracker->Move(60, 210);
        info.tracker->Release();
        list.SetTopIndex(0);
    };
    round();
    const Held before = CountHeld();
    for (int count = 0; count < 1000; ++count) {
        round();
    }
    EXPECT_EQ(CountHeld(), before);
}

TEST_F(ScrollIndicator, IsATranslucentBarWithARoundedLeftSide) {
    const PlatformHook metrics("GetSystemMetrics", WideBorders);
    systemMetric = metrics.Original();
    for (const int wide : {1, 2}) {
        border = wide;
        ExpectIndicator(100, 300, 0, 10);
        ExpectIndicator(100, 300, 5, 10);
        ExpectIndicator(100, 300, 9, 10);
        ExpectIndicator(101, 103, 0, 3);
    }
}

TEST_F(ScrollIndicator, IsNeverShorterThanNineBorders) {
    const PlatformHook metrics("GetSystemMetrics", WideBorders);
    systemMetric = metrics.Original();
    for (const int wide : {1, 2}) {
        border = wide;
        ExpectIndicator(100, 4000000, 50000, 100000);
        ExpectIndicator(100, 4000000, 99999, 100000);
    }
}

TEST_F(ScrollIndicator, IsAbsentWhenTheRowsFit) {
    ExpectIndicator(100, 100, 0, 4);
    ExpectIndicator(100, 40, 0, 4);
}

TEST_F(ScrollIndicator, IsAbsentInAWindowOfSixBorders) {
    const PlatformHook metrics("GetSystemMetrics", WideBorders);
    systemMetric = metrics.Original();
    for (const int clientWidth : {6, 7}) {
        const Canvas canvas(clientWidth, 50, RGB(255, 0, 0));
        DrawScrollIndicator(canvas.DC(), RECT{0, 0, clientWidth, 50}, 100, 0, 4);
        EXPECT_EQ(canvas.At(clientWidth - 1, 10) == RGB(255, 0, 0), clientWidth == 6);
    }
}
