// What a program may be given from outside: made sound first, with the places of its numbers, then
// spoilt by chance.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "tests/conservation/chance.h"

namespace hostile {

using conservation::Chance;
using Bytes = std::vector<uint8_t>;

// Bytes with the places of the numbers that say how much there is, or where.
class Block {
 public:
    void Put8(unsigned value) { bytes.push_back(static_cast<uint8_t>(value)); }
    void Put16(unsigned value);
    void Put32(uint32_t value);
    // The same for a number that says how much, where or of which kind.
    void Say16(unsigned value);
    void Say32(uint32_t value);
    void PutText(std::u16string_view text);
    void PutZeros(size_t count) { bytes.resize(bytes.size() + count); }
    void PutBlock(const Block& other);
    void Align(size_t size) { bytes.resize((bytes.size() + size - 1) / size * size); }
    void Set16(size_t at, unsigned value);
    void Set32(size_t at, uint32_t value);
    uint32_t Number(size_t at, size_t width) const;

    struct Field {
        size_t at;
        size_t width;
    };
    Bytes bytes;
    std::vector<Field> fields;
};

// Changes numbers, bytes and lengths.
Bytes Spoil(Block block, Chance& chance);

// Texts as names and paths have them, with odd letters among them.
std::u16string OddText(Chance& chance, size_t longest);

// One kind of input.
struct Part {
    const char* name;
    // `whole` is set when the input is sound.
    Bytes (*make)(Chance& chance, bool* whole);
    // Gives an input to the program's code. Returns what is wrong with what came of it, else an
    // empty text; `accepted` when the program took it.
    std::string (*judge)(const Bytes& input, bool whole, bool* accepted);
};
const std::vector<Part>& Parts();

// A sound block, or a spoilt one.
inline Bytes WholeOrSpoilt(const Block& block, Chance& chance, bool* whole) {
    *whole = chance.OneIn(16);
    return *whole ? block.bytes : Spoil(block, chance);
}

}  // namespace hostile
