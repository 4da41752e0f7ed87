// The dice: from one seed the same throws on every platform.
#pragma once

#include <cstddef>
#include <cstdint>

namespace conservation {

class Chance {
 public:
    void Seed(unsigned seed) {
        state_ = seed * 2654435761u + 12345u;
        for (int warmUp = 0; warmUp < 8; ++warmUp) {
            Next();
        }
    }
    // 0 to sides - 1.
    unsigned Dice(size_t sides) { return Next() % static_cast<unsigned>(sides); }
    bool OneIn(unsigned sides) { return Dice(sides) == 0; }
    template <typename Type, size_t count>
    const Type& Of(const Type (&choices)[count]) {
        return choices[Dice(count)];
    }

 private:
    unsigned Next() {
        state_ ^= state_ << 13;
        state_ ^= state_ >> 7;
        state_ ^= state_ << 17;
        return static_cast<unsigned>(state_ >> 16);
    }

    uint64_t state_ = 1;
};

inline Chance chance;

}  // namespace conservation
