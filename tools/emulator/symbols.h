// The names of the program's functions, from the ELF file that its executable was made of.
#pragma once

#include <string>
#include <vector>

#include "address.h"

namespace emulator {

class Symbols {
 public:
    // Reads the symbols of an ELF file linked at linkBase; false when there is none.
    bool Read(const std::string& path);
    // Tells where the image stands: at base, though it was linked for linkBase.
    void Place(Address linkBase, Address base, Address size);

    // "Function+0x12 (rva 0x345)"; the address alone outside the image; "the system" for 0.
    std::string Name(Address address) const;
    // The index of the function at an address of the image, for counting; -1 for none.
    int Index(Address address) const;
    std::string NameAt(int index) const;
    size_t Count() const { return symbols_.size(); }

 private:
    struct Symbol {
        Address start;
        Address size;
        std::string name;
    };

    std::vector<Symbol> symbols_;
    Address linkBase_ = 0;
    Address base_ = 0;
    Address size_ = 0;
};

}  // namespace emulator
