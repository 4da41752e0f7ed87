#include "text/pack/pack_check.h"

#include <algorithm>
#include <memory>
#include <new>

#include "platform/handles.h"
#include "text/pack/byte_reader.h"

namespace text {

namespace {

constexpr DWORD largestPack = 4 * 1024 * 1024;

// The most folders and data entries together; a pack has some fifty.
constexpr unsigned entryLimit = 4096;

// The most sections that a loader takes; a pack has one or two.
constexpr size_t sectionLimit = 96;

// The most memory that a loader has for an image: the addresses of one process.
constexpr uint32_t largestImage = 32 * 1024 * 1024;

// Where the sizes of the image in memory and of all headers stand among the image's own words.
constexpr size_t imageSizeOffset = 56;
constexpr size_t headersOffset = 60;
constexpr size_t sectionHeaderSize = 40;
constexpr size_t folderHeaderSize = 16;
constexpr size_t folderEntrySize = 8;
constexpr size_t dataEntrySize = 16;
constexpr uint32_t subfolder = 0x80000000;
constexpr uint32_t stringTable = 6;
constexpr unsigned textsInBlock = 16;
// Where folders, data entries and data begin: a handheld cannot read words elsewhere.
constexpr uint32_t alignment = 4;
// Type, name, language.
constexpr unsigned folderFloors = 3;

class ModuleReader {
 public:
    explicit ModuleReader(const ByteReader& bytes) : bytes_(bytes) {}

    bool IsWhole() {
        uint32_t header = 0;
        if (!Has(0, 64) || Half(0) != IMAGE_DOS_SIGNATURE) {
            return false;
        }
        header = Word(0x3C);
        if (!Has(header, 24) || Word(header) != IMAGE_NT_SIGNATURE) {
            return false;
        }
        const size_t sectionCount = Half(header + 6);
        const size_t optional = header + size_t{24};
        const size_t optionalSize = Half(header + 20);
        sections_ = optional + optionalSize;
        sectionCount_ = sectionCount;
        if (!Has(optional, optionalSize) || sectionCount > sectionLimit ||
            !Has(sections_, sectionCount * sectionHeaderSize)) {
            return false;
        }
        // The list of directories begins where the image's own words end.
        const size_t directories = Half(optional) == IMAGE_NT_OPTIONAL_HDR64_MAGIC ? 112 : 96;
        const size_t resources = directories + size_t{8} * IMAGE_DIRECTORY_ENTRY_RESOURCE;
        if (optionalSize < resources + 8 || Word(optional + resources) == 0) {
            return false;
        }
        const uint32_t root = Word(optional + resources);
        if (root % alignment != 0 ||
            !SectionsAreWhole(Word(optional + headersOffset), Word(optional + imageSizeOffset))) {
            return false;
        }
        const Place place = PlaceOf(root, folderHeaderSize);
        root_ = place.offset;
        end_ = place.offset + place.room;
        return root_ != 0 && FolderIsWhole(0, 1, 0);
    }

 private:
    bool Has(size_t offset, size_t length) const { return bytes_.Has(offset, length); }
    uint16_t Half(size_t offset) const { return bytes_.Half(offset); }
    uint32_t Word(size_t offset) const { return bytes_.Word(offset); }
    // Whether bytes lie in the section of the folders: another may be loaded elsewhere.
    bool HasBesideRoot(size_t offset, size_t length) const {
        return offset <= end_ && length <= end_ - offset;
    }
    // Whether what headers and sections have of the file is there, each section lies behind the one
    // before and all behind the headers (not every loader looks for an address in the same order),
    // and the image is as large as they are: a loader puts them where they say.
    bool SectionsAreWhole(uint32_t headers, uint32_t imageSize) const {
        if (imageSize > largestImage || !Has(0, headers)) {
            return false;
        }
        uint64_t end = headers;
        for (size_t index = 0; index < sectionCount_; ++index) {
            const size_t section = sections_ + index * sectionHeaderSize;
            const uint32_t start = Word(section + 12);
            const uint32_t inFile = Word(section + 16);
            if (start < end || (inFile != 0 && !Has(Word(section + 20), inFile))) {
                return false;
            }
            end = uint64_t{start} + std::max(Word(section + 8), inFile);
        }
        return end <= imageSize;
    }
    // Where bytes stand in the file, 0 when they do not, and how many are there.
    struct Place {
        size_t offset = 0;
        size_t room = 0;
    };
    Place PlaceOf(uint32_t address, size_t length) const {
        for (size_t index = 0; index < sectionCount_; ++index) {
            const size_t section = sections_ + index * sectionHeaderSize;
            const uint32_t start = Word(section + 12);
            const uint32_t mapped = Word(section + 8);
            const uint32_t inFile = Word(section + 16);
            const uint32_t stored = mapped != 0 ? std::min(mapped, inFile) : inFile;
            if (address >= start && address - start <= stored &&
                length <= stored - (address - start)) {
                return Place{size_t{Word(section + 20)} + (address - start),
                             stored - (address - start)};
            }
        }
        return Place();
    }
    // `folder` counts from the root; `type` is that of the resources in it, below the first floor.
    bool FolderIsWhole(uint32_t folder, unsigned floor, uint32_t type) {
        const size_t at = root_ + folder;
        if (floor > folderFloors || folder % alignment != 0 ||
            !HasBesideRoot(at, folderHeaderSize)) {
            return false;
        }
        const size_t count = size_t{Half(at + 12)} + Half(at + 14);
        if (!HasBesideRoot(at + folderHeaderSize, count * folderEntrySize)) {
            return false;
        }
        for (size_t index = 0; index < count; ++index) {
            if (++entries_ > entryLimit) {
                return false;
            }
            const size_t entry = at + folderHeaderSize + index * folderEntrySize;
            // Loaders know a type by half of its word.
            const uint32_t kind = floor == 1 ? Half(entry) : type;
            if (!NameIsWhole(Word(entry)) || !TargetIsWhole(Word(entry + 4), floor, kind)) {
                return false;
            }
        }
        return true;
    }
    bool NameIsWhole(uint32_t name) const {
        if (!(name & subfolder)) {
            return true;
        }
        const size_t at = root_ + (name & ~subfolder);
        return at % sizeof(wchar_t) == 0 && HasBesideRoot(at, 2) &&
               HasBesideRoot(at + 2, size_t{2} * Half(at));
    }
    bool TargetIsWhole(uint32_t target, unsigned floor, uint32_t type) {
        if (target & subfolder) {
            return FolderIsWhole(target & ~subfolder, floor + 1, type);
        }
        const size_t at = root_ + target;
        if (target % alignment != 0 || !HasBesideRoot(at, dataEntrySize)) {
            return false;
        }
        const uint32_t address = Word(at);
        const uint32_t length = Word(at + 4);
        const size_t data = PlaceOf(address, length).offset;
        return data != 0 && address % alignment == 0 &&
               (type != stringTable || TextsAreWhole(data, length));
    }
    // The platform reads texts by the lengths in their block without checking them.
    bool TextsAreWhole(size_t at, size_t length) const {
        const size_t end = at + length;
        for (unsigned text = 0; text < textsInBlock; ++text) {
            if (end - at < 2 || end - at - 2 < size_t{2} * Half(at)) {
                return false;
            }
            at += 2 + size_t{2} * Half(at);
        }
        return true;
    }

    const ByteReader& bytes_;
    size_t sections_ = 0;
    size_t sectionCount_ = 0;
    // Where the folders begin, and where their section ends.
    size_t root_ = 0;
    size_t end_ = 0;
    unsigned entries_ = 0;
};

}  // namespace

bool IsWholeModule(const uint8_t* bytes, size_t size) {
    return ModuleReader(ByteReader(bytes, size)).IsWhole();
}

bool IsDamagedPack(const wchar_t* path) {
    const platform::UniqueHandle file(CreateFileW(path, GENERIC_READ, FILE_SHARE_READ, nullptr,
                                                  OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file) {
        return false;
    }
    const DWORD size = GetFileSize(file.Get(), nullptr);
    if (size == 0 || size > largestPack) {
        return true;
    }
    const std::unique_ptr<uint8_t[]> bytes(new (std::nothrow) uint8_t[size]);
    DWORD read = 0;
    return !bytes || !ReadFile(file.Get(), bytes.get(), size, &read, nullptr) || read != size ||
           !IsWholeModule(bytes.get(), size);
}

}  // namespace text
