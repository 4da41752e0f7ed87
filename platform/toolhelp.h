// Looking at the processes of the device: snapshots of processes, modules and heaps.
#pragma once

#include <memory>
#include <string>

#include "platform/handles.h"

namespace platform {

// Finds the process that a thread belongs to (CreateToolhelp32Snapshot, Thread32First,
// Thread32Next); 0 when there is no such thread. False when the threads cannot be listed, with the
// thread's last error.
bool ProcessOfThread(DWORD thread, DWORD* process);

struct ProcessEntry {
    DWORD processId = 0;
    DWORD threadCount = 0;
    // Where the process's memory begins: its slot; on a PC, which has none, the place of its
    // executable, 0 when the system does not tell it.
    ULONG_PTR base = 0;
    wchar_t name[MAX_PATH] = {};
};

// The path of a listed process's executable as a handheld writes it (GetModuleFileNameW with its
// identifier; QueryFullProcessImageNameW on a PC, where a process that does not tell, or has ended
// since, has its name for a path). Empty on failure, with the thread's last error.
std::wstring PathOfProcess(const ProcessEntry& entry);

struct ModuleEntry {
    // Tells a process's modules apart; on a PC the module's handle.
    ULONG_PTR id = 0;
    ULONG_PTR base = 0;
    // Bytes.
    DWORD size = 0;
    wchar_t name[MAX_PATH] = {};
    // Empty when the snapshot does not tell it.
    wchar_t path[MAX_PATH] = {};
};

// CloseToolhelp32Snapshot; CloseHandle on a PC.
void CloseSnapshot(HANDLE snapshot);
using UniqueSnapshot = Unique<HANDLE, CloseSnapshot, invalidHandle>;

// A list of processes, modules or heaps as it was at one moment (CreateToolhelp32Snapshot). Its
// walks end with false and the thread's last error.
class Snapshot {
 public:
    enum class Kind { Processes, Modules, Heaps };

    // False, with the thread's last error, when it could not be taken.
    Snapshot(Kind kind, DWORD processId);
    ~Snapshot();
    Snapshot(const Snapshot&) = delete;
    Snapshot& operator=(const Snapshot&) = delete;
    explicit operator bool() const { return static_cast<bool>(snapshot_); }

    // The entries of a snapshot of their kind (Process32First, Process32Next and their like).
    bool First(ProcessEntry* entry) const;
    bool Next(ProcessEntry* entry) const;
    bool First(ModuleEntry* entry) const;
    bool Next(ModuleEntry* entry) const;

    HANDLE Handle() const { return snapshot_.Get(); }

 private:
    // The system's own entries: a walk hands the one that a step has filled to the next.
    struct Entries;

    std::unique_ptr<Entries> entries_;
    UniqueSnapshot snapshot_;
};

// Goes through the heaps of a process and through the blocks of each (Heap32ListFirst, Heap32First
// and their like). Every function ends with false and the thread's last error, which is
// ERROR_NO_MORE_FILES at the end of a walk.
class HeapWalk {
 public:
    virtual bool FirstHeap() = 0;
    virtual bool NextHeap() = 0;
    // The blocks of the current heap and their sizes in bytes.
    virtual bool FirstBlock(uint64_t* size) = 0;
    virtual bool NextBlock(uint64_t* size) = 0;

 protected:
    ~HeapWalk() = default;
};

// The heaps of a snapshot. A PC gives no list of another process's heaps: there the process has one
// heap, whose blocks are the regions committed to it alone (VirtualQueryEx), and an ended process
// none.
class SnapshotHeaps final : public HeapWalk {
 public:
    SnapshotHeaps(const Snapshot& snapshot, DWORD processId);
    ~SnapshotHeaps();
    SnapshotHeaps(const SnapshotHeaps&) = delete;
    SnapshotHeaps& operator=(const SnapshotHeaps&) = delete;
    bool FirstHeap() override;
    bool NextHeap() override;
    bool FirstBlock(uint64_t* size) override;
    bool NextBlock(uint64_t* size) override;

 private:
    // How far the walk has come.
    struct State;

    std::unique_ptr<State> state_;
};

// The path of a module's file as a handheld writes it, asked of the module itself
// (GetModuleFileNameW with its identifier; GetModuleFileNameExW on a PC). Empty on failure.
std::wstring PathOfModule(DWORD processId, const ModuleEntry& entry);

// A part of the memory that a process can see.
struct MemoryRegion {
    // MEM_COMMIT, MEM_RESERVE, MEM_FREE.
    DWORD state = 0;
    // Bytes, from the region's beginning.
    SIZE_T size = 0;
};

// The memory of a process: its slot of 32 MB (VirtualQuery); on a PC its whole address space
// (VirtualQueryEx).
class ProcessMemory {
 public:
    explicit ProcessMemory(const ProcessEntry& process);

    // Where the memory begins, and where it ends.
    ULONG_PTR Base() const { return base_; }
    ULONG_PTR End() const { return end_; }
    // The region around an address; false when the platform tells nothing of it.
    bool Query(ULONG_PTR address, MemoryRegion* region) const;

 private:
    ULONG_PTR base_;
    ULONG_PTR end_;
    UniqueHandle process_;
};

}  // namespace platform
