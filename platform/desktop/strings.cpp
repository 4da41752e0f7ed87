#include "platform/strings.h"

namespace platform {

namespace {

// A locale's digit groups ("3;0", "3;2;0") as NUMBERFMTW counts them (3, 32).
UINT GroupingNumber(const wchar_t* groups) {
    UINT number = 0;
    bool repeats = false;
    for (; *groups; ++groups) {
        if (*groups >= L'1' && *groups <= L'9') {
            number = number * 10 + static_cast<UINT>(*groups - L'0');
        } else if (*groups == L'0') {
            repeats = true;
        }
    }
    return repeats ? number : number * 10;
}

UINT LocaleNumber(LCTYPE type) {
    DWORD value = 0;
    GetLocaleInfoW(LOCALE_USER_DEFAULT, type | LOCALE_RETURN_NUMBER,
                   reinterpret_cast<wchar_t*>(&value), sizeof value / sizeof(wchar_t));
    return value;
}

}  // namespace

size_t ResourceString(HINSTANCE module, UINT id, const wchar_t** text) {
    const wchar_t* found = nullptr;
    const int length = LoadStringW(module, id, reinterpret_cast<wchar_t*>(&found), 0);
    if (length <= 0 || !found) {
        return 0;
    }
    *text = found;
    return static_cast<size_t>(length);
}

// Wine's default format groups the digits only once, so the locale's format is given in full.
std::wstring NumberFormat(const wchar_t* plain) {
    // As it stands in the plain text, where the locale does not tell its own.
    wchar_t decimal[8] = L".";
    wchar_t group[8] = {};
    wchar_t groups[16] = {};
    GetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SDECIMAL, decimal, 8);
    if (!GetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_STHOUSAND, group, 8) ||
        !GetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SGROUPING, groups, 16)) {
        return std::wstring();
    }
    NUMBERFMTW format = {};
    format.NumDigits = LocaleNumber(LOCALE_IDIGITS);
    format.LeadingZero = LocaleNumber(LOCALE_ILZERO);
    format.Grouping = GroupingNumber(groups);
    format.lpDecimalSep = decimal;
    format.lpThousandSep = group;
    format.NegativeOrder = LocaleNumber(LOCALE_INEGNUMBER);
    const int needed = GetNumberFormatW(LOCALE_USER_DEFAULT, 0, plain, &format, nullptr, 0);
    std::wstring shown;
    if (needed > 0) {
        shown.resize(static_cast<size_t>(needed));
        const int length =
            GetNumberFormatW(LOCALE_USER_DEFAULT, 0, plain, &format, shown.data(), needed);
        shown.resize(length > 0 ? static_cast<size_t>(length) - 1 : 0);
    }
    return shown;
}

}  // namespace platform
