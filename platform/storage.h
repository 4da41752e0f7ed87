// The device's storage: its flash cards, and the storage manager's stores with their partitions.
#pragma once

#include "platform/files.h"
#include "platform/handles.h"

namespace platform {

// A store and a partition as the storage manager describes them; `cbSize` is set by the find
// calls.
struct StoreInfo {
    DWORD cbSize;
    WCHAR szDeviceName[8];
    WCHAR szStoreName[32];
    DWORD dwDeviceClass;
    DWORD dwDeviceType;
    struct {
        DWORD cbSize;
        WCHAR szProfile[32];
        DWORD dwDeviceClass;
        DWORD dwDeviceType;
        DWORD dwDeviceFlags;
    } sdi;
    DWORD dwDeviceFlags;
    ULONGLONG snNumSectors;
    DWORD dwBytesPerSector;
    ULONGLONG snFreeSectors;
    ULONGLONG snBiggestPartCreatable;
    FILETIME ftCreated;
    FILETIME ftLastModified;
    DWORD dwAttributes;
    DWORD dwPartitionCount;
    DWORD dwMountCount;
};
static_assert(sizeof(StoreInfo) == 240);

struct PartitionInfo {
    DWORD cbSize;
    WCHAR szPartitionName[32];
    WCHAR szFileSys[32];
    WCHAR szVolumeName[64];
    ULONGLONG snNumSectors;
    FILETIME ftCreated;
    FILETIME ftLastModified;
    DWORD dwAttributes;
    BYTE bPartType;
};
static_assert(sizeof(PartitionInfo) == 296);

// The folders of the device's flash storage (FindFirstFlashCard, FindNextFlashCard; FindClose).
// The first returns INVALID_HANDLE_VALUE on failure. On a PC these are the volumes on which files
// can be kept: the current drive as the root, with an empty name, then the others as "D:".
HANDLE FindFirstFlashCard(FindData* data);
bool FindNextFlashCard(HANDLE search, FindData* data);
void CloseFlashCardSearch(HANDLE search);
using UniqueFlashCardSearch = Unique<HANDLE, CloseFlashCardSearch, invalidHandle>;

// The storage manager's stores (FindFirstStore, FindNextStore, FindCloseStore) and the partitions
// of an open one (FindFirstPartition, FindNextPartition, FindClosePartition). On a PC every
// removable volume is a store with one partition. The first calls return INVALID_HANDLE_VALUE on
// failure.
HANDLE FindFirstStore(StoreInfo* store);
bool FindNextStore(HANDLE search, StoreInfo* store);
void CloseStoreSearch(HANDLE search);
using UniqueStoreSearch = Unique<HANDLE, CloseStoreSearch, invalidHandle>;
HANDLE FindFirstPartition(HANDLE store, PartitionInfo* partition);
bool FindNextPartition(HANDLE search, PartitionInfo* partition);
void ClosePartitionSearch(HANDLE search);
using UniquePartitionSearch = Unique<HANDLE, ClosePartitionSearch, invalidHandle>;

// Opens a store by its path, "\StoreMgr\" and its device's name (CreateFileW, CloseHandle);
// INVALID_HANDLE_VALUE on failure.
HANDLE OpenStore(const wchar_t* path);
void CloseStore(HANDLE store);
using UniqueStore = Unique<HANDLE, CloseStore, invalidHandle>;

// The sizes of a storage folder in bytes (GetDiskFreeSpaceExW). False on failure.
bool StorageSpace(const wchar_t* folder, uint64_t* total, uint64_t* totalFree);
// Whether a storage folder is there (GetFileAttributesW).
bool StorageExists(const wchar_t* folder);

}  // namespace platform
