#include <gtest/gtest.h>

#include "platform/strings.h"
#include "tests/support/user_locale.h"

using namespace test;

namespace {

class NumberFormat : public testing::Test {
 protected:
    NumberFormat() {
        locale.Text(LOCALE_SDECIMAL, L".")
            .Text(LOCALE_STHOUSAND, L",")
            .Text(LOCALE_SGROUPING, L"3;0")
            .Number(LOCALE_IDIGITS, 2)
            .Number(LOCALE_ILZERO, 1)
            .Number(LOCALE_INEGNUMBER, 1);
    }
    UserLocale locale;
};

}  // namespace

TEST_F(NumberFormat, RepeatsTheLastGroup) {
    EXPECT_EQ(platform::NumberFormat(L"1234567.891"), L"1,234,567.89");
    EXPECT_EQ(platform::NumberFormat(L"123"), L"123.00");
    locale.Text(LOCALE_SGROUPING, L"3;2;0");
    EXPECT_EQ(platform::NumberFormat(L"123456789"), L"12,34,56,789.00");
    locale.Text(LOCALE_SGROUPING, L"4;0");
    EXPECT_EQ(platform::NumberFormat(L"123456789"), L"1,2345,6789.00");
}

TEST_F(NumberFormat, GroupsOnceWhereTheLocaleDoes) {
    locale.Text(LOCALE_SGROUPING, L"3");
    EXPECT_EQ(platform::NumberFormat(L"123456789"), L"123456,789.00");
}

TEST_F(NumberFormat, DoesNotGroupWhereTheLocaleDoesNot) {
    locale.Text(LOCALE_SGROUPING, L"0;0");
    EXPECT_EQ(platform::NumberFormat(L"123456789"), L"123456789.00");
    locale.Text(LOCALE_SGROUPING, L"0");
    EXPECT_EQ(platform::NumberFormat(L"123456789"), L"123456789.00");
}

TEST_F(NumberFormat, UsesTheLocalesSigns) {
    locale.Text(LOCALE_SDECIMAL, L",").Text(LOCALE_STHOUSAND, L"\u00A0");
    EXPECT_EQ(platform::NumberFormat(L"-1234567.5"), L"-1\u00A0234\u00A0567,50");
    locale.Number(LOCALE_INEGNUMBER, 0);
    EXPECT_EQ(platform::NumberFormat(L"-5"), L"(5,00)");
    locale.Number(LOCALE_INEGNUMBER, 3);
    EXPECT_EQ(platform::NumberFormat(L"-5"), L"5,00-");
}

TEST_F(NumberFormat, WritesTheLeadingZeroOnlyWhereTheLocaleDoes) {
    EXPECT_EQ(platform::NumberFormat(L"0.5"), L"0.50");
    locale.Number(LOCALE_ILZERO, 0);
    EXPECT_EQ(platform::NumberFormat(L"0.5"), L".50");
}

TEST_F(NumberFormat, FailsWhenTheLocaleIsUnknown) {
    for (const LCTYPE type : {LOCALE_STHOUSAND, LOCALE_SGROUPING}) {
        EXPECT_EQ(platform::NumberFormat(L"1"), L"1.00");
        locale.Unknown(type);
        EXPECT_EQ(platform::NumberFormat(L"1"), L"");
        locale.Text(type, L".");
    }
}

TEST_F(NumberFormat, KeepsThePointWhereTheLocaleTellsNoSign) {
    locale.Unknown(LOCALE_SDECIMAL);
    EXPECT_EQ(platform::NumberFormat(L"1234567.5"), L"1,234,567.50");
}

TEST(NumberFormatOfThisMachine, WritesAsItsUserDoes) {
    EXPECT_EQ(platform::NumberFormat(L"1234567"), L"1,234,567.00");
}
