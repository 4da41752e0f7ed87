#include "tests/support/fake_device.h"

namespace test {

namespace {

FakeDevice* device = nullptr;

bool IsRootOfDrive(const std::wstring& path) {
    return path.size() == 3 && path[1] == L':';
}

}  // namespace

FakeDevice::FakeDevice()
    : power_("GetSystemPowerStatus", Power),
      memory_("GlobalMemoryStatus", Memory),
      drives_("GetLogicalDrives", Drives),
      driveType_("GetDriveTypeW", DriveType),
      space_("GetDiskFreeSpaceExW", Space),
      attributes_("GetFileAttributesW", Attributes) {
    device = this;
}

FakeDevice::~FakeDevice() {
    device = nullptr;
}

BOOL WINAPI FakeDevice::Power(SYSTEM_POWER_STATUS* status) {
    ++device->powerReadings;
    status->BatteryFlag = device->batteryFlag;
    status->BatteryLifePercent = device->batteryPercent;
    return device->hasPower;
}

void WINAPI FakeDevice::Memory(MEMORYSTATUS* status) {
    status->dwTotalPhys = device->totalMemory;
    status->dwAvailPhys = device->availableMemory;
    status->dwMemoryLoad = device->memoryLoad;
}

DWORD WINAPI FakeDevice::Drives() {
    DWORD drives = 0;
    for (const auto& [letter, volume] : device->volumes) {
        drives |= 1u << (letter - L'A');
    }
    return drives;
}

UINT WINAPI FakeDevice::DriveType(const wchar_t* root) {
    const FakeVolume* volume = device->VolumeOf(root);
    return volume ? volume->type : static_cast<UINT>(DRIVE_NO_ROOT_DIR);
}

void FakeDevice::NoteErrorMode() {
    const UINT mode = SetErrorMode(0);
    SetErrorMode(mode);
    device->systemMayAsk = device->systemMayAsk || !(mode & SEM_FAILCRITICALERRORS);
}

BOOL WINAPI FakeDevice::Space(const wchar_t* folder, ULARGE_INTEGER* freeToCaller,
                              ULARGE_INTEGER* total, ULARGE_INTEGER* totalFree) {
    NoteErrorMode();
    const FakeVolume* volume = device->VolumeOf(folder);
    if (!volume || !volume->present || !volume->readable) {
        SetLastError(ERROR_NOT_READY);
        return FALSE;
    }
    // A quota leaves the caller less than there is.
    freeToCaller->QuadPart = volume->totalFree / 2;
    total->QuadPart = volume->total;
    totalFree->QuadPart = volume->totalFree;
    return TRUE;
}

DWORD WINAPI FakeDevice::Attributes(const wchar_t* path) {
    if (!IsRootOfDrive(path)) {
        return device->attributes_.Original()(path);
    }
    NoteErrorMode();
    FakeVolume* volume = const_cast<FakeVolume*>(device->VolumeOf(path));
    if (!volume || !volume->present) {
        SetLastError(ERROR_PATH_NOT_FOUND);
        return INVALID_FILE_ATTRIBUTES;
    }
    // It is looked at as a store for the current drive, as a volume, and as the store of its own.
    if (device->cardsVanish && volume->type == DRIVE_REMOVABLE &&
        ++device->attributesAsked_[path[0]] == 3) {
        volume->present = false;
    }
    return FILE_ATTRIBUTE_DIRECTORY;
}

const FakeVolume* FakeDevice::VolumeOf(const std::wstring& path) const {
    if (path == L"\\") {
        return &current;
    }
    const auto found = IsRootOfDrive(path) ? volumes.find(path[0]) : volumes.end();
    return found == volumes.end() ? nullptr : &found->second;
}

}  // namespace test
