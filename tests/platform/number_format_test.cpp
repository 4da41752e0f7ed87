#include <gtest/gtest.h>

#include "platform/coredll.h"
#include "tests/support/user_locale.h"

using namespace test;

namespace {

std::wstring Written(const wchar_t* plain) {
    wchar_t buffer[80] = {};
    const int length = platform::NumberFormat(plain, buffer, 80);
    EXPECT_EQ(length, platform::NumberFormat(plain, nullptr, 0));
    EXPECT_EQ(length, static_cast<int>(std::wstring(buffer).size()) + 1);
    return buffer;
}

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
    EXPECT_EQ(Written(L"1234567.891"), L"1,234,567.89");
    EXPECT_EQ(Written(L"123"), L"123.00");
    locale.Text(LOCALE_SGROUPING, L"3;2;0");
    EXPECT_EQ(Written(L"123456789"), L"12,34,56,789.00");
    locale.Text(LOCALE_SGROUPING, L"4;0");
    EXPECT_EQ(Written(L"123456789"), L"1,2345,6789.00");
}

TEST_F(NumberFormat, GroupsOnceWhereTheLocaleDoes) {
    locale.Text(LOCALE_SGROUPING, L"3");
    EXPECT_EQ(Written(L"123456789"), L"123456,789.00");
}

TEST_F(NumberFormat, DoesNotGroupWhereTheLocaleDoesNot) {
    locale.Text(LOCALE_SGROUPING, L"0;0");
    EXPECT_EQ(Written(L"123456789"), L"123456789.00");
    locale.Text(LOCALE_SGROUPING, L"0");
    EXPECT_EQ(Written(L"123456789"), L"123456789.00");
}

TEST_F(NumberFormat, UsesTheLocalesSigns) {
    locale.Text(LOCALE_SDECIMAL, L",").Text(LOCALE_STHOUSAND, L"\u00A0");
    EXPECT_EQ(Written(L"-1234567.5"), L"-1\u00A0234\u00A0567,50");
    locale.Number(LOCALE_INEGNUMBER, 0);
    EXPECT_EQ(Written(L"-5"), L"(5,00)");
    locale.Number(LOCALE_INEGNUMBER, 3);
    EXPECT_EQ(Written(L"-5"), L"5,00-");
}

TEST_F(NumberFormat, WritesTheLeadingZeroOnlyWhereTheLocaleDoes) {
    EXPECT_EQ(Written(L"0.5"), L"0.50");
    locale.Number(LOCALE_ILZERO, 0);
    EXPECT_EQ(Written(L"0.5"), L".50");
}

TEST_F(NumberFormat, FailsWhenTheLocaleIsUnknown) {
    wchar_t buffer[80] = {};
    for (const LCTYPE type : {LOCALE_STHOUSAND, LOCALE_SGROUPING}) {
        EXPECT_GT(platform::NumberFormat(L"1", buffer, 80), 0);
        locale.Unknown(type);
        EXPECT_EQ(platform::NumberFormat(L"1", buffer, 80), 0);
        locale.Text(type, L".");
    }
}

TEST_F(NumberFormat, KeepsThePointWhereTheLocaleTellsNoSign) {
    locale.Unknown(LOCALE_SDECIMAL);
    EXPECT_EQ(Written(L"1234567.5"), L"1,234,567.50");
}

TEST_F(NumberFormat, FailsWhenTheBufferIsTooSmall) {
    wchar_t buffer[4] = {};
    EXPECT_EQ(platform::NumberFormat(L"1234", buffer, 4), 0);
}

TEST(NumberFormatOfThisMachine, WritesAsItsUserDoes) {
    wchar_t buffer[80] = {};
    ASSERT_GT(platform::NumberFormat(L"1234567", buffer, 80), 0);
    EXPECT_STREQ(buffer, L"1,234,567.00");
}
