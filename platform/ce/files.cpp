#include "platform/files.h"

#include "platform/handles.h"
#include "platform/search.h"

// The platform's structure, whose last field a PC does not have.
struct FileInformation {
    DWORD attributes;
    FILETIME created;
    FILETIME accessed;
    FILETIME written;
    DWORD volume;
    DWORD sizeHigh;
    DWORD sizeLow;
    DWORD links;
    DWORD indexHigh;
    DWORD indexLow;
    DWORD object;
};
static_assert(sizeof(FileInformation) == 56);

// Exports whose declaration for a PC has another layout.
extern "C" {
HANDLE CeFindFirstFile(const wchar_t*, platform::FindData*) asm("FindFirstFileW");
BOOL CeFindNextFile(HANDLE, platform::FindData*) asm("FindNextFileW");
BOOL CeGetFileInformation(HANDLE, FileInformation*) asm("GetFileInformationByHandle");
}

namespace platform {

namespace {

bool IsSeparator(wchar_t character) {
    return character == L'\\' || character == L'/';
}

bool Exists(const std::wstring& path) {
    return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

void AppendComponent(std::wstring& path, std::wstring_view name) {
    if (name == L"..") {
        const size_t parent = path.rfind(L'\\');
        path.resize(parent == std::wstring::npos ? 0 : parent);
        return;
    }
    // The file system drops what stands at a name's end, "." altogether.
    const size_t end = name.find_last_not_of(L". ");
    if (end != std::wstring_view::npos) {
        (path += L'\\') += name.substr(0, end + 1);
    }
}

std::wstring WithPlainComponents(const std::wstring& path) {
    std::wstring plain;
    for (size_t start = 0; start < path.size();) {
        size_t end = start;
        while (end < path.size() && !IsSeparator(path[end])) {
            ++end;
        }
        AppendComponent(plain, std::wstring_view(path).substr(start, end - start));
        start = end + 1;
    }
    return plain;
}

// Two separators begin the path of another computer's file, unless they lead to this one's root.
bool LeadsElsewhere(const std::wstring& path, const std::wstring& plain) {
    return path.size() > 1 && IsSeparator(path[0]) && IsSeparator(path[1]) &&
           plain.find(L'\\', 1) != std::wstring::npos &&
           !Exists(plain.substr(0, plain.find(L'\\', 1)));
}

bool Identify(const std::wstring& path, FileInformation* information) {
    const UniqueHandle file(CreateFileW(path.c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                        nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    return file && CeGetFileInformation(file.Get(), information) &&
           (information->indexHigh | information->indexLow | information->object) != 0;
}

std::wstring UpperCase(std::wstring_view text) {
    std::wstring upper(text);
    CharUpperBuffW(upper.data(), static_cast<DWORD>(upper.size()));
    return upper;
}

}  // namespace

HANDLE BeginSearch(const wchar_t* pattern, FindData* data) {
    return CeFindFirstFile(pattern, data);
}

bool ContinueSearch(HANDLE search, FindData* data) {
    // A driver that ends a search without a word must not end it with another call's error.
    SetLastError(ERROR_NO_MORE_FILES);
    return CeFindNextFile(search, data) != FALSE;
}

std::wstring CanonicalPath(const std::wstring& path) {
    // No name here holds a colon: a drive's letter is another system's.
    if (path.find(L':') != std::wstring::npos) {
        return path;
    }
    const std::wstring plain = WithPlainComponents(path);
    return LeadsElsewhere(path, plain) ? L'\\' + plain : plain;
}

bool SameSpelling(std::wstring_view first, std::wstring_view second) {
    return first == second ||
           (first.size() == second.size() && UpperCase(first) == UpperCase(second));
}

bool NamesItself(const std::wstring&) {
    return true;
}

bool CompareFiles(const std::wstring& first, const std::wstring& second, Links, bool* same) {
    *same = SameSpelling(CanonicalPath(first), CanonicalPath(second));
    FileInformation one;
    FileInformation other;
    if (!*same && Identify(first, &one) && Identify(second, &other)) {
        *same = one.volume == other.volume && one.indexHigh == other.indexHigh &&
                one.indexLow == other.indexLow && one.object == other.object;
    }
    return true;
}

bool ReachesLink(const std::wstring&) {
    return true;
}

std::wstring PathBehindLinks(const std::wstring& folder) {
    return folder;
}

bool CopyLink(const std::wstring&, const std::wstring&) {
    SetLastError(ERROR_NOT_SUPPORTED);
    return false;
}

bool MoveOver(const wchar_t* source, const wchar_t* destination) {
    DeleteFileW(destination);
    return MoveFileW(source, destination) != FALSE;
}

}  // namespace platform
