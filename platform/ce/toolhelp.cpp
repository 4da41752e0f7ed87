#include "platform/toolhelp.h"

#include <cwchar>

#include "platform/processes.h"

namespace {

struct ThreadEntry32 {
    DWORD dwSize;
    DWORD cntUsage;
    DWORD th32ThreadID;
    DWORD th32OwnerProcessID;
    LONG tpBasePri;
    LONG tpDeltaPri;
    DWORD dwFlags;
    DWORD th32AccessKey;
    DWORD th32CurrentProcessID;
};
static_assert(sizeof(ThreadEntry32) == 36);

struct ProcessEntry32 {
    DWORD dwSize;
    DWORD cntUsage;
    DWORD th32ProcessID;
    DWORD th32DefaultHeapID;
    DWORD th32ModuleID;
    DWORD cntThreads;
    DWORD th32ParentProcessID;
    LONG pcPriClassBase;
    DWORD dwFlags;
    WCHAR szExeFile[MAX_PATH];
    DWORD th32MemoryBase;
    DWORD th32AccessKey;
};
static_assert(sizeof(ProcessEntry32) == 564);

struct ModuleEntry32 {
    DWORD dwSize;
    DWORD th32ModuleID;
    DWORD th32ProcessID;
    DWORD GlblcntUsage;
    DWORD ProccntUsage;
    BYTE* modBaseAddr;
    DWORD modBaseSize;
    HMODULE hModule;
    WCHAR szModule[MAX_PATH];
    WCHAR szExePath[MAX_PATH];
    DWORD dwFlags;
};
static_assert(sizeof(ModuleEntry32) == 1076);

struct HeapList32 {
    DWORD dwSize;
    DWORD th32ProcessID;
    DWORD th32HeapID;
    DWORD dwFlags;
};
static_assert(sizeof(HeapList32) == 16);

struct HeapEntry32 {
    DWORD dwSize;
    HANDLE hHandle;
    DWORD dwAddress;
    DWORD dwBlockSize;
    DWORD dwFlags;
    DWORD dwLockCount;
    DWORD dwResvd;
    DWORD th32ProcessID;
    DWORD th32HeapID;
};
static_assert(sizeof(HeapEntry32) == 36);
static_assert(sizeof(MEMORY_BASIC_INFORMATION) == 28);

constexpr DWORD snapHeaps = 1;
constexpr DWORD snapProcesses = 2;
constexpr DWORD snapThreads = 4;
constexpr DWORD snapModules = 8;
constexpr DWORD snapWithoutHeaps = 0x40000000;

// A process's slot, and where the walk through it begins.
constexpr DWORD slotSize = 0x2000000;

}  // namespace

extern "C" {
HANDLE CreateToolhelp32Snapshot(DWORD flags, DWORD process);
BOOL CloseToolhelp32Snapshot(HANDLE snapshot);
BOOL Thread32First(HANDLE snapshot, ThreadEntry32* entry);
BOOL Thread32Next(HANDLE snapshot, ThreadEntry32* entry);
BOOL Process32First(HANDLE snapshot, ProcessEntry32* entry);
BOOL Process32Next(HANDLE snapshot, ProcessEntry32* entry);
BOOL Module32First(HANDLE snapshot, ModuleEntry32* entry);
BOOL Module32Next(HANDLE snapshot, ModuleEntry32* entry);
BOOL Heap32ListFirst(HANDLE snapshot, HeapList32* list);
BOOL Heap32ListNext(HANDLE snapshot, HeapList32* list);
BOOL Heap32First(HANDLE snapshot, HeapEntry32* entry, DWORD process, DWORD heap);
BOOL Heap32Next(HANDLE snapshot, HeapEntry32* entry);
}

namespace platform {

namespace {

DWORD FlagsOf(Snapshot::Kind kind) {
    switch (kind) {
        case Snapshot::Kind::Processes:
            return snapProcesses | snapWithoutHeaps;
        case Snapshot::Kind::Modules:
            return snapModules | snapWithoutHeaps;
        default:
            return snapHeaps;
    }
}

template <size_t size>
void CopyName(wchar_t (&target)[size], const wchar_t (&source)[size]) {
    wmemcpy(target, source, size - 1);
    target[size - 1] = 0;
}

// An entry as a walk begins with it.
template <class Entry>
Entry& Fresh(Entry& entry) {
    entry = {};
    entry.dwSize = sizeof entry;
    return entry;
}

void Tell(const ProcessEntry32& found, ProcessEntry* entry) {
    entry->processId = found.th32ProcessID;
    entry->threadCount = found.cntThreads;
    entry->base = found.th32MemoryBase;
    CopyName(entry->name, found.szExeFile);
}

void Tell(const ModuleEntry32& found, ModuleEntry* entry) {
    entry->id = found.th32ModuleID;
    entry->base = reinterpret_cast<ULONG_PTR>(found.modBaseAddr);
    entry->size = found.modBaseSize;
    CopyName(entry->name, found.szModule);
    CopyName(entry->path, found.szExePath);
}

template <class Found, class Entry>
bool Told(BOOL stepped, const Found& found, Entry* entry) {
    if (stepped) {
        Tell(found, entry);
    }
    return stepped != FALSE;
}

}  // namespace

void CloseSnapshot(HANDLE snapshot) {
    CloseToolhelp32Snapshot(snapshot);
}

bool ProcessOfThread(DWORD thread, DWORD* process) {
    *process = 0;
    UniqueSnapshot snapshot(CreateToolhelp32Snapshot(snapThreads, 0));
    if (!snapshot) {
        return false;
    }
    ThreadEntry32 entry = {};
    entry.dwSize = sizeof entry;
    BOOL found = Thread32First(snapshot.Get(), &entry);
    while (found && entry.th32ThreadID != thread) {
        found = Thread32Next(snapshot.Get(), &entry);
    }
    const DWORD error = found ? ERROR_NO_MORE_FILES : GetLastError();
    if (found) {
        *process = entry.th32OwnerProcessID;
    }
    snapshot.Reset();
    SetLastError(error);
    return error == ERROR_NO_MORE_FILES;
}

struct Snapshot::Entries {
    ProcessEntry32 process;
    ModuleEntry32 module;
};

Snapshot::Snapshot(Kind kind, DWORD processId)
    : entries_(std::make_unique<Entries>()),
      snapshot_(CreateToolhelp32Snapshot(FlagsOf(kind), processId)) {}

Snapshot::~Snapshot() = default;

bool Snapshot::First(ProcessEntry* entry) const {
    ProcessEntry32& found = Fresh(entries_->process);
    return Told(Process32First(Handle(), &found), found, entry);
}

bool Snapshot::Next(ProcessEntry* entry) const {
    ProcessEntry32& found = entries_->process;
    return Told(Process32Next(Handle(), &found), found, entry);
}

bool Snapshot::First(ModuleEntry* entry) const {
    ModuleEntry32& found = Fresh(entries_->module);
    return Told(Module32First(Handle(), &found), found, entry);
}

bool Snapshot::Next(ModuleEntry* entry) const {
    ModuleEntry32& found = entries_->module;
    return Told(Module32Next(Handle(), &found), found, entry);
}

struct SnapshotHeaps::Walk {
    HANDLE snapshot;
    HeapList32 heap;
    HeapEntry32 block;
};

SnapshotHeaps::SnapshotHeaps(const Snapshot& snapshot, DWORD)
    : walk_(std::make_unique<Walk>(Walk{snapshot.Handle(), {}, {}})) {}

SnapshotHeaps::~SnapshotHeaps() {}

bool SnapshotHeaps::FirstHeap() {
    return Heap32ListFirst(walk_->snapshot, &Fresh(walk_->heap)) != FALSE;
}

bool SnapshotHeaps::NextHeap() {
    return Heap32ListNext(walk_->snapshot, &walk_->heap) != FALSE;
}

bool SnapshotHeaps::FirstBlock(uint64_t* size) {
    const HeapList32& heap = walk_->heap;
    const BOOL found =
        Heap32First(walk_->snapshot, &Fresh(walk_->block), heap.th32ProcessID, heap.th32HeapID);
    *size = walk_->block.dwBlockSize;
    return found != FALSE;
}

bool SnapshotHeaps::NextBlock(uint64_t* size) {
    const BOOL found = Heap32Next(walk_->snapshot, &walk_->block);
    *size = walk_->block.dwBlockSize;
    return found != FALSE;
}

std::wstring PathOfModule(DWORD, const ModuleEntry& entry) {
    return ModulePath(reinterpret_cast<HMODULE>(entry.id));
}

ProcessMemory::ProcessMemory(const ProcessEntry& process)
    : base_(process.base), end_(process.base + slotSize) {}

bool ProcessMemory::Query(ULONG_PTR address, MemoryRegion* region) const {
    MEMORY_BASIC_INFORMATION information = {};
    if (VirtualQuery(reinterpret_cast<const void*>(address), &information, sizeof information) ==
        0) {
        return false;
    }
    region->state = information.State;
    region->size = information.RegionSize;
    return true;
}

}  // namespace platform
