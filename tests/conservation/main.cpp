// Runs sequences of operations on files in which whatever can go wrong does, and looks after each
// whether anything is lost: FIRST COUNT [REALLY [TELL]] with the first seed, the number of
// sequences, one in how many lets its process really end, and whether each step is told. It ends
// with 77 when the process has ended so: "resume FIRST COUNT REALLY" goes on behind it.
#include <string>

#include "tests/conservation/sequence.h"
#include "tests/conservation/system.h"
#include "text/resources.h"

namespace conservation {

namespace {

unsigned NextNumber(const wchar_t** arguments) {
    while (**arguments == L' ') {
        ++*arguments;
    }
    unsigned number = 0;
    for (; **arguments >= L'0' && **arguments <= L'9'; ++*arguments) {
        number = number * 10 + static_cast<unsigned>(**arguments - L'0');
    }
    return number;
}

void TellCounts(const Counts& counts) {
    const wchar_t* const names[countOfCounts] = {
        L"sequences",       L"steps",        L"copies",          L"moves",
        L"deletions",       L"failed steps", L"failed calls",    L"conflicts",
        L"confirmed files", L"full volumes", L"meddled with",    L"ended",
        L"of them really",  L"complaints",   L"failed sequences"};
    std::wstring line;
    for (size_t index = 0; index < countOfCounts; ++index) {
        line += (index == 0 ? L"" : L", ") + Digits(counts[index]) + L' ' + names[index];
    }
    Tell(line);
}

}  // namespace

int Run(const wchar_t* arguments) {
    constexpr std::wstring_view resume = L"resume";
    Counts counts;
    unsigned seed = 0;
    if (std::wstring_view(arguments).starts_with(resume)) {
        arguments += resume.size();
        seed = JudgeJournal(&counts) + 1;
    }
    const unsigned first = NextNumber(&arguments);
    const unsigned behind = first + NextNumber(&arguments);
    const unsigned really = NextNumber(&arguments);
    const bool tells = NextNumber(&arguments) != 0;
    counts.resize(countOfCounts);
    for (seed = std::max(seed, first); seed < behind; ++seed) {
        RunSequence(seed, really != 0 && seed % really == 0, tells, &counts);
    }
    Disk::Clear();
    TellCounts(counts);
    return counts[complaints] == 0 ? 0 : 1;
}

}  // namespace conservation

#ifdef UNDER_CE
int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, wchar_t* commandLine, int) {
    text::SetProgramModule(instance);
    return conservation::Run(commandLine);
}
#else
int wmain(int count, wchar_t** arguments) {
    text::SetProgramModule(GetModuleHandleW(nullptr));
    std::wstring line;
    for (int index = 1; index < count; ++index) {
        (line += arguments[index]) += L' ';
    }
    return conservation::Run(line.c_str());
}
#endif
