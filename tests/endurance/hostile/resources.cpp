// What a pack holds: its version block, menus, patterns with inserts, pictures.
#include <map>

#include "tests/endurance/hostile/parts.h"
#include "text/pack/resource_checks.h"
#include "text/pack/version_info.h"

namespace hostile {

namespace {

constexpr const char16_t* keys[] = {u"Translated", u"TranslatedInfo", u"ProductName"};

// A node of a version block: its length, that of its value, its kind, its name.
Block Node(std::u16string_view name, unsigned kind, size_t valueLength, const Block& value,
           const std::vector<Block>& children) {
    Block node;
    node.Say16(0);
    node.Say16(static_cast<unsigned>(valueLength));
    node.Say16(kind);
    node.PutText(name);
    node.Put16(0);
    node.Align(4);
    node.PutBlock(value);
    for (const Block& child : children) {
        node.Align(4);
        node.PutBlock(child);
    }
    node.Set16(0, static_cast<unsigned>(node.bytes.size()));
    return node;
}

// Every text names its key and its language.
std::u16string ValueOf(std::u16string_view key, std::u16string_view language) {
    return std::u16string(key) + u" of " + std::u16string(language.substr(0, 4));
}

Block Table(std::u16string_view language) {
    std::vector<Block> strings;
    for (const std::u16string_view key : keys) {
        const std::u16string text = ValueOf(key, language);
        Block value;
        value.PutText(text);
        value.Put16(0);
        strings.push_back(Node(key, 1, text.size() + 1, value, {}));
    }
    return Node(language, 1, 0, {}, strings);
}

std::wstring Wide(std::u16string_view text) {
    return std::wstring(text.begin(), text.end());
}

Bytes MakeVersionInput(Chance& chance, bool* whole) {
    return WholeOrSpoilt(MakeVersion(chance), chance, whole);
}

bool Holds(const Bytes& block, const std::wstring& text) {
    Bytes bytes;
    for (const wchar_t character : text) {
        bytes.push_back(static_cast<uint8_t>(character & 0xFF));
        bytes.push_back(static_cast<uint8_t>(character >> 8));
    }
    return std::search(block.begin(), block.end(), bytes.begin(), bytes.end()) != block.end();
}

std::string JudgeVersion(const Bytes& input, bool whole, bool* accepted) {
    const Exactly block(input);
    const auto info = text::VersionInfo::Parse({block.Get(), input.size()});
    *accepted = info.has_value();
    if (!info) {
        return whole ? "a sound version block was refused" : "";
    }
    for (const std::u16string_view key : keys) {
        for (const LANGID language : std::initializer_list<LANGID>{0x0407, 0x040C, 0x0411}) {
            const auto text = info->GetVersionString(Wide(key).c_str(), language);
            if (text && !Holds(input, *text)) {
                return "a text is not the block's";
            }
            // A language without a table has the lowest one's.
            const char16_t* const own = language == 0x040C ? u"040C04B0" : u"040704B0";
            if (whole && text != Wide(ValueOf(key, own))) {
                return "a text of a sound block is another";
            }
        }
    }
    const std::vector<DWORD> translations = info->Translations();
    if (translations.size() * 4 > input.size()) {
        return "more translations than there is room for";
    }
    if (whole && translations != std::vector<DWORD>{0x04B00407}) {
        return "the translations of a sound block are others";
    }
    return "";
}

void PutItems(Block* block, Chance& chance, unsigned floor) {
    const unsigned count = 1 + chance.Dice(chance.OneIn(40) ? 200 : 5);
    for (unsigned item = 0; item < count; ++item) {
        const bool popup = floor < 4 && chance.OneIn(4);
        block->Say16((popup ? 0x10u : 0) | (item + 1 == count ? 0x80u : 0));
        if (!popup) {
            block->Put16(100 + chance.Dice(1000));
        }
        block->PutText(OddText(chance, 6));
        block->Say16(0);
        if (popup) {
            PutItems(block, chance, floor + 1);
        }
    }
}

Bytes MakeMenu(Chance& chance, bool* whole) {
    Block block;
    block.Say16(0);
    const unsigned header = 2 * chance.Dice(3);
    block.Say16(header);
    block.PutZeros(header);
    PutItems(&block, chance, 1);
    return WholeOrSpoilt(block, chance, whole);
}

// As a system reads a menu that it takes at its word: flags, number, text, and what is below.
class TrustingMenu {
 public:
    TrustingMenu(const uint8_t* bytes, size_t size) : bytes_(bytes), size_(size) {}
    std::string Read() {
        at_ = 4 + Half(2);
        Items(1);
        return !outside_ ? items_ > 128 || deepest_ > 4 ? "a menu larger than any" : ""
                         : "a menu is read behind its end";
    }

 private:
    unsigned Half(size_t at) {
        if (at + 2 > size_) {
            outside_ = true;
            return 0x80;
        }
        return bytes_[at] | bytes_[at + 1] << 8;
    }
    unsigned Next() {
        at_ += 2;
        return Half(at_ - 2);
    }
    void Items(unsigned floor) {
        deepest_ = std::max(deepest_, floor);
        for (unsigned flags = 0; !(flags & 0x80) && !outside_ && floor < 1000;) {
            flags = Next();
            ++items_;
            if (!(flags & 0x10)) {
                Next();
            }
            while (Next() != 0 && !outside_) {
            }
            if (flags & 0x10) {
                Items(floor + 1);
            }
        }
    }

    const uint8_t* bytes_;
    size_t size_;
    size_t at_ = 0;
    size_t items_ = 0;
    unsigned deepest_ = 0;
    bool outside_ = false;
};

std::string JudgeMenu(const Bytes& input, bool whole, bool* accepted) {
    const Exactly block(input);
    *accepted = text::IsSoundMenu({block.Get(), input.size()});
    if (!*accepted) {
        const bool large =
            TrustingMenu(block.Get(), input.size()).Read() == "a menu larger than any";
        return whole && !large ? "a sound menu was refused" : "";
    }
    return TrustingMenu(block.Get(), input.size()).Read();
}

constexpr const char16_t* originals[] = {u"%1",
                                         u"%2 of %1 free",
                                         u"%1!i! of %2!i! (%3!I64i!)",
                                         u"%1!s! [%2!x!]%n100%%",
                                         u"%1!*.*s! and %2!x!",
                                         u"nothing at all"};

// The number of the original, then the pattern.
Bytes MakePattern(Chance& chance, bool* whole) {
    static constexpr char16_t odd[] = {u'%', u'%', u'%', u'!', u'!', u'0', u'1', u'2', u'3', u'9',
                                       u'i', u's', u'x', u'*', u'.', u' ', u'n', u'I', u'6', u'4'};
    const unsigned number = chance.Dice(std::size(originals));
    std::u16string pattern = originals[number];
    *whole = chance.OneIn(16);
    for (unsigned change = *whole ? 0 : 1 + chance.Dice(6); change-- > 0;) {
        const size_t at = chance.Dice(pattern.size() + 1);
        switch (chance.Dice(4)) {
            case 0:
                pattern.insert(at, 1, chance.Of(odd));
                break;
            case 1:
                pattern.erase(at, 1 + chance.Dice(3));
                break;
            case 2:
                pattern.insert(at, originals[chance.Dice(std::size(originals))]);
                break;
            default:
                if (at < pattern.size()) {
                    pattern[at] = chance.OneIn(40) ? u'\0' : chance.Of(odd);
                }
                break;
        }
    }
    Block block;
    block.Put8(number);
    block.PutText(pattern);
    return block.bytes;
}

// The inserts that a formatter asks for, each with its type, as it goes through a text; none when
// it would end at an insert that is not one.
std::optional<std::multimap<unsigned, std::wstring>> InsertsOf(const std::wstring& text) {
    std::multimap<unsigned, std::wstring> found;
    for (size_t at = 0; at < text.size(); ++at) {
        if (text[at] != L'%' || ++at >= text.size()) {
            continue;
        }
        if (text[at] < L'0' || text[at] > L'9') {
            continue;
        }
        unsigned number = 0;
        for (int digit = 0; digit < 2 && at < text.size() && text[at] >= L'0' && text[at] <= L'9';
             ++digit) {
            number = number * 10 + static_cast<unsigned>(text[at++] - L'0');
        }
        std::wstring type = L"s";
        if (at < text.size() && text[at] == L'!') {
            const size_t end = text.find(L'!', at + 1);
            if (end == std::wstring::npos) {
                return std::nullopt;
            }
            type = text.substr(at + 1, end - at - 1);
            at = end + 1;
        }
        found.emplace(number, type);
        --at;
    }
    return found;
}

std::string JudgePattern(const Bytes& input, bool whole, bool* accepted) {
    Taker taker(input);
    const std::wstring original = Wide(originals[taker.Take(1) % std::size(originals)]);
    const Bytes rest = taker.Rest();
    const std::wstring pattern = TextOf(rest);
    const std::unique_ptr<wchar_t[]> exact(new wchar_t[pattern.size()]);
    std::copy(pattern.begin(), pattern.end(), exact.get());
    *accepted = text::InsertsFit({exact.get(), pattern.size()}, original);
    if (!*accepted) {
        return whole ? "a pattern does not fit itself" : "";
    }
    const auto given = InsertsOf(original);
    // The formatter sees the text up to its end.
    const auto wanted = InsertsOf(pattern.substr(0, pattern.find(L'\0')));
    if (!wanted) {
        return "an insert without an end";
    }
    for (const auto& [number, type] : *wanted) {
        const auto place = given->find(number);
        if (place == given->end() || place->second != type) {
            return "an insert that is not given";
        }
    }
    return "";
}

Bytes MakePicture(Chance& chance, bool* whole) {
    Block block;
    block.Put32(0x474E5089);
    block.Put32(0x0A1A0A0D);
    block.Put32(0x0D000000);
    block.Put32(0x52444849);
    block.Say32(0x26000000);
    block.Say32(0x26000000 + chance.Dice(2) * 0x10000);
    block.PutZeros(5);
    return WholeOrSpoilt(block, chance, whole);
}

std::string JudgePicture(const Bytes& input, bool whole, bool* accepted) {
    const Exactly block(input);
    const auto height = text::PictureHeight({block.Get(), input.size()});
    *accepted = height.has_value();
    uint64_t told = 0;
    for (size_t at = 20; at < 24; ++at) {
        told = told << 8 | (at < input.size() ? input[at] : 0);
    }
    if (whole && !height) {
        return "a sound picture was refused";
    }
    return !height || (*height == told && told > 0 && told <= 4096 && input.size() >= 24)
               ? ""
               : "a height that no picture has";
}

}  // namespace

Block MakeVersion(Chance& chance) {
    Block fixed;
    fixed.Put32(0xFEEF04BD);
    fixed.PutZeros(48);
    Block translation;
    translation.Put32(0x04B00407);
    std::vector<Block> blocks = {
        Node(u"StringFileInfo", 1, 0, {}, {Table(u"040704B0"), Table(u"040C04B0")}),
        Node(u"VarFileInfo", 1, 0, {}, {Node(u"Translation", 0, 4, translation, {})})};
    if (chance.OneIn(2)) {
        std::swap(blocks[0], blocks[1]);
    }
    return Node(u"VS_VERSION_INFO", 0, fixed.bytes.size(), fixed, blocks);
}

std::wstring TextOf(const Bytes& bytes) {
    std::wstring text(bytes.size() / 2, L'\0');
    for (size_t index = 0; index < text.size(); ++index) {
        text[index] = static_cast<wchar_t>(bytes[2 * index] | bytes[2 * index + 1] << 8);
    }
    return text;
}

const Part versions = {"versions", MakeVersionInput, JudgeVersion};
const Part menus = {"menus", MakeMenu, JudgeMenu};
const Part inserts = {"inserts", MakePattern, JudgePattern};
const Part pictures = {"pictures", MakePicture, JudgePicture};

}  // namespace hostile
