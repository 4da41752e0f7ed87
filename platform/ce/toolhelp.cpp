#include "platform/toolhelp.h"

#include <cwchar>

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

bool Walk(HANDLE snapshot, BOOL (*step)(HANDLE, ProcessEntry32*), ProcessEntry* entry) {
    ProcessEntry32 found = {};
    found.dwSize = sizeof found;
    if (!step(snapshot, &found)) {
        return false;
    }
    entry->processId = found.th32ProcessID;
    entry->threadCount = found.cntThreads;
    entry->base = found.th32MemoryBase;
    CopyName(entry->name, found.szExeFile);
    return true;
}

bool Walk(HANDLE snapshot, BOOL (*step)(HANDLE, ModuleEntry32*), ModuleEntry* entry) {
    ModuleEntry32 found = {};
    found.dwSize = sizeof found;
    if (!step(snapshot, &found)) {
        return false;
    }
    entry->id = found.th32ModuleID;
    entry->base = reinterpret_cast<ULONG_PTR>(found.modBaseAddr);
    entry->size = found.modBaseSize;
    CopyName(entry->name, found.szModule);
    CopyName(entry->path, found.szExePath);
    return true;
}

}  // namespace

bool ProcessOfThread(DWORD thread, DWORD* process) {
    *process = 0;
    const HANDLE snapshot = CreateToolhelp32Snapshot(snapThreads, 0);
    if (snapshot == INVALID_HANDLE_VALUE) {
        return false;
    }
    ThreadEntry32 entry = {};
    entry.dwSize = sizeof entry;
    BOOL found = Thread32First(snapshot, &entry);
    while (found && entry.th32ThreadID != thread) {
        found = Thread32Next(snapshot, &entry);
    }
    const DWORD error = found ? ERROR_NO_MORE_FILES : GetLastError();
    if (found) {
        *process = entry.th32OwnerProcessID;
    }
    CloseToolhelp32Snapshot(snapshot);
    SetLastError(error);
    return error == ERROR_NO_MORE_FILES;
}

Snapshot::Snapshot(Kind kind, DWORD processId)
    : handle_(CreateToolhelp32Snapshot(FlagsOf(kind), processId)) {}

Snapshot::~Snapshot() {
    if (*this) {
        CloseToolhelp32Snapshot(handle_);
    }
}

bool Snapshot::First(ProcessEntry* entry) const {
    return Walk(handle_, Process32First, entry);
}

bool Snapshot::Next(ProcessEntry* entry) const {
    return Walk(handle_, Process32Next, entry);
}

bool Snapshot::First(ModuleEntry* entry) const {
    return Walk(handle_, Module32First, entry);
}

bool Snapshot::Next(ModuleEntry* entry) const {
    return Walk(handle_, Module32Next, entry);
}

SnapshotHeaps::SnapshotHeaps(const Snapshot& snapshot, DWORD processId)
    : snapshot_(snapshot.Handle()), processId_(processId) {}

SnapshotHeaps::~SnapshotHeaps() {}

bool SnapshotHeaps::FirstHeap() {
    HeapList32 list = {};
    list.dwSize = sizeof list;
    if (!Heap32ListFirst(snapshot_, &list)) {
        return false;
    }
    processId_ = list.th32ProcessID;
    heapId_ = list.th32HeapID;
    return true;
}

bool SnapshotHeaps::NextHeap() {
    HeapList32 list = {};
    list.dwSize = sizeof list;
    if (!Heap32ListNext(snapshot_, &list)) {
        return false;
    }
    processId_ = list.th32ProcessID;
    heapId_ = list.th32HeapID;
    return true;
}

bool SnapshotHeaps::FirstBlock(uint64_t* size) {
    HeapEntry32 block = {};
    block.dwSize = sizeof block;
    if (!Heap32First(snapshot_, &block, processId_, heapId_)) {
        return false;
    }
    *size = block.dwBlockSize;
    return true;
}

bool SnapshotHeaps::NextBlock(uint64_t* size) {
    HeapEntry32 block = {};
    block.dwSize = sizeof block;
    if (!Heap32Next(snapshot_, &block)) {
        return false;
    }
    *size = block.dwBlockSize;
    return true;
}

DWORD PathOfModule(DWORD, const ModuleEntry& entry, wchar_t* buffer, DWORD size) {
    return GetModuleFileNameW(reinterpret_cast<HMODULE>(entry.id), buffer, size);
}

ProcessMemory::ProcessMemory(const ProcessEntry& process)
    : base_(process.base), end_(process.base + slotSize) {}

ProcessMemory::~ProcessMemory() {}

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
