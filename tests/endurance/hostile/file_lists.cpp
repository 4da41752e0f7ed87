#include "tests/endurance/hostile/file_lists.h"

namespace hostile {

Bytes MakeFileList(Chance& chance, bool* whole, const std::vector<std::u16string>& beginnings) {
    // The paths may begin later than right behind the header.
    constexpr unsigned header = 20;
    const unsigned gap = chance.OneIn(4) ? 2 * chance.Dice(9) : 0;
    Block block;
    block.Say32(header + gap);
    block.PutZeros(8);
    block.Say32(0);
    block.Say32(1);
    block.PutZeros(gap);
    for (unsigned path = chance.Dice(5); path-- > 0;) {
        block.PutText(beginnings[chance.Dice(beginnings.size())]);
        block.PutText(OddText(chance, chance.OneIn(4) ? 0 : chance.OneIn(20) ? 400 : 20));
        block.Say16(0);
    }
    block.Say16(0);
    return WholeOrSpoilt(block, chance, whole);
}

}  // namespace hostile
