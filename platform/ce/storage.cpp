#include "platform/storage.h"

extern "C" {
HANDLE FindFirstFlashCard(platform::FindData* data);
BOOL FindNextFlashCard(HANDLE search, platform::FindData* data);
// A search in the storage manager's folder, or through a store's partitions, fills in the storage
// manager's own descriptions in place of a file's.
HANDLE CeFindFirstStored(const wchar_t* folder, void* description) asm("FindFirstFileW");
BOOL CeFindNextStored(HANDLE search, void* description) asm("FindNextFileW");
}

namespace platform {

namespace {

// Some versions of the platform's documents give null, others INVALID_HANDLE_VALUE for a failure.
HANDLE Checked(HANDLE search) {
    return search ? search : INVALID_HANDLE_VALUE;
}

// Before Windows CE 6 no library exports the search for partitions: it is the system call at this
// address on ARM, number 14 of an open file's. Later systems have other addresses.
constexpr uint32_t findFirstPartitionAddress = 0xF000E3C8;
constexpr DWORD lastVersionWithAddresses = 5;
using FindFirstPartitionFunction = HANDLE(HANDLE store, void* description);

bool HasSystemCallAddresses() {
    OSVERSIONINFOW version = {};
    version.dwOSVersionInfoSize = sizeof version;
    return GetVersionExW(&version) && version.dwMajorVersion <= lastVersionWithAddresses;
}

// A description with the room that a file's takes, which a search may ask for.
template <typename Description>
union Described {
    Description description;
    FindData file;

    Described() : file{} { description.cbSize = sizeof description; }
};

HANDLE UnknownToThisSystem() {
    SetLastError(ERROR_NOT_SUPPORTED);
    return INVALID_HANDLE_VALUE;
}

template <typename Description>
bool FindNextDescription(HANDLE search, Description* description) {
    Described<Description> found;
    const bool more = CeFindNextStored(search, &found) != FALSE;
    *description = found.description;
    return more;
}

}  // namespace

HANDLE FindFirstFlashCard(FindData* data) {
    return Checked(::FindFirstFlashCard(data));
}

bool FindNextFlashCard(HANDLE search, FindData* data) {
    return ::FindNextFlashCard(search, data) != FALSE;
}

void CloseFlashCardSearch(HANDLE search) {
    FindClose(search);
}

HANDLE FindFirstStore(StoreInfo* store) {
    if (!HasSystemCallAddresses()) {
        return UnknownToThisSystem();
    }
    Described<StoreInfo> found;
    const HANDLE search = Checked(CeFindFirstStored(L"\\StoreMgr", &found));
    *store = found.description;
    return search;
}

bool FindNextStore(HANDLE search, StoreInfo* store) {
    return FindNextDescription(search, store);
}

void CloseStoreSearch(HANDLE search) {
    FindClose(search);
}

HANDLE FindFirstPartition(HANDLE store, PartitionInfo* partition) {
    if (!HasSystemCallAddresses()) {
        return UnknownToThisSystem();
    }
    const auto findFirst = reinterpret_cast<FindFirstPartitionFunction*>(findFirstPartitionAddress);
    Described<PartitionInfo> found;
    const HANDLE search = Checked(findFirst(store, &found));
    *partition = found.description;
    return search;
}

bool FindNextPartition(HANDLE search, PartitionInfo* partition) {
    return FindNextDescription(search, partition);
}

void ClosePartitionSearch(HANDLE search) {
    FindClose(search);
}

HANDLE OpenStore(const wchar_t* path) {
    return CreateFileW(path, 0, 0, nullptr, OPEN_EXISTING, 0, nullptr);
}

void CloseStore(HANDLE store) {
    CloseHandle(store);
}

bool StorageSpace(const wchar_t* folder, uint64_t* total, uint64_t* totalFree) {
    ULARGE_INTEGER freeToCaller = {};
    ULARGE_INTEGER all = {};
    ULARGE_INTEGER unused = {};
    if (!GetDiskFreeSpaceExW(folder, &freeToCaller, &all, &unused)) {
        return false;
    }
    *total = all.QuadPart;
    *totalFree = unused.QuadPart;
    return true;
}

bool StorageExists(const wchar_t* folder) {
    return GetFileAttributesW(folder) != INVALID_FILE_ATTRIBUTES;
}

}  // namespace platform
