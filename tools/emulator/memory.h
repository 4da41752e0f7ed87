// The memory that the emulated program may see: which addresses there are, and what may be done at
// them. The heap is watched to the byte.
#pragma once

#include <string>
#include <vector>

#include "address.h"

namespace emulator {

enum class Access { Read, Write };

struct Region {
    Address start = 0;
    Address size = 0;
    bool writable = false;
    bool executable = false;
    std::string name;

    bool Holds(Address address) const { return address - start < size; }
};

class Memory {
 public:
    // Takes memory of this process, zeroed, at the wanted address or at another below 2 GB.
    static Address Reserve(Address wanted, Address size);
    // Gives back what Reserve took.
    static void Release(Address start);

    // Makes a region visible to the program. Its memory stays the caller's.
    void Add(const Region& region);
    void Remove(Address start);
    const std::vector<Region>& Regions() const { return regions_; }
    const Region* Find(Address address) const;

    // Whether size bytes may be read or written; if not, why tells the reason.
    bool Allows(Address address, Address size, Access access, std::string* why) const;
    // The same; stops the run if not.
    void Require(Address address, Address size, Access access, const char* purpose) const;
    // Stops the run unless a text with its end can be read; gives its length in characters.
    Address RequireText(Address address, const char* purpose) const;

 private:
    std::vector<Region> regions_;
};

}  // namespace emulator
