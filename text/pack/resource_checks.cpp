#include "text/pack/resource_checks.h"

namespace text {

namespace {

// The types of a pattern's inserts by their numbers; `sound` is false for an insert without an end.
struct InsertTypes {
    std::wstring_view types[10];
    bool named[10] = {};
    bool sound = true;

    explicit InsertTypes(std::wstring_view pattern) {
        for (size_t at = pattern.find(L'%'); at != std::wstring_view::npos && sound;) {
            at = at + 1 < pattern.size() ? Take(pattern, at + 1) : pattern.size();
            at = pattern.find(L'%', at);
        }
    }

 private:
    // Takes what stands behind a percent sign; returns where it ends.
    size_t Take(std::wstring_view pattern, size_t at) {
        if (pattern[at] < L'0' || pattern[at] > L'9') {
            return at + 1;
        }
        const auto number = static_cast<size_t>(pattern[at] - L'0');
        const bool twoDigits =
            at + 1 < pattern.size() && pattern[at + 1] >= L'0' && pattern[at + 1] <= L'9';
        // "%0" would end the text early, and there are no ten inserts.
        if (number == 0 || twoDigits) {
            sound = false;
            return at;
        }
        std::wstring_view type = L"s";
        ++at;
        if (at < pattern.size() && pattern[at] == L'!') {
            const size_t end = pattern.find(L'!', at + 1);
            if (end == std::wstring_view::npos) {
                sound = false;
                return at;
            }
            type = pattern.substr(at + 1, end - at - 1);
            at = end + 1;
        }
        sound = !named[number] || types[number] == type;
        named[number] = true;
        types[number] = type;
        return at;
    }
};

constexpr unsigned menuItemLimit = 128;
constexpr unsigned menuFloorLimit = 4;

class MenuReader {
 public:
    explicit MenuReader(const ByteReader& bytes) : bytes_(bytes) {}

    bool IsSound() {
        uint16_t version = 0;
        uint16_t header = 0;
        if (!Read(&version) || !Read(&header) || version != 0 || !bytes_.Has(at_, header)) {
            return false;
        }
        at_ += header;
        return ReadItems(1);
    }

 private:
    bool Read(uint16_t* value) {
        if (!bytes_.Has(at_, sizeof *value)) {
            return false;
        }
        *value = bytes_.Half(at_);
        at_ += sizeof *value;
        return true;
    }
    bool ReadItems(unsigned floor) {
        for (;;) {
            uint16_t flags = 0;
            if (floor > menuFloorLimit || ++items_ > menuItemLimit || !Read(&flags)) {
                return false;
            }
            const bool popup = (flags & MF_POPUP) != 0;
            uint16_t word = 0;
            if (!popup && !Read(&word)) {
                return false;
            }
            do {
                if (!Read(&word)) {
                    return false;
                }
            } while (word != 0);
            if (popup && !ReadItems(floor + 1)) {
                return false;
            }
            if (flags & MF_END) {
                return true;
            }
        }
    }

    const ByteReader& bytes_;
    size_t at_ = 0;
    unsigned items_ = 0;
};

}  // namespace

bool InsertsFit(std::wstring_view pattern, std::wstring_view original) {
    const InsertTypes ours(pattern);
    const InsertTypes theirs(original);
    if (!ours.sound) {
        return false;
    }
    for (size_t number = 1; number < 10; ++number) {
        if (ours.named[number] &&
            (!theirs.named[number] || ours.types[number] != theirs.types[number])) {
            return false;
        }
    }
    return true;
}

bool IsSoundMenu(const ByteReader& resource) {
    return MenuReader(resource).IsSound();
}

std::optional<uint32_t> PictureHeight(const ByteReader& resource) {
    constexpr size_t heightOffset = 20;
    // Pixels; what claims to be higher than any screen is not believed.
    constexpr uint32_t highest = 4096;
    // The highest byte comes first.
    const uint32_t height = __builtin_bswap32(resource.Word(heightOffset));
    return resource.Has(heightOffset, 4) && height != 0 && height <= highest ? std::optional(height)
                                                                             : std::nullopt;
}

}  // namespace text
