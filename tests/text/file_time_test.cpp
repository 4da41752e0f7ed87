#include <gtest/gtest.h>

#include "tests/support/platform_hook.h"
#include "text/format.h"

using text::FormatFileTime;
using text::Seconds;

namespace {

constexpr SYSTEMTIME noon = {2026, 1, 4, 15, 12, 34, 56, 0};

FILETIME Time(const SYSTEMTIME& parts) {
    FILETIME time = {};
    EXPECT_TRUE(SystemTimeToFileTime(&parts, &time));
    return time;
}

std::wstring ShortDate(const SYSTEMTIME& parts) {
    wchar_t text[80] = {};
    GetDateFormatW(LOCALE_USER_DEFAULT, DATE_SHORTDATE, &parts, nullptr, text, 80);
    return text;
}

std::wstring Clock(const SYSTEMTIME& parts, DWORD style) {
    wchar_t text[80] = {};
    GetTimeFormatW(LOCALE_USER_DEFAULT, style, &parts, nullptr, text, 80);
    return text;
}

// A place an hour and a half east.
BOOL WINAPI EasternTime(const FILETIME* time, FILETIME* local) {
    ULARGE_INTEGER value;
    value.LowPart = time->dwLowDateTime;
    value.HighPart = time->dwHighDateTime;
    value.QuadPart += 90ull * 60 * 10000000;
    *local = FILETIME{value.LowPart, value.HighPart};
    return TRUE;
}

BOOL WINAPI NoLocalTime(const FILETIME*, FILETIME*) {
    return FALSE;
}

using LocalTime = BOOL(const FILETIME*, FILETIME*);

}  // namespace

TEST(FileTime, IsTheUsersShortDateAndTimeWithoutSeconds) {
    const std::wstring shown = FormatFileTime(Time(noon), Seconds::Without);
    EXPECT_EQ(shown, ShortDate(noon) + L' ' + Clock(noon, TIME_NOSECONDS));
    EXPECT_EQ(shown.find(L"56"), std::wstring::npos);
}

TEST(FileTime, HasSecondsWhereTheyAreWanted) {
    const std::wstring shown = FormatFileTime(Time(noon), Seconds::With);
    EXPECT_EQ(shown, ShortDate(noon) + L' ' + Clock(noon, 0));
    EXPECT_NE(shown.find(L"34:56"), std::wstring::npos);
}

TEST(FileTime, IsLocal) {
    const test::PlatformHook<LocalTime> hook("FileTimeToLocalFileTime", EasternTime);
    SYSTEMTIME later = noon;
    later.wHour = 14;
    later.wMinute = 4;
    EXPECT_EQ(FormatFileTime(Time(noon), Seconds::With), ShortDate(noon) + L' ' + Clock(later, 0));
}

TEST(FileTime, OfZeroShowsNothing) {
    EXPECT_EQ(FormatFileTime(FILETIME{}, Seconds::Without), L"");
    EXPECT_EQ(FormatFileTime(FILETIME{}, Seconds::With), L"");
    EXPECT_NE(FormatFileTime(FILETIME{1, 0}, Seconds::Without), L"");
}

TEST(FileTime, ThatCannotBeToldShowsNothing) {
    EXPECT_EQ(FormatFileTime(FILETIME{0xFFFFFFFF, 0xFFFFFFFF}, Seconds::Without), L"");
    const test::PlatformHook<LocalTime> hook("FileTimeToLocalFileTime", NoLocalTime);
    EXPECT_EQ(FormatFileTime(Time(noon), Seconds::Without), L"");
}
