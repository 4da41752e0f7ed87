// The runner's own dealings with the system it runs on, in which a handheld and a PC differ.
#pragma once

#include <string>

namespace conservation {

// The folders in which files are made, on two volumes.
extern const wchar_t* const firstVolume;
extern const wchar_t* const secondVolume;

// Names that only a PC's disk can have beside each other: with a dot or a blank at the end.
inline constexpr bool hasDottedNames =
#ifdef UNDER_CE
    false;
#else
    true;
#endif

// A path that the system takes letter by letter.
std::wstring Exact(const std::wstring& path);

// The same path with a drive's letter and without any rewriting by the system; the path itself on
// a handheld.
std::wstring WithDrive(const std::wstring& path);

// Links to folders. One is noted first, then all are made together; a handheld has none.
void NoteLink(const std::wstring& link, const std::wstring& target);
void MakeNotedLinks();
// Removes both folders where they may hold links, which the system here cannot remove.
void RemoveFromHost();

// A number's decimal digits.
inline std::wstring Digits(unsigned number) {
    std::wstring digits;
    do {
        digits.insert(digits.begin(), static_cast<wchar_t>(L'0' + number % 10));
        number /= 10;
    } while (number != 0);
    return digits;
}

void Tell(const std::wstring& line);

// Ends this process with no more ado, as the system does.
[[noreturn]] void EndProcess(unsigned exitCode);

}  // namespace conservation
