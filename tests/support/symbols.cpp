#include "tests/support/symbols.h"

#include <cstdint>
#include <cstdio>
#include <cstring>

// Reads a decorated name part by part, without memory of its own.
extern "C" int __gcclibcxx_demangle_callback(const char* name,
                                             void (*take)(const char*, size_t, void*),
                                             void* context);

namespace test {

namespace {

constexpr size_t symbolSize = 18;
constexpr WORD functionType = 0x20;

struct Text {
    char* begin;
    size_t size;
    size_t length;
};

void Append(const char* part, size_t length, void* context) {
    Text& text = *static_cast<Text*>(context);
    for (size_t index = 0; index < length && text.length + 1 < text.size; ++index) {
        text.begin[text.length++] = part[index];
    }
    text.begin[text.length] = 0;
}

template <typename Value>
Value ReadAt(const char* place) {
    Value value;
    std::memcpy(&value, place, sizeof value);
    return value;
}

}  // namespace

Symbols::~Symbols() {
    if (file_) {
        UnmapViewOfFile(file_);
    }
}

void Symbols::Open(const wchar_t* path) {
    const HANDLE file = CreateFileW(path, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_DELETE,
                                    nullptr, OPEN_EXISTING, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        return;
    }
    if (const HANDLE mapping = CreateFileMappingW(file, nullptr, PAGE_READONLY, 0, 0, nullptr)) {
        file_ = static_cast<const char*>(MapViewOfFile(mapping, FILE_MAP_READ, 0, 0, 0));
        size_ = file_ ? GetFileSize(file, nullptr) : 0;
        CloseHandle(mapping);
    }
    CloseHandle(file);
}

const char* Symbols::At(size_t offset, size_t size) const {
    return offset <= size_ && size <= size_ - offset ? file_ + offset : nullptr;
}

bool Symbols::Describe(size_t address, char* text, size_t size) const {
    const char* const dos = At(0, sizeof(IMAGE_DOS_HEADER));
    if (!dos) {
        return false;
    }
    const size_t start = ReadAt<uint32_t>(dos + offsetof(IMAGE_DOS_HEADER, e_lfanew));
    const char* const headers = At(start, sizeof(DWORD) + sizeof(IMAGE_FILE_HEADER));
    if (!headers) {
        return false;
    }
    const auto header = ReadAt<IMAGE_FILE_HEADER>(headers + sizeof(DWORD));
    const size_t sectionsAt =
        start + sizeof(DWORD) + sizeof(IMAGE_FILE_HEADER) + header.SizeOfOptionalHeader;
    const char* const sections =
        At(sectionsAt, size_t{header.NumberOfSections} * sizeof(IMAGE_SECTION_HEADER));
    const char* const symbols =
        At(header.PointerToSymbolTable, size_t{header.NumberOfSymbols} * symbolSize);
    if (!sections || !symbols || header.NumberOfSymbols == 0) {
        return false;
    }
    const char* nearest = nullptr;
    size_t distance = ~size_t{0};
    for (size_t index = 0; index < header.NumberOfSymbols; ++index) {
        const char* const symbol = symbols + index * symbolSize;
        const size_t value = ReadAt<uint32_t>(symbol + 8);
        const auto section = ReadAt<int16_t>(symbol + 12);
        const auto type = ReadAt<WORD>(symbol + 14);
        index += ReadAt<BYTE>(symbol + 17);
        if (type != functionType || section < 1 || section > header.NumberOfSections) {
            continue;
        }
        const auto place = ReadAt<IMAGE_SECTION_HEADER>(
            sections + static_cast<size_t>(section - 1) * sizeof(IMAGE_SECTION_HEADER));
        const size_t begin = place.VirtualAddress + value;
        if (begin <= address && address - begin < distance &&
            address - place.VirtualAddress < place.Misc.VirtualSize) {
            distance = address - begin;
            nearest = symbol;
        }
    }
    if (!nearest) {
        return false;
    }
    // A name of up to eight letters stands in the symbol, a longer one behind the table.
    char shortName[9] = {};
    std::memcpy(shortName, nearest, 8);
    const char* name = shortName;
    if (ReadAt<uint32_t>(nearest) == 0) {
        name = At(header.PointerToSymbolTable + size_t{header.NumberOfSymbols} * symbolSize +
                      ReadAt<uint32_t>(nearest + 4),
                  1);
    }
    if (!name) {
        return false;
    }
    Text out = {text, size, 0};
    if (__gcclibcxx_demangle_callback(name, Append, &out) != 0) {
        out.length = 0;
        Append(name, std::strlen(name), &out);
    }
    char behind[24];
    std::snprintf(behind, sizeof behind, "+0x%zx", distance);
    Append(behind, std::strlen(behind), &out);
    return true;
}

}  // namespace test
