// What a PC's shortcut leads to.
#pragma once

#include <optional>
#include <string>

namespace platform::desktop {

struct ShortcutTarget {
    // In full, as a PC writes it; empty when the shortcut has none.
    std::wstring path;
    std::wstring arguments;
    bool operator==(const ShortcutTarget&) const = default;
};

// Reads a shortcut by its path on this PC; none when the file is no shortcut.
std::optional<ShortcutTarget> ReadShortcut(const std::wstring& file);

}  // namespace platform::desktop
