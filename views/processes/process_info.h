// The page that describes a process.
#pragma once

#include <string>

#include "views/processes/process_memory.h"

namespace views {

// What the page shows; gathered once.
struct ProcessInfo {
    // Its name is the executable's full path where the platform tells it.
    platform::ProcessEntry entry;
    // Where the file's name begins in the entry's name.
    size_t fileName = 0;
    RegionTotals regions;
    uint64_t heapBytes = 0;
    // The system's large icons, borrowed, and the executable's; null and -1 without one.
    HIMAGELIST icons = nullptr;
    int icon = -1;
};

// Throws W32Fault when the processes or the process's heaps cannot be read. A process that has
// ended meanwhile is described by the last one of the list.
ProcessInfo GatherProcessInfo(DWORD processId);

// Shows the page until it is closed.
void ShowProcessInfo(HWND owner, DWORD processId);

}  // namespace views
