#include "ui/wrapped_text.h"

#include <gtest/gtest.h>

#include "tests/support/platform_hook.h"
#include "tests/ui/canvas.h"
#include "ui/clipped_text.h"
#include "ui/drawing_resources.h"

using namespace test;

namespace {

class WrappedText : public testing::Test {
 protected:
    std::vector<std::wstring> Wrap(const std::wstring& text, int width) {
        return ui::WrapText(canvas.DC(), text, width);
    }
    Canvas canvas{10, 10};
    const platform::Selected font{canvas.DC(), ui::Fonts().Base()};
};

using Lines = std::vector<std::wstring>;

std::wstring Joined(const Lines& lines) {
    std::wstring all;
    for (const std::wstring& line : lines) {
        all += line;
    }
    return all;
}

BOOL WINAPI NoExtent(HDC, const wchar_t*, int, int, int*, int*, SIZE*) {
    return FALSE;
}

}  // namespace

TEST_F(WrappedText, BreaksAtLineEnds) {
    EXPECT_EQ(Wrap(L"one\r\ntwo\n\nthree\n", 1000), (Lines{L"one", L"two", L"", L"three", L""}));
    EXPECT_EQ(Wrap(L"", 1000), Lines{L""});
}

TEST_F(WrappedText, BreaksBetweenWords) {
    const int width = ui::TextWidth(canvas.DC(), L"alpha beta ");
    EXPECT_EQ(Wrap(L"alpha beta gamma", width), (Lines{L"alpha beta", L"gamma"}));
    const int exact = ui::TextWidth(canvas.DC(), L"alpha beta");
    EXPECT_EQ(Wrap(L"alpha beta gamma", exact), (Lines{L"alpha beta", L"gamma"}));
    EXPECT_EQ(Wrap(L"alpha beta gamma", exact - 1), (Lines{L"alpha", L"beta", L"gamma"}));
}

TEST_F(WrappedText, BreaksAWordThatIsTooLong) {
    const Lines lines = Wrap(std::wstring(10000, L'w'), 200);
    EXPECT_GT(lines.size(), 100u);
    for (const std::wstring& line : lines) {
        EXPECT_LE(ui::TextWidth(canvas.DC(), line), 200);
        EXPECT_FALSE(line.empty());
    }
    EXPECT_EQ(Joined(lines), std::wstring(10000, L'w'));
}

TEST_F(WrappedText, KeepsCharactersOfTwoUnitsWhole) {
    std::wstring text;
    for (int count = 0; count < 40; ++count) {
        text += L"\xD83D\xDE00";
    }
    for (const int width : {-5, 0, 1, 30, 33, 37, 41, 100}) {
        const Lines lines = Wrap(text, width);
        EXPECT_EQ(Joined(lines), text);
        for (const std::wstring& line : lines) {
            EXPECT_FALSE(IS_LOW_SURROGATE(line.front())) << width;
            EXPECT_FALSE(IS_HIGH_SURROGATE(line.back())) << width;
        }
    }
}

TEST_F(WrappedText, WithoutWidthEveryLineHasACharacter) {
    EXPECT_EQ(Wrap(L"abc", 0), (Lines{L"a", L"b", L"c"}));
    EXPECT_EQ(Joined(Wrap(std::wstring(10000, L'w'), 1)).size(), 10000u);
}

TEST_F(WrappedText, LosesNothingWhenTheFontCannotBeAsked) {
    PlatformHook<BOOL(HDC, const wchar_t*, int, int, int*, int*, SIZE*)> hook(
        "GetTextExtentExPointW", NoExtent);
    EXPECT_EQ(Wrap(L"one two\nthree", 5), (Lines{L"one two", L"three"}));
}
