// What a row of System Status looks like.
#include "tests/support/platform_hook.h"
#include "tests/views/drawn_row.h"
#include "tests/views/rows.h"
#include "tests/views/status_fixture.h"
#include "ui/paint/drawing_resources.h"
#include "ui/paint/paint.h"

using namespace test;
using namespace views;

namespace {

struct DrawnIcon {
    int x;
    int y;
    int size;
    int sourceX;
    COLORREF transparent;
};
std::vector<DrawnIcon> icons;

using Transparent = BOOL(HDC, int, int, int, int, HDC, int, int, int, int, UINT);
Transparent* realTransparent = nullptr;

BOOL WINAPI NoteIcon(HDC dc, int x, int y, int width, int height, HDC source, int sourceX,
                     int sourceY, int sourceWidth, int sourceHeight, UINT transparent) {
    icons.push_back({x, y, width, sourceX, transparent});
    return realTransparent(dc, x, y, width, height, source, sourceX, sourceY, sourceWidth,
                           sourceHeight, transparent);
}

// A screen whose lines are two pixels wide.
decltype(GetSystemMetrics)* systemMetric = nullptr;
int WINAPI TellWideBorder(int metric) {
    return metric == SM_CXBORDER ? 2 : systemMetric(metric);
}

constexpr int rowWidth = 460;
constexpr COLORREF drawnRed = 200;

}  // namespace

class StatusRowLook : public StatusFixture {
 protected:
    StatusRowLook() : hook_("TransparentBlt", NoteIcon) {
        realTransparent = hook_.Original();
        icons.clear();
    }
    int Height() { return HeightOf(List(), 0); }
    DrawnRow Draw(unsigned row, bool selected = false, int width = rowWidth) {
        icons.clear();
        return DrawnRow(List(), row, SIZE{width, Height()}, selected);
    }
    // How many pixels of a line have a color, right of the icon.
    static int CountColor(const DrawnRow& row, int y, COLORREF color) {
        int count = 0;
        for (int x = row.Texts().at(0).x; x < rowWidth; ++x) {
            count += row.At(x, y) == color;
        }
        return count;
    }
    // The middle line of the bar: below the label and a border of the bar's own.
    static int BarLine(const DrawnRow& row) {
        const DrawnText& label = row.Texts().at(0);
        const DrawnText& value = row.Texts().at(1);
        return (label.y + label.size.cy + value.y) / 2;
    }

 private:
    PlatformHook<Transparent> hook_;
};

TEST_F(StatusRowLook, TheLabelStandsAboveTheBarAndTheValueBelowIt) {
    Open();
    const DrawnRow row = Draw(0);
    ASSERT_EQ(row.Texts().size(), 2u);
    const DrawnText& label = row.Texts()[0];
    const DrawnText& value = row.Texts()[1];
    EXPECT_EQ(label.text, L"Battery");
    EXPECT_EQ(value.text, L"75%");
    EXPECT_GE(value.y - (label.y + label.size.cy), 12);
    EXPECT_LE(value.y + value.size.cy, Height());
    EXPECT_GE(label.y, 0);
    EXPECT_LT(value.size.cy, label.size.cy);
    EXPECT_EQ(label.color, GetSysColor(COLOR_WINDOWTEXT));
}

TEST_F(StatusRowLook, TheValueEndsWhereTheBarEnds) {
    Open();
    const DrawnRow row = Draw(0);
    const int line = BarLine(row);
    int last = rowWidth - 1;
    while (row.At(last, line) == GetSysColor(COLOR_WINDOW)) {
        --last;
    }
    const DrawnText& value = row.Texts().at(1);
    EXPECT_EQ(value.x + value.size.cx, last + 1);
    int first = row.Texts().at(0).x - 1;
    EXPECT_EQ(row.At(first, line), GetSysColor(COLOR_WINDOW));
    EXPECT_NE(row.At(first + 1, line), GetSysColor(COLOR_WINDOW));
}

TEST_F(StatusRowLook, TheIconComesFromTheStripAndStandsInTheMiddle) {
    device.batteryFlag = 8;
    AddCard(L'M');
    Open();
    const int size = ui::Resources().StatusStrip().IconSize();
    const int expected[] = {1, 3, 4, 5};
    for (unsigned row = 0; row < 4; ++row) {
        const DrawnRow drawn = Draw(row);
        ASSERT_EQ(icons.size(), 1u);
        EXPECT_EQ(icons[0].sourceX, size * expected[row]);
        EXPECT_EQ(icons[0].size, size);
        EXPECT_EQ(icons[0].transparent, GetSysColor(COLOR_WINDOW));
        // The row is drawn seven pixels below the picture's upper edge.
        EXPECT_EQ(icons[0].y - 7, (Height() - size) / 2);
        EXPECT_GE(drawn.Texts().at(0).x, icons[0].x + size);
    }
}

TEST_F(StatusRowLook, TheBarIsFilledToThePercentageInItsColor) {
    device.batteryPercent = 50;
    Open();
    const DrawnRow half = Draw(0);
    const int filled = CountColor(half, BarLine(half), GetSysColor(COLOR_HIGHLIGHT));
    EXPECT_GT(filled, rowWidth / 4);
    device.batteryPercent = 100;
    View().Refresh();
    const DrawnRow full = Draw(0);
    EXPECT_NEAR(CountColor(full, BarLine(full), GetSysColor(COLOR_HIGHLIGHT)), 2 * filled, 1);
    EXPECT_EQ(CountColor(full, BarLine(full), drawnRed), 0);
}

TEST_F(StatusRowLook, ALowBatteryHasARedBar) {
    device.batteryPercent = 10;
    Open();
    const DrawnRow low = Draw(0);
    EXPECT_GT(CountColor(low, BarLine(low), drawnRed), 10);
    device.batteryPercent = 11;
    View().Refresh();
    const DrawnRow enough = Draw(0);
    EXPECT_EQ(CountColor(enough, BarLine(enough), drawnRed), 0);
}

TEST_F(StatusRowLook, NoBatteryIsAnEmptyBar) {
    device.batteryFlag = 128;
    Open();
    const DrawnRow row = Draw(0);
    EXPECT_EQ(row.Texts().at(1).text, L"Unknown");
    EXPECT_EQ(icons.at(0).sourceX, 2 * ui::Resources().StatusStrip().IconSize());
    EXPECT_EQ(CountColor(row, BarLine(row), drawnRed), 0);
    EXPECT_EQ(CountColor(row, BarLine(row), GetSysColor(COLOR_HIGHLIGHT)), 0);
}

TEST_F(StatusRowLook, TheBarHasTheHeightThatTheBorderGives) {
    device.batteryPercent = 100;
    Open();
    const DrawnRow row = Draw(0);
    const int x = row.Texts().at(0).x + 20;
    int colored = 0;
    for (int y = 0; y < Height(); ++y) {
        colored += row.At(x, y) == GetSysColor(COLOR_HIGHLIGHT);
    }
    const int border = GetSystemMetrics(SM_CXBORDER);
    EXPECT_EQ(colored, (5 * border + 1) * 2 - 2 * border);
}

TEST_F(StatusRowLook, ASelectedRowIsCoveredByATranslucentRoundedRectangle) {
    Open();
    const DrawnRow plain = Draw(0);
    const DrawnRow selected = Draw(0, true);
    ASSERT_EQ(selected.Texts().size(), 2u);
    EXPECT_EQ(selected.Texts()[0].color, GetSysColor(COLOR_WINDOWTEXT));
    const COLORREF highlight = GetSysColor(COLOR_HIGHLIGHT);
    const auto blended = [&](COLORREF old) {
        return RGB(ui::BlendChannel(GetRValue(highlight), GetRValue(old), 100),
                   ui::BlendChannel(GetGValue(highlight), GetGValue(old), 100),
                   ui::BlendChannel(GetBValue(highlight), GetBValue(old), 100));
    };
    EXPECT_EQ(selected.At(0, 0), plain.At(0, 0));
    EXPECT_EQ(selected.At(rowWidth - 1, Height() - 1), plain.At(rowWidth - 1, Height() - 1));
    for (int x = 8; x < rowWidth - 8; ++x) {
        for (const int y : {0, BarLine(plain), Height() - 1}) {
            ASSERT_EQ(selected.At(x, y), blended(plain.At(x, y))) << x << ", " << y;
        }
    }
}

TEST_F(StatusRowLook, TheCornersOfASelectionGrowWithTheBorder) {
    Open();
    const auto corner = [this] {
        const DrawnRow plain = Draw(0);
        const DrawnRow selected = Draw(0, true);
        int x = 0;
        while (x < rowWidth && selected.At(x, 0) == plain.At(x, 0)) {
            ++x;
        }
        return x;
    };
    const int usual = corner();
    EXPECT_GT(usual, 0);
    const PlatformHook<decltype(TellWideBorder)> metrics("GetSystemMetrics", TellWideBorder);
    systemMetric = metrics.Original();
    EXPECT_GT(corner(), usual);
    EXPECT_LT(corner(), rowWidth / 4);
}

TEST_F(StatusRowLook, ATextThatDoesNotFitIsCut) {
    Open();
    const DrawnRow row = Draw(1, false, 150);
    EXPECT_EQ(row.Texts().at(1).text.substr(row.Texts().at(1).text.size() - 3), L"...");
}
