#include "ui/paint/clipped_text.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/drawn_texts.h"
#include "tests/ui/canvas.h"
#include "ui/paint/drawing_resources.h"

using namespace ui;

namespace {

constexpr int width = 400;
constexpr int height = 40;
constexpr int left = 30;
constexpr int top = 6;

// A canvas with the program's font on a transparent background.
class Sheet : public test::Canvas {
 public:
    Sheet() : Canvas(width, height), font_(DC(), Fonts().Base()) { SetBkMode(DC(), TRANSPARENT); }

 private:
    platform::Selected font_;
};

int Measured(const std::wstring& text) {
    const Sheet sheet;
    SIZE size = {};
    GetTextExtentPoint32W(sheet.DC(), text.c_str(), static_cast<int>(text.size()), &size);
    return size.cx;
}

RECT AreaOf(int areaWidth, int areaHeight = 30) {
    return RECT{left, top, left + areaWidth, top + areaHeight};
}

// What a sheet looks like with `text` at `x`, clipped to `area`.
std::vector<COLORREF> Expected(const std::wstring& text, int x, const RECT& area, int y = top) {
    const Sheet sheet;
    IntersectClipRect(sheet.DC(), area.left, area.top, area.right, area.bottom);
    TextOutW(sheet.DC(), x, y, text.c_str(), static_cast<int>(text.size()));
    SelectClipRgn(sheet.DC(), nullptr);
    return sheet.Pixels();
}

std::vector<COLORREF> Drawn(const std::wstring& text, const RECT& area,
                            TextAlignment alignment = TextAlignment::Left) {
    const Sheet sheet;
    DrawClippedText(sheet.DC(), area, text, alignment);
    return sheet.Pixels();
}

std::vector<COLORREF> DrawnPath(const std::wstring& path, int areaWidth) {
    const Sheet sheet;
    DrawPathText(sheet.DC(), AreaOf(areaWidth), path);
    return sheet.Pixels();
}

const std::wstring sample = L"Willow ill Mimi";

}  // namespace

TEST(ClippedText, AnEmptyTextDrawsNothing) {
    EXPECT_EQ(Drawn(L"", AreaOf(100)), Sheet().Pixels());
    EXPECT_EQ(Drawn(L"", AreaOf(0)), Sheet().Pixels());
}

TEST(ClippedText, ATextThatFitsIsDrawnWholeAtTheLeft) {
    const RECT area = AreaOf(Measured(sample) + 20);
    EXPECT_EQ(Drawn(sample, area), Expected(sample, left, area));
}

TEST(ClippedText, ATextExactlyAsWideAsTheAreaIsDrawnWhole) {
    const RECT area = AreaOf(Measured(sample));
    EXPECT_EQ(Drawn(sample, area), Expected(sample, left, area));
    const RECT narrower = AreaOf(Measured(sample) - 1);
    EXPECT_NE(Drawn(sample, narrower), Expected(sample, left, narrower));
}

TEST(ClippedText, ACentredTextStandsInTheMiddleWhenItFits) {
    for (const int extra : {0, 1, 20, 21}) {
        const RECT area = AreaOf(Measured(sample) + extra);
        EXPECT_EQ(Drawn(sample, area, TextAlignment::Centered),
                  Expected(sample, left + extra / 2, area));
    }
}

TEST(ClippedText, ACutTextStartsAtTheLeftHoweverAligned) {
    const RECT area = AreaOf(Measured(sample) / 2);
    EXPECT_EQ(Drawn(sample, area, TextAlignment::Centered), Drawn(sample, area));
    EXPECT_EQ(Drawn(sample, area, TextAlignment::Right), Drawn(sample, area));
}

TEST(ClippedText, KeepsAsManyCharactersAsFitBehindTheDots) {
    const int whole = Measured(sample);
    for (int areaWidth = 0; areaWidth < whole; ++areaWidth) {
        size_t kept = 0;
        while (Measured(L"..." + sample.substr(0, kept + 1)) <= areaWidth) {
            ++kept;
        }
        const RECT area = AreaOf(areaWidth);
        ASSERT_EQ(Drawn(sample, area), Expected(sample.substr(0, kept) + L"...", left, area))
            << areaWidth << " pixels";
    }
}

TEST(ClippedText, TheDotsStandAloneInAnAreaTooNarrowForACharacter) {
    const RECT area = AreaOf(Measured(L"...W") - 1);
    EXPECT_EQ(Drawn(sample, area), Expected(L"...", left, area));
    const RECT narrow = AreaOf(3);
    EXPECT_EQ(Drawn(sample, narrow), Expected(L"...", left, narrow));
}

TEST(ClippedText, NothingIsDrawnOutsideTheArea) {
    const RECT low = AreaOf(Measured(sample) + 10, 5);
    EXPECT_EQ(Drawn(sample, low), Expected(sample, left, low));
}

TEST(ClippedText, ALineStandsBetweenTopAndBottom) {
    const Sheet sheet;
    const RECT area = {left, 0, width, height};
    DrawClippedLine(sheet.DC(), area, sample);
    TEXTMETRICW metrics = {};
    GetTextMetricsW(sheet.DC(), &metrics);
    EXPECT_EQ(sheet.Pixels(), Expected(sample, left, area, (height - metrics.tmHeight) / 2));
}

TEST(ClippedText, AnAreaLowerThanTheLineDrawsItAtTheTop) {
    const Sheet sheet;
    const RECT area = AreaOf(Measured(sample) + 10, 4);
    DrawClippedLine(sheet.DC(), area, sample);
    EXPECT_EQ(sheet.Pixels(), Expected(sample, left, area));
}

TEST(PathText, APathThatFitsIsDrawnWhole) {
    const std::wstring path = L"\\Windows\\Start Menu\\a.lnk";
    const int whole = Measured(path);
    EXPECT_EQ(DrawnPath(path, whole), Expected(path, left, AreaOf(whole)));
}

TEST(PathText, LosesItsMiddleFirst) {
    const std::wstring path = L"\\Windows\\Start Menu\\Programs\\a.lnk";
    const int whole = Measured(path);
    const std::wstring shorter = L"\\Windows\\...\\Programs\\a.lnk";
    EXPECT_EQ(DrawnPath(path, whole - 1), Expected(shorter, left, AreaOf(whole - 1)));
    const int one = Measured(shorter) - 1;
    EXPECT_EQ(DrawnPath(path, one), Expected(L"\\Windows\\...\\a.lnk", left, AreaOf(one)));
}

TEST(PathText, LosesItsStartBeforeItsEnd) {
    const std::wstring path = L"\\Windows\\Start Menu\\a.lnk";
    const int areaWidth = Measured(L"\\Windows\\...\\a.lnk") - 1;
    EXPECT_EQ(DrawnPath(path, areaWidth), Expected(L"...\\a.lnk", left, AreaOf(areaWidth)));
}

TEST(PathText, TheLastComponentIsCutAtItsEndWhenNothingElseFits) {
    const std::wstring path = L"\\Windows\\a long name of a file.txt";
    const RECT area = AreaOf(Measured(L"...a long"));
    EXPECT_EQ(DrawnPath(path, Measured(L"...a long")), Expected(L"a long...", left, area));
}

TEST(PathText, TheLastComponentStandsAloneWhenOnlyItFits) {
    const std::wstring path = L"\\Windows\\a long name";
    const int areaWidth = Measured(L"a long name");
    EXPECT_EQ(DrawnPath(path, areaWidth), Expected(L"a long name", left, AreaOf(areaWidth)));
}

TEST(PathText, IsNeverWiderThanItsAreaUnlessOnlyTheDotsAreLeft) {
    const std::wstring path = L"\\Program Files\\Vantor\\vantor.0407.ui";
    for (int areaWidth = Measured(L"..."); areaWidth < Measured(path); areaWidth += 3) {
        const Sheet wide;
        // The same text drawn without clipping would show what is cut off.
        const std::vector<COLORREF> pixels = DrawnPath(path, areaWidth);
        EXPECT_NE(pixels, wide.Pixels());
        for (int y = 0; y < height; ++y) {
            for (int x = left + areaWidth; x < width; ++x) {
                ASSERT_EQ(pixels[static_cast<size_t>(y * width + x)], 0xFFFFFFu);
            }
        }
    }
}

TEST(ClippedTextEnd, NeverCutsACharacterOfTwoUnitsInTwo) {
    const std::wstring face = L"\xD83D\xDE00";
    std::wstring text = L"ab";
    for (int count = 0; count < 20; ++count) {
        text += face;
    }
    bool cut = false;
    for (int room = Measured(L"...ab"); room < Measured(text); ++room) {
        const test::DrawnTexts drawn;
        Drawn(text, AreaOf(room));
        cut = cut || drawn.Contains(L"\xDE00...");
        ASSERT_FALSE(drawn.Contains(L"\xD83D...")) << room;
    }
    EXPECT_TRUE(cut);
}
