#include "tests/endurance/hostile/input.h"

#include <algorithm>

namespace hostile {

void Block::Put16(unsigned value) {
    Put8(value & 0xFF);
    Put8(value >> 8 & 0xFF);
}

void Block::Put32(uint32_t value) {
    Put16(value & 0xFFFF);
    Put16(value >> 16);
}

void Block::Say16(unsigned value) {
    fields.push_back({bytes.size(), 2});
    Put16(value);
}

void Block::Say32(uint32_t value) {
    fields.push_back({bytes.size(), 4});
    Put32(value);
}

void Block::PutText(std::u16string_view text) {
    for (const char16_t character : text) {
        Put16(character);
    }
}

void Block::PutBlock(const Block& other) {
    for (const Field& field : other.fields) {
        fields.push_back({bytes.size() + field.at, field.width});
    }
    bytes.insert(bytes.end(), other.bytes.begin(), other.bytes.end());
}

void Block::Set16(size_t at, unsigned value) {
    bytes[at] = static_cast<uint8_t>(value & 0xFF);
    bytes[at + 1] = static_cast<uint8_t>(value >> 8 & 0xFF);
}

void Block::Set32(size_t at, uint32_t value) {
    Set16(at, value & 0xFFFF);
    Set16(at + 2, value >> 16);
}

uint32_t Block::Number(size_t at, size_t width) const {
    uint32_t value = 0;
    for (size_t byte = width; byte-- > 0;) {
        value = value << 8 | bytes[at + byte];
    }
    return value;
}

namespace {

uint32_t Word(Chance& chance) {
    return chance.Dice(0x10000) << 16 | chance.Dice(0x10000);
}

// A number that is wrong in a way that matters.
uint32_t Lie(const Block& block, const Block::Field& field, Chance& chance) {
    const uint32_t truth = block.Number(field.at, field.width);
    const auto size = static_cast<uint32_t>(block.bytes.size());
    const auto at = static_cast<uint32_t>(field.at);
    const uint32_t sign = field.width == 2 ? 0x8000 : 0x80000000;
    const uint32_t little = chance.Dice(9) - 4;
    const Block::Field& other = block.fields[chance.Dice(block.fields.size())];
    switch (chance.Dice(16)) {
        case 0:
            return 0;
        case 1:
            return little;
        case 2:
            return ~little;
        case 3:
            return sign + little;
        case 4:
        case 5:
            return truth + little;
        case 6:
            return truth * 2;
        case 7:
            return truth / 2;
        case 8:
            return size + little;
        case 9:
            return size - at + little;
        case 10:
            return truth ^ sign;
        case 11:
            return truth ^ 1u << chance.Dice(field.width * 8);
        case 12:
            return block.Number(other.at, other.width);
        case 13:
            return block.Number(other.at, other.width) + little;
        case 14:
            return chance.Dice(size + 1);
        default:
            return Word(chance);
    }
}

void SpoilField(Block* block, Chance& chance) {
    const Block::Field field = block->fields[chance.Dice(block->fields.size())];
    if (field.at + field.width > block->bytes.size()) {
        return;
    }
    const uint32_t lie = Lie(*block, field, chance);
    if (field.width == 2) {
        block->Set16(field.at, lie & 0xFFFF);
    } else {
        block->Set32(field.at, lie);
    }
}

// Fields behind a change of length no longer stand where numbers stand.
void SpoilLength(Block* block, Chance& chance) {
    Bytes& bytes = block->bytes;
    const size_t at = chance.Dice(bytes.size() + 1);
    const size_t length =
        std::min<size_t>(chance.Dice(chance.OneIn(2) ? 9 : 200), bytes.size() - at);
    const auto place = bytes.begin() + static_cast<std::ptrdiff_t>(at);
    const auto end = place + static_cast<std::ptrdiff_t>(length);
    switch (chance.Dice(5)) {
        case 0:
            bytes.resize(at);
            break;
        case 1:
            bytes.erase(place, end);
            break;
        case 2: {
            const Bytes twice(place, end);
            bytes.insert(place, twice.begin(), twice.end());
            break;
        }
        case 3:
            bytes.insert(place, chance.Dice(9), static_cast<uint8_t>(chance.OneIn(2) ? 0 : 0xFF));
            break;
        default:
            std::fill(place, end, static_cast<uint8_t>(chance.Dice(3) * 0x7F));
            break;
    }
    std::erase_if(block->fields,
                  [&](const Block::Field& field) { return field.at + field.width > bytes.size(); });
}

}  // namespace

Bytes Spoil(Block block, Chance& chance) {
    for (unsigned change = 1 + chance.Dice(4); change-- > 0;) {
        const unsigned kind = chance.Dice(10);
        if (kind < 6 && !block.fields.empty()) {
            SpoilField(&block, chance);
        } else if (kind < 8 && !block.bytes.empty()) {
            block.bytes[chance.Dice(block.bytes.size())] ^=
                static_cast<uint8_t>(chance.OneIn(2) ? 1u << chance.Dice(8) : chance.Dice(256));
        } else {
            SpoilLength(&block, chance);
        }
    }
    return std::move(block.bytes);
}

std::u16string OddText(Chance& chance, size_t longest) {
    static constexpr char16_t odd[] = {u'\\',  u'\\',  u'/',   u'.',   u'.',   u' ',   u':',
                                       u'*',   u'?',   u'"',   u'%',   u'~',   u'0',   0xD800,
                                       0xDC00, 0xFFFF, 0xFEFF, 0x202E, 0x00DF, 0x0130, 1};
    std::u16string text(chance.Dice(longest + 1), u'a');
    const bool strange = chance.OneIn(2);
    for (char16_t& character : text) {
        character = strange && chance.OneIn(2) ? chance.Of(odd)
                                               : static_cast<char16_t>(u'a' + chance.Dice(26));
    }
    return text;
}

}  // namespace hostile
