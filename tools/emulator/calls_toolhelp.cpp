// Snapshots of processes, threads, modules and heaps, and what stands at the addresses of their
// slots.
#include <cstring>
#include <map>
#include <vector>

#include "call.h"
#include "machine.h"
#include "processes.h"
#include "stop.h"
// Behind the system's own declarations.
#include <tlhelp32.h>

namespace emulator {

namespace {

constexpr Address snapHeaps = 1;
constexpr Address snapProcesses = 2;
constexpr Address snapThreads = 4;
constexpr Address snapModules = 8;
constexpr Address snapWithoutHeaps = 0x40000000;
constexpr Address slotSize = 0x2000000;
constexpr Address blockIsUsed = 1;
constexpr Address blockIsFree = 2;
constexpr Address keptPlace = 0x40000000;

struct DeviceThread {
    Address dwSize;
    Address cntUsage;
    Address th32ThreadID;
    Address th32OwnerProcessID;
    int tpBasePri;
    int tpDeltaPri;
    Address dwFlags;
    Address th32AccessKey;
    Address th32CurrentProcessID;
};
static_assert(sizeof(DeviceThread) == 36);

struct DeviceProcess {
    Address dwSize;
    Address cntUsage;
    Address th32ProcessID;
    Address th32DefaultHeapID;
    Address th32ModuleID;
    Address cntThreads;
    Address th32ParentProcessID;
    int pcPriClassBase;
    Address dwFlags;
    WCHAR szExeFile[MAX_PATH];
    Address th32MemoryBase;
    Address th32AccessKey;
};
static_assert(sizeof(DeviceProcess) == 564);

struct DeviceModule {
    Address dwSize;
    Address th32ModuleID;
    Address th32ProcessID;
    Address GlblcntUsage;
    Address ProccntUsage;
    Address modBaseAddr;
    Address modBaseSize;
    Address hModule;
    WCHAR szModule[MAX_PATH];
    WCHAR szExePath[MAX_PATH];
    Address dwFlags;
};
static_assert(sizeof(DeviceModule) == 1076);

struct DeviceHeap {
    Address dwSize;
    Address th32ProcessID;
    Address th32HeapID;
    Address dwFlags;
};
static_assert(sizeof(DeviceHeap) == 16);

struct DeviceBlock {
    Address dwSize;
    Address hHandle;
    Address dwAddress;
    Address dwBlockSize;
    Address dwFlags;
    Address dwLockCount;
    Address dwResvd;
    Address th32ProcessID;
    Address th32HeapID;
};
static_assert(sizeof(DeviceBlock) == 36);

// What a system may keep in an entry from one step of a walk to the next: the caller hands back
// what it got. A heap has no such word.
Address Kept(const DeviceThread& entry) {
    return entry.dwFlags;
}
Address Kept(const DeviceProcess& entry) {
    return entry.dwFlags;
}
Address Kept(const DeviceModule& entry) {
    return entry.dwFlags;
}
Address Kept(const DeviceHeap& entry) {
    return entry.dwFlags;
}
Address Kept(const DeviceBlock& entry) {
    return entry.dwResvd;
}

// Entries of one kind, and how far a walk has come.
template <class Entry>
struct List {
    std::vector<Entry> entries;
    size_t next = 0;

    BOOL Show(Entry* shown) {
        if (shown->dwSize != sizeof(Entry) ||
            (next > 0 && Kept(*shown) != Kept(entries[next - 1]))) {
            SetLastError(ERROR_INVALID_PARAMETER);
            return FALSE;
        }
        if (next >= entries.size()) {
            SetLastError(ERROR_NO_MORE_FILES);
            return FALSE;
        }
        *shown = entries[next++];
        return TRUE;
    }
};

struct Snapshot {
    List<DeviceThread> threads;
    List<DeviceProcess> processes;
    List<DeviceModule> modules;
    List<DeviceHeap> heaps;
    List<DeviceBlock> blocks;
};

std::map<Address, Snapshot>& Snapshots() {
    static std::map<Address, Snapshot> snapshots;
    return snapshots;
}

Snapshot& SnapshotOf(const Call& call) {
    const auto found = Snapshots().find(call.Word(0));
    if (found == Snapshots().end()) {
        Stop("%s: %08x is no snapshot", call.Name(), call.Word(0));
    }
    return found->second;
}

void CopyText(WCHAR (&target)[MAX_PATH], const std::string& text) {
    Widen(text).copy(target, MAX_PATH - 1);
}

Address HeapOf(const Device::Process& process) {
    return process.id ^ 0x00A50000;
}

void TakeProcesses(const std::vector<Device::Process>& running, Snapshot& snapshot) {
    for (const Device::Process& process : running) {
        DeviceProcess entry = {};
        entry.dwSize = sizeof entry;
        entry.cntUsage = 1;
        entry.th32ProcessID = process.id;
        entry.th32DefaultHeapID = HeapOf(process);
        entry.cntThreads = process.threads;
        entry.pcPriClassBase = 3;
        CopyText(entry.szExeFile, process.name);
        entry.dwFlags = keptPlace + process.id;
        entry.th32MemoryBase = process.slot;
        entry.th32AccessKey = 1;
        snapshot.processes.entries.push_back(entry);
    }
}

void TakeModules(const Device::Process& process, Snapshot& snapshot) {
    for (const Device::Module& module : process.modules) {
        DeviceModule entry = {};
        entry.dwSize = sizeof entry;
        entry.th32ModuleID = ModuleNumber(Widen(module.path));
        entry.th32ProcessID = process.id;
        entry.GlblcntUsage = module.uses;
        entry.ProccntUsage = 1;
        entry.modBaseAddr = module.base;
        entry.modBaseSize = module.size;
        entry.hModule = entry.th32ModuleID;
        CopyText(entry.szModule, module.name);
        entry.dwFlags = keptPlace + entry.th32ModuleID;
        snapshot.modules.entries.push_back(entry);
    }
}

void TakeHeap(const Device::Process& process, Snapshot& snapshot) {
    snapshot.heaps.entries.push_back({sizeof(DeviceHeap), process.id, HeapOf(process), 1});
    Address at = process.slot + 0x40000;
    for (const Device::HeapBlocks& blocks : process.heap) {
        for (unsigned i = 0; i < blocks.count; ++i) {
            snapshot.blocks.entries.push_back({sizeof(DeviceBlock), at, at, blocks.size,
                                               blocks.free ? blockIsFree : blockIsUsed, 0,
                                               keptPlace + at, process.id, HeapOf(process)});
            at += (blocks.size + 15) & ~15u;
        }
    }
}

void TakeThreads(Snapshot& snapshot) {
    const HANDLE real = CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
    THREADENTRY32 entry = {};
    entry.dwSize = sizeof entry;
    for (BOOL found = Thread32First(real, &entry); found; found = Thread32Next(real, &entry)) {
        snapshot.threads.entries.push_back(
            {sizeof(DeviceThread), 1, entry.th32ThreadID, entry.th32OwnerProcessID, 3, 0,
             keptPlace + entry.th32ThreadID, 1, entry.th32OwnerProcessID});
    }
    CloseHandle(real);
}

std::uint64_t TakeSnapshot(Call& call) {
    static Address next = 0x0D000000;
    const Address flags = call.Word(0);
    const std::vector<Device::Process> running = RunningProcesses();
    const Device::Process* process =
        FindRunning(running, call.Word(1) ? call.Word(1) : GetCurrentProcessId());
    if (!process && (flags & (snapHeaps | snapModules))) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return Result(INVALID_HANDLE_VALUE);
    }
    // Unless it is told not to, a list of processes or modules takes all the heaps along, for which
    // a small device has no memory.
    if ((flags & (snapProcesses | snapModules)) && !(flags & snapWithoutHeaps)) {
        SetLastError(ERROR_NOT_ENOUGH_MEMORY);
        return Result(INVALID_HANDLE_VALUE);
    }
    Snapshot snapshot;
    if (flags & snapProcesses) {
        TakeProcesses(running, snapshot);
    }
    if (flags & snapModules) {
        TakeModules(*process, snapshot);
    }
    if (flags & snapHeaps) {
        TakeHeap(*process, snapshot);
    }
    if (flags & snapThreads) {
        TakeThreads(snapshot);
    }
    next += 4;
    Snapshots()[next] = std::move(snapshot);
    return next;
}

std::uint64_t DropSnapshot(Call& call) {
    SnapshotOf(call);
    Snapshots().erase(call.Word(0));
    return TRUE;
}

template <class Entry, List<Entry> Snapshot::*list>
std::uint64_t First(Call& call) {
    List<Entry>& entries = SnapshotOf(call).*list;
    entries.next = 0;
    return Result(entries.Show(call.Out<Entry>(1)));
}

template <class Entry, List<Entry> Snapshot::*list>
std::uint64_t Next(Call& call) {
    return Result((SnapshotOf(call).*list).Show(call.Out<Entry>(1)));
}

struct DeviceRegion {
    Address BaseAddress;
    Address AllocationBase;
    Address AllocationProtect;
    Address RegionSize;
    Address State;
    Address Protect;
    Address Type;
};
static_assert(sizeof(DeviceRegion) == 28);

// A slot holds nothing in its first 64 KB, then the pages in use, then what is only kept for later.
std::uint64_t QueryMemory(Call& call) {
    if (call.Word(2) < sizeof(DeviceRegion)) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return 0;
    }
    auto* shown = call.Out<DeviceRegion>(1);
    const Address page = call.Word(0) & ~(pageSize - 1);
    for (const Device::Process& process : RunningProcesses()) {
        const Address offset = page - process.slot;
        if (offset >= slotSize) {
            continue;
        }
        constexpr Address unused = 0x10000;
        const Address used = unused + process.pages * pageSize;
        const bool before = offset < unused;
        const bool within = !before && offset < used;
        const Address end = before ? unused : within ? used : slotSize;
        *shown = {page,
                  before ? 0 : process.slot,
                  before ? 0u : PAGE_NOACCESS,
                  end - offset,
                  before   ? static_cast<Address>(MEM_FREE)
                  : within ? static_cast<Address>(MEM_COMMIT)
                           : static_cast<Address>(MEM_RESERVE),
                  within ? static_cast<Address>(PAGE_READWRITE) : PAGE_NOACCESS,
                  before ? 0u : static_cast<Address>(MEM_PRIVATE)};
        return sizeof(DeviceRegion);
    }
    SetLastError(ERROR_INVALID_PARAMETER);
    return 0;
}

// The first block is asked for with the heap whose it is; there is one heap.
std::uint64_t FirstBlock(Call& call) {
    Snapshot& snapshot = SnapshotOf(call);
    const auto& heaps = snapshot.heaps.entries;
    if (heaps.empty() || heaps[0].th32ProcessID != call.Word(2) ||
        heaps[0].th32HeapID != call.Word(3)) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return FALSE;
    }
    snapshot.blocks.next = 0;
    return Result(snapshot.blocks.Show(call.Out<DeviceBlock>(1)));
}

const Services services = {
    {"toolhelp!CreateToolhelp32Snapshot", TakeSnapshot},
    {"toolhelp!CloseToolhelp32Snapshot", DropSnapshot},
    {"toolhelp!Thread32First", First<DeviceThread, &Snapshot::threads>},
    {"toolhelp!Thread32Next", Next<DeviceThread, &Snapshot::threads>},
    {"toolhelp!Process32First", First<DeviceProcess, &Snapshot::processes>},
    {"toolhelp!Process32Next", Next<DeviceProcess, &Snapshot::processes>},
    {"toolhelp!Module32First", First<DeviceModule, &Snapshot::modules>},
    {"toolhelp!Module32Next", Next<DeviceModule, &Snapshot::modules>},
    {"toolhelp!Heap32ListFirst", First<DeviceHeap, &Snapshot::heaps>},
    {"toolhelp!Heap32ListNext", Next<DeviceHeap, &Snapshot::heaps>},
    {"toolhelp!Heap32First", FirstBlock},
    {"toolhelp!Heap32Next", Next<DeviceBlock, &Snapshot::blocks>},
    {"VirtualQuery", QueryMemory},
};

}  // namespace

size_t OpenSnapshots() {
    return Snapshots().size();
}

}  // namespace emulator
