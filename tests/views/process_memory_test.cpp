// The sums over a process's memory and heaps.
#include "views/processes/process_memory.h"

#include <gtest/gtest.h>

#include <vector>

#include "faults/fault.h"

using namespace views;

namespace {

// A slot of a handheld's process, as regions from its beginning on.
struct FakeSlot {
    ULONG_PTR base = 0x4000000;
    std::vector<platform::MemoryRegion> regions;
    mutable std::vector<ULONG_PTR> asked = {};

    ULONG_PTR Base() const { return base; }
    ULONG_PTR End() const { return base + 0x2000000; }
    bool Query(ULONG_PTR address, platform::MemoryRegion* region) const {
        asked.push_back(address - base);
        ULONG_PTR begin = base;
        for (const platform::MemoryRegion& each : regions) {
            if (address < begin + each.size) {
                *region = each;
                return true;
            }
            begin += each.size;
        }
        return false;
    }
};

class FakeHeaps final : public platform::HeapWalk {
 public:
    // The blocks of each heap, and the errors that the walks leave.
    std::vector<std::vector<uint64_t>> heaps;
    DWORD heapsEnd = ERROR_NO_MORE_FILES;
    DWORD blocksEnd = ERROR_NO_MORE_FILES;

    bool FirstHeap() override {
        heap_ = 0;
        return More(heap_ < heaps.size(), heapsEnd);
    }
    bool NextHeap() override { return More(++heap_ < heaps.size(), heapsEnd); }
    bool FirstBlock(uint64_t* size) override {
        block_ = 0;
        return Block(size);
    }
    bool NextBlock(uint64_t* size) override {
        ++block_;
        return Block(size);
    }

 private:
    static bool More(bool more, DWORD error) {
        SetLastError(more ? ERROR_SUCCESS : error);
        return more;
    }
    bool Block(uint64_t* size) {
        if (!More(block_ < heaps[heap_].size(), blocksEnd)) {
            return false;
        }
        *size = heaps[heap_][block_];
        return true;
    }

    size_t heap_ = 0;
    size_t block_ = 0;
};

HRESULT CodeOfSum(FakeHeaps& heaps) {
    try {
        SumHeaps(heaps);
    } catch (const faults::W32Fault& fault) {
        return fault.Code();
    }
    return S_OK;
}

}  // namespace

TEST(ProcessMemory, IsWalkedRegionByRegionFromBehindItsBeginning) {
    const FakeSlot slot = {0x4000000,
                           {{MEM_FREE, 0x10000},
                            {MEM_COMMIT, 0x2000},
                            {MEM_RESERVE, 0x8000},
                            {MEM_COMMIT, 0x1000},
                            {0x80000, 0x5000},
                            {MEM_FREE, 0x1fe0000}}};
    const RegionTotals totals = WalkMemory(slot);
    EXPECT_EQ(totals.committedCount, 2u);
    EXPECT_EQ(totals.committedBytes, 0x3000u);
    EXPECT_EQ(totals.reservedCount, 1u);
    EXPECT_EQ(totals.reservedBytes, 0x8000u);
    EXPECT_EQ(totals.freeCount, 2u);
    EXPECT_EQ(totals.freeBytes, 0x1ff0000u);
    EXPECT_EQ(slot.asked[0], 0x200u);
    EXPECT_EQ(slot.asked[1], 0x10200u);
    EXPECT_EQ(VirtualMemorySize(totals), 0xB000u);
}

TEST(ProcessMemory, OfAFreeSlotIsNothing) {
    const RegionTotals totals = WalkMemory(FakeSlot{0x4000000, {{MEM_FREE, 0x2000000}}});
    EXPECT_EQ(totals.committedCount, 0u);
    EXPECT_EQ(totals.committedBytes, 0u);
    EXPECT_EQ(totals.reservedCount, 0u);
    EXPECT_EQ(totals.freeCount, 1u);
}

TEST(ProcessMemory, EndsWithTheSlotAndWhereNothingIsTold) {
    const RegionTotals slot =
        WalkMemory(FakeSlot{0x4000000, {{MEM_COMMIT, 0x2000000}, {MEM_COMMIT, 0x2000000}}});
    EXPECT_EQ(slot.committedCount, 1u);
    const RegionTotals cut = WalkMemory(FakeSlot{0x4000000, {{MEM_COMMIT, 0x1000}}});
    EXPECT_EQ(cut.committedCount, 1u);
    const RegionTotals stuck =
        WalkMemory(FakeSlot{0x4000000, {{MEM_COMMIT, 0x1000}, {MEM_COMMIT, 0}}});
    EXPECT_EQ(stuck.committedCount, 1u);
}

TEST(ProcessMemory, ThatReachesTheLastAddressEnds) {
    struct Endless {
        ULONG_PTR Base() const { return 0; }
        ULONG_PTR End() const { return ~static_cast<ULONG_PTR>(0); }
        bool Query(ULONG_PTR, platform::MemoryRegion* region) const {
            *region = {MEM_FREE, ~static_cast<SIZE_T>(0) - 0x100};
            return true;
        }
    };
    EXPECT_EQ(WalkMemory(Endless()).freeCount, 1u);
}

TEST(ProcessHeaps, AreSummedUpBlockByBlock) {
    FakeHeaps heaps;
    heaps.heaps = {{16, 32}, {}, {0x100000000, 1}};
    EXPECT_EQ(SumHeaps(heaps), 0x100000000u + 49);
    heaps.heaps.clear();
    EXPECT_EQ(SumHeaps(heaps), 0u);
}

TEST(ProcessHeaps, EndWithAFaultWhereTheWalkDoesNotEnd) {
    for (const DWORD error : {0ul, 5ul, 6ul, 8ul, 87ul}) {
        FakeHeaps heaps;
        heaps.heaps = {{16}, {32}};
        heaps.blocksEnd = error;
        EXPECT_EQ(CodeOfSum(heaps), faults::ResultFromError(error)) << error;
        heaps.blocksEnd = ERROR_NO_MORE_FILES;
        heaps.heapsEnd = error;
        EXPECT_EQ(CodeOfSum(heaps), faults::ResultFromError(error)) << error;
    }
}
