#include "platform/shortcuts.h"

extern "C" {
BOOL SHCreateShortcut(const wchar_t* shortcut, const wchar_t* target);
BOOL SHGetShortcutTarget(const wchar_t* shortcut, wchar_t* target, int capacity);
}

namespace platform {

bool CreateShortcut(const wchar_t* shortcut, const wchar_t* command) {
    return SHCreateShortcut(shortcut, command) != FALSE;
}

bool ShortcutTarget(const wchar_t* shortcut, wchar_t* target, size_t capacity) {
    return SHGetShortcutTarget(shortcut, target, static_cast<int>(capacity)) != FALSE;
}

}  // namespace platform
