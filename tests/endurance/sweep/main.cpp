// Lets the calls of actions fail one after another and tells what becomes of it, a line for each:
// action, mode, kinds of calls, number of the call, verdict, function, what was seen, callers;
// tabs between them.
//
//   sweep actions                                   names the actions: on a PC those with files
//   sweep run ACTION MODE KINDS FROM TO SECONDS     one action, from one call to another
//   sweep sample SEED ACTIONS                       so many actions, four calls of each, by chance
//   sweep ends                                      names the actions that leave something behind
//   sweep ends SEED ACTIONS                         so many of them, ended three times each
//
// A line "# action mode kinds calls last" tells how many calls an action has and how far it came.
// Ends with 1 when something was wrong.
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <memory>
#include <string>

#include "tests/conservation/chance.h"
#include "tests/endurance/sweep/ends.h"
#include "tests/endurance/sweep/trial.h"
#include "tests/support/program.h"

namespace sweep {

namespace {

struct Mode {
    const char* name;
    unsigned times;
    bool sameFunction;
    Ending ending = Ending::None;
};
constexpr Mode modes[] = {
    {"once", 1, false},
    {"same", forever, true},
    {"all", forever, false},
    {"two", 2, false},
    {"eight", 8, false},
    {"end-before", 1, false, Ending::Before},
    {"end-after", 1, false, Ending::After},
    {"end-amid", 1, false, Ending::Amid},
};

constexpr unsigned allKinds = systemCalls | paintCalls | heapCalls;

const Mode* FindMode(const std::string& name) {
    for (const Mode& mode : modes) {
        if (name == mode.name) {
            return &mode;
        }
    }
    return nullptr;
}

Plan PlanFor(const Mode& mode, unsigned kinds, unsigned call) {
    Plan plan = {};
    plan.kinds = kinds;
    plan.first = call;
    plan.times = mode.times;
    plan.sameFunction = mode.sameFunction;
    plan.ending = mode.ending;
    return plan;
}

std::unique_ptr<Ordeal> OrdealFor(const Mode& mode) {
    if (mode.ending == Ending::None) {
        return std::make_unique<Trials>();
    }
    return std::make_unique<Ends>();
}

bool IsGood(Verdict verdict) {
    return verdict != Verdict::Wrong && verdict != Verdict::Ended && verdict != Verdict::Aborted;
}

// Whether a failure came about at all; `good` becomes false when what came of it is wrong.
bool TryAndTell(Ordeal* trials, const std::string& action, const Mode& mode, unsigned kinds,
                unsigned call, bool* good) {
    const Result result = trials->Try(PlanFor(mode, kinds, call));
    if (result.failures == 0) {
        return false;
    }
    std::printf("%s\t%s\t%u\t%u\t%s\t%s\t%s\t%s\n", action.c_str(), mode.name, kinds, call,
                NameOf(result.verdict), result.call.c_str(), result.what.c_str(),
                result.at.c_str());
    std::fflush(stdout);
    *good = *good && IsGood(result.verdict);
    return true;
}

struct Clock {
    explicit Clock(unsigned seconds) : end(GetTickCount() + seconds * 1000) {}
    bool RunsOut() const { return static_cast<int>(GetTickCount() - end) >= 0; }
    DWORD end;
};

bool PrepareAndTell(Ordeal* trials, const std::string& action, unsigned kinds, unsigned* calls) {
    const std::optional<unsigned> counted = trials->Prepare(action, kinds);
    if (!counted) {
        std::printf("! %s\t%s\n", action.c_str(), trials->Trouble().c_str());
        std::fflush(stdout);
        return false;
    }
    *calls = *counted;
    return true;
}

bool EndAndTell(Ordeal* trials, const std::string& action) {
    const std::string wrong = trials->End();
    if (!wrong.empty()) {
        std::printf("! %s\tat the end: %s\n", action.c_str(), wrong.c_str());
    }
    return wrong.empty();
}

std::vector<Action> ActionsHere() {
    return test::RunsOnHandheld() ? Actions() : FileActions();
}

int Run(const std::string& action, const Mode& mode, unsigned kinds, unsigned from, unsigned to,
        unsigned seconds) {
    const Clock clock(seconds);
    const std::unique_ptr<Ordeal> trials = OrdealFor(mode);
    unsigned calls = 0;
    if (!PrepareAndTell(trials.get(), action, kinds, &calls)) {
        return 1;
    }
    bool good = true;
    unsigned call = from;
    bool met = true;
    for (; call <= to && !clock.RunsOut() && met; ++call) {
        met = TryAndTell(trials.get(), action, mode, kinds, call, &good);
    }
    std::printf("# %s\t%s\t%u\t%u\t%s\n", action.c_str(), mode.name, kinds, calls,
                met ? std::to_string(call - 1).c_str() : "through");
    return EndAndTell(trials.get(), action) && good ? 0 : 1;
}

int Sample(unsigned seed, unsigned actions) {
    conservation::chance.Seed(seed);
    const std::vector<Action> all = ActionsHere();
    Trials trials;
    bool good = true;
    unsigned failures = 0;
    for (unsigned round = 0; round < actions; ++round) {
        const std::string action = all[conservation::chance.Dice(all.size())].name;
        unsigned calls = 0;
        if (!PrepareAndTell(&trials, action, allKinds, &calls)) {
            return 1;
        }
        for (int pair = 0; pair < 4 && calls != 0; ++pair) {
            const Mode& mode = modes[conservation::chance.OneIn(4) ? 3 : 0];
            const unsigned call = 1 + conservation::chance.Dice(calls);
            failures += TryAndTell(&trials, action, mode, allKinds, call, &good);
        }
    }
    std::printf("%u failures\n", failures);
    return EndAndTell(&trials, "the sample") && good && failures != 0 ? 0 : 1;
}

// Right before a call and right after one, by chance, and amid the first that has a middle.
int SampleEnds(unsigned seed, unsigned actions) {
    conservation::chance.Seed(seed);
    Ends ends;
    bool good = true;
    unsigned count = 0;
    for (unsigned round = 0; round < actions; ++round) {
        const std::string action = ActionsToEnd()[conservation::chance.Dice(ActionsToEnd().size())];
        unsigned calls = 0;
        if (!PrepareAndTell(&ends, action, systemCalls, &calls)) {
            return 1;
        }
        for (const Mode& mode : modes) {
            if (mode.ending != Ending::None) {
                const bool amid = mode.ending == Ending::Amid;
                const unsigned call = amid ? 1 : 1 + conservation::chance.Dice(calls);
                count += TryAndTell(&ends, action, mode, systemCalls, call, &good);
            }
        }
    }
    std::printf("%u ends\n", count);
    return EndAndTell(&ends, "the sample") && good && count != 0 ? 0 : 1;
}

unsigned Number(const char* word) {
    return static_cast<unsigned>(std::strtoul(word, nullptr, 10));
}

}  // namespace

int Main(int count, char** words) {
    const std::string what = count > 1 ? words[1] : "";
    if (what == "actions") {
        for (const Action& action : ActionsHere()) {
            std::printf("%s\n", action.name);
        }
        return 0;
    }
    if (what == "run" && count == 8 && FindMode(words[3])) {
        return Run(words[2], *FindMode(words[3]), Number(words[4]), Number(words[5]),
                   Number(words[6]), Number(words[7]));
    }
    if (what == "sample" && count == 4) {
        return Sample(Number(words[2]), Number(words[3]));
    }
    if (what == "ends" && count == 2) {
        for (const char* const action : ActionsToEnd()) {
            std::printf("%s\n", action);
        }
        return 0;
    }
    if (what == "ends" && count == 4) {
        return SampleEnds(Number(words[2]), Number(words[3]));
    }
    std::printf("sweep: see main.cpp for what it is told\n");
    return 2;
}

}  // namespace sweep

int main(int count, char** words) {
    return sweep::Main(count, words);
}
