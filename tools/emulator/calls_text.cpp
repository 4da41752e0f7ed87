// Languages, dates, numbers, conversions, messages.
#include <cstring>
#include <vector>

#include "call.h"
#include "machine.h"
#include "modules.h"
#include "stop.h"

namespace emulator {

namespace {

// Calls that fill a buffer and give the number of characters, or tell it without a buffer.
std::uint64_t LocaleInformation(Call& call) {
    return Result(
        GetLocaleInfoW(call.Word(0), call.Word(1), call.Room(2, call.Word(3)), call.Signed(3)));
}

// Wine's default format groups the digits only once, so the locale's format is given in full.
std::uint64_t FormatNumber(Call& call) {
    if (call.Word(3) != 0) {
        Stop("GetNumberFormatW: only the locale's own format is served");
    }
    WCHAR decimal[8] = {};
    WCHAR group[8] = {};
    WCHAR groups[16] = {};
    const LCID locale = call.Word(0);
    const auto number = [=](LCTYPE type) {
        DWORD value = 0;
        GetLocaleInfoW(locale, type | LOCALE_RETURN_NUMBER, reinterpret_cast<WCHAR*>(&value), 2);
        return value;
    };
    GetLocaleInfoW(locale, LOCALE_SDECIMAL, decimal, 8);
    GetLocaleInfoW(locale, LOCALE_STHOUSAND, group, 8);
    GetLocaleInfoW(locale, LOCALE_SGROUPING, groups, 16);
    NUMBERFMTW format = {};
    format.NumDigits = number(LOCALE_IDIGITS);
    format.LeadingZero = number(LOCALE_ILZERO);
    bool repeats = false;
    for (const WCHAR* digit = groups; *digit; ++digit) {
        if (*digit >= u'1' && *digit <= u'9') {
            format.Grouping = format.Grouping * 10 + static_cast<UINT>(*digit - u'0');
        }
        repeats = repeats || *digit == u'0';
    }
    format.Grouping *= repeats ? 1 : 10;
    format.lpDecimalSep = decimal;
    format.lpThousandSep = group;
    format.NegativeOrder = number(LOCALE_INEGNUMBER);
    return Result(GetNumberFormatW(locale, call.Word(1), call.String(2), &format,
                                   call.Room(4, call.Word(5)), call.Signed(5)));
}

std::uint64_t FormatDate(Call& call) {
    return Result(GetDateFormatW(call.Word(0), call.Word(1), call.In<SYSTEMTIME>(2), call.String(3),
                                 call.Room(4, call.Word(5)), call.Signed(5)));
}

std::uint64_t FormatTime(Call& call) {
    return Result(GetTimeFormatW(call.Word(0), call.Word(1), call.In<SYSTEMTIME>(2), call.String(3),
                                 call.Room(4, call.Word(5)), call.Signed(5)));
}

// A text whose length is given, or -1.
const WCHAR* Counted(const Call& call, unsigned index, int length) {
    return length < 0 ? call.String(index)
                      : static_cast<const WCHAR*>(
                            call.Bytes(index, 2 * static_cast<Address>(length), Access::Read));
}

std::uint64_t CompareTexts(Call& call) {
    const WCHAR* first = Counted(call, 2, call.Signed(3));
    const WCHAR* second = Counted(call, 4, call.Signed(5));
    return Result(
        CompareStringW(call.Word(0), call.Word(1), first, call.Signed(3), second, call.Signed(5)));
}

std::uint64_t UpperCase(Call& call) {
    return Result(CharUpperBuffW(call.Room(0, call.Word(1)), call.Word(1)));
}

std::uint64_t ToWide(Call& call) {
    const int length = call.Signed(3);
    if (length >= 0) {
        call.Bytes(2, call.Word(3), Access::Read);
    }
    return Result(MultiByteToWideChar(call.Word(0), call.Word(1), PointerTo<char>(call.Word(2)),
                                      length, call.Room(4, call.Word(5)), call.Signed(5)));
}

std::uint64_t ToNarrow(Call& call) {
    const int length = call.Signed(3);
    const WCHAR* text = Counted(call, 2, length);
    return Result(WideCharToMultiByte(
        call.Word(0), call.Word(1), text, length,
        static_cast<char*>(call.Bytes(4, call.Word(5), Access::Write)), call.Signed(5),
        PointerTo<char>(call.Word(6)), PointerTo<BOOL>(call.Word(7))));
}

// Whether a pattern's insert of this number ("%2!I64i!") is of 64 bits.
bool IsWide(const Text& pattern, unsigned number) {
    const Text start = u"%" + Widen(std::to_string(number)) + u"!";
    const size_t found = pattern.find(start);
    const size_t form = found == Text::npos ? found : found + start.size();
    const size_t end = form == Text::npos ? form : pattern.find(u'!', form);
    return end != Text::npos && pattern.substr(form, end - form).find(u"I64") != Text::npos;
}

// The inserts are words of 32 bits; one of 64 bits takes two.
std::vector<DWORD_PTR> Inserts(const Call& call, const WCHAR* pattern) {
    constexpr unsigned most = 99;
    std::vector<DWORD_PTR> inserts(most);
    std::string why;
    Address at = call.Word(6);
    for (unsigned i = 0; i < most; ++i) {
        const bool wide = pattern && IsWide(pattern, i + 1);
        if (!TheMachine().memory.Allows(at, wide ? 8 : 4, Access::Read, &why)) {
            break;
        }
        inserts[i] = *PointerTo<Address>(at);
        at += 4;
        if (wide) {
            inserts[i] |= static_cast<DWORD_PTR>(*PointerTo<Address>(at)) << 32;
            at += 4;
        }
    }
    return inserts;
}

std::uint64_t FormatAMessage(Call& call) {
    const DWORD flags = call.Word(0);
    const bool fromText = (flags & FORMAT_MESSAGE_FROM_STRING) != 0;
    const WCHAR* pattern = fromText ? call.String(1) : nullptr;
    const void* source = pattern;
    if (!fromText && (flags & FORMAT_MESSAGE_FROM_HMODULE) != 0) {
        // The program's own message tables are not served: there are none.
        SetLastError(ERROR_MR_MID_NOT_FOUND);
        return 0;
    }
    std::vector<DWORD_PTR> inserts;
    if (call.Word(6) != 0) {
        if (!(flags & FORMAT_MESSAGE_ARGUMENT_ARRAY)) {
            Stop("FormatMessageW: only an array of inserts is served");
        }
        inserts = Inserts(call, pattern);
    }
    const auto list = reinterpret_cast<__ms_va_list*>(inserts.empty() ? nullptr : inserts.data());
    if (!(flags & FORMAT_MESSAGE_ALLOCATE_BUFFER)) {
        return Result(FormatMessageW(flags, source, call.Word(2), call.Word(3),
                                     call.Room(4, call.Word(5)), call.Word(5), list));
    }
    auto* slot = call.Out<Address>(4);
    WCHAR* formatted = nullptr;
    const DWORD length = FormatMessageW(flags, source, call.Word(2), call.Word(3),
                                        reinterpret_cast<WCHAR*>(&formatted), call.Word(5), list);
    if (length == 0) {
        return 0;
    }
    const Address copy = TheMachine().heap.Allocate(2 * (length + 1), false, call.Caller());
    std::memcpy(PointerTo(copy), formatted, 2 * (length + 1));
    LocalFree(formatted);
    *slot = copy;
    return length;
}

const Services services = {
    {"GetLocaleInfoW", LocaleInformation},
    {"GetNumberFormatW", FormatNumber},
    {"GetDateFormatW", FormatDate},
    {"GetTimeFormatW", FormatTime},
    {"CompareStringW", CompareTexts},
    {"CharUpperBuffW", UpperCase},
    {"MultiByteToWideChar", ToWide},
    {"WideCharToMultiByte", ToNarrow},
    {"FormatMessageW", FormatAMessage},
    {"GetUserDefaultLCID", Direct<GetUserDefaultLCID>},
    {"GetSystemDefaultLCID", Direct<GetSystemDefaultLCID>},
    {"GetUserDefaultLangID", Direct<GetUserDefaultLangID>},
    {"GetUserDefaultUILanguage", Direct<GetUserDefaultUILanguage>},
    {"GetSystemDefaultUILanguage", Direct<GetSystemDefaultUILanguage>},
    {"GetACP", Direct<GetACP>},
    {"GetSystemTime", Direct<GetSystemTime>},
    {"GetLocalTime", Direct<GetLocalTime>},
    {"SystemTimeToFileTime", Direct<SystemTimeToFileTime>},
    {"FileTimeToSystemTime", Direct<FileTimeToSystemTime>},
    {"FileTimeToLocalFileTime", Direct<FileTimeToLocalFileTime>},
    {"LocalFileTimeToFileTime", Direct<LocalFileTimeToFileTime>},
    {"CompareFileTime", Direct<CompareFileTime>},
    {"lstrcmpW", Direct<lstrcmpW>},
    {"lstrcmpiW", Direct<lstrcmpiW>},
};

}  // namespace

}  // namespace emulator
