#include "platform/storage.h"

#include <string>

namespace platform {

namespace {

constexpr unsigned driveCount = 26;

// A walk over the drives that a find handle stands for.
struct DriveSearch {
    unsigned next;
};

unsigned NumberOfCurrentDrive() {
    wchar_t folder[MAX_PATH];
    const DWORD length = GetCurrentDirectoryW(MAX_PATH, folder);
    if (length < 2 || length >= MAX_PATH || folder[1] != L':') {
        return driveCount;
    }
    return (static_cast<unsigned>(folder[0]) | 0x20u) - L'a';
}

std::wstring DriveName(unsigned drive) {
    return std::wstring{static_cast<wchar_t>(L'A' + drive), L':'};
}

// Keeps the system from asking the user for the medium of an empty drive.
class SilentDrives {
 public:
    SilentDrives() : mode_(SetErrorMode(SEM_FAILCRITICALERRORS)) {}
    ~SilentDrives() { SetErrorMode(mode_); }
    SilentDrives(const SilentDrives&) = delete;
    SilentDrives& operator=(const SilentDrives&) = delete;

 private:
    UINT mode_;
};

// Whether a drive holds a medium; an empty slot of a card reader does not.
bool HasMedium(unsigned drive) {
    const SilentDrives silent;
    return GetFileAttributesW((DriveName(drive) + L"\\").c_str()) != INVALID_FILE_ATTRIBUTES;
}

UINT TypeOfDrive(unsigned drive) {
    return GetDriveTypeW((DriveName(drive) + L"\\").c_str());
}

// The next drive of the walk that fits; driveCount when there is none.
template <typename Fits>
unsigned NextDrive(DriveSearch& search, Fits fits) {
    const DWORD drives = GetLogicalDrives();
    while (search.next < driveCount) {
        const unsigned drive = search.next++;
        if ((drives & (1u << drive)) && fits(drive)) {
            return drive;
        }
    }
    return driveCount;
}

bool IsRemovable(unsigned drive) {
    return TypeOfDrive(drive) == DRIVE_REMOVABLE && HasMedium(drive);
}

// A drive elsewhere on the network is not asked: it may not answer for long.
bool HoldsFiles(unsigned drive) {
    if (drive == NumberOfCurrentDrive()) {
        return false;
    }
    const UINT type = TypeOfDrive(drive);
    return (type == DRIVE_FIXED || type == DRIVE_REMOVABLE || type == DRIVE_RAMDISK) &&
           HasMedium(drive);
}

void CopyName(const std::wstring& name, wchar_t* buffer) {
    name.copy(buffer, name.size());
    buffer[name.size()] = L'\0';
}

// A storage folder as the system knows it: "\D:" is the drive's root.
std::wstring PathOfStorage(const wchar_t* folder) {
    std::wstring path(folder);
    if (path.size() == 3 && path[0] == L'\\' && path[2] == L':') {
        return path.substr(1) + L"\\";
    }
    return path;
}

DriveSearch* SearchOf(HANDLE search) {
    return static_cast<DriveSearch*>(search);
}

}  // namespace

HANDLE FindFirstFlashCard(FindData* data) {
    *data = FindData{};
    data->dwFileAttributes = FILE_ATTRIBUTE_DIRECTORY;
    return new DriveSearch{0};
}

bool FindNextFlashCard(HANDLE search, FindData* data) {
    const unsigned drive = NextDrive(*SearchOf(search), HoldsFiles);
    if (drive == driveCount) {
        SetLastError(ERROR_NO_MORE_FILES);
        return false;
    }
    *data = FindData{};
    data->dwFileAttributes = FILE_ATTRIBUTE_DIRECTORY;
    CopyName(DriveName(drive), data->cFileName);
    return true;
}

void CloseFlashCardSearch(HANDLE search) {
    delete SearchOf(search);
}

HANDLE FindFirstStore(StoreInfo* store) {
    const HANDLE search = new DriveSearch{0};
    if (FindNextStore(search, store)) {
        return search;
    }
    CloseStoreSearch(search);
    return INVALID_HANDLE_VALUE;
}

bool FindNextStore(HANDLE search, StoreInfo* store) {
    const unsigned drive = NextDrive(*SearchOf(search), IsRemovable);
    if (drive == driveCount) {
        SetLastError(ERROR_NO_MORE_FILES);
        return false;
    }
    *store = StoreInfo{};
    store->cbSize = sizeof *store;
    CopyName(DriveName(drive), store->szDeviceName);
    store->dwPartitionCount = 1;
    return true;
}

void CloseStoreSearch(HANDLE search) {
    delete SearchOf(search);
}

// A store is open as the walk over its one volume.
HANDLE OpenStore(const wchar_t* path) {
    const wchar_t letter = path[std::wstring(path).size() - 2];
    return new DriveSearch{static_cast<unsigned>(letter - L'A')};
}

void CloseStore(HANDLE store) {
    delete SearchOf(store);
}

HANDLE FindFirstPartition(HANDLE store, PartitionInfo* partition) {
    *partition = PartitionInfo{};
    partition->cbSize = sizeof *partition;
    CopyName(DriveName(SearchOf(store)->next), partition->szVolumeName);
    return new DriveSearch{driveCount};
}

bool FindNextPartition(HANDLE, PartitionInfo*) {
    SetLastError(ERROR_NO_MORE_FILES);
    return false;
}

void ClosePartitionSearch(HANDLE search) {
    delete SearchOf(search);
}

bool StorageSpace(const wchar_t* folder, uint64_t* total, uint64_t* totalFree) {
    const SilentDrives silent;
    ULARGE_INTEGER freeToCaller = {};
    ULARGE_INTEGER all = {};
    ULARGE_INTEGER unused = {};
    if (!GetDiskFreeSpaceExW(PathOfStorage(folder).c_str(), &freeToCaller, &all, &unused)) {
        return false;
    }
    *total = all.QuadPart;
    *totalFree = unused.QuadPart;
    return true;
}

bool StorageExists(const wchar_t* folder) {
    const SilentDrives silent;
    return GetFileAttributesW(PathOfStorage(folder).c_str()) != INVALID_FILE_ATTRIBUTES;
}

}  // namespace platform
