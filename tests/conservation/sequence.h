// A sequence of operations on a disk of its own, all of it from one seed.
#pragma once

#include <vector>

#include "tests/conservation/step.h"

namespace conservation {

// What has been done, for the line at the end.
enum Count : size_t {
    sequences,
    steps,
    copies,
    moves,
    deletions,
    failedSteps,
    failedCalls,
    conflicts,
    overwritten,
    full,
    meddled,
    ended,
    endedProcesses,
    complaints,
    failedSequences,
    countOfCounts,
};
using Counts = std::vector<unsigned>;

// Runs one; the process ends really where it is to end, if `really`: EndProcess with
// `endedExitCode`, after the journal has been written.
inline constexpr unsigned endedExitCode = 77;
void RunSequence(unsigned seed, bool really, bool tells, Counts* counts);

// Tells what is wrong after a step, and counts it.
void TellComplaints(const Step& step, const std::vector<std::wstring>& wrong, Counts& counts);

// Looks at what the process before this one has left. Gives the seed of its sequence; 0 when there
// was none.
unsigned JudgeJournal(Counts* counts);

}  // namespace conservation
