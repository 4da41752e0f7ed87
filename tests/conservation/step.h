// One operation on the disk, what befell it, and whether anything is lost by it.
#pragma once

#include <set>
#include <string>
#include <vector>

#include "tests/conservation/disk.h"
#include "tests/conservation/mishap.h"

namespace conservation {

struct Step {
    enum class Kind { Delete, Copy, Move };

    unsigned seed = 0;
    unsigned number = 0;
    Kind kind = Kind::Delete;
    // The entry, and where it is to go, as the disk has them.
    std::wstring source;
    std::wstring destination;
    // The same as the program is told.
    std::wstring toldSource;
    std::wstring toldDestination;
    std::wstring mishap;

    State before;
    unsigned made = 0;
    std::map<std::wstring, std::wstring> links;
    // The destinations that may be overwritten, as the program spells them.
    std::vector<std::wstring> confirmed;
    bool allConfirmed = false;
    // What something else has deleted and made meanwhile.
    std::set<unsigned> vanished;
    std::map<std::wstring, unsigned> appeared;
    bool meddled = false;
    Outcome outcome;
};

// One sentence for each thing that is wrong.
std::vector<std::wstring> Judge(const Step& step, const State& after);

// A step and the counts, for the process that comes after one that has ended.
void WriteJournal(const Step& step, const std::vector<unsigned>& counts);
bool ReadJournal(Step* step, std::vector<unsigned>* counts);

}  // namespace conservation
