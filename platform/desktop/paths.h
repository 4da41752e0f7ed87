// Between a PC's paths and a handheld's: "C:\My Documents\a.txt" on the current drive is
// "\My Documents\a.txt" on a handheld. Paths on other drives keep their letter.
#pragma once

#include <string>

namespace platform::desktop {

// A path from the system or another program as a handheld writes it: expanded from short names,
// without the letter of the current drive.
std::wstring FromDesktopPath(const std::wstring& path);

// The same for the file of a running program or module, which the system knows well: it is asked
// about short names only where there is one.
std::wstring FromImagePath(const std::wstring& path);

// The same for the executable of a process (QueryFullProcessImageNameW). Empty, with the thread's
// last error, when the system does not tell it or it is longer than a path can be.
std::wstring ImagePathOfProcess(unsigned long processId);

// A path that is no longer than one can be; else empty, with the thread's last error.
std::wstring WithinLimit(std::wstring path);

// A handheld's path as the system and other programs expect it: with a drive's letter.
std::wstring ToDesktopPath(const std::wstring& path);

}  // namespace platform::desktop
