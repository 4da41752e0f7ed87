#include "heap.h"

#include <algorithm>
#include <cstring>

#include "engine.h"
#include "machine.h"
#include "stop.h"
#include "symbols.h"

namespace emulator {

namespace {

// The gap behind every block, so that one step too far is not the next block.
constexpr Address gap = 16;
constexpr std::uint8_t fresh = 0xCD;
constexpr std::uint8_t gone = 0xFD;

Address ExtentFor(Address size) {
    return ((size + 15) & ~Address{15}) + gap;
}

}  // namespace

void Heap::Create(Address wanted, Address size) {
    size_ = size;
    start_ = Memory::Reserve(wanted, size);
    top_ = start_ + gap;
    bits_.assign(size / 8, 0);
    TheMachine().memory.Add({start_, size, true, false, "the heap"});
}

Address Heap::Take(Address extent) {
    if (extent <= start_ + size_ - top_) {
        const Address block = top_;
        top_ += extent;
        return block;
    }
    // Only now what was freed is used again, the oldest first; what is left of a block is one
    // itself.
    for (auto candidate = freedOrder_.begin(); candidate != freedOrder_.end(); ++candidate) {
        const auto found = freed_.find(*candidate);
        const Address address = found->first;
        Block block = found->second;
        if (block.extent != extent && block.extent < extent + 2 * gap) {
            continue;
        }
        freed_.erase(found);
        freedOrder_.erase(candidate);
        if (block.extent != extent) {
            block.extent -= extent;
            block.size = 0;
            freed_[address + extent] = block;
            freedOrder_.push_back(address + extent);
        }
        return address;
    }
    return 0;
}

Address Heap::Allocate(Address size, bool zeroed, Address owner) {
    if (size >= size_) {
        return 0;
    }
    const Address extent = ExtentFor(size);
    const Address block = Take(extent);
    if (!block) {
        return 0;
    }
    live_[block] = {size, extent, owner, 0};
    Mark(block, size, true);
    std::memset(PointerTo(block), zeroed ? 0 : fresh, size);
    liveBytes_ += size;
    mostBytes_ = std::max(mostBytes_, liveBytes_);
    return block;
}

void Heap::Free(Address block, Address owner, const char* purpose) {
    SizeOf(block, purpose);
    const auto found = live_.find(block);
    Block freed = found->second;
    freed.freedBy = owner;
    live_.erase(found);
    liveBytes_ -= freed.size;
    Mark(block, freed.size, false);
    std::memset(PointerTo(block), gone, freed.size);
    freed_[block] = freed;
    freedOrder_.push_back(block);
}

Address Heap::Resize(Address block, Address size, bool zeroed, Address owner, const char* purpose) {
    const Address before = SizeOf(block, purpose);
    const Address moved = Allocate(size, zeroed, owner);
    if (moved) {
        std::memcpy(PointerTo(moved), PointerTo(block), std::min(before, size));
        Free(block, owner, purpose);
    }
    return moved;
}

Address Heap::SizeOf(Address block, const char* purpose) const {
    const auto found = live_.find(block);
    if (found == live_.end()) {
        Stop("%s: %08x is no block of the heap: %s", purpose, block, Describe(block).c_str());
    }
    return found->second.size;
}

bool Heap::Allows(Address address, Address size) const {
    for (Address offset = address - start_; size > 0; --size, ++offset) {
        if (offset >= size_ || !(bits_[offset / 8] >> (offset % 8) & 1)) {
            return false;
        }
    }
    return true;
}

void Heap::Mark(Address address, Address size, bool live) {
    for (Address offset = address - start_; size > 0; --size, ++offset) {
        const auto bit = static_cast<std::uint8_t>(1 << offset % 8);
        std::uint8_t& bits = bits_[offset / 8];
        bits = static_cast<std::uint8_t>(live ? bits | bit : bits & ~bit);
    }
}

std::string Heap::Describe(Address address) const {
    const auto before = [&](const std::map<Address, Block>& blocks) {
        auto found = blocks.upper_bound(address);
        return found == blocks.begin() ? blocks.end() : --found;
    };
    const Symbols& symbols = TheMachine().symbols;
    const auto within = [&](std::map<Address, Block>::const_iterator block) {
        return address - block->first < block->second.extent;
    };
    const auto number = [](Address value) { return std::to_string(value); };
    if (const auto live = before(live_); live != live_.end() && within(live)) {
        return number(address - live->first) + " bytes into a block of " +
               number(live->second.size) + " bytes taken by " + symbols.Name(live->second.owner);
    }
    if (const auto freed = before(freed_); freed != freed_.end() && within(freed)) {
        return number(address - freed->first) + " bytes into a freed block of " +
               number(freed->second.size) + " bytes taken by " + symbols.Name(freed->second.owner) +
               " and freed by " + symbols.Name(freed->second.freedBy);
    }
    return Holds(address) ? "no block of the heap" : "no address of the heap";
}

}  // namespace emulator
