#include "text/format.h"

#include "platform/handles.h"
#include "platform/strings.h"
#include "res/resource.h"
#include "text/resources.h"

namespace text {

namespace {

// The most inserts that a pattern can name in one digit; those not given are empty.
constexpr size_t insertLimit = 9;

std::wstring FormatPlain(const wchar_t* pattern, DWORD language, DWORD_PTR* words) {
    wchar_t* formatted = nullptr;
    const DWORD length = FormatMessageW(
        FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_STRING | FORMAT_MESSAGE_ARGUMENT_ARRAY,
        pattern, 0, language, reinterpret_cast<wchar_t*>(&formatted), 0,
        reinterpret_cast<va_list*>(words));
    const platform::UniqueLocalText owner(formatted);
    return length > 0 ? std::wstring(formatted, length) : std::wstring();
}

// Where the last decimal separator of a number stands; npos when there is none.
size_t DecimalSeparator(const std::wstring& number) {
    wchar_t separator[5] = {};
    const int count = GetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SDECIMAL, separator, 5);
    // Kept on purpose: docs/compatibility.md#decimal-separator
    const size_t length = static_cast<size_t>(count > 0 ? count / 2 : 0);
    return length == 0 ? std::wstring::npos : number.rfind(separator, std::wstring::npos, length);
}

std::wstring WithUnit(const std::wstring& number, UINT unit) {
    return Format(L"%1 %2", number, TextOf(unit));
}

}  // namespace

std::wstring FormatInserts(std::wstring_view pattern, std::initializer_list<Insert> inserts) {
    DWORD_PTR words[insertLimit];
    size_t count = 0;
    for (const Insert& insert : inserts) {
        if (count + insert.Words() > insertLimit) {
            break;
        }
        words[count++] = insert.Word();
        if (insert.Words() == 2) {
            words[count++] = insert.UpperWord();
        }
    }
    while (count < insertLimit) {
        words[count++] = reinterpret_cast<DWORD_PTR>(L"");
    }
    return FormatPlain(std::wstring(pattern).c_str(), Language(), words);
}

std::wstring FormatTextInserts(UINT id, std::initializer_list<Insert> inserts) {
    return FormatInserts(LoadPattern(id), inserts);
}

std::wstring FormatInteger(int64_t value) {
    constexpr DWORD userLanguage = 0x0400;
    // The formatter takes a 64-bit insert from as many words as it fills.
    DWORD_PTR words[2] = {static_cast<DWORD_PTR>(value),
                          static_cast<DWORD_PTR>(static_cast<uint64_t>(value) >> 32)};
    std::wstring number =
        platform::NumberFormat(FormatPlain(L"%1!I64i!", userLanguage, words).c_str());
    const size_t separator = DecimalSeparator(number);
    if (separator != std::wstring::npos) {
        number.resize(separator);
    }
    return number;
}

std::wstring FormatDecimal(int32_t whole, uint32_t billionths) {
    std::wstring number =
        platform::NumberFormat(Format(L"%1!i!.%2!09u!", whole, billionths).c_str());
    const size_t separator = DecimalSeparator(number);
    if (separator != std::wstring::npos && number.size() - separator > 3) {
        number.resize(separator + 3);
    }
    return number;
}

std::wstring FormatSize(uint64_t bytes) {
    if (bytes < 1024) {
        return WithUnit(FormatInteger(static_cast<int64_t>(bytes)), IDS_BYTES);
    }
    UINT unit = IDS_KILOBYTES;
    while (bytes >= 0x100000 && unit < IDS_TERABYTES) {
        bytes >>= 10;
        ++unit;
    }
    const auto billionths = static_cast<uint32_t>(((bytes & 0x3FF) * 1000000000u) >> 10);
    return WithUnit(FormatDecimal(static_cast<int32_t>(bytes >> 10), billionths), unit);
}

std::wstring FormatSizeWithBytes(uint64_t bytes) {
    std::wstring size = FormatSize(bytes);
    if (bytes < 1024) {
        return size;
    }
    return Format(L"%1 (%2 %3)", size, FormatInteger(static_cast<int64_t>(bytes)),
                  TextOf(IDS_BYTES));
}

uint64_t LocalTime(const FILETIME& time) {
    FILETIME local;
    if ((time.dwLowDateTime | time.dwHighDateTime) == 0 ||
        !FileTimeToLocalFileTime(&time, &local)) {
        return 0;
    }
    return static_cast<uint64_t>(local.dwHighDateTime) << 32 | local.dwLowDateTime;
}

std::wstring FormatLocalTime(uint64_t local, Seconds seconds) {
    const FILETIME time = {static_cast<DWORD>(local), static_cast<DWORD>(local >> 32)};
    SYSTEMTIME parts;
    if (local == 0 || !FileTimeToSystemTime(&time, &parts)) {
        return std::wstring();
    }
    constexpr int size = 80;
    wchar_t date[size];
    wchar_t clock[size];
    if (!GetDateFormatW(LOCALE_USER_DEFAULT, DATE_SHORTDATE, &parts, nullptr, date, size)) {
        return std::wstring();
    }
    std::wstring shown(date);
    const DWORD style = seconds == Seconds::With ? 0 : TIME_NOSECONDS;
    if (GetTimeFormatW(LOCALE_USER_DEFAULT, style, &parts, nullptr, clock, size)) {
        shown += L' ';
        shown += clock;
    }
    return shown;
}

}  // namespace text
