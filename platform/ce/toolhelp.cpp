#include "platform/toolhelp.h"

#include "platform/handles.h"

namespace {

struct ThreadEntry {
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
static_assert(sizeof(ThreadEntry) == 36);

constexpr DWORD snapThreads = 4;

}  // namespace

extern "C" {
HANDLE CreateToolhelp32Snapshot(DWORD flags, DWORD process);
BOOL CloseToolhelp32Snapshot(HANDLE snapshot);
BOOL Thread32First(HANDLE snapshot, ThreadEntry* entry);
BOOL Thread32Next(HANDLE snapshot, ThreadEntry* entry);
}

namespace platform {

bool ProcessOfThread(DWORD thread, DWORD* process) {
    *process = 0;
    const HANDLE snapshot = CreateToolhelp32Snapshot(snapThreads, 0);
    if (snapshot == INVALID_HANDLE_VALUE) {
        return false;
    }
    ThreadEntry entry = {};
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

}  // namespace platform
