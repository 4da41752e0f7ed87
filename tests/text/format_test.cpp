#include <gtest/gtest.h>

#include "res/resource.h"
#include "tests/support/heaps.h"
#include "tests/support/platform_hook.h"
#include "text/format.h"
#include "text/resources.h"

using text::Format;
using text::FormatText;

namespace {

DWORD formatLanguage = 0;

DWORD WINAPI FailToFormat(DWORD, const void*, DWORD, DWORD language, wchar_t*, DWORD, char**) {
    formatLanguage = language;
    SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    return 0;
}

using Formatter = DWORD(DWORD, const void*, DWORD, DWORD, wchar_t*, DWORD, char**);

}  // namespace

TEST(FormatInserts, AreTextsUnlessTheirTypeSaysOtherwise) {
    EXPECT_EQ(Format(L"%1", L"one"), L"one");
    EXPECT_EQ(Format(L"%2 before %1", L"one", std::wstring(L"two")), L"two before one");
    EXPECT_EQ(Format(L"%1 and %1", L"again"), L"again and again");
    EXPECT_EQ(Format(L"%1", L""), L"");
}

TEST(FormatInserts, AreNumberedUpToNine) {
    EXPECT_EQ(Format(L"%9%8%7%6%5%4%3%2%1", L"a", L"b", L"c", L"d", L"e", L"f", L"g", L"h", L"i"),
              L"ihgfedcba");
}

TEST(FormatInserts, AreSignedIntegers) {
    EXPECT_EQ(Format(L"(%1!i!)", 57), L"(57)");
    EXPECT_EQ(Format(L"%1!i!", -1), L"-1");
    EXPECT_EQ(Format(L"%1!i!", INT32_MIN), L"-2147483648");
    EXPECT_EQ(Format(L"%1!i!", 4294967295u), L"-1");
}

TEST(FormatInserts, AreHexadecimalNumbers) {
    EXPECT_EQ(Format(L"[%1!x!] %2", 0xABCDu, L"name"), L"[abcd] name");
    EXPECT_EQ(Format(L"%1!#x!", 0x1F0u), L"0x1f0");
    EXPECT_EQ(Format(L"%1!x!", 0xFFFFFFFFu), L"ffffffff");
}

TEST(FormatInserts, AreIntegersOf64Bits) {
    EXPECT_EQ(Format(L"%1!I64i!", INT64_MIN), L"-9223372036854775808");
    EXPECT_EQ(Format(L"%1!I64i!", int64_t{12345678901}), L"12345678901");
    EXPECT_EQ(Format(L"%1 %2!I64i!", L"of", int64_t{12345678901}), L"of 12345678901");
}

TEST(FormatInserts, ArePaddedWithZeros) {
    EXPECT_EQ(Format(L"%1!i!.%2!09u!", 4, 882812500u), L"4.882812500");
    EXPECT_EQ(Format(L"%1!09u!", 7u), L"000000007");
}

TEST(FormatInserts, StandBesideLineBreaksAndPercentSigns) {
    EXPECT_EQ(Format(L"%1!i!%%", 57), L"57%");
    EXPECT_EQ(Format(L"one%n%1", L"two"), L"one\r\ntwo");
    EXPECT_EQ(Format(L"100%%"), L"100%");
}

TEST(FormatInserts, MayHoldWhatLooksLikeAnInsert) {
    EXPECT_EQ(Format(L"'%1' %2", L"%2%n%%", L"x"), L"'%2%n%%' x");
}

TEST(FormatInserts, ThatAreMissingAreEmpty) {
    EXPECT_EQ(Format(L"%1,%2,%9", L"one"), L"one,,");
}

TEST(FormatInserts, MayBeLong) {
    const std::wstring longText(20000, L'x');
    EXPECT_EQ(Format(L"<%1>", longText), L"<" + longText + L">");
}

TEST(FormatResult, IsEmptyOnFailure) {
    const test::PlatformHook<Formatter> hook("FormatMessageW", FailToFormat);
    EXPECT_EQ(Format(L"%1", L"one"), L"");
    EXPECT_EQ(FormatText(IDS_ACTION_FAILED, L"one"), L"");
}

TEST(FormatResult, IsInTheLanguageOfTheTexts) {
    const test::PlatformHook<Formatter> hook("FormatMessageW", FailToFormat);
    Format(L"%1", L"one");
    EXPECT_EQ(formatLanguage, 0x0409u);
    text::SetResourceModule(text::ProgramModule(), 0x0407);
    Format(L"%1", L"one");
    EXPECT_EQ(formatLanguage, 0x0407u);
    text::SetProgramModule(text::ProgramModule());
}

TEST(FormatResult, GivesThePlatformsBufferBack) {
    Format(L"%1", L"warm");
    const size_t before = test::BytesOnAllHeaps();
    for (int round = 0; round < 100; ++round) {
        Format(L"%1 and %2!i!", L"some longer text than fits into a small string", round);
    }
    EXPECT_EQ(test::BytesOnAllHeaps(), before);
}

TEST(FormatText, FillsInAString) {
    EXPECT_EQ(FormatText(IDS_ACTION_FAILED, L"why"), L"The action can't be completed\r\nwhy");
    EXPECT_EQ(FormatText(IDS_APPLICATIONS_TITLE, 3), L"Applications (3)");
    EXPECT_EQ(FormatText(IDS_PERCENT, 57), L"57%");
    EXPECT_EQ(FormatText(IDS_CHARGING, 57), L"charging (57%)");
    EXPECT_EQ(FormatText(IDS_FREE_OF, L"64 MB", L"12 MB"), L"12 MB free of 64 MB");
    EXPECT_EQ(FormatText(IDS_PROCESS_WITH_ID, 0x2Au, L"a.exe"), L"[2a] a.exe");
    EXPECT_EQ(FormatText(IDS_COPY_OF_NUMBERED, L"a", 2), L"a - Copy (2)");
}

TEST(FormatText, OfAMissingStringSaysSo) {
    EXPECT_EQ(FormatText(9, L"x"), L"<resource not found>");
}
