// Language packs: modules whose lengths, counts and places lie.
#include <algorithm>
#include <memory>
#include <optional>
#include <utility>

#include "tests/endurance/hostile/parts.h"
#include "text/pack/pack_check.h"

namespace hostile {

namespace {

constexpr uint32_t subfolder = 0x80000000;
constexpr uint32_t textType = 6;
constexpr uint32_t addressStep = 0x1000;
// What a process has of a handheld's addresses, in bytes.
constexpr uint32_t processRoom = 32 * 1024 * 1024;

struct Resource {
    uint32_t type;
    uint32_t name;
    Block content;
};

Block Texts(Chance& chance) {
    Block block;
    for (int text = 0; text < 16; ++text) {
        const std::u16string content = OddText(chance, chance.OneIn(8) ? 300 : 12);
        block.Say16(static_cast<unsigned>(content.size()));
        block.PutText(content);
    }
    return block;
}

void PutFolder(Block* block, size_t named, size_t numbered) {
    block->Put32(0);
    block->Put32(0);
    block->Put32(0);
    block->Say16(static_cast<unsigned>(named));
    block->Say16(static_cast<unsigned>(numbered));
}

// A section of resources that is loaded at an address: three floors of folders, the data entries,
// the name of the one type that has a name, the data.
Block Resources(const std::vector<Resource>& resources, uint32_t address) {
    std::vector<std::pair<uint32_t, std::vector<const Resource*>>> types;
    for (const Resource& resource : resources) {
        if (types.empty() || types.back().first != resource.type) {
            types.push_back({resource.type, {}});
        }
        types.back().second.push_back(&resource);
    }
    const size_t leaves = resources.size();
    const size_t names = 16 + types.size() * 8;
    const size_t languages = names + types.size() * 16 + leaves * 8;
    const size_t entries = languages + leaves * 24;
    const size_t typeName = entries + leaves * 16;
    const size_t data = typeName + 8;
    Block block;
    PutFolder(&block, 1, types.size() - 1);
    size_t next = names;
    for (const auto& [type, members] : types) {
        block.Say32(&members == &types.front().second ? subfolder | static_cast<uint32_t>(typeName)
                                                      : type);
        block.Say32(subfolder | static_cast<uint32_t>(next));
        next += 16 + members.size() * 8;
    }
    for (const auto& [type, members] : types) {
        PutFolder(&block, 0, members.size());
        for (const Resource* resource : members) {
            block.Put32(resource->name);
            block.Say32(subfolder | static_cast<uint32_t>(next));
            next += 24;
        }
    }
    for (size_t leaf = 0; leaf < leaves; ++leaf) {
        PutFolder(&block, 0, 1);
        block.Put32(0x0407);
        block.Say32(static_cast<uint32_t>(entries + leaf * 16));
    }
    size_t place = data;
    for (const Resource& resource : resources) {
        block.Say32(address + static_cast<uint32_t>(place));
        block.Say32(static_cast<uint32_t>(resource.content.bytes.size()));
        block.PutZeros(8);
        place += (resource.content.bytes.size() + 3) / 4 * 4;
    }
    block.Say16(3);
    block.PutText(u"GIF");
    for (const Resource& resource : resources) {
        block.PutBlock(resource.content);
        block.Align(4);
    }
    return block;
}

struct Shape {
    // The section with the resources is the last but `behind`.
    unsigned before;
    unsigned behind;
    unsigned leaves;
    // What each section before has in the file, in bytes.
    unsigned stored;
    // Whether a program may refuse it for its size.
    bool large;
};

Shape ShapeOf(Chance& chance) {
    // As large as a pack may be, and larger.
    if (chance.OneIn(4000)) {
        static constexpr unsigned sections[] = {0, 94, 95, 1000, 65000};
        static constexpr unsigned leaves[] = {5, 1300, 2000};
        const unsigned count = chance.Of(sections);
        return {count, chance.Dice(2), chance.Of(leaves), 0, count > 94};
    }
    return {chance.Dice(3), chance.Dice(2), 1 + chance.Dice(5), 0x200, false};
}

Block MakePack(Chance& chance, const Shape& shape) {
    const bool wide = chance.OneIn(2);
    const size_t optionalSize = wide ? 240 : 224;
    const size_t header = 64 + 8 * chance.Dice(4);
    const unsigned sections = shape.before + 1 + shape.behind;
    const size_t headers =
        (header + 24 + optionalSize + sections * size_t{40} + 0x1FF) / 0x200 * 0x200;
    const auto firstAddress =
        static_cast<uint32_t>((headers + addressStep - 1) / addressStep * addressStep);
    const uint32_t address = firstAddress + shape.before * addressStep;

    std::vector<Resource> resources = {{0, 1000, {}}};
    resources[0].content.PutZeros(64);
    for (unsigned leaf = 0; leaf < shape.leaves; ++leaf) {
        resources.push_back({textType, leaf + 1, Texts(chance)});
    }
    if (chance.OneIn(2)) {
        resources.push_back({16, 1, MakeVersion(chance)});
    }
    Block content = Resources(resources, address);
    const auto used = static_cast<uint32_t>(content.bytes.size());
    content.Align(0x200);
    const auto stored = static_cast<uint32_t>(content.bytes.size());
    const uint32_t nextAddress = address + (stored + addressStep - 1) / addressStep * addressStep;

    Block block;
    block.Put16(0x5A4D);
    block.PutZeros(58);
    block.Say32(static_cast<uint32_t>(header));
    block.PutZeros(header - 64);
    block.Put32(0x4550);
    block.Put16(wide ? 0x8664 : 0x1C0);
    block.Say16(sections);
    block.PutZeros(12);
    block.Say16(static_cast<unsigned>(optionalSize));
    block.Put16(0x2102);
    const size_t optional = block.bytes.size();
    block.Say16(wide ? 0x20B : 0x10B);
    block.PutZeros(54);
    block.Say32(nextAddress + shape.behind * addressStep);
    block.Say32(static_cast<uint32_t>(headers));
    block.PutZeros(optional + (wide ? 108 : 92) - block.bytes.size());
    block.Say32(16);
    block.PutZeros(16);
    block.Say32(address);
    block.Say32(used);
    block.PutZeros(optional + optionalSize - block.bytes.size());
    for (unsigned section = 0; section < sections; ++section) {
        const bool ours = section == shape.before;
        const bool behind = section > shape.before;
        block.PutZeros(8);
        block.Say32(ours ? used : behind ? 0x100 : shape.stored);
        block.Say32(ours     ? address
                    : behind ? nextAddress + (section - shape.before - 1) * addressStep
                             : firstAddress + section * addressStep);
        // Those behind have nothing in the file.
        block.Say32(ours ? stored : behind ? 0 : shape.stored);
        block.Say32(static_cast<uint32_t>(behind ? 0 : headers + section * shape.stored));
        block.PutZeros(16);
    }
    block.Align(0x200);
    block.PutZeros(shape.before * shape.stored);
    block.PutBlock(content);
    return block;
}

}  // namespace

Bytes MakePackInput(Chance& chance, bool* whole) {
    const Shape shape = ShapeOf(chance);
    Bytes bytes = WholeOrSpoilt(MakePack(chance, shape), chance, whole);
    *whole = *whole && !shape.large;
    return bytes;
}

namespace {

// What a system does that takes a module at its word, on its file as it lies on the disk or on its
// sections as they are loaded. Tells the first read that leads astray.
class TrustingLoader {
 public:
    TrustingLoader(const Bytes& file, bool mapped) : file_(file), mapped_(mapped) {
        const size_t header = Raw(0x3C, 4);
        optional_ = header + 24;
        count_ = Raw(header + 6, 2);
        sections_ = optional_ + Raw(header + 20, 2);
    }

    std::string Load() {
        const bool wide = Raw(optional_, 2) == 0x20B;
        root_ = Raw(optional_ + (wide ? 112 : 96) + 16, 4);
        if (!mapped_) {
            // Headers are where they are; they are asked for first.
            const uint32_t headers = Raw(optional_ + 60, 4);
            rootPlace_ = root_ < headers ? root_ : PlaceInFile(root_);
        } else {
            MapSections();
        }
        Folder(0, 1, 0);
        return wrong_;
    }

 private:
    struct Section {
        uint32_t size;
        uint32_t address;
        uint32_t stored;
        uint32_t place;
    };
    uint32_t Raw(size_t at, size_t width) {
        if (at > file_.size() || width > file_.size() - at) {
            Wrong("a header lies outside the file");
            return 0;
        }
        uint32_t value = 0;
        for (size_t byte = width; byte-- > 0;) {
            value = value << 8 | file_[at + byte];
        }
        return value;
    }
    Section SectionAt(size_t index) {
        const size_t at = sections_ + index * 40;
        return {Raw(at + 8, 4), Raw(at + 12, 4), Raw(at + 16, 4), Raw(at + 20, 4)};
    }
    void Wrong(const char* what) {
        if (wrong_.empty()) {
            wrong_ = std::string(what) + (mapped_ ? ", loaded" : ", in the file");
        }
    }
    // The image gets as much memory as it asks for, and headers and sections are put into it.
    void MapSections() {
        const uint64_t room = Raw(optional_ + 56, 4);
        const uint64_t headers = Raw(optional_ + 60, 4);
        if (room == 0 || room > processRoom) {
            Wrong("no process has as much room as the image wants");
        }
        if (headers > room || headers > file_.size()) {
            Wrong("the headers do not fit");
        }
        for (size_t index = 0; index < count_; ++index) {
            const Section section = SectionAt(index);
            if (section.address + uint64_t{std::max(section.size, section.stored)} > room) {
                Wrong("a section lies outside the image");
            }
        }
    }
    // By the lengths of sections in the file alone.
    uint64_t PlaceInFile(uint32_t address) {
        for (size_t index = 0; index < count_; ++index) {
            const Section section = SectionAt(index);
            if (address >= section.address && address - section.address < section.stored) {
                return uint64_t{section.place} + (address - section.address);
            }
        }
        return ~uint64_t{0};
    }
    // Where the bytes of an address lie in the file, when they are all there; of sections that lie
    // one over another the last is loaded last.
    uint64_t PlaceLoaded(uint64_t address, uint64_t length) {
        for (size_t index = count_; index-- > 0;) {
            const Section section = SectionAt(index);
            const uint64_t size = section.size ? section.size : section.stored;
            if (address >= section.address && address - section.address < size) {
                const uint64_t offset = address - section.address;
                const uint64_t stored = std::min<uint64_t>(section.stored, size);
                return offset + length <= stored ? section.place + offset : ~uint64_t{0};
            }
        }
        return ~uint64_t{0};
    }
    std::optional<size_t> InFolders(uint32_t offset, size_t length, const char* what,
                                    size_t alignment = 4) {
        uint64_t place = 0;
        if (mapped_) {
            place = PlaceLoaded(uint64_t{root_} + offset, length);
            if ((uint64_t{root_} + offset) % alignment != 0) {
                Wrong("a word lies across two");
            }
        } else {
            place = rootPlace_ == ~uint64_t{0} ? rootPlace_ : rootPlace_ + offset;
        }
        return Known(place, length, what);
    }
    std::optional<size_t> Known(uint64_t place, size_t length, const char* what) {
        if (place > file_.size() || length > file_.size() - place) {
            Wrong(what);
            return std::nullopt;
        }
        return static_cast<size_t>(place);
    }
    void Folder(uint32_t offset, int floor, uint32_t type) {
        const auto head = InFolders(offset, 16, "a folder lies outside");
        if (!head || floor > 8 || ++folders_ > 10000) {
            return;
        }
        const size_t count = Raw(*head + 12, 2) + Raw(*head + 14, 2);
        for (size_t index = 0; index < count && wrong_.empty(); ++index) {
            const auto at = InFolders(static_cast<uint32_t>(offset + 16 + index * 8), 8,
                                      "a folder's entry lies outside");
            if (!at) {
                return;
            }
            const uint32_t name = Raw(*at, 4);
            const uint32_t target = Raw(*at + 4, 4);
            if (name & subfolder) {
                const auto length = InFolders(name & ~subfolder, 2, "a name lies outside", 2);
                if (length) {
                    InFolders(name & ~subfolder, 2 + 2 * size_t{Raw(*length, 2)},
                              "a name ends outside", 2);
                }
            }
            const uint32_t kind = floor == 1 ? name : type;
            if (target & subfolder) {
                Folder(target & ~subfolder, floor + 1, kind);
            } else {
                Data(target, kind);
            }
        }
    }
    void Data(uint32_t offset, uint32_t type) {
        const auto entry = InFolders(offset, 16, "a data entry lies outside");
        if (!entry) {
            return;
        }
        const uint32_t address = Raw(*entry, 4);
        const uint32_t length = Raw(*entry + 4, 4);
        if (mapped_ && address % 4 != 0) {
            Wrong("data begin within a word");
        }
        const uint64_t place = mapped_ ? PlaceLoaded(address, length) : PlaceInFile(address);
        const auto data = length ? Known(place, length, "data lie outside") : std::nullopt;
        // A type is known by half of its word.
        if (data && (type & 0xFFFF) == textType) {
            size_t at = *data;
            for (int text = 0; text < 16; ++text) {
                if (at + 2 > *data + length || at + 2 + 2 * Raw(at, 2) > *data + length) {
                    Wrong("a text ends outside its block");
                    return;
                }
                at += 2 + 2 * Raw(at, 2);
            }
        }
    }

    const Bytes& file_;
    bool mapped_;
    size_t optional_ = 0;
    size_t sections_ = 0;
    size_t count_ = 0;
    uint32_t root_ = 0;
    uint64_t rootPlace_ = 0;
    unsigned folders_ = 0;
    std::string wrong_;
};

std::string Judge(const Bytes& input, bool whole, bool* accepted) {
    const Exactly block(input);
    *accepted = text::IsWholeModule(block.Get(), input.size());
    if (!*accepted) {
        return whole ? "a sound pack was refused" : "";
    }
    std::string wrong = TrustingLoader(input, true).Load();
    if (wrong.empty()) {
        wrong = TrustingLoader(input, false).Load();
    }
    return wrong;
}

}  // namespace

const Part packs = {"packs", MakePackInput, Judge};

}  // namespace hostile
