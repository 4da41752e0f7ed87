#include "views/files/folder_listing.h"

#include "platform/handles.h"
#include "views/display_flags.h"

namespace views {

DWORD HideMask(DWORD flags) {
    DWORD mask = 0;
    if (!(flags & flagShowSystem)) {
        mask |= FILE_ATTRIBUTE_SYSTEM;
    }
    if (!(flags & flagShowHidden)) {
        mask |= FILE_ATTRIBUTE_HIDDEN;
    }
    return mask;
}

bool IsExistingFolder(const std::wstring& path) {
    const DWORD attributes = GetFileAttributesW(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY);
}

FileItems ReadFolder(const std::wstring& folder, DWORD hideMask, const NamePatterns& patterns) {
    FileItems items;
    // The folder with a backslash, and room for the names behind it.
    std::wstring child = folder + L'\\';
    const size_t folderLength = child.size();
    platform::FindData found;
    const platform::UniqueSearch search(platform::FindFirst((child + L'*').c_str(), &found));
    for (bool more = static_cast<bool>(search); more;
         more = platform::FindNext(search.Get(), &found)) {
        const bool isFolder = (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
        if ((found.dwFileAttributes & hideMask) ||
            (!isFolder && !patterns.Match(found.cFileName))) {
            continue;
        }
        FileItemOwner item = MakeFileItem(found);
        child.resize(folderLength);
        child += item->name;
        item->iconIndex = IconOf(child, item->attributes);
        const unsigned place =
            LowerBound(static_cast<unsigned>(items.size()), *item,
                       [&items](unsigned index) -> const FileItem& { return *items[index]; });
        items.insert(items.begin() + static_cast<ptrdiff_t>(place), std::move(item));
    }
    return items;
}

int IconOf(const std::wstring& path, DWORD attributes, UINT flags) {
    SHFILEINFOW info;
    return platform::FileInfo(path.c_str(), attributes, &info,
                              SHGFI_SYSICONINDEX | SHGFI_SMALLICON | flags)
               ? info.iIcon
               : -1;
}

}  // namespace views
