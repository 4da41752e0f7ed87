#include "views/files/paste_target.h"

#include "views/files/file_names.h"
#include "views/files/folder_walk.h"

namespace views {

std::optional<std::wstring> PasteTarget(const std::wstring& folder, const std::wstring& source,
                                        DWORD attributes) {
    const bool isFolder = (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    // A link lies nowhere but where it is, wherever it leads.
    const bool entered = isFolder && !IsFolderLink(attributes);
    if ((isFolder && BeginsWithPath(folder, source)) || (entered && LiesWithin(folder, source))) {
        return std::nullopt;
    }
    const std::wstring name(NameOfPath(source));
    std::wstring destination = folder + L'\\' + name;
    if (GetFileAttributesW(destination.c_str()) != INVALID_FILE_ATTRIBUTES &&
        IsSameFile(destination, source)) {
        destination = UniqueCopyPath(folder, name, isFolder);
    }
    return destination;
}

}  // namespace views
