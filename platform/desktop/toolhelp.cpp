#include "platform/toolhelp.h"

#include <psapi.h>

#include <algorithm>
#include <cwchar>
#include <string>

#include "platform/desktop/paths.h"
#include "platform/handles.h"
#include "platform/snapshot_entries.h"

namespace platform {

namespace {

// What stands in an array, whether it ends within it or not.
template <size_t size>
std::wstring TextIn(const wchar_t (&room)[size]) {
    return std::wstring(room, wcsnlen(room, size));
}

// A copy that is cut where it does not fit.
void CopyText(wchar_t (&target)[MAX_PATH], const std::wstring& source) {
    const size_t length = std::min<size_t>(source.size(), MAX_PATH - 1);
    source.copy(target, length);
    target[length] = 0;
}

// The place of a process's executable; 0 when the system does not tell it.
ULONG_PTR BaseOfProcess(DWORD processId) {
    const UniqueHandle process(
        OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, processId));
    HMODULE executable = nullptr;
    DWORD needed = 0;
    if (!process || !EnumProcessModules(process.Get(), &executable, sizeof(HMODULE), &needed)) {
        return 0;
    }
    return reinterpret_cast<ULONG_PTR>(executable);
}

}  // namespace

void CloseSnapshot(HANDLE snapshot) {
    CloseHandle(snapshot);
}

// The list of heaps is never asked for: Wine has none. A snapshot of processes stands for it.
HANDLE TakeSnapshot(Snapshot::Kind kind, DWORD processId) {
    if (kind != Snapshot::Kind::Modules) {
        return CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, processId);
    }
    // A process that loads a module meanwhile makes it fail, and may do so again.
    constexpr int mostTries = 16;
    HANDLE snapshot = INVALID_HANDLE_VALUE;
    for (int tries = 0; tries < mostTries && snapshot == INVALID_HANDLE_VALUE; ++tries) {
        snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPMODULE | TH32CS_SNAPMODULE32, processId);
        if (snapshot == INVALID_HANDLE_VALUE && GetLastError() != ERROR_BAD_LENGTH) {
            break;
        }
    }
    return snapshot;
}

void Describe(const PROCESSENTRY32& found, ProcessEntry* entry) {
    entry->processId = found.th32ProcessID;
    entry->threadCount = found.cntThreads;
    entry->base = BaseOfProcess(found.th32ProcessID);
    CopyText(entry->name, TextIn(found.szExeFile));
}

void Describe(const MODULEENTRY32& found, ModuleEntry* entry) {
    entry->id = reinterpret_cast<ULONG_PTR>(found.hModule);
    entry->base = reinterpret_cast<ULONG_PTR>(found.modBaseAddr);
    entry->size = found.modBaseSize;
    CopyText(entry->name, TextIn(found.szModule));
    // The beginning of a path that is too long would name another file.
    CopyText(entry->path, found.szExePath[0] ? desktop::WithinLimit(
                                                   desktop::FromImagePath(TextIn(found.szExePath)))
                                             : std::wstring());
}

struct SnapshotHeaps::State {
    DWORD processId;
    UniqueHandle process;
    // Where the walk through the process's regions goes on.
    ULONG_PTR address = 0;
};

SnapshotHeaps::SnapshotHeaps(const Snapshot&, DWORD processId)
    : state_(new State{processId, UniqueHandle()}) {}

SnapshotHeaps::~SnapshotHeaps() {}

bool SnapshotHeaps::FirstHeap() {
    UniqueHandle& process = state_->process;
    process.Reset(OpenProcess(PROCESS_QUERY_INFORMATION, FALSE, state_->processId));
    DWORD exitCode = STILL_ACTIVE;
    const bool ended =
        process && GetExitCodeProcess(process.Get(), &exitCode) && exitCode != STILL_ACTIVE;
    // One that has gone, or that may not be looked into, has none to show.
    const DWORD error = process ? ERROR_ACCESS_DENIED : GetLastError();
    if (ended || error == ERROR_INVALID_PARAMETER || error == ERROR_ACCESS_DENIED) {
        SetLastError(ERROR_NO_MORE_FILES);
    }
    return process && !ended;
}

bool SnapshotHeaps::NextHeap() {
    SetLastError(ERROR_NO_MORE_FILES);
    return false;
}

bool SnapshotHeaps::FirstBlock(uint64_t* size) {
    state_->address = 0;
    return NextBlock(size);
}

bool SnapshotHeaps::NextBlock(uint64_t* size) {
    MEMORY_BASIC_INFORMATION region = {};
    ULONG_PTR& address = state_->address;
    while (VirtualQueryEx(state_->process.Get(), reinterpret_cast<const void*>(address), &region,
                          sizeof region) != 0) {
        const ULONG_PTR next = address + region.RegionSize;
        if (next <= address) {
            SetLastError(ERROR_NO_MORE_FILES);
            return false;
        }
        address = next;
        if (region.State == MEM_COMMIT && region.Type == MEM_PRIVATE) {
            *size = region.RegionSize;
            return true;
        }
    }
    // Behind the last region no query is valid.
    if (GetLastError() == ERROR_INVALID_PARAMETER) {
        SetLastError(ERROR_NO_MORE_FILES);
    }
    return false;
}

std::wstring PathOfModule(DWORD processId, const ModuleEntry& entry) {
    const UniqueHandle process(
        OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, processId));
    wchar_t path[MAX_PATH] = {};
    if (!process ||
        !GetModuleFileNameExW(process.Get(), reinterpret_cast<HMODULE>(entry.id), path, MAX_PATH)) {
        return std::wstring();
    }
    return desktop::WithinLimit(desktop::FromDesktopPath(path));
}

ProcessMemory::ProcessMemory(const ProcessEntry& process)
    : base_(0),
      end_(0),
      process_(OpenProcess(PROCESS_QUERY_INFORMATION, FALSE, process.processId)) {
    SYSTEM_INFO system = {};
    GetSystemInfo(&system);
    end_ = reinterpret_cast<ULONG_PTR>(system.lpMaximumApplicationAddress);
}

bool ProcessMemory::Query(ULONG_PTR address, MemoryRegion* region) const {
    MEMORY_BASIC_INFORMATION information = {};
    if (!process_ || VirtualQueryEx(process_.Get(), reinterpret_cast<const void*>(address),
                                    &information, sizeof information) == 0) {
        return false;
    }
    region->state = information.State;
    region->size = information.RegionSize;
    return true;
}

}  // namespace platform
