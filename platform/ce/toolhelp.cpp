#include "platform/toolhelp.h"

#include <cwchar>

#include "platform/processes.h"
#include "platform/snapshot_entries.h"

namespace {

static_assert(sizeof(MEMORY_BASIC_INFORMATION) == 28);

// A process's slot, and where the walk through it begins.
constexpr DWORD slotSize = 0x2000000;

}  // namespace

namespace platform {

namespace {

template <size_t size>
void CopyName(wchar_t (&target)[size], const wchar_t (&source)[size]) {
    wmemcpy(target, source, size - 1);
    target[size - 1] = 0;
}

}  // namespace

void CloseSnapshot(HANDLE snapshot) {
    CloseToolhelp32Snapshot(snapshot);
}

HANDLE TakeSnapshot(Snapshot::Kind kind, DWORD processId) {
    constexpr DWORD flags[] = {TH32CS_SNAPPROCESS | TH32CS_SNAPNOHEAPS,
                               TH32CS_SNAPMODULE | TH32CS_SNAPNOHEAPS, TH32CS_SNAPHEAPLIST};
    return CreateToolhelp32Snapshot(flags[static_cast<size_t>(kind)], processId);
}

void Describe(const PROCESSENTRY32& found, ProcessEntry* entry) {
    entry->processId = found.th32ProcessID;
    entry->threadCount = found.cntThreads;
    entry->base = found.th32MemoryBase;
    CopyName(entry->name, found.szExeFile);
}

void Describe(const MODULEENTRY32& found, ModuleEntry* entry) {
    entry->id = found.th32ModuleID;
    entry->base = reinterpret_cast<ULONG_PTR>(found.modBaseAddr);
    entry->size = found.modBaseSize;
    CopyName(entry->name, found.szModule);
    CopyName(entry->path, found.szExePath);
}

struct SnapshotHeaps::State {
    HANDLE snapshot;
    HEAPLIST32 heap;
    HEAPENTRY32 block;
};

SnapshotHeaps::SnapshotHeaps(const Snapshot& snapshot, DWORD)
    : state_(std::make_unique<State>(State{snapshot.Handle(), {}, {}})) {}

SnapshotHeaps::~SnapshotHeaps() {}

bool SnapshotHeaps::FirstHeap() {
    return Heap32ListFirst(state_->snapshot, &Initialized(state_->heap)) != FALSE;
}

bool SnapshotHeaps::NextHeap() {
    return Heap32ListNext(state_->snapshot, &state_->heap) != FALSE;
}

bool SnapshotHeaps::FirstBlock(uint64_t* size) {
    const HEAPLIST32& heap = state_->heap;
    const BOOL found = Heap32First(state_->snapshot, &Initialized(state_->block),
                                   heap.th32ProcessID, heap.th32HeapID);
    *size = state_->block.dwBlockSize;
    return found != FALSE;
}

bool SnapshotHeaps::NextBlock(uint64_t* size) {
    const BOOL found = Heap32Next(state_->snapshot, &state_->block);
    *size = state_->block.dwBlockSize;
    return found != FALSE;
}

std::wstring PathOfProcess(const ProcessEntry& entry) {
    return ProcessPath(entry.processId);
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
