#include "views/files/file_properties.h"

#include <shlobj.h>

#include "platform/shell.h"
#include "platform/shortcuts.h"
#include "text/comparison.h"
#include "views/files/file_names.h"

namespace views {

namespace {

// The longest command that is read from a shortcut, in characters with the NUL.
constexpr size_t commandCapacity = 780;

std::wstring TypeNameOf(const wchar_t* path) {
    SHFILEINFOW info = {};
    return platform::FileInfo(path, 0, &info, SHGFI_TYPENAME) ? info.szTypeName : L"";
}

std::optional<ShortcutInfo> ReadShortcut(HWND owner, const std::wstring& path) {
    const std::optional<std::wstring> command =
        platform::ShortcutTarget(path.c_str(), commandCapacity);
    const std::wstring_view target =
        command ? platform::CommandPath(*command) : std::wstring_view();
    if (target.empty()) {
        return std::nullopt;
    }
    ShortcutInfo info;
    info.target = FullTarget(target, platform::SpecialFolder(owner, CSIDL_WINDOWS));
    info.typeName = TypeNameOf(info.target.c_str());
    return info;
}

}  // namespace

std::wstring FileProperties::Location() const {
    if (nameStart == 0) {
        return std::wstring();
    }
    return nameStart == 1 ? L"\\" : path.substr(0, nameStart - 1);
}

bool FileProperties::HasSize() const {
    return data.dwFileAttributes == INVALID_FILE_ATTRIBUTES ||
           !(data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY);
}

bool IsShortcutName(std::wstring_view path) {
    const size_t point = path.rfind(L'.');
    return point != std::wstring_view::npos && path.size() - point - 1 == 3 &&
           text::SameIgnoringCase(path.substr(point + 1), L"lnk");
}

std::wstring FullTarget(std::wstring_view target, std::wstring_view windowsFolder) {
    // Where there are drives, a drive's letter begins a full path too.
    const bool full = target.starts_with(L'\\') || (target.size() > 1 && target[1] == L':');
    if (full || windowsFolder.empty() || windowsFolder.size() + target.size() + 2 > MAX_PATH) {
        return std::wstring(target);
    }
    std::wstring path(windowsFolder);
    path += L'\\';
    return path += target;
}

FileProperties ReadFileProperties(HWND owner, const std::wstring& path) {
    FileProperties properties;
    properties.path = path;
    properties.nameStart = path.rfind(L'\\') + 1;
    SHFILEINFOW info = {};
    properties.icons = reinterpret_cast<HIMAGELIST>(
        platform::FileInfo(path.c_str(), 0, &info, SHGFI_SYSICONINDEX | SHGFI_TYPENAME));
    if (properties.icons) {
        properties.iconIndex = info.iIcon;
        properties.typeName = info.szTypeName;
    }
    if (!GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &properties.data)) {
        properties.data = {};
        properties.data.dwFileAttributes = INVALID_FILE_ATTRIBUTES;
    }
    if (IsShortcutName(path)) {
        properties.shortcut = ReadShortcut(owner, path);
    }
    return properties;
}

}  // namespace views
