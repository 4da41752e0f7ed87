#include "platform/toolhelp.h"

#include <tlhelp32.h>

#include "platform/handles.h"

namespace platform {

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

}  // namespace platform
