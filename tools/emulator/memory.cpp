#include "memory.h"

#include <algorithm>
#include <cstdio>

#include "engine.h"
#include "heap.h"
#include "host.h"
#include "machine.h"
#include "stop.h"

namespace emulator {

Address AddressOf(const void* pointer) {
    const auto value = reinterpret_cast<std::uintptr_t>(pointer);
    if (value > 0xFFFFFFFFu) {
        Stop("memory at %p cannot be shown to the program", pointer);
    }
    return static_cast<Address>(value);
}

Address Memory::Reserve(Address wanted, Address size) {
    void* memory = VirtualAlloc(PointerTo(wanted), size, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE);
    if (!memory) {
        memory = VirtualAlloc(nullptr, size, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE);
    }
    if (!memory) {
        Stop("there are no %u bytes for the program's memory", size);
    }
    return AddressOf(memory);
}

void Memory::Release(Address start) {
    VirtualFree(PointerTo(start), 0, MEM_RELEASE);
}

void Memory::Add(const Region& region) {
    regions_.push_back(region);
    TheMachine().engine.Map(region);
}

void Memory::Remove(Address start) {
    const auto found = std::find_if(regions_.begin(), regions_.end(),
                                    [=](const Region& region) { return region.start == start; });
    if (found != regions_.end()) {
        TheMachine().engine.Unmap(*found);
        regions_.erase(found);
    }
}

const Region* Memory::Find(Address address) const {
    for (const Region& region : regions_) {
        if (region.Holds(address)) {
            return &region;
        }
    }
    return nullptr;
}

bool Memory::Allows(Address address, Address size, Access access, std::string* why) const {
    if (size == 0) {
        return true;
    }
    const Heap& heap = TheMachine().heap;
    if (heap.Holds(address)) {
        if (heap.Allows(address, size)) {
            return true;
        }
        *why = heap.Describe(address);
        return false;
    }
    const Region* region = Find(address);
    if (!region) {
        *why = "nothing is there";
        return false;
    }
    if (size > region->size - (address - region->start)) {
        *why = "it reaches over the end of " + region->name;
        return false;
    }
    if (access == Access::Write && !region->writable) {
        *why = region->name + " is write-protected";
        return false;
    }
    return true;
}

void Memory::Require(Address address, Address size, Access access, const char* purpose) const {
    std::string why;
    if (!Allows(address, size, access, &why)) {
        Stop("%s: %u bytes at %08x may not be %s: %s", purpose, size, address,
             access == Access::Read ? "read" : "written", why.c_str());
    }
}

Address Memory::RequireText(Address address, const char* purpose) const {
    if (address & 1) {
        Stop("%s: the text at %08x is not aligned", purpose, address);
    }
    Address length = 0;
    for (;; ++length) {
        Require(address + 2 * length, 2, Access::Read, purpose);
        if (PointerTo<WCHAR>(address)[length] == 0) {
            return length;
        }
    }
}

}  // namespace emulator
