#include "symbols.h"

#include <cxxabi.h>
#include <elf.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>

namespace emulator {

namespace {

std::string Demangle(const char* name) {
    int status = 0;
    char* plain = abi::__cxa_demangle(name, nullptr, nullptr, &status);
    std::string result = status == 0 && plain ? plain : name;
    std::free(plain);
    return result;
}

std::string Hexadecimal(Address value) {
    char text[16];
    std::snprintf(text, sizeof text, "%#x", value);
    return text;
}

}  // namespace

bool Symbols::Read(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    const std::vector<char> bytes((std::istreambuf_iterator<char>(file)), {});
    const auto at = [&]<class Type>(Type* value, size_t offset) {
        if (offset + sizeof(Type) > bytes.size()) {
            return false;
        }
        std::memcpy(value, bytes.data() + offset, sizeof(Type));
        return true;
    };
    Elf32_Ehdr header;
    if (!at(&header, 0) || std::memcmp(header.e_ident, ELFMAG, SELFMAG) != 0) {
        return false;
    }
    for (unsigned i = 0; i < header.e_shnum; ++i) {
        Elf32_Shdr table;
        Elf32_Shdr names;
        if (!at(&table, header.e_shoff + i * sizeof table) || table.sh_type != SHT_SYMTAB ||
            !at(&names, header.e_shoff + table.sh_link * sizeof names)) {
            continue;
        }
        for (Address offset = 0; offset < table.sh_size; offset += sizeof(Elf32_Sym)) {
            Elf32_Sym symbol;
            if (at(&symbol, table.sh_offset + offset) &&
                ELF32_ST_TYPE(symbol.st_info) == STT_FUNC &&
                names.sh_offset + symbol.st_name < bytes.size()) {
                symbols_.push_back({symbol.st_value & ~1u, symbol.st_size,
                                    bytes.data() + names.sh_offset + symbol.st_name});
            }
        }
    }
    std::sort(symbols_.begin(), symbols_.end(),
              [](const Symbol& left, const Symbol& right) { return left.start < right.start; });
    return !symbols_.empty();
}

void Symbols::Place(Address linkBase, Address base, Address size) {
    linkBase_ = linkBase;
    base_ = base;
    size_ = size;
}

int Symbols::Index(Address address) const {
    if (address - base_ >= size_) {
        return -1;
    }
    const Address linked = address - base_ + linkBase_;
    const auto after =
        std::upper_bound(symbols_.begin(), symbols_.end(), linked,
                         [](Address value, const Symbol& symbol) { return value < symbol.start; });
    return static_cast<int>(after - symbols_.begin()) - 1;
}

std::string Symbols::NameAt(int index) const {
    return index < 0 ? "?" : Demangle(symbols_[static_cast<size_t>(index)].name.c_str());
}

std::string Symbols::Name(Address address) const {
    if (address == 0) {
        return "the system";
    }
    if (address - base_ >= size_) {
        return Hexadecimal(address);
    }
    const std::string place = " (rva " + Hexadecimal(address - base_) + ")";
    const int index = Index(address);
    if (index < 0) {
        return Hexadecimal(address) + place;
    }
    const Address linked = address - base_ + linkBase_;
    return NameAt(index) + "+" + Hexadecimal(linked - symbols_[static_cast<size_t>(index)].start) +
           place;
}

}  // namespace emulator
