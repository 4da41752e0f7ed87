#include "text/resources.h"

#include "platform/strings.h"

namespace text {

namespace {

HINSTANCE program = nullptr;
void* volatile resources = nullptr;
LANGID language = programLanguage;

}  // namespace

HINSTANCE ProgramModule() {
    return program;
}
HINSTANCE ResourceModule() {
    return static_cast<HINSTANCE>(resources);
}
LANGID Language() {
    return language;
}

void SetProgramModule(HINSTANCE module) {
    program = module;
    resources = module;
    language = programLanguage;
}

HINSTANCE SetResourceModule(HINSTANCE module, LANGID newLanguage) {
    void* const previous = InterlockedExchangePointer(&resources, module);
    language = newLanguage;
    return static_cast<HINSTANCE>(previous);
}

std::wstring_view LoadText(UINT id) {
    const wchar_t* found = nullptr;
    size_t length = platform::ResourceString(ResourceModule(), id, &found);
    if (length == 0 && ResourceModule() != program) {
        length = platform::ResourceString(program, id, &found);
    }
    return length == 0 ? L"<resource not found>" : std::wstring_view(found, length);
}

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
    MenuReader(const uint8_t* bytes, size_t size) : bytes_(bytes), size_(size) {}

    bool IsSound() {
        uint16_t version = 0;
        uint16_t header = 0;
        if (!Read(&version) || !Read(&header) || version != 0 || header > size_ - at_) {
            return false;
        }
        at_ += header;
        return ReadItems(1);
    }

 private:
    bool Read(uint16_t* value) {
        if (size_ - at_ < sizeof *value) {
            return false;
        }
        *value = static_cast<uint16_t>(bytes_[at_] | bytes_[at_ + 1] << 8);
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

    const uint8_t* bytes_;
    size_t size_;
    size_t at_ = 0;
    unsigned items_ = 0;
};

HMENU LoadPackMenu(UINT id) {
    const HINSTANCE pack = ResourceModule();
    const HRSRC resource = FindResourceW(pack, MAKEINTRESOURCEW(id), RT_MENU);
    const HGLOBAL loaded = resource ? LoadResource(pack, resource) : nullptr;
    const auto bytes = static_cast<const uint8_t*>(loaded ? LockResource(loaded) : nullptr);
    return bytes && IsSoundMenu(bytes, SizeofResource(pack, resource))
               ? LoadMenuW(pack, MAKEINTRESOURCEW(id))
               : nullptr;
}

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

std::wstring_view LoadPattern(UINT id) {
    const std::wstring_view pattern = LoadText(id);
    if (ResourceModule() == program) {
        return pattern;
    }
    const wchar_t* found = nullptr;
    const size_t length = platform::ResourceString(program, id, &found);
    const std::wstring_view original(found, length);
    return length == 0 || InsertsFit(pattern, original) ? pattern : original;
}

bool IsSoundMenu(const uint8_t* bytes, size_t size) {
    return MenuReader(bytes, size).IsSound();
}

HMENU LoadMenuResource(UINT id) {
    HMENU menu = ResourceModule() != program ? LoadPackMenu(id) : nullptr;
    if (!menu) {
        menu = LoadMenuW(program, MAKEINTRESOURCEW(id));
    }
    return menu;
}

}  // namespace text
