#include "ui/bar/progress_band.h"

#include "tests/support/platform_hook.h"
#include "tests/ui/bar/sample_bar.h"
#include "ui/bar/command_bar.h"
#include "ui/paint/clipped_text.h"
#include "ui/paint/drawing_resources.h"
#include "ui/paint/paint.h"
#include "ui/paint/theme.h"

using namespace test;

namespace {

// A screen whose lines are three pixels wide.
constexpr int wideBorder = 3;
decltype(GetSystemMetrics)* systemMetric = nullptr;
int WINAPI TellWideBorder(int metric) {
    return metric == SM_CYBORDER ? wideBorder : systemMetric(metric);
}

class ProgressBandLook : public testing::Test {
 protected:
    ProgressBandLook() { EXPECT_TRUE(owner.Open()); }

    // The band at the lower edge of a window of this width.
    Picture Draw(int width) {
        MoveWindow(owner.Handle(), 0, 0, width, 300, TRUE);
        EXPECT_TRUE(band.Show(owner.Handle(), L"Copying", done));
        Picture picture;
        EXPECT_TRUE(PumpUntil([&] {
            picture = Picture::OfWindow(band.Handle());
            return Has(picture, KeyOf(picture), ui::barTextColor);
        }));
        return picture;
    }
    static RECT KeyOf(const Picture& picture) {
        const RECT bar = {0, picture.Height() / 2, picture.Width(), picture.Height()};
        return ui::BarButtonBounds(bar, 2, 1);
    }
    // How high the letters of the second line are, in pixels.
    static int LettersBeside(const Picture& picture) {
        const RECT key = KeyOf(picture);
        int lines = 0;
        for (int y = key.top; y < key.bottom; ++y) {
            bool marked = false;
            for (int x = 0; x < key.left; ++x) {
                marked = marked || picture.At(x, y) != ui::barColor;
            }
            lines += marked;
        }
        return lines;
    }

    static constexpr wchar_t done[] = L"24 done";
    SampleOwner owner;
    ui::ProgressBand band;
};

}  // namespace

TEST_F(ProgressBandLook, ARuleStandsWhereItsKeyBegins) {
    const PlatformHook<decltype(TellWideBorder)> metrics("GetSystemMetrics", TellWideBorder);
    systemMetric = metrics.Original();
    const Picture picture = Draw(200);
    const RECT key = KeyOf(picture);
    const int middle = (key.top + key.bottom) / 2;
    EXPECT_EQ(picture.At(key.left - 1, middle), ui::barColor);
    for (int x = 0; x < wideBorder; ++x) {
        EXPECT_EQ(picture.At(key.left + x, middle), ui::barRuleColor);
    }
    EXPECT_EQ(picture.At(key.left + wideBorder, middle), ui::barColor);
}

TEST_F(ProgressBandLook, ACountThatJustFitsKeepsItsLetters) {
    const platform::WindowDC dc(owner.Handle());
    const platform::Selected font(dc, ui::Fonts().Base());
    const int needed = ui::TextWidth(dc, done);
    int width = 2 * needed + 4 * ui::TextHeight(dc, ui::Fonts().Base());
    const Picture wide = Draw(width);
    const int margin = ui::Height(KeyOf(wide)) / 4;
    const auto room = [&] {
        return ui::BarButtonBounds(RECT{0, 0, width, 20}, 2, 1).left - 2 * margin;
    };
    ASSERT_GT(room(), needed);
    while (room() > needed) {
        --width;
    }
    EXPECT_EQ(LettersBeside(Draw(width)), LettersBeside(wide));
    EXPECT_LT(LettersBeside(Draw(width - 2)), LettersBeside(wide));
}
