#include "views/processes/process_memory.h"

#include "faults/fault.h"

namespace views {

namespace {

void ExpectEnd() {
    if (GetLastError() != ERROR_NO_MORE_FILES) {
        throw faults::W32Fault();
    }
}

}  // namespace

void AddRegion(RegionTotals& totals, const platform::MemoryRegion& region) {
    switch (region.state) {
        case MEM_COMMIT:
            ++totals.committedCount;
            totals.committedBytes += region.size;
            break;
        case MEM_RESERVE:
            ++totals.reservedCount;
            totals.reservedBytes += region.size;
            break;
        case MEM_FREE:
            ++totals.freeCount;
            totals.freeBytes += region.size;
            break;
        default:
            break;
    }
}

RegionTotals WalkVirtualMemory(const platform::ProcessEntry& entry) {
    return WalkMemory(platform::ProcessMemory(entry));
}

// Kept on purpose: docs/compatibility.md#memory-of-32-bits
uint64_t VirtualMemorySize(const RegionTotals& totals) {
    return static_cast<SIZE_T>(totals.committedBytes) + static_cast<SIZE_T>(totals.reservedBytes);
}

uint64_t SumHeaps(platform::HeapWalk& heaps) {
    uint64_t sum = 0;
    for (bool heap = heaps.FirstHeap(); heap; heap = heaps.NextHeap()) {
        uint64_t size = 0;
        for (bool block = heaps.FirstBlock(&size); block; block = heaps.NextBlock(&size)) {
            sum += size;
        }
        ExpectEnd();
    }
    ExpectEnd();
    return sum;
}

}  // namespace views
