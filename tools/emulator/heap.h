// The program's heap. Blocks never touch each other, freed memory is filled and kept unused for as
// long as there is other memory, and a bit for each byte tells whether it belongs to a live block.
#pragma once

#include <deque>
#include <map>
#include <string>
#include <vector>

#include "address.h"

namespace emulator {

class Heap {
 public:
    // Called once, before anything else.
    void Create(Address wanted, Address size);

    // A block of size bytes, 0 when the device's memory is used up. owner is the address in the
    // program that asked for it, 0 for the system.
    Address Allocate(Address size, bool zeroed, Address owner);
    // Stops the run unless the address is that of a live block.
    void Free(Address block, Address owner, const char* purpose);
    Address Resize(Address block, Address size, bool zeroed, Address owner, const char* purpose);
    // The size of a live block; stops the run for any other address.
    Address SizeOf(Address block, const char* purpose) const;
    bool IsLive(Address block) const { return live_.count(block) != 0; }
    // From now on the system's: the program may read it, not free it.
    void GiveToSystem(Address block) { live_.at(block).owner = 0; }
    bool IsSystems(Address block) const { return live_.at(block).owner == 0; }
    // Taken with the wish that it may be moved, as blocks for other programs are.
    void MakeMovable(Address block) { live_.at(block).movable = true; }
    bool IsMovable(Address block) const { return live_.at(block).movable; }

    bool Holds(Address address) const { return address - start_ < size_; }
    bool Allows(Address address, Address size) const;
    // Tells what is at an address that may not be touched.
    std::string Describe(Address address) const;

    Address LiveBytes() const { return liveBytes_; }
    size_t LiveBlocks() const { return live_.size(); }
    Address MostBytes() const { return mostBytes_; }

 private:
    struct Block {
        Address size = 0;
        Address extent = 0;
        Address owner = 0;
        Address freedBy = 0;
        bool movable = false;
    };

    void Mark(Address address, Address size, bool live);
    Address Take(Address extent);

    Address start_ = 0;
    Address size_ = 0;
    Address top_ = 0;
    Address liveBytes_ = 0;
    Address mostBytes_ = 0;
    std::vector<std::uint8_t> bits_;
    std::map<Address, Block> live_;
    // Freed and not used again, the oldest first.
    std::map<Address, Block> freed_;
    std::deque<Address> freedOrder_;
};

}  // namespace emulator
