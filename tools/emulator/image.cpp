#include "image.h"

#include <algorithm>
#include <cstring>
#include <fstream>
#include <iterator>

#include "engine.h"
#include "host.h"
#include "machine.h"
#include "stop.h"

namespace emulator {

namespace {

constexpr WORD machineArm = 0x01C0;
constexpr WORD subsystemCe = 9;

// What a process has of the addresses, in bytes.
constexpr Address processRoom = 32 * 1024 * 1024;

template <class Type>
Type ValueAt(Address address) {
    Type value;
    std::memcpy(&value, PointerTo(address), sizeof value);
    return value;
}

WCHAR Upper(WCHAR character) {
    return character >= u'a' && character <= u'z' ? static_cast<WCHAR>(character - 32) : character;
}

}  // namespace

ResourceName ResourceName::FromPointer(Address pointer) {
    ResourceName name;
    if (pointer < 0x10000) {
        name.number = pointer;
        return name;
    }
    TheMachine().memory.RequireText(pointer, "a resource's name");
    name.text = PointerTo<char16_t>(pointer);
    return name;
}

bool Image::Read(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    file_.assign(std::istreambuf_iterator<char>(file), {});
    if (file_.size() < 0x40 || file_[0] != 'M' || file_[1] != 'Z') {
        return false;
    }
    std::memcpy(&header_, &file_[0x3C], sizeof header_);
    return header_ + sizeof(IMAGE_NT_HEADERS32) <= file_.size() &&
           std::memcmp(&file_[header_], "PE\0\0", 4) == 0;
}

void Image::LoadProgram(const std::string& path, Address wantedBase) {
    if (!Read(path)) {
        Stop("%s is no executable file", path.c_str());
    }
    IMAGE_NT_HEADERS32 headers;
    std::memcpy(&headers, &file_[header_], sizeof headers);
    if (headers.FileHeader.Machine != machineArm ||
        headers.OptionalHeader.Subsystem != subsystemCe) {
        Stop("%s is not for Windows CE on ARM: machine %04x, subsystem %u", path.c_str(),
             headers.FileHeader.Machine, headers.OptionalHeader.Subsystem);
    }
    preferredBase_ = headers.OptionalHeader.ImageBase;
    size_ = RoundUpToPage(headers.OptionalHeader.SizeOfImage);
    base_ = Memory::Reserve(wantedBase ? wantedBase : preferredBase_, size_);
    entry_ = base_ + headers.OptionalHeader.AddressOfEntryPoint;
    std::memcpy(PointerTo(base_), file_.data(), headers.OptionalHeader.SizeOfHeaders);
    Address section = header_ + 24 + headers.FileHeader.SizeOfOptionalHeader;
    for (unsigned i = 0; i < headers.FileHeader.NumberOfSections; ++i, section += 40) {
        IMAGE_SECTION_HEADER description;
        std::memcpy(&description, &file_[section], sizeof description);
        const Address bytes =
            std::min<Address>(description.SizeOfRawData, size_ - description.VirtualAddress);
        std::memcpy(PointerTo(base_ + description.VirtualAddress),
                    file_.data() + description.PointerToRawData, bytes);
    }
    Relocate();
    BindImports();
    Show(true, "the program");
}

bool Image::LoadData(const std::string& path) {
    if (!Read(path)) {
        return false;
    }
    // Resources stand at the same places in files for 32 and for 64 bits but for the headers.
    IMAGE_NT_HEADERS32 headers;
    std::memcpy(&headers, &file_[header_], sizeof headers);
    const Address size = headers.OptionalHeader.SizeOfImage;
    const Address headersSize = headers.OptionalHeader.SizeOfHeaders;
    const size_t table = size_t{header_} + 24 + headers.FileHeader.SizeOfOptionalHeader;
    std::vector<IMAGE_SECTION_HEADER> sections(headers.FileHeader.NumberOfSections);
    const size_t tableSize = sections.size() * sizeof sections[0];
    if (size == 0 || size > processRoom || headersSize > size || headersSize > file_.size() ||
        table + tableSize > file_.size()) {
        return false;
    }
    std::memcpy(sections.data(), file_.data() + table, tableSize);
    for (const IMAGE_SECTION_HEADER& section : sections) {
        const std::uint64_t stored = section.SizeOfRawData;
        if (section.VirtualAddress + stored > size ||
            section.PointerToRawData + stored > file_.size()) {
            return false;
        }
    }
    size_ = RoundUpToPage(size);
    base_ = Memory::Reserve(0, size_);
    std::memcpy(PointerTo(base_), file_.data(), headersSize);
    for (const IMAGE_SECTION_HEADER& section : sections) {
        std::memcpy(PointerTo(base_ + section.VirtualAddress),
                    file_.data() + section.PointerToRawData, section.SizeOfRawData);
    }
    Show(false, path);
    return true;
}

Address Image::Directory(unsigned index) const {
    constexpr WORD magic64 = 0x20B;
    const Address optional = base_ + header_ + 24;
    const Address first = ValueAt<WORD>(optional) == magic64 ? 112 : 96;
    return ValueAt<Address>(optional + first + 8 * index);
}

void Image::Relocate() {
    const Address delta = base_ - preferredBase_;
    Address block = Directory(IMAGE_DIRECTORY_ENTRY_BASERELOC);
    if (delta == 0) {
        return;
    }
    if (block == 0) {
        Stop("the program has no relocations, so it cannot stand at %08x", base_);
    }
    block += base_;
    for (; const Address size = ValueAt<Address>(block + 4); block += size) {
        for (Address at = 8; at < size; at += 2) {
            const WORD entry = ValueAt<WORD>(block + at);
            if (entry >> 12 == IMAGE_REL_BASED_HIGHLOW) {
                const Address place = base_ + ValueAt<Address>(block) + (entry & 0xFFFu);
                const Address moved = ValueAt<Address>(place) + delta;
                std::memcpy(PointerTo(place), &moved, sizeof moved);
            } else if (entry >> 12 != IMAGE_REL_BASED_ABSOLUTE) {
                Stop("the program has a relocation of the unknown type %u", entry >> 12);
            }
        }
    }
}

void Image::BindImports() {
    Address descriptor = base_ + Directory(IMAGE_DIRECTORY_ENTRY_IMPORT);
    for (; ValueAt<Address>(descriptor + 12) != 0; descriptor += 20) {
        std::string library = PointerTo<char>(base_ + ValueAt<Address>(descriptor + 12));
        std::transform(library.begin(), library.end(), library.begin(),
                       [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
        if (const size_t dot = library.find('.'); dot != std::string::npos) {
            library.resize(dot);
        }
        Address names = base_ + ValueAt<Address>(descriptor);
        Address slots = base_ + ValueAt<Address>(descriptor + 16);
        for (; const Address name = ValueAt<Address>(names); names += 4, slots += 4) {
            Import import;
            import.library = library;
            import.name = name >> 31 ? "#" + std::to_string(name & 0xFFFF)
                                     : std::string(PointerTo<char>(base_ + name + 2));
            const Address trap = Engine::TrapAddress(static_cast<unsigned>(imports_.size()));
            std::memcpy(PointerTo(slots), &trap, sizeof trap);
            imports_.push_back(std::move(import));
        }
    }
}

void Image::Show(bool asProgram, const std::string& name) {
    Memory& memory = TheMachine().memory;
    if (!asProgram) {
        memory.Add({base_, size_, false, false, name});
        return;
    }
    memory.Add({base_, pageSize, false, false, "the headers of " + name});
    Address section = header_ + 24 + ValueAt<WORD>(base_ + header_ + 20);
    const unsigned count = ValueAt<WORD>(base_ + header_ + 6);
    for (unsigned i = 0; i < count; ++i, section += 40) {
        const auto description = ValueAt<IMAGE_SECTION_HEADER>(base_ + section);
        const bool code = (description.Characteristics & IMAGE_SCN_MEM_EXECUTE) != 0;
        const Address start = base_ + description.VirtualAddress;
        const Address size = RoundUpToPage(description.Misc.VirtualSize);
        memory.Add({start, size, (description.Characteristics & IMAGE_SCN_MEM_WRITE) != 0, code,
                    "section " +
                        std::string(reinterpret_cast<const char*>(description.Name),
                                    strnlen(reinterpret_cast<const char*>(description.Name), 8)) +
                        " of " + name});
        if (code) {
            codeStart_ = start;
            codeSize_ = size;
        }
    }
}

Address Image::FindInDirectory(Address directory, const ResourceName& name) const {
    const Address root = base_ + Directory(IMAGE_DIRECTORY_ENTRY_RESOURCE);
    const unsigned named = ValueAt<WORD>(directory + 12);
    const unsigned numbered = ValueAt<WORD>(directory + 14);
    for (unsigned i = 0; i < named + numbered; ++i) {
        const Address entry = directory + 16 + 8 * i;
        const Address key = ValueAt<Address>(entry);
        const Address value = root + (ValueAt<Address>(entry + 4) & 0x7FFFFFFF);
        if (key >> 31 == 0) {
            if (name.text.empty() && key == name.number) {
                return value;
            }
            continue;
        }
        const Address text = root + (key & 0x7FFFFFFF);
        const unsigned length = ValueAt<WORD>(text);
        if (length == name.text.size() &&
            std::equal(name.text.begin(), name.text.end(), PointerTo<WCHAR>(text + 2),
                       [](WCHAR left, WCHAR right) { return Upper(left) == Upper(right); })) {
            return value;
        }
    }
    return 0;
}

Address Image::FindPiece(const ResourceName& type, const ResourceName& name) const {
    const Address directory = Directory(IMAGE_DIRECTORY_ENTRY_RESOURCE);
    const Address names = directory ? FindInDirectory(base_ + directory, type) : 0;
    const Address languages = names ? FindInDirectory(names, name) : 0;
    if (!languages) {
        return 0;
    }
    // Whatever the first language is.
    return base_ + directory + ValueAt<Address>(languages + 20);
}

Resource Image::ResourceAt(Address entry) const {
    return {base_ + ValueAt<Address>(entry), ValueAt<Address>(entry + 4)};
}

Address Image::FindString(Address number) const {
    ResourceName type;
    ResourceName block;
    type.number = 6;
    block.number = number / 16 + 1;
    const Address entry = FindPiece(type, block);
    if (!entry) {
        return 0;
    }
    Address text = ResourceAt(entry).address;
    for (Address i = 0; i < number % 16; ++i) {
        text += 2 + 2u * ValueAt<WORD>(text);
    }
    return ValueAt<WORD>(text) ? text : 0;
}

}  // namespace emulator
