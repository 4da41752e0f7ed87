#include "platform/toolhelp.h"

#include "platform/snapshot_entries.h"

namespace platform {

namespace {

// Hands on what a step of a walk has found.
template <class Found, class Entry>
bool Stepped(BOOL more, const Found& found, Entry* entry) {
    if (more) {
        Describe(found, entry);
    }
    return more != FALSE;
}

}  // namespace

bool ProcessOfThread(DWORD thread, DWORD* process) {
    *process = 0;
    UniqueSnapshot snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0));
    if (!snapshot) {
        return false;
    }
    THREADENTRY32 entry;
    BOOL found = Thread32First(snapshot.Get(), &Initialized(entry));
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
    PROCESSENTRY32 process;
    MODULEENTRY32 module;
};

Snapshot::Snapshot(Kind kind, DWORD processId)
    : entries_(std::make_unique<Entries>()), snapshot_(TakeSnapshot(kind, processId)) {}

Snapshot::~Snapshot() = default;

bool Snapshot::First(ProcessEntry* entry) const {
    PROCESSENTRY32& found = Initialized(entries_->process);
    return Stepped(Process32First(Handle(), &found), found, entry);
}

bool Snapshot::Next(ProcessEntry* entry) const {
    PROCESSENTRY32& found = entries_->process;
    return Stepped(Process32Next(Handle(), &found), found, entry);
}

bool Snapshot::First(ModuleEntry* entry) const {
    MODULEENTRY32& found = Initialized(entries_->module);
    return Stepped(Module32First(Handle(), &found), found, entry);
}

bool Snapshot::Next(ModuleEntry* entry) const {
    MODULEENTRY32& found = entries_->module;
    return Stepped(Module32Next(Handle(), &found), found, entry);
}

}  // namespace platform
