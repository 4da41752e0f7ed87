// How much memory a process has.
#pragma once

#include <cstdint>

#include "platform/toolhelp.h"

namespace views {

// What a walk over a process's memory has met. Sizes are bytes.
struct RegionTotals {
    uint32_t committedCount = 0;
    uint64_t committedBytes = 0;
    uint32_t reservedCount = 0;
    uint64_t reservedBytes = 0;
    uint32_t freeCount = 0;
    uint64_t freeBytes = 0;
};

// Sums up regions of a state (MEM_COMMIT, MEM_RESERVE, MEM_FREE); others count nowhere.
void AddRegion(RegionTotals& totals, const platform::MemoryRegion& region);

// Walks over the memory of a process, from 512 bytes behind its beginning, as far as the platform
// tells. `memory` has Base, End and Query as platform::ProcessMemory has.
template <typename Memory>
RegionTotals WalkMemory(const Memory& memory) {
    // Kept on purpose: docs/compatibility.md#slot-offset
    constexpr ULONG_PTR startOffset = 0x200;
    RegionTotals totals;
    platform::MemoryRegion region;
    ULONG_PTR address = memory.Base() + startOffset;
    while (address < memory.End() && memory.Query(address, &region) && region.size > 0) {
        AddRegion(totals, region);
        if (address + region.size < address) {
            break;
        }
        address += region.size;
    }
    return totals;
}

RegionTotals WalkVirtualMemory(const platform::ProcessEntry& entry);

// The memory that a process has or keeps for itself, in bytes, as far as an address can count.
uint64_t VirtualMemorySize(const RegionTotals& totals);

// The sizes of all blocks of all heaps, free and used alike, in bytes. Throws W32Fault when a walk
// ends otherwise than at its end.
uint64_t SumHeaps(platform::HeapWalk& heaps);

}  // namespace views
