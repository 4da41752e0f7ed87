// What each system gives to platform/toolhelp.cpp: its snapshots, and its entries as ours.
#pragma once

#include "platform/toolhelp.h"
// Behind the platform's own declarations.
#include <tlhelp32.h>

namespace platform {

// An entry as a walk begins with it.
template <class Found>
Found& Initialized(Found& entry) {
    entry = {};
    entry.dwSize = sizeof entry;
    return entry;
}

HANDLE TakeSnapshot(Snapshot::Kind kind, DWORD processId);
void Describe(const PROCESSENTRY32& found, ProcessEntry* entry);
void Describe(const MODULEENTRY32& found, ModuleEntry* entry);

}  // namespace platform
