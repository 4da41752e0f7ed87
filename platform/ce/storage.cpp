#include "platform/storage.h"

extern "C" {
HANDLE FindFirstFlashCard(platform::FindData* data);
BOOL FindNextFlashCard(HANDLE search, platform::FindData* data);
HANDLE FindFirstStore(platform::StoreInfo* store);
BOOL FindNextStore(HANDLE search, platform::StoreInfo* store);
BOOL FindCloseStore(HANDLE search);
HANDLE FindFirstPartition(HANDLE store, platform::PartitionInfo* partition);
BOOL FindNextPartition(HANDLE search, platform::PartitionInfo* partition);
BOOL FindClosePartition(HANDLE search);
}

namespace platform {

namespace {

// Some versions of the platform's documents give null, others INVALID_HANDLE_VALUE for a failure.
HANDLE Checked(HANDLE search) {
    return search ? search : INVALID_HANDLE_VALUE;
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
    *store = StoreInfo{};
    store->cbSize = sizeof *store;
    return Checked(::FindFirstStore(store));
}

bool FindNextStore(HANDLE search, StoreInfo* store) {
    *store = StoreInfo{};
    store->cbSize = sizeof *store;
    return ::FindNextStore(search, store) != FALSE;
}

void CloseStoreSearch(HANDLE search) {
    FindCloseStore(search);
}

HANDLE FindFirstPartition(HANDLE store, PartitionInfo* partition) {
    *partition = PartitionInfo{};
    partition->cbSize = sizeof *partition;
    return Checked(::FindFirstPartition(store, partition));
}

bool FindNextPartition(HANDLE search, PartitionInfo* partition) {
    *partition = PartitionInfo{};
    partition->cbSize = sizeof *partition;
    return ::FindNextPartition(search, partition) != FALSE;
}

void ClosePartitionSearch(HANDLE search) {
    FindClosePartition(search);
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
