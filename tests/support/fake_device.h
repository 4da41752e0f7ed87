// A device of chosen values in place of this machine: its battery, memory and volumes.
#pragma once

#include <map>
#include <string>

#include "tests/support/platform_hook.h"

namespace test {

struct FakeVolume {
    UINT type = DRIVE_FIXED;
    uint64_t total = 0;
    uint64_t totalFree = 0;
    // Whether the sizes can be read, and whether its root is there.
    bool readable = true;
    bool present = true;
};

// Stands in for the machine for as long as it lives; one at a time.
class FakeDevice {
 public:
    FakeDevice();
    ~FakeDevice();
    FakeDevice(const FakeDevice&) = delete;
    FakeDevice& operator=(const FakeDevice&) = delete;

    // What GetSystemPowerStatus tells; it fails when `hasPower` is false.
    bool hasPower = true;
    BYTE batteryFlag = 1;
    BYTE batteryPercent = 75;
    // What GlobalMemoryStatus tells, in bytes and percent.
    SIZE_T totalMemory = SIZE_T{64} << 20;
    SIZE_T availableMemory = SIZE_T{16} << 20;
    DWORD memoryLoad = 75;
    // The volume of the current drive and, by their letters, all others. Letters from 'M' to 'T'
    // belong to no drive of a test device.
    FakeVolume current{DRIVE_FIXED, uint64_t{128} << 20, uint64_t{64} << 20};
    std::map<wchar_t, FakeVolume> volumes;
    // Whether a card disappears as soon as it has been found.
    bool cardsVanish = false;
    // Whether a drive was asked in a way that lets the system ask for a medium.
    bool systemMayAsk = false;
    // How often the battery has been read.
    int powerReadings = 0;

 private:
    static BOOL WINAPI Power(SYSTEM_POWER_STATUS* status);
    static void WINAPI Memory(MEMORYSTATUS* status);
    static DWORD WINAPI Drives();
    static UINT WINAPI DriveType(const wchar_t* root);
    static BOOL WINAPI Space(const wchar_t* folder, ULARGE_INTEGER* freeToCaller,
                             ULARGE_INTEGER* total, ULARGE_INTEGER* totalFree);
    static DWORD WINAPI Attributes(const wchar_t* path);
    const FakeVolume* VolumeOf(const std::wstring& path) const;
    static void NoteErrorMode();

    std::map<wchar_t, int> attributesAsked_;
    PlatformHook<BOOL(SYSTEM_POWER_STATUS*)> power_;
    PlatformHook<void(MEMORYSTATUS*)> memory_;
    PlatformHook<DWORD()> drives_;
    PlatformHook<UINT(const wchar_t*)> driveType_;
    PlatformHook<BOOL(const wchar_t*, ULARGE_INTEGER*, ULARGE_INTEGER*, ULARGE_INTEGER*)> space_;
    PlatformHook<DWORD(const wchar_t*)> attributes_;
};

}  // namespace test
