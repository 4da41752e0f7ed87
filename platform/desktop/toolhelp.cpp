#include "platform/toolhelp.h"

#include <psapi.h>
#include <tlhelp32.h>

#include <algorithm>
#include <string>

#include "platform/desktop/paths.h"
#include "platform/handles.h"

namespace platform {

namespace {

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
    if (!process || !EnumProcessModules(process.Get(), &executable, sizeof executable, &needed)) {
        return 0;
    }
    return reinterpret_cast<ULONG_PTR>(executable);
}

bool Walk(HANDLE snapshot, BOOL(WINAPI* step)(HANDLE, PROCESSENTRY32W*), ProcessEntry* entry) {
    PROCESSENTRY32W found = {};
    found.dwSize = sizeof found;
    if (!step(snapshot, &found)) {
        return false;
    }
    entry->processId = found.th32ProcessID;
    entry->threadCount = found.cntThreads;
    entry->base = BaseOfProcess(found.th32ProcessID);
    CopyText(entry->name, found.szExeFile);
    return true;
}

bool Walk(HANDLE snapshot, BOOL(WINAPI* step)(HANDLE, MODULEENTRY32W*), ModuleEntry* entry) {
    MODULEENTRY32W found = {};
    found.dwSize = sizeof found;
    if (!step(snapshot, &found)) {
        return false;
    }
    entry->id = reinterpret_cast<ULONG_PTR>(found.hModule);
    entry->base = reinterpret_cast<ULONG_PTR>(found.modBaseAddr);
    entry->size = found.modBaseSize;
    CopyText(entry->name, found.szModule);
    CopyText(entry->path,
             found.szExePath[0] ? desktop::FromImagePath(found.szExePath) : std::wstring());
    return true;
}

}  // namespace

bool ProcessOfThread(DWORD thread, DWORD* process) {
    *process = 0;
    const UniqueHandle snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0));
    if (snapshot.Get() == INVALID_HANDLE_VALUE) {
        return false;
    }
    THREADENTRY32 entry = {};
    entry.dwSize = sizeof entry;
    for (BOOL found = Thread32First(snapshot.Get(), &entry); found;
         found = Thread32Next(snapshot.Get(), &entry)) {
        if (entry.th32ThreadID == thread) {
            *process = entry.th32OwnerProcessID;
            return true;
        }
    }
    return GetLastError() == ERROR_NO_MORE_FILES;
}

// The list of heaps is never asked for: Wine has none. A snapshot of processes stands for it.
Snapshot::Snapshot(Kind kind, DWORD processId)
    : handle_(CreateToolhelp32Snapshot(
          kind == Kind::Modules ? TH32CS_SNAPMODULE : TH32CS_SNAPPROCESS, processId)) {}

Snapshot::~Snapshot() {
    if (*this) {
        CloseHandle(handle_);
    }
}

bool Snapshot::First(ProcessEntry* entry) const {
    return Walk(handle_, Process32FirstW, entry);
}

bool Snapshot::Next(ProcessEntry* entry) const {
    return Walk(handle_, Process32NextW, entry);
}

bool Snapshot::First(ModuleEntry* entry) const {
    return Walk(handle_, Module32FirstW, entry);
}

bool Snapshot::Next(ModuleEntry* entry) const {
    return Walk(handle_, Module32NextW, entry);
}

SnapshotHeaps::SnapshotHeaps(const Snapshot& snapshot, DWORD processId)
    : snapshot_(snapshot.Handle()), processId_(processId) {}

SnapshotHeaps::~SnapshotHeaps() {
    if (process_) {
        CloseHandle(process_);
    }
}

bool SnapshotHeaps::FirstHeap() {
    process_ = OpenProcess(PROCESS_QUERY_INFORMATION, FALSE, processId_);
    DWORD exitCode = STILL_ACTIVE;
    const bool ended = process_
                           ? GetExitCodeProcess(process_, &exitCode) && exitCode != STILL_ACTIVE
                           : GetLastError() == ERROR_INVALID_PARAMETER;
    if (ended) {
        SetLastError(ERROR_NO_MORE_FILES);
    }
    return process_ && !ended;
}

bool SnapshotHeaps::NextHeap() {
    SetLastError(ERROR_NO_MORE_FILES);
    return false;
}

bool SnapshotHeaps::FirstBlock(uint64_t* size) {
    address_ = 0;
    return NextBlock(size);
}

bool SnapshotHeaps::NextBlock(uint64_t* size) {
    MEMORY_BASIC_INFORMATION region = {};
    while (VirtualQueryEx(process_, reinterpret_cast<const void*>(address_), &region,
                          sizeof region) != 0) {
        const ULONG_PTR next = address_ + region.RegionSize;
        if (next <= address_) {
            SetLastError(ERROR_NO_MORE_FILES);
            return false;
        }
        address_ = next;
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

DWORD PathOfModule(DWORD processId, const ModuleEntry& entry, wchar_t* buffer, DWORD size) {
    const UniqueHandle process(
        OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, processId));
    wchar_t path[MAX_PATH] = {};
    if (!process ||
        !GetModuleFileNameExW(process.Get(), reinterpret_cast<HMODULE>(entry.id), path, MAX_PATH)) {
        return 0;
    }
    const std::wstring found = desktop::FromDesktopPath(path);
    if (found.size() >= size) {
        SetLastError(ERROR_INSUFFICIENT_BUFFER);
        return 0;
    }
    std::copy_n(found.c_str(), found.size() + 1, buffer);
    return static_cast<DWORD>(found.size());
}

ProcessMemory::ProcessMemory(const ProcessEntry& process)
    : base_(0),
      end_(0),
      process_(OpenProcess(PROCESS_QUERY_INFORMATION, FALSE, process.processId)) {
    SYSTEM_INFO system = {};
    GetSystemInfo(&system);
    end_ = reinterpret_cast<ULONG_PTR>(system.lpMaximumApplicationAddress);
}

ProcessMemory::~ProcessMemory() {
    if (process_) {
        CloseHandle(process_);
    }
}

bool ProcessMemory::Query(ULONG_PTR address, MemoryRegion* region) const {
    MEMORY_BASIC_INFORMATION information = {};
    if (!process_ || VirtualQueryEx(process_, reinterpret_cast<const void*>(address), &information,
                                    sizeof information) == 0) {
        return false;
    }
    region->state = information.State;
    region->size = information.RegionSize;
    return true;
}

}  // namespace platform
