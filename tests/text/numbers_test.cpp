#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/platform_hook.h"
#include "tests/support/user_locale.h"
#include "text/format.h"

using namespace test;
using text::FormatDecimal;
using text::FormatInteger;
using text::FormatSize;
using text::FormatSizeWithBytes;

namespace {

int WINAPI FailToWrite(LCID, DWORD, const wchar_t*, const NUMBERFMTW*, wchar_t*, int) {
    return 0;
}

using NumberWriter = int(LCID, DWORD, const wchar_t*, const NUMBERFMTW*, wchar_t*, int);

struct Formatted {
    std::wstring pattern;
    DWORD flags;
    DWORD language;
};
std::vector<Formatted> formatted;
using Formatter = DWORD(DWORD, const void*, DWORD, DWORD, wchar_t*, DWORD, char**);
Formatter* formatMessage = nullptr;

DWORD WINAPI NoteFormat(DWORD flags, LPCVOID source, DWORD message, DWORD language, LPWSTR buffer,
                        DWORD size, char** inserts) {
    formatted.push_back(Formatted{static_cast<const wchar_t*>(source), flags, language});
    EXPECT_EQ(message, 0u);
    return formatMessage(flags, source, message, language, buffer, size, inserts);
}

// What the sizes need: groups of three behind commas, two decimals behind a point.
class EnglishNumbers : public testing::Test {
 protected:
    EnglishNumbers() {
        locale.Text(LOCALE_SDECIMAL, L".")
            .Text(LOCALE_STHOUSAND, L",")
            .Text(LOCALE_SGROUPING, L"3;0")
            .Number(LOCALE_IDIGITS, 2)
            .Number(LOCALE_ILZERO, 1)
            .Number(LOCALE_INEGNUMBER, 1);
    }
    UserLocale locale;
};

using Integers = EnglishNumbers;
using Decimals = EnglishNumbers;
using Sizes = EnglishNumbers;

}  // namespace

TEST_F(Integers, AreGroupedWithoutDecimals) {
    EXPECT_EQ(FormatInteger(0), L"0");
    EXPECT_EQ(FormatInteger(999), L"999");
    EXPECT_EQ(FormatInteger(1000), L"1,000");
    EXPECT_EQ(FormatInteger(1234567), L"1,234,567");
    EXPECT_EQ(FormatInteger(INT64_MAX), L"9,223,372,036,854,775,807");
}

TEST_F(Integers, MayBeNegative) {
    EXPECT_EQ(FormatInteger(-1), L"-1");
    EXPECT_EQ(FormatInteger(-1234567), L"-1,234,567");
    EXPECT_EQ(FormatInteger(INT64_MIN), L"-9,223,372,036,854,775,808");
    EXPECT_EQ(FormatInteger(INT32_MIN), L"-2,147,483,648");
}

TEST_F(Integers, FollowTheLocale) {
    locale.Text(LOCALE_SDECIMAL, L",").Text(LOCALE_STHOUSAND, L".");
    EXPECT_EQ(FormatInteger(1234567), L"1.234.567");
    locale.Text(LOCALE_STHOUSAND, L"\u00A0");
    EXPECT_EQ(FormatInteger(1234567), L"1\u00A0234\u00A0567");
    locale.Text(LOCALE_SGROUPING, L"3;2;0").Text(LOCALE_STHOUSAND, L".");
    EXPECT_EQ(FormatInteger(1234567), L"12.34.567");
}

TEST_F(Integers, LoseTheDecimalsOfAnyLocale) {
    for (const DWORD digits : {0u, 1u, 3u, 9u}) {
        locale.Number(LOCALE_IDIGITS, digits);
        EXPECT_EQ(FormatInteger(1234), L"1,234") << digits;
    }
}

TEST_F(Integers, AreWrittenInTheUsersLanguageFirst) {
    const PlatformHook<Formatter> hook("FormatMessageW", NoteFormat);
    formatMessage = hook.Original();
    formatted.clear();
    EXPECT_EQ(FormatInteger(1234), L"1,234");
    ASSERT_EQ(formatted.size(), 1u);
    EXPECT_EQ(formatted[0].pattern, L"%1!I64i!");
    EXPECT_EQ(formatted[0].flags,
              DWORD{FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_STRING |
                    FORMAT_MESSAGE_ARGUMENT_ARRAY});
    EXPECT_EQ(formatted[0].language, 0x0400u);
}

TEST_F(Integers, AreEmptyWhenTheLocaleCannotWriteThem) {
    const PlatformHook<NumberWriter> hook("GetNumberFormatW", FailToWrite);
    EXPECT_EQ(FormatInteger(1), L"");
}

TEST_F(Decimals, HaveTheLocalesSeparators) {
    EXPECT_EQ(FormatDecimal(4, 882812500), L"4.88");
    EXPECT_EQ(FormatDecimal(1234, 500000000), L"1,234.50");
    locale.Text(LOCALE_SDECIMAL, L",").Text(LOCALE_STHOUSAND, L".");
    EXPECT_EQ(FormatDecimal(1234, 500000000), L"1.234,50");
}

TEST_F(Decimals, AreRoundedToTheLocalesDigits) {
    EXPECT_EQ(FormatDecimal(0, 0), L"0.00");
    EXPECT_EQ(FormatDecimal(0, 995000000), L"1.00");
    EXPECT_EQ(FormatDecimal(1023, 999023437), L"1,024.00");
    EXPECT_EQ(FormatDecimal(1, 5000000), L"1.01");
}

TEST_F(Decimals, NeverHaveMoreThanTwoDigits) {
    locale.Number(LOCALE_IDIGITS, 3);
    EXPECT_EQ(FormatDecimal(4, 888800000), L"4.88");
    EXPECT_EQ(FormatDecimal(1023, 999023437), L"1,023.99");
    locale.Number(LOCALE_IDIGITS, 9);
    EXPECT_EQ(FormatDecimal(4, 882812500), L"4.88");
}

TEST_F(Decimals, MayHaveFewerDigitsThanTwo) {
    locale.Number(LOCALE_IDIGITS, 1);
    EXPECT_EQ(FormatDecimal(4, 882812500), L"4.9");
    locale.Number(LOCALE_IDIGITS, 0);
    EXPECT_EQ(FormatDecimal(4, 882812500), L"5");
}

TEST_F(Decimals, AreEmptyWhenTheLocaleCannotWriteThem) {
    const PlatformHook<NumberWriter> hook("GetNumberFormatW", FailToWrite);
    EXPECT_EQ(FormatDecimal(1, 0), L"");
}

TEST_F(Sizes, BelowAKilobyteAreBytes) {
    EXPECT_EQ(FormatSize(0), L"0 bytes");
    EXPECT_EQ(FormatSize(1), L"1 bytes");
    EXPECT_EQ(FormatSize(1023), L"1,023 bytes");
}

TEST_F(Sizes, OfKilobytes) {
    EXPECT_EQ(FormatSize(1024), L"1.00 KB");
    EXPECT_EQ(FormatSize(1025), L"1.00 KB");
    EXPECT_EQ(FormatSize(5000), L"4.88 KB");
    EXPECT_EQ(FormatSize(1536), L"1.50 KB");
    EXPECT_EQ(FormatSize(1047552), L"1,023.00 KB");
    EXPECT_EQ(FormatSize(1048575), L"1,024.00 KB");
}

TEST_F(Sizes, TakeTheLargestFittingUnit) {
    constexpr uint64_t megabyte = 1ull << 20;
    EXPECT_EQ(FormatSize(megabyte), L"1.00 MB");
    EXPECT_EQ(FormatSize(megabyte * 3 / 2), L"1.50 MB");
    EXPECT_EQ(FormatSize(megabyte * 1024 - 1), L"1,024.00 MB");
    EXPECT_EQ(FormatSize(megabyte * 1024), L"1.00 GB");
    EXPECT_EQ(FormatSize(0xFFFFFFFF), L"4.00 GB");
    EXPECT_EQ(FormatSize(0x100000000), L"4.00 GB");
    EXPECT_EQ(FormatSize(megabyte << 20), L"1.00 TB");
}

TEST_F(Sizes, BeyondAThousandTerabytesStayTerabytes) {
    EXPECT_EQ(FormatSize(1ull << 50), L"1,024.00 TB");
    EXPECT_EQ(FormatSize(5ull << 52), L"20,480.00 TB");
    EXPECT_EQ(FormatSize(UINT64_MAX), L"16,777,216.00 TB");
}

TEST_F(Sizes, ShowTwoDigitsInALocaleOfThree) {
    locale.Number(LOCALE_IDIGITS, 3);
    EXPECT_EQ(FormatSize(5000), L"4.88 KB");
    EXPECT_EQ(FormatSize(1023), L"1,023 bytes");
}

TEST_F(Sizes, FollowTheLocale) {
    locale.Text(LOCALE_SDECIMAL, L",").Text(LOCALE_STHOUSAND, L".");
    EXPECT_EQ(FormatSize(1023), L"1.023 bytes");
    EXPECT_EQ(FormatSize(5000), L"4,88 KB");
    EXPECT_EQ(FormatSizeWithBytes(5000), L"4,88 KB (5.000 bytes)");
}

TEST_F(Sizes, WithBytesTellTheExactCount) {
    EXPECT_EQ(FormatSizeWithBytes(5000), L"4.88 KB (5,000 bytes)");
    EXPECT_EQ(FormatSizeWithBytes(1024), L"1.00 KB (1,024 bytes)");
    EXPECT_EQ(FormatSizeWithBytes(1048575), L"1,024.00 KB (1,048,575 bytes)");
    EXPECT_EQ(FormatSizeWithBytes(1ull << 50), L"1,024.00 TB (1,125,899,906,842,624 bytes)");
}

TEST_F(Sizes, WithBytesTellASmallCountOnce) {
    EXPECT_EQ(FormatSizeWithBytes(0), L"0 bytes");
    EXPECT_EQ(FormatSizeWithBytes(1023), L"1,023 bytes");
}
