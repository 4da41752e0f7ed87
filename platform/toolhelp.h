// Looking at the processes of the device.
#pragma once

#include "platform/windows.h"

namespace platform {

// Finds the process that a thread belongs to (CreateToolhelp32Snapshot, Thread32First,
// Thread32Next); 0 when there is no such thread. False when the threads cannot be listed, with the
// thread's last error.
bool ProcessOfThread(DWORD thread, DWORD* process);

}  // namespace platform
