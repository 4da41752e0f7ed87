// The state of the device: memory, power, flash cards and the storage manager.
#include <cstring>
#include <map>

#include "call.h"
#include "machine.h"
#include "paths.h"
#include "searches.h"
#include "stop.h"

namespace emulator {

namespace {

struct DeviceMemory {
    Address dwLength;
    Address dwMemoryLoad;
    Address dwTotalPhys;
    Address dwAvailPhys;
    Address dwTotalPageFile;
    Address dwAvailPageFile;
    Address dwTotalVirtual;
    Address dwAvailVirtual;
};
static_assert(sizeof(DeviceMemory) == 32);

std::uint64_t MemoryState(Call& call) {
    constexpr Address slot = 32u << 20;
    const Device& device = TheMachine().device;
    auto* shown = call.Out<DeviceMemory>(0);
    if (shown->dwLength != sizeof *shown) {
        Stop("GlobalMemoryStatus: the description's size is %u", shown->dwLength);
    }
    const Address used = std::min(device.memory, device.memoryUsed + TheMachine().heap.LiveBytes());
    *shown = {sizeof *shown,
              static_cast<Address>(100ull * used / device.memory),
              device.memory,
              device.memory - used,
              0,
              0,
              slot,
              slot - TheMachine().heap.LiveBytes()};
    return 0;
}

struct DevicePower {
    BYTE ACLineStatus;
    BYTE BatteryFlag;
    BYTE BatteryLifePercent;
    BYTE Reserved1;
    Address BatteryLifeTime;
    Address BatteryFullLifeTime;
    BYTE Reserved2;
    BYTE BackupBatteryFlag;
    BYTE BackupBatteryLifePercent;
    BYTE Reserved3;
    Address BackupBatteryLifeTime;
    Address BackupBatteryFullLifeTime;
    Address BatteryVoltage;
    int BatteryCurrent;
    int BatteryAverageCurrent;
    Address BatteryAverageInterval;
    Address BatterymAHourConsumed;
    int BatteryTemperature;
    Address BackupBatteryVoltage;
    BYTE BatteryChemistry;
};
static_assert(sizeof(DevicePower) == 56);

BYTE FlagFor(unsigned percent) {
    constexpr BYTE high = 1;
    constexpr BYTE low = 2;
    constexpr BYTE critical = 4;
    return percent > 66 ? high : percent > 10 ? low : critical;
}

BYTE ChemistryNumber(const std::string& name) {
    static constexpr const char* names[] = {"ALKALINE", "NICD", "NIMH", "LION", "LIPOLY"};
    for (size_t i = 0; i < std::size(names); ++i) {
        if (name == names[i]) {
            return static_cast<BYTE>(i + 1);
        }
    }
    return 0xFF;
}

DevicePower PowerState() {
    constexpr BYTE charging = 8;
    constexpr BYTE none = 0x80;
    constexpr BYTE unknown = 0xFF;
    const Device::Battery& battery = TheMachine().device.battery;
    DevicePower state = {};
    state.ACLineStatus = battery.online;
    state.BatteryFlag =
        static_cast<BYTE>(FlagFor(battery.percent) | (battery.online ? charging : 0));
    state.BatteryLifePercent = static_cast<BYTE>(battery.percent);
    if (!battery.present) {
        state.BatteryFlag = none;
        state.BatteryLifePercent = unknown;
    }
    state.BatteryLifeTime = battery.minutesLeft ? battery.minutesLeft * 60 : 0xFFFFFFFF;
    state.BatteryFullLifeTime = 0xFFFFFFFF;
    state.BackupBatteryFlag = FlagFor(battery.backupPercent);
    state.BackupBatteryLifePercent = static_cast<BYTE>(battery.backupPercent);
    state.BackupBatteryLifeTime = 0xFFFFFFFF;
    state.BackupBatteryFullLifeTime = 0xFFFFFFFF;
    state.BatteryVoltage = battery.millivolts;
    state.BatteryCurrent = battery.milliamperes;
    state.BatteryAverageCurrent = battery.milliamperes;
    state.BatteryTemperature = battery.temperature;
    state.BatteryChemistry = ChemistryNumber(battery.chemistry);
    return state;
}

// Gives the number of bytes that were filled in. Unless the battery is to be asked anew, it tells
// what was known before, which here is nothing.
std::uint64_t MorePower(Call& call) {
    DevicePower state = PowerState();
    if (!call.Word(2)) {
        state.BatteryFlag = state.BatteryLifePercent = 0xFF;
    }
    const Address size = std::min<Address>(call.Word(1), sizeof state);
    std::memcpy(call.Bytes(0, call.Word(1), Access::Write), &state, size);
    return size;
}

std::uint64_t Power(Call& call) {
    constexpr Address size = 24;
    const DevicePower state = PowerState();
    std::memcpy(call.Bytes(0, size, Access::Write), &state, size);
    return TRUE;
}

// Walks over the cards: stores, partitions. A handle tells the kind and the next card.
enum class Walk : Address { stores = 0x0B100000, partitions = 0x0B200000 };
std::map<Address, size_t>& Walks() {
    static std::map<Address, size_t> walks;
    return walks;
}

Address StartWalk(Walk kind, size_t first) {
    static Address count = 0;
    const Address handle = static_cast<Address>(kind) + 4 * ++count;
    Walks()[handle] = first;
    return handle;
}

size_t& WalkOf(const Call& call) {
    const auto found = Walks().find(call.Word(0));
    if (found == Walks().end()) {
        Stop("%s: %08x is no search", call.Name(), call.Word(0));
    }
    return found->second;
}

std::uint64_t NoMore(std::uint64_t result) {
    SetLastError(ERROR_NO_MORE_FILES);
    return result;
}

const std::vector<Device::Card>& Cards() {
    return TheMachine().device.cards;
}

struct DeviceStore {
    Address cbSize;
    WCHAR szDeviceName[8];
    WCHAR szStoreName[32];
    Address dwDeviceClass;
    Address dwDeviceType;
    struct {
        Address cbSize;
        WCHAR szProfile[32];
        Address dwDeviceClass;
        Address dwDeviceType;
        Address dwDeviceFlags;
    } sdi;
    Address dwDeviceFlags;
    ULONGLONG snNumSectors;
    Address dwBytesPerSector;
    ULONGLONG snFreeSectors;
    ULONGLONG snBiggestPartCreatable;
    FILETIME ftCreated;
    FILETIME ftLastModified;
    Address dwAttributes;
    Address dwPartitionCount;
    Address dwMountCount;
};
static_assert(sizeof(DeviceStore) == 240);

struct DevicePartition {
    Address cbSize;
    WCHAR szPartitionName[32];
    WCHAR szFileSys[32];
    WCHAR szVolumeName[64];
    ULONGLONG snNumSectors;
    FILETIME ftCreated;
    FILETIME ftLastModified;
    Address dwAttributes;
    BYTE bPartType;
};
static_assert(sizeof(DevicePartition) == 296);

constexpr Address sectorSize = 512;

template <size_t size>
void CopyText(WCHAR (&target)[size], const std::string& text) {
    std::memset(target, 0, sizeof target);
    Widen(text).copy(target, size - 1);
}

template <class Description>
Description* Sized(const Call& call, unsigned index) {
    auto* shown = call.Out<Description>(index);
    if (shown->cbSize != sizeof *shown) {
        Stop("%s: the description's size is %u, not %zu", call.Name(), shown->cbSize,
             sizeof *shown);
    }
    return shown;
}

bool ShowStore(size_t* next, DeviceStore* shown) {
    while (*next < Cards().size() && Cards()[*next].store.empty()) {
        ++*next;
    }
    if (*next >= Cards().size()) {
        return false;
    }
    const Device::Card& card = Cards()[(*next)++];
    *shown = {};
    shown->cbSize = sizeof *shown;
    CopyText(shown->szDeviceName, card.store);
    CopyText(shown->szStoreName, card.folder);
    shown->sdi.cbSize = sizeof shown->sdi;
    CopyText(shown->sdi.szProfile, card.profile);
    shown->snNumSectors = card.size / sectorSize;
    shown->dwBytesPerSector = sectorSize;
    shown->dwPartitionCount = 1;
    shown->dwMountCount = 1;
    return true;
}

std::uint64_t FirstPartition(Call& call) {
    auto* shown = Sized<DevicePartition>(call, 1);
    const Device::Card* card = CardOfStore(call.Word(0));
    if (!card) {
        SetLastError(ERROR_INVALID_HANDLE);
        return Result(INVALID_HANDLE_VALUE);
    }
    *shown = {};
    shown->cbSize = sizeof *shown;
    CopyText(shown->szPartitionName, "PART00");
    CopyText(shown->szFileSys, "FATFS");
    CopyText(shown->szVolumeName, card->folder);
    shown->snNumSectors = card->size / sectorSize;
    shown->bPartType = 6;
    return StartWalk(Walk::partitions, 1);
}

// The system call with which a device before Windows CE 6 searches an open store: the program calls
// its address.
std::uint64_t FirstPartitionByAddress(Call& call) {
    if (!StoresAreInFolder()) {
        Stop("the program made the %s, which Windows CE 6 does not have", call.Name());
    }
    return FirstPartition(call);
}

std::uint64_t StartStores(DeviceStore* shown) {
    size_t next = 0;
    return ShowStore(&next, shown) ? StartWalk(Walk::stores, next)
                                   : NoMore(Result(INVALID_HANDLE_VALUE));
}

std::uint64_t FirstStoreByName(Call& call) {
    return StartStores(Sized<DeviceStore>(call, 0));
}

bool ShowCard(size_t index, DeviceFound* shown) {
    if (index >= Cards().size()) {
        return false;
    }
    *shown = {};
    shown->dwFileAttributes = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_TEMPORARY;
    CopyText(shown->cFileName, Cards()[index].folder);
    return true;
}

// Closed with FindClose, as any search for files.
std::uint64_t FirstCard(Call& call) {
    if (!ShowCard(0, call.Out<DeviceFound>(0))) {
        return NoMore(Result(INVALID_HANDLE_VALUE));
    }
    return StartCardSearch();
}

std::uint64_t NextCard(Call& call) {
    size_t* next = CardSearch(call.Word(0));
    if (!next) {
        Stop("%s: %08x is no search for cards", call.Name(), call.Word(0));
    }
    return ShowCard((*next)++, call.Out<DeviceFound>(1)) ? TRUE : NoMore(FALSE);
}

const Services services = {
    {"GlobalMemoryStatus", MemoryState},        {"GetSystemPowerStatusEx", Power},
    {"GetSystemPowerStatusEx2", MorePower},     {"call at f000e3c8", FirstPartitionByAddress},
    {"note_prj!FindFirstFlashCard", FirstCard}, {"note_prj#7", FirstCard},
    {"note_prj!FindNextFlashCard", NextCard},   {"note_prj#8", NextCard},
    {"FindFirstStore", FirstStoreByName},       {"FindNextStore", NextOfStorage},
    {"FindCloseStore", CloseStorageSearch},     {"FindFirstPartition", FirstPartition},
    {"FindNextPartition", NextOfStorage},       {"FindClosePartition", CloseStorageSearch},
};

}  // namespace

bool IsStorageSearch(Address handle) {
    return Walks().count(handle) != 0;
}

size_t OpenStorageSearches() {
    return Walks().size();
}

bool StoresAreInFolder() {
    return TheMachine().device.versionMajor < 6;
}

std::uint64_t FirstStore(Call& call) {
    return StartStores(Sized<DeviceStore>(call, 1));
}

std::uint64_t NextOfStorage(Call& call) {
    size_t& next = WalkOf(call);
    if (call.Word(0) >= static_cast<Address>(Walk::partitions)) {
        Sized<DevicePartition>(call, 1);
        return NoMore(FALSE);
    }
    return ShowStore(&next, Sized<DeviceStore>(call, 1)) ? TRUE : NoMore(FALSE);
}

std::uint64_t CloseStorageSearch(Call& call) {
    WalkOf(call);
    Walks().erase(call.Word(0));
    return TRUE;
}

}  // namespace emulator
