#include <gtest/gtest.h>

#include "tests/support/user_locale.h"
#include "text/format.h"

using namespace test;
using text::FormatDecimal;
using text::FormatInteger;

TEST(DecimalSeparator, ThatIsUnknownLeavesTheNumberWhole) {
    UserLocale locale;
    locale.Unknown(LOCALE_SDECIMAL)
        .Text(LOCALE_STHOUSAND, L",")
        .Text(LOCALE_SGROUPING, L"3;0")
        .Number(LOCALE_IDIGITS, 2);
    EXPECT_EQ(FormatInteger(1234), L"1,234.00");
    EXPECT_EQ(FormatDecimal(1234, 500000000), L"1,234.50");
}

TEST(DecimalSeparator, IsSearchedFromTheEnd) {
    UserLocale locale;
    locale.Text(LOCALE_SDECIMAL, L".")
        .Text(LOCALE_STHOUSAND, L".")
        .Text(LOCALE_SGROUPING, L"3;0")
        .Number(LOCALE_IDIGITS, 2);
    EXPECT_EQ(FormatInteger(1234567), L"1.234.567");
    EXPECT_EQ(FormatDecimal(1234567, 120000000), L"1.234.567.12");
}

TEST(DecimalSeparator, OfSeveralCharactersIsFoundByItsFirstHalf) {
    UserLocale locale;
    locale.Text(LOCALE_SDECIMAL, L"<>")
        .Text(LOCALE_STHOUSAND, L",")
        .Text(LOCALE_SGROUPING, L"3;0")
        .Number(LOCALE_IDIGITS, 2);
    EXPECT_EQ(FormatInteger(1234), L"1,234");
}
