// Shortcut files (".lnk"): each holds one command, a path that may be quoted, with arguments.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/windows.h"

namespace platform {

// The path in a shortcut's command: what stands in quotes, else the first word; blanks before it
// are skipped. A view into the command.
constexpr std::wstring_view CommandPath(std::wstring_view command) {
    const size_t start = command.find_first_not_of(L' ');
    if (start == std::wstring_view::npos) {
        return std::wstring_view();
    }
    const bool quoted = command[start] == L'"';
    const std::wstring_view rest = command.substr(start + (quoted ? 1 : 0));
    return rest.substr(0, rest.find(quoted ? L'"' : L' '));
}

// Writes a shortcut file with the command as given (SHCreateShortcut; IShellLinkW on a PC, where
// COM must be initialised and a file of that name is not replaced). False on failure, with the
// thread's last error.
bool CreateShortcut(const wchar_t* shortcut, const wchar_t* command);

// Reads a shortcut's command, which must fit into `capacity` characters with the NUL
// (SHGetShortcutTarget; IShellLinkW on a PC). None, with the thread's last error, when the file is
// no shortcut, cannot be read or holds more.
std::optional<std::wstring> ShortcutTarget(const wchar_t* shortcut, size_t capacity);

}  // namespace platform
