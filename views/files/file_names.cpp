#include "views/files/file_names.h"

#include <new>
#include <stdexcept>

#include "faults/fault.h"
#include "platform/files.h"
#include "platform/handles.h"
#include "res/resource.h"
#include "text/comparison.h"
#include "text/format.h"
#include "text/resources.h"

namespace views {

namespace {

constexpr int lastNumber = 255;

bool Exists(const std::wstring& path) {
    return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

// A name that could not be formatted must not become the name of something else.
std::wstring Formatted(std::wstring name) {
    if (name.empty()) {
        throw std::bad_alloc();
    }
    return name;
}

[[noreturn]] void ThrowNoNameLeft() {
    throw faults::W32Fault(faults::ResultFromError(ERROR_INVALID_NAME));
}

}  // namespace

std::wstring_view NameOfPath(std::wstring_view path) {
    const size_t backslash = path.rfind(L'\\');
    return backslash == std::wstring_view::npos ? path : path.substr(backslash + 1);
}

std::wstring_view FolderOfPath(std::wstring_view path) {
    const size_t backslash = path.rfind(L'\\');
    return backslash == std::wstring_view::npos ? std::wstring_view() : path.substr(0, backslash);
}

// Kept on purpose: docs/compatibility.md#inside-by-prefix
bool BeginsWithPath(std::wstring_view folder, std::wstring_view other) {
    return other.empty() || (other.size() <= folder.size() &&
                             text::SameIgnoringCase(folder.substr(0, other.size()), other));
}

bool IsSameFile(const std::wstring& first, const std::wstring& second) {
    bool same = false;
    return platform::CompareFiles(first, second, platform::Links::Kept, &same) && same;
}

bool IsSameFolder(const std::wstring& first, const std::wstring& second) {
    bool same = false;
    return platform::SameSpelling(first, second) ||
           (platform::CompareFiles(first, second, platform::Links::Followed, &same) && same);
}

bool LiesWithin(const std::wstring& folder, const std::wstring& other) {
    // What lies above a link is not what lies above the folder that it leads to.
    const std::wstring behind = platform::PathBehindLinks(folder);
    for (std::wstring_view part = behind; !part.empty(); part = FolderOfPath(part)) {
        bool same = false;
        if (platform::CompareFiles(std::wstring(part), other, platform::Links::Followed, &same) &&
            same) {
            return true;
        }
    }
    return false;
}

std::wstring NameOnDisk(const std::wstring& path) {
    const std::wstring_view name = NameOfPath(path);
    platform::FindData found;
    // A name that is a pattern to the search would find something else.
    if (!name.empty() && name.find_first_of(L"*?") == std::wstring_view::npos) {
        const platform::UniqueSearch search(platform::FindFirst(path.c_str(), &found));
        if (search) {
            return found.cFileName;
        }
    }
    return std::wstring(name);
}

std::wstring PathOnDisk(const std::wstring& path) {
    const std::wstring canonical = platform::CanonicalPath(path);
    size_t end = canonical.find(L'\\');
    // A drive's letter, or another computer with what it shares, is no entry of a folder.
    if (canonical.starts_with(L"\\\\")) {
        end = std::wstring::npos;
    }
    std::wstring spelt = canonical.substr(0, end);
    while (end != std::wstring::npos) {
        end = canonical.find(L'\\', end + 1);
        const std::wstring name = NameOnDisk(canonical.substr(0, end));
        (spelt += L'\\') += name;
    }
    return spelt;
}

void RequireOwnName(const std::wstring& path) {
    if (!platform::NamesItself(path)) {
        throw faults::W32Fault(faults::ResultFromError(ERROR_INVALID_NAME));
    }
}

NameParts SplitForCopy(const std::wstring& name, bool folder) {
    if (folder) {
        return NameParts{name, std::wstring()};
    }
    const size_t dot = name.rfind(L'.');
    const size_t split = dot == std::wstring::npos ? 0 : dot + 1;
    // Kept on purpose: docs/compatibility.md#zero-extension
    if (split < name.size() && name[split] == L'0') {
        return NameParts{name, std::wstring()};
    }
    if (split == 0) {
        throw std::out_of_range("a name without a dot");
    }
    return NameParts{name.substr(0, dot), name.substr(dot)};
}

std::wstring UniqueFolderName(const std::wstring& folder) {
    std::wstring name = Formatted(text::TextOf(IDS_NEW_FOLDER));
    for (int number = 1; Exists(folder + L'\\' + name); ++number) {
        if (number > lastNumber) {
            ThrowNoNameLeft();
        }
        name = Formatted(text::FormatText(IDS_NEW_FOLDER_NUMBERED, number));
    }
    return name;
}

// Kept on purpose: docs/compatibility.md#copy-numbers
std::wstring UniqueCopyPath(const std::wstring& folder, const std::wstring& name, bool isFolder) {
    const NameParts parts = SplitForCopy(name, isFolder);
    std::wstring candidate = Formatted(text::FormatText(IDS_COPY_OF, parts.base));
    for (int number = 1; Exists(folder + L'\\' + candidate + parts.extension); ++number) {
        if (number > lastNumber) {
            ThrowNoNameLeft();
        }
        candidate = Formatted(text::FormatText(IDS_COPY_OF_NUMBERED, name, number));
    }
    return folder + L'\\' + candidate + parts.extension;
}

}  // namespace views
