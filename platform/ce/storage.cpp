#include "platform/storage.h"

#include "platform/ce/late_function.h"

extern "C" {
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

constexpr wchar_t cards[] = L"note_prj.dll";
constinit ce::LateFunction<HANDLE(FindData*)> findFirstFlashCard(cards, L"FindFirstFlashCard", 7);
constinit ce::LateFunction<BOOL(HANDLE, FindData*)> findNextFlashCard(cards, L"FindNextFlashCard",
                                                                      8);

// Before Windows CE 6 no library exports the search for partitions: it is the system call at this
// address on ARM, number 14 of an open file's. Later systems have other addresses and functions for
// all this.
constexpr uint32_t findFirstPartitionAddress = 0xF000E3C8;
constexpr DWORD lastVersionWithAddresses = 5;
using FindFirstPartitionFunction = HANDLE(HANDLE store, void* description);

constexpr wchar_t kernel[] = L"coredll.dll";
constinit ce::LateFunction<HANDLE(StoreInfo*)> findFirstStore(kernel, L"FindFirstStore");
constinit ce::LateFunction<BOOL(HANDLE, StoreInfo*)> findNextStore(kernel, L"FindNextStore");
constinit ce::LateFunction<BOOL(HANDLE)> findCloseStore(kernel, L"FindCloseStore");
constinit ce::LateFunction<HANDLE(HANDLE, PartitionInfo*)> findFirstPartition(
    kernel, L"FindFirstPartition");
constinit ce::LateFunction<BOOL(HANDLE, PartitionInfo*)> findNextPartition(kernel,
                                                                           L"FindNextPartition");
constinit ce::LateFunction<BOOL(HANDLE)> findClosePartition(kernel, L"FindClosePartition");

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
    const auto find = findFirstFlashCard.Find();
    return find ? Checked(find(data)) : UnknownToThisSystem();
}

bool FindNextFlashCard(HANDLE search, FindData* data) {
    const auto find = findNextFlashCard.Find();
    return find && find(search, data);
}

void CloseFlashCardSearch(HANDLE search) {
    FindClose(search);
}

HANDLE FindFirstStore(StoreInfo* store) {
    if (!HasSystemCallAddresses()) {
        *store = {};
        store->cbSize = sizeof *store;
        const auto find = findFirstStore.Find();
        return find ? Checked(find(store)) : UnknownToThisSystem();
    }
    Described<StoreInfo> found;
    const HANDLE search = Checked(CeFindFirstStored(L"\\StoreMgr", &found));
    *store = found.description;
    return search;
}

bool FindNextStore(HANDLE search, StoreInfo* store) {
    if (HasSystemCallAddresses()) {
        return FindNextDescription(search, store);
    }
    const auto find = findNextStore.Find();
    return find && find(search, store);
}

void CloseStoreSearch(HANDLE search) {
    if (HasSystemCallAddresses()) {
        FindClose(search);
    } else if (const auto close = findCloseStore.Find()) {
        close(search);
    }
}

HANDLE FindFirstPartition(HANDLE store, PartitionInfo* partition) {
    if (!HasSystemCallAddresses()) {
        *partition = {};
        partition->cbSize = sizeof *partition;
        const auto find = findFirstPartition.Find();
        return find ? Checked(find(store, partition)) : UnknownToThisSystem();
    }
    const auto findFirst = reinterpret_cast<FindFirstPartitionFunction*>(findFirstPartitionAddress);
    Described<PartitionInfo> found;
    const HANDLE search = Checked(findFirst(store, &found));
    *partition = found.description;
    return search;
}

bool FindNextPartition(HANDLE search, PartitionInfo* partition) {
    if (HasSystemCallAddresses()) {
        return FindNextDescription(search, partition);
    }
    const auto find = findNextPartition.Find();
    return find && find(search, partition);
}

void ClosePartitionSearch(HANDLE search) {
    if (HasSystemCallAddresses()) {
        FindClose(search);
    } else if (const auto close = findClosePartition.Find()) {
        close(search);
    }
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
