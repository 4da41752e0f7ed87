// Filling in texts with the platform formatter's inserts, and numbers, sizes and dates as the
// user's locale writes them.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <type_traits>

#include "platform/windows.h"

namespace text {

// One insert of a pattern: a text that outlives the call, an integer of at most 32 bits, or a
// signed one of 64 bits ("%1!I64i!"), which fills two words of a handheld.
class Insert {
 public:
    Insert(const wchar_t* value) : word_(reinterpret_cast<DWORD_PTR>(value)) {}
    Insert(const std::wstring& value) : Insert(value.c_str()) {}
    template <typename Integer>
    requires std::is_integral_v<Integer> &&(sizeof(Integer) <= 4) Insert(Integer value)
        : word_(static_cast<DWORD_PTR>(value)) {}
    Insert(int64_t value)
        : word_(static_cast<DWORD_PTR>(value)),
          upperWord_(static_cast<DWORD_PTR>(static_cast<uint64_t>(value) >> 32)),
          words_(sizeof(int64_t) / sizeof(DWORD_PTR)) {}
    DWORD_PTR Word() const { return word_; }
    DWORD_PTR UpperWord() const { return upperWord_; }
    // How many words the formatter takes.
    size_t Words() const { return words_; }

 private:
    DWORD_PTR word_;
    DWORD_PTR upperWord_ = 0;
    size_t words_ = 1;
};

// FormatMessageW on `pattern` ("%1", "%1!i!", "%1!x!", "%1!I64i!", "%n", "%%"). Empty on failure.
std::wstring FormatInserts(std::wstring_view pattern, std::initializer_list<Insert> inserts);

template <typename... Inserts>
std::wstring Format(std::wstring_view pattern, const Inserts&... inserts) {
    return FormatInserts(pattern, {Insert(inserts)...});
}

// The same with the string resource `id` as the pattern.
std::wstring FormatTextInserts(UINT id, std::initializer_list<Insert> inserts);

template <typename... Inserts>
std::wstring FormatText(UINT id, const Inserts&... inserts) {
    return FormatTextInserts(id, {Insert(inserts)...});
}

// An integer with the locale's digit groups and no decimals (GetNumberFormatW).
std::wstring FormatInteger(int64_t value);
inline std::wstring FormatInteger(int32_t value) {
    return FormatInteger(static_cast<int64_t>(value));
}

// A non-negative number with at most two decimals, given as its whole part and its fraction in
// units of 10^-9.
std::wstring FormatDecimal(int32_t whole, uint32_t billionths);

// A count of bytes in the largest fitting unit: "1,023 bytes", "4.88 KB".
std::wstring FormatSize(uint64_t bytes);

// The short size with the exact count behind it: "4.88 KB (5,000 bytes)".
std::wstring FormatSizeWithBytes(uint64_t bytes);

enum class Seconds { Without, With };

// A file time as the clocks show it here and now (FileTimeToLocalFileTime); 0 for a time of 0.
uint64_t LocalTime(const FILETIME& time);

// A local time in the user's short date and time format; a time of 0 is empty.
std::wstring FormatLocalTime(uint64_t local, Seconds seconds);

// The same for a file time.
inline std::wstring FormatFileTime(const FILETIME& time, Seconds seconds) {
    return FormatLocalTime(LocalTime(time), seconds);
}

}  // namespace text
