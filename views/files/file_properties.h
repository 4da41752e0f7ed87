// What the properties page tells of a file, a folder or a shortcut.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/windows.h"

namespace views {

struct ShortcutInfo {
    std::wstring target;
    // Empty when it is not known.
    std::wstring typeName;
};

struct FileProperties {
    // The full path, and where the name begins in it.
    std::wstring path;
    size_t nameStart = 0;
    // The system's large icons, borrowed, and the entry's; null when either cannot be told.
    HIMAGELIST icons = nullptr;
    int iconIndex = -1;
    std::wstring typeName;
    // When it cannot be read all is zero but the attributes, which are 0xFFFFFFFF.
    WIN32_FILE_ATTRIBUTE_DATA data = {};
    std::optional<ShortcutInfo> shortcut;

    std::wstring_view Name() const { return std::wstring_view(path).substr(nameStart); }
    // The folder that holds the entry; "\" for the root.
    std::wstring Location() const;
    uint64_t Size() const {
        return static_cast<uint64_t>(data.nFileSizeHigh) << 32 | data.nFileSizeLow;
    }
    bool HasSize() const;
};

// Whether a path ends in ".lnk", in any case.
bool IsShortcutName(std::wstring_view path);

// The full path of a shortcut's target: one that is not full lies in `windowsFolder`, as far as a
// path of the platform reaches.
std::wstring FullTarget(std::wstring_view target, std::wstring_view windowsFolder);

// Reads all that the page shows (SHGetFileInfo, GetFileAttributesExW, SHGetShortcutTarget). What
// cannot be read stays empty.
FileProperties ReadFileProperties(HWND owner, const std::wstring& path);

}  // namespace views
