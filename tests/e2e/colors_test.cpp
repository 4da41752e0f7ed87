// The program in colors that people set: what it writes can be read, on either executable.
#include <algorithm>
#include <map>

#include "tests/e2e/files_fixture.h"
#include "tests/support/color_schemes.h"
#include "ui/window/window.h"

using namespace test;

namespace {

// How well the letters in a part of the screen are told from what they stand on: the most frequent
// color there beside the one that is most unlike it.
double ContrastIn(const RECT& area) {
    const Picture picture = Picture::OfScreen(area);
    std::map<COLORREF, int> colors;
    for (int y = 0; y < picture.Height(); ++y) {
        for (int x = 0; x < picture.Width(); ++x) {
            ++colors[picture.At(x, y)];
        }
    }
    COLORREF background = 0;
    int most = 0;
    for (const auto& [color, count] : colors) {
        if (count > most) {
            most = count;
            background = color;
        }
    }
    double best = 1;
    for (const auto& [color, count] : colors) {
        best = std::max(best, ContrastRatio(color, background));
    }
    return best;
}

class ColorsOfTheProgram : public FilesProgram {
 protected:
    // The part of a row that holds its text alone: no icon and no rule.
    RECT TextOfRow(int row, int height) const {
        const RECT window = ScreenRectangleOf(List());
        const int width = ui::Width(window);
        return RECT{window.left + width / 5, window.top + row * height + height / 5,
                    window.left + width * 3 / 5, window.top + row * height + height * 4 / 5};
    }
    RECT TextOfButton(int button) const {
        const RECT bar = ScreenRectangleOf(Bar());
        const int half = ui::Width(bar) / 2;
        return RECT{bar.left + button * half + half / 4, bar.top + 2,
                    bar.left + button * half + half * 3 / 4, bar.bottom - 2};
    }
    void ExpectReadableIn(const ColorScheme& scheme) {
        constexpr double readable = 4.5;
        folder.MakeFolder(L"Letters and papers");
        folder.MakeFile(L"Minutes of the meeting.txt");
        const SystemColors colors(scheme);
        Start();
        for (const HWND part : {List(), PathBar(), Bar()}) {
            Picture::OfWindowDrawnAnew(part);
        }
        const int height = RowHeight();
        ASSERT_GT(height, 0);
        EXPECT_GE(ContrastIn(TextOfRow(0, height)), readable);
        EXPECT_GE(ContrastIn(ScreenRectangleOf(PathBar())), readable);
        EXPECT_GE(ContrastIn(TextOfButton(0)), readable);
        EXPECT_GE(ContrastIn(TextOfButton(1)), readable);
        ASSERT_TRUE(Finger().Key("Down").Key("Down").Play());
        ASSERT_TRUE(ShowsSelected(1));
        EXPECT_GE(ContrastIn(TextOfRow(1, height)), readable);
    }
};

}  // namespace

TEST_F(ColorsOfTheProgram, CanBeReadUsually) {
    ExpectReadableIn(colorSchemes[0]);
}

TEST_F(ColorsOfTheProgram, CanBeReadInTheDark) {
    ExpectReadableIn(colorSchemes[1]);
}

TEST_F(ColorsOfTheProgram, CanBeReadInHighContrastOnBlack) {
    ExpectReadableIn(colorSchemes[2]);
}

TEST_F(ColorsOfTheProgram, CanBeReadInHighContrastOnWhite) {
    ExpectReadableIn(colorSchemes[3]);
}
