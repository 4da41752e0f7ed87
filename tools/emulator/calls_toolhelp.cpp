// Snapshots of processes, threads, modules and heaps: those of the described device, and the
// threads of the programs that really run.
#include <cstring>
#include <map>
#include <vector>

#include "call.h"
#include "machine.h"
#include "stop.h"

#include <tlhelp32.h>

namespace emulator {

namespace {

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

struct Snapshot {
    std::vector<DeviceThread> threads;
    size_t nextThread = 0;
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

void TakeThreads(Snapshot& snapshot) {
    const HANDLE real = CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
    THREADENTRY32 entry = {};
    entry.dwSize = sizeof entry;
    for (BOOL found = Thread32First(real, &entry); found; found = Thread32Next(real, &entry)) {
        snapshot.threads.push_back({sizeof(DeviceThread), 1, entry.th32ThreadID,
                                    entry.th32OwnerProcessID, 3, 0, 0, 1,
                                    entry.th32OwnerProcessID});
    }
    CloseHandle(real);
}

std::uint64_t TakeSnapshot(Call& call) {
    static Address next = 0x0D000000;
    Snapshot snapshot;
    if (call.Word(0) & TH32CS_SNAPTHREAD) {
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

template <class Entry>
std::uint64_t ShowNext(Call& call, const std::vector<Entry>& entries, size_t* next) {
    auto* shown = call.Out<Entry>(1);
    if (shown->dwSize != sizeof(Entry)) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return FALSE;
    }
    if (*next >= entries.size()) {
        SetLastError(ERROR_NO_MORE_FILES);
        return FALSE;
    }
    *shown = entries[(*next)++];
    return TRUE;
}

std::uint64_t FirstThread(Call& call) {
    Snapshot& snapshot = SnapshotOf(call);
    snapshot.nextThread = 0;
    return ShowNext(call, snapshot.threads, &snapshot.nextThread);
}

std::uint64_t NextThread(Call& call) {
    Snapshot& snapshot = SnapshotOf(call);
    return ShowNext(call, snapshot.threads, &snapshot.nextThread);
}

const Services services = {
    {"toolhelp!CreateToolhelp32Snapshot", TakeSnapshot},
    {"toolhelp!CloseToolhelp32Snapshot", DropSnapshot},
    {"toolhelp!Thread32First", FirstThread},
    {"toolhelp!Thread32Next", NextThread},
};

}  // namespace

}  // namespace emulator
