// Files and folders. The device's root is the root of the current drive, so paths need no change.
#include <cstring>
#include <map>
#include <memory>

#include "call.h"
#include "machine.h"
#include "paths.h"
#include "processes.h"
#include "searches.h"
#include "stop.h"

namespace emulator {

namespace {

// Searches under way, by the handle that the program has.
struct Search {
    // Null for a search for cards.
    HANDLE handle = nullptr;
    bool inRoot = false;
    size_t nextCard = 0;
};
std::map<Address, Search>& Searches() {
    static std::map<Address, Search> searches;
    return searches;
}

Address Remember(const Search& search) {
    static Address next = 0x0F000000;
    next += 4;
    Searches()[next] = search;
    return next;
}

// Stores that were opened as files.
std::map<Address, const Device::Card*>& Stores() {
    static std::map<Address, const Device::Card*> stores;
    return stores;
}

bool IsDotEntry(const WCHAR* name) {
    return name[0] == u'.' && (name[1] == 0 || (name[1] == u'.' && name[2] == 0));
}

bool IsInRoot(const Text& pattern) {
    return pattern.find_last_of(u'\\') == 0;
}

bool IsCard(const WCHAR* name) {
    for (const Device::Card& card : TheMachine().device.cards) {
        if (lstrcmpiW(Widen(card.folder).c_str(), name) == 0) {
            return true;
        }
    }
    return false;
}

// A folder that a card stands behind is marked as temporary.
DWORD ShownAttributes(DWORD attributes, bool inRoot, const WCHAR* name) {
    return inRoot && IsCard(name) ? attributes | FILE_ATTRIBUTE_TEMPORARY : attributes;
}

void Show(const WIN32_FIND_DATAW& found, bool inRoot, DeviceFound* shown) {
    *shown = {};
    shown->dwFileAttributes = ShownAttributes(found.dwFileAttributes, inRoot, found.cFileName);
    shown->ftCreationTime = found.ftCreationTime;
    shown->ftLastAccessTime = found.ftLastAccessTime;
    shown->ftLastWriteTime = found.ftLastWriteTime;
    shown->nFileSizeHigh = found.nFileSizeHigh;
    shown->nFileSizeLow = found.nFileSizeLow;
    std::memcpy(shown->cFileName, found.cFileName, sizeof shown->cFileName);
}

bool NextEntry(HANDLE search, WIN32_FIND_DATAW* found) {
    while (FindNextFileW(search, found)) {
        if (!IsDotEntry(found->cFileName)) {
            return true;
        }
    }
    return false;
}

std::uint64_t FindFirst(Call& call) {
    const WCHAR* pattern = call.String(0);
    auto* shown = call.Out<DeviceFound>(1);
    if (StoresAreInFolder() && lstrcmpiW(pattern, storeManager) == 0) {
        return FirstStore(call);
    }
    WIN32_FIND_DATAW found = {};
    const HANDLE search = FindFirstFileW(pattern, &found);
    if (search == INVALID_HANDLE_VALUE) {
        return Result(search);
    }
    if (IsDotEntry(found.cFileName) && !NextEntry(search, &found)) {
        FindClose(search);
        SetLastError(ERROR_NO_MORE_FILES);
        return Result(INVALID_HANDLE_VALUE);
    }
    Show(found, IsInRoot(pattern), shown);
    return Remember({search, IsInRoot(pattern), 0});
}

const Search& SearchOf(const Call& call) {
    const auto found = Searches().find(call.Word(0));
    if (found == Searches().end()) {
        Stop("%s: %08x is no search", call.Name(), call.Word(0));
    }
    return found->second;
}

std::uint64_t FindNext(Call& call) {
    if (StoresAreInFolder() && IsStorageSearch(call.Word(0))) {
        return NextOfStorage(call);
    }
    const Search& search = SearchOf(call);
    auto* shown = call.Out<DeviceFound>(1);
    WIN32_FIND_DATAW found = {};
    if (!NextEntry(search.handle, &found)) {
        return FALSE;
    }
    Show(found, search.inRoot, shown);
    return TRUE;
}

std::uint64_t CloseSearch(Call& call) {
    if (StoresAreInFolder() && IsStorageSearch(call.Word(0))) {
        return CloseStorageSearch(call);
    }
    const HANDLE handle = SearchOf(call).handle;
    const BOOL result = handle ? FindClose(handle) : TRUE;
    Searches().erase(call.Word(0));
    return Result(result);
}

const WCHAR* NameIn(const WCHAR* path) {
    const WCHAR* name = path;
    for (const WCHAR* at = path; *at; ++at) {
        if (*at == u'\\' && at[1]) {
            name = at + 1;
        }
    }
    return name;
}

std::uint64_t Attributes(Call& call) {
    const WCHAR* path = call.String(0);
    const DWORD attributes = GetFileAttributesW(path);
    return attributes == INVALID_FILE_ATTRIBUTES
               ? attributes
               : ShownAttributes(attributes, IsInRoot(path), NameIn(path));
}

std::uint64_t MoreAttributes(Call& call) {
    const WCHAR* path = call.String(0);
    auto* shown = call.Out<WIN32_FILE_ATTRIBUTE_DATA>(2);
    if (!GetFileAttributesExW(path, GetFileExInfoStandard, shown)) {
        return FALSE;
    }
    shown->dwFileAttributes =
        ShownAttributes(shown->dwFileAttributes, IsInRoot(path), NameIn(path));
    return TRUE;
}

std::uint64_t OpenAFile(Call& call) {
    const Text storeFolder = Text(storeManager) + u"\\";
    const Text path = call.String(0);
    if (path.compare(0, storeFolder.size(), storeFolder) == 0) {
        static Address next = 0x0A000000;
        for (const Device::Card& card : TheMachine().device.cards) {
            if (Widen(card.store) == path.substr(storeFolder.size())) {
                next += 4;
                Stores()[next] = &card;
                return next;
            }
        }
        SetLastError(ERROR_FILE_NOT_FOUND);
        return Result(INVALID_HANDLE_VALUE);
    }
    // A folder cannot be opened: Windows CE has no FILE_FLAG_BACKUP_SEMANTICS.
    const DWORD creation = call.Word(4);
    const DWORD attributes = GetFileAttributesW(path.c_str());
    if (creation != CREATE_NEW && attributes != INVALID_FILE_ATTRIBUTES &&
        (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
        SetLastError(ERROR_ACCESS_DENIED);
        return Result(INVALID_HANDLE_VALUE);
    }
    return Result(CreateFileW(path.c_str(), call.Word(1), call.Word(2), nullptr, creation,
                              call.Word(5), nullptr));
}

std::uint64_t CloseAHandle(Call& call) {
    if (Stores().erase(call.Word(0)) != 0 || IsDescribedHandle(call.Word(0))) {
        return TRUE;
    }
    return Result(CloseHandle(call.HandleAt(0)));
}

std::uint64_t ReadBytes(Call& call) {
    return Result(ReadFile(call.HandleAt(0), call.Bytes(1, call.Word(2), Access::Write),
                           call.Word(2), call.Out<DWORD>(3), nullptr));
}

std::uint64_t WriteBytes(Call& call) {
    return Result(WriteFile(call.HandleAt(0), call.Bytes(1, call.Word(2), Access::Read),
                            call.Word(2), call.Out<DWORD>(3), nullptr));
}

std::uint64_t MakeFolder(Call& call) {
    return Result(CreateDirectoryW(call.String(0), nullptr));
}

const Device::Card* CardOf(const WCHAR* path) {
    for (const Device::Card& card : TheMachine().device.cards) {
        const Text folder = u"\\" + Widen(card.folder);
        const Text whole = path;
        if (whole.size() < folder.size()) {
            continue;
        }
        const bool within = whole.size() == folder.size() || whole[folder.size()] == u'\\';
        if (within && lstrcmpiW(whole.substr(0, folder.size()).c_str(), folder.c_str()) == 0) {
            return &card;
        }
    }
    return nullptr;
}

struct DeviceIdentity {
    DWORD dwFileAttributes;
    FILETIME ftCreationTime;
    FILETIME ftLastAccessTime;
    FILETIME ftLastWriteTime;
    DWORD dwVolumeSerialNumber;
    DWORD nFileSizeHigh;
    DWORD nFileSizeLow;
    DWORD nNumberOfLinks;
    DWORD nFileIndexHigh;
    DWORD nFileIndexLow;
    DWORD dwOID;
};
static_assert(sizeof(DeviceIdentity) == 56);

bool TellsIdentity(HANDLE file) {
    const Text prefix = u"\\\\?\\";
    WCHAR path[MAX_PATH + 4] = {};
    GetFinalPathNameByHandleW(file, path, MAX_PATH + 4, FILE_NAME_NORMALIZED);
    const Text named = path;
    const bool prefixed = named.compare(0, prefix.size(), prefix) == 0;
    const Text full = prefixed ? named.substr(prefix.size()) : named;
    const Device::Card* card = CardOf(DevicePath(full).c_str());
    return card ? card->identity : TheMachine().device.storeIdentity;
}

// The object's identifier is made of the file's index: never 0, and the same each time.
std::uint64_t IdentifyFile(Call& call) {
    const HANDLE file = call.HandleAt(0);
    auto* shown = call.Out<DeviceIdentity>(1);
    BY_HANDLE_FILE_INFORMATION found = {};
    if (!GetFileInformationByHandle(file, &found)) {
        return FALSE;
    }
    *shown = {};
    shown->dwFileAttributes = found.dwFileAttributes;
    shown->ftCreationTime = found.ftCreationTime;
    shown->ftLastAccessTime = found.ftLastAccessTime;
    shown->ftLastWriteTime = found.ftLastWriteTime;
    shown->nFileSizeHigh = found.nFileSizeHigh;
    shown->nFileSizeLow = found.nFileSizeLow;
    shown->nNumberOfLinks = found.nNumberOfLinks;
    if (TellsIdentity(file)) {
        const DWORD mixed = found.nFileIndexLow ^ found.nFileIndexHigh;
        shown->dwVolumeSerialNumber = found.dwVolumeSerialNumber;
        shown->nFileIndexHigh = found.nFileIndexHigh;
        shown->nFileIndexLow = found.nFileIndexLow;
        shown->dwOID = mixed ? mixed : 1;
    }
    return TRUE;
}

std::uint64_t FreeSpace(Call& call) {
    const Device& device = TheMachine().device;
    const WCHAR* path = call.String(0);
    const Device::Card* card = path ? CardOf(path) : nullptr;
    const std::uint64_t free = card ? card->free : device.storeFree;
    const std::uint64_t size = card ? card->size : device.store;
    if (path && GetFileAttributesW(path) == INVALID_FILE_ATTRIBUTES) {
        return FALSE;
    }
    for (unsigned index = 1; index <= 3; ++index) {
        if (auto* shown = call.Out<ULARGE_INTEGER>(index)) {
            shown->QuadPart = index == 2 ? size : free;
        }
    }
    return TRUE;
}

const Services services = {
    {"FindFirstFileW", FindFirst},
    {"FindNextFileW", FindNext},
    {"FindClose", CloseSearch},
    {"GetFileAttributesW", Attributes},
    {"GetFileAttributesExW", MoreAttributes},
    {"SetFileAttributesW", Direct<SetFileAttributesW>},
    {"CreateFileW", OpenAFile},
    {"GetFileInformationByHandle", IdentifyFile},
    {"CloseHandle", CloseAHandle},
    {"ReadFile", ReadBytes},
    {"WriteFile", WriteBytes},
    {"GetFileSize", Direct<GetFileSize>},
    {"GetFileTime", Direct<GetFileTime>},
    {"SetFileTime", Direct<SetFileTime>},
    {"SetEndOfFile", Direct<SetEndOfFile>},
    {"FlushFileBuffers", Direct<FlushFileBuffers>},
    {"SetFilePointer", Direct<SetFilePointer>},
    {"CopyFileW", Direct<CopyFileW>},
    {"MoveFileW", Direct<MoveFileW>},
    {"DeleteFileW", Direct<DeleteFileW>},
    {"CreateDirectoryW", MakeFolder},
    {"RemoveDirectoryW", Direct<RemoveDirectoryW>},
    {"GetDiskFreeSpaceExW", FreeSpace},
};

}  // namespace

Address StartCardSearch() {
    return Remember({nullptr, false, 1});
}

size_t* CardSearch(Address handle) {
    const auto found = Searches().find(handle);
    return found == Searches().end() || found->second.handle ? nullptr : &found->second.nextCard;
}

size_t OpenSearches() {
    return Searches().size() + Stores().size();
}

const Device::Card* CardOfStore(Address handle) {
    const auto found = Stores().find(handle);
    return found == Stores().end() ? nullptr : found->second;
}

}  // namespace emulator
