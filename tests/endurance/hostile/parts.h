// The kinds of input, and what they share.
#pragma once

#include <algorithm>
#include <cstring>
#include <memory>

#include "platform/windows.h"
#include "tests/endurance/hostile/input.h"

namespace hostile {

// A copy whose end is watched: a read behind it is seen.
#ifdef __MINGW32__
// At the end of a page, behind which nothing may be read.
class Exactly {
 public:
    explicit Exactly(const Bytes& bytes) {
        constexpr size_t page = 4096;
        const size_t room = (bytes.size() + page - 1) / page * page;
        memory_ = static_cast<uint8_t*>(
            VirtualAlloc(nullptr, room + page, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE));
        DWORD before = 0;
        VirtualProtect(memory_ + room, page, PAGE_NOACCESS, &before);
        copy_ = memory_ + room - bytes.size();
        std::copy(bytes.begin(), bytes.end(), copy_);
    }
    ~Exactly() { VirtualFree(memory_, 0, MEM_RELEASE); }
    Exactly(const Exactly&) = delete;
    Exactly& operator=(const Exactly&) = delete;
    const uint8_t* Get() const { return copy_; }

 private:
    uint8_t* memory_ = nullptr;
    uint8_t* copy_ = nullptr;
};
#else
// In a block of its size, as the compiler's checks keep an eye on.
class Exactly {
 public:
    explicit Exactly(const Bytes& bytes) : copy_(new uint8_t[bytes.size()]) {
        std::copy(bytes.begin(), bytes.end(), copy_.get());
    }
    const uint8_t* Get() const { return copy_.get(); }

 private:
    std::unique_ptr<uint8_t[]> copy_;
};
#endif

// Takes numbers and texts out of an input; behind its end all is 0.
class Taker {
 public:
    explicit Taker(const Bytes& bytes) : bytes_(bytes) {}
    bool AtEnd() const { return at_ >= bytes_.size(); }
    uint32_t Take(size_t width) {
        uint32_t value = 0;
        for (size_t byte = 0; byte < width; ++byte, ++at_) {
            value |= at_ < bytes_.size() ? uint32_t{bytes_[at_]} << 8 * byte : 0;
        }
        return value;
    }
    Bytes TakeBytes(size_t count) {
        const size_t end = std::min(bytes_.size(), at_ + count);
        const Bytes taken(bytes_.begin() + static_cast<std::ptrdiff_t>(std::min(at_, end)),
                          bytes_.begin() + static_cast<std::ptrdiff_t>(end));
        at_ = end;
        return taken;
    }
    Bytes Rest() { return TakeBytes(bytes_.size()); }

 private:
    const Bytes& bytes_;
    size_t at_ = 0;
};

// The words of some bytes as characters.
std::wstring TextOf(const Bytes& bytes);

Bytes MakePackInput(Chance& chance, bool* whole);
Block MakeVersion(Chance& chance);

extern const Part packs;
extern const Part versions;
extern const Part menus;
extern const Part inserts;
extern const Part pictures;
extern const Part fileLists;
extern const Part paths;
extern const Part commands;
extern const Part numbers;
extern const Part texts;
extern const Part languages;
extern const Part processes;
extern const Part modules;
extern const Part regions;
extern const Part names;
extern const Part targets;
extern const Part storageFolders;

}  // namespace hostile
