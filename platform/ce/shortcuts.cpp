#include "platform/shortcuts.h"

#include <cwchar>

extern "C" {
BOOL SHCreateShortcut(const wchar_t* shortcut, const wchar_t* target);
BOOL SHGetShortcutTarget(const wchar_t* shortcut, wchar_t* target, int capacity);
}

namespace platform {

bool CreateShortcut(const wchar_t* shortcut, const wchar_t* command) {
    // What the shell makes of a longer command is not documented.
    constexpr size_t longestCommand = 256;
    if (std::wcslen(command) > longestCommand) {
        SetLastError(ERROR_FILENAME_EXCED_RANGE);
        return false;
    }
    // The shell may refuse without saying why, most of all where there is such a file.
    SetLastError(ERROR_FILE_EXISTS);
    return SHCreateShortcut(shortcut, command) != FALSE;
}

std::optional<std::wstring> ShortcutTarget(const wchar_t* shortcut, size_t capacity) {
    std::optional<std::wstring> target(std::in_place);
    target->resize(capacity);
    if (!SHGetShortcutTarget(shortcut, target->data(), static_cast<int>(capacity))) {
        return std::nullopt;
    }
    const size_t end = target->find(L'\0');
    if (end == std::wstring::npos) {
        SetLastError(ERROR_INSUFFICIENT_BUFFER);
        return std::nullopt;
    }
    target->resize(end);
    return target;
}

}  // namespace platform
