#include "ui/paint/wrapped_text.h"

#include <gtest/gtest.h>

#include "tests/support/platform_hook.h"
#include "tests/ui/canvas.h"
#include "ui/paint/clipped_text.h"
#include "ui/paint/drawing_resources.h"

using namespace test;

namespace {

class WrappedText : public testing::Test {
 protected:
    std::vector<std::wstring> Wrap(const std::wstring& text, int width) {
        return ui::WrapText(canvas.DC(), text, width);
    }
    // Of a text on lines as long as its first `count` characters.
    std::wstring FirstLine(const std::wstring& text, size_t count) {
        return Wrap(text, ui::TextWidth(canvas.DC(), text.substr(0, count))).front();
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

// "Memo wa sakujo dekimasen.", with a blank behind the first word only.
TEST_F(WrappedText, BreaksBetweenTheCharactersOfAScriptWithoutBlanks) {
    const std::wstring text = L"memo \u306F\u524A\u9664\u3067\u304D\u307E\u305B\u3093";
    const int width = ui::TextWidth(canvas.DC(), text.substr(0, 9));
    EXPECT_EQ(Wrap(text, width), (Lines{text.substr(0, 9), text.substr(9)}));
    EXPECT_EQ(Wrap(text, width - 1), (Lines{text.substr(0, 8), text.substr(8)}));
    EXPECT_EQ(FirstLine(L"\u524A\u9664memo\u3067\u304D", 5), L"\u524A\u9664");
}

TEST_F(WrappedText, StartsNoLineWithAClosingMarkOrASmallLetterAndEndsNoneWithAnOpeningMark) {
    EXPECT_EQ(FirstLine(L"\u524A\u9664\u3057\u307E\u3059?", 5), L"\u524A\u9664\u3057\u307E");
    EXPECT_EQ(FirstLine(L"\u524A\u9664\u3057\u307E\u3059\u3002", 5), L"\u524A\u9664\u3057\u307E");
    EXPECT_EQ(FirstLine(L"\u524A\u9664\u30AD\u30E3\u30C3\u30C1", 3), L"\u524A\u9664");
    EXPECT_EQ(FirstLine(L"\u524A\u9664\u300C\u306F\u3044\u300D", 3), L"\u524A\u9664");
}

// As French asks before its question marks.
TEST_F(WrappedText, KeepsABlankThatMustNotBreak) {
    const std::wstring text = L"alpha beta\u00A0?";
    EXPECT_EQ(Wrap(text, ui::TextWidth(canvas.DC(), text) - 1), (Lines{L"alpha", L"beta\u00A0?"}));
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
