#include "views/files/folder_listing.h"

#include "faults/fault.h"
#include "views/display_flags.h"
#include "views/files/folder_walk.h"

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
    try {
        FolderWalk walk(folder + L"\\*");
        while (const platform::FindData* const found = walk.Next()) {
            const std::wstring_view name = found->cFileName;
            const bool isFolder = (found->dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
            if ((found->dwFileAttributes & hideMask) || (!isFolder && !patterns.Match(name))) {
                continue;
            }
            items.Add(MakeFileItem(*found, name));
        }
    } catch (const faults::W32Fault&) {
        // What could be read is the list.
    }
    return items;
}

}  // namespace views
