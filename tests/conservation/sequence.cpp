#include "tests/conservation/sequence.h"

#include <optional>

#include "faults/fault.h"
#include "platform/files.h"
#include "tests/conservation/answers.h"
#include "tests/conservation/chance.h"
#include "tests/conservation/spelling.h"
#include "tests/conservation/system.h"
#include "views/files/file_names.h"
#include "views/files/file_transfer.h"
#include "views/files/paste_target.h"

namespace conservation {

namespace {

// More than this is not looked through at every step.
constexpr size_t mostEntries = 160;

bool IsDotted(wchar_t last) {
    return last == L'.' || last == L' ';
}

// Whether the system takes the path for another one.
bool HasDottedFolder(const std::wstring& path) {
    for (size_t end = path.find(L'\\', 1); end != std::wstring::npos;
         end = path.find(L'\\', end + 1)) {
        if (IsDotted(path[end - 1])) {
            return true;
        }
    }
    return false;
}

class Sequence {
 public:
    Sequence(unsigned seed, bool really, bool tells, Counts& counts)
        : seed_(seed), really_(really), tells_(tells), counts_(counts) {}

    void Run();

 private:
    bool Choose(Step* step);
    std::wstring SomeFolder() const;
    Plan Plot(Step* step);
    Plan PlotMeddling(Step* step);
    void Do(Step* step);
    void Work(const Step& step, Answers& answers);
    void RemoveCut();
    void TellStep(const Step& step) const;

    const unsigned seed_;
    const bool really_;
    const bool tells_;
    Counts& counts_;
    Disk disk_;
    State now_;
    std::map<std::wstring, std::wstring> links_;
    bool pasted_ = false;
};

std::wstring SomeKey(const State& state) {
    auto entry = state.begin();
    std::advance(entry, chance.Dice(state.size()));
    return entry->first;
}

std::wstring Sequence::SomeFolder() const {
    std::wstring key = SomeKey(now_);
    while (now_.at(key).kind != Entry::Kind::Folder) {
        key = views::FolderOfPath(key);
    }
    return now_.at(key).path;
}

// The links that still lead where they led at first.
std::map<std::wstring, std::wstring> Standing(const std::map<std::wstring, std::wstring>& links,
                                              const State& now) {
    std::map<std::wstring, std::wstring> standing;
    for (const auto& [link, target] : links) {
        const auto itself = now.find(link);
        const auto goal = now.find(Key(target));
        if (itself != now.end() && itself->second.kind == Entry::Kind::Link && goal != now.end() &&
            goal->second.kind == Entry::Kind::Folder && !HasDottedFolder(target + L'\\') &&
            !HasDottedFolder(itself->second.path)) {
            standing[link] = target;
        }
    }
    return standing;
}

// What is done to what; false when nothing comes to mind that makes sense.
bool Sequence::Choose(Step* step) {
    links_ = Standing(disk_.Links(), now_);
    step->links = disk_.Links();
    const std::wstring key = SomeKey(now_);
    const Entry& entry = now_.at(key);
    if (key == Key(firstVolume) || key == Key(secondVolume) || HasDottedFolder(entry.path)) {
        return false;
    }
    step->source = entry.path;
    const unsigned kind = chance.Dice(10);
    step->kind = kind < 2 ? Step::Kind::Delete : kind < 5 ? Step::Kind::Copy : Step::Kind::Move;
    const bool dotted = IsDotted(entry.path.back());
    if (step->kind == Step::Kind::Delete) {
        step->toldSource = chance.OneIn(4) ? SpellThroughLink(entry.path, links_) : entry.path;
        return true;
    }
    pasted_ = !dotted && chance.OneIn(2);
    // With a backslash behind it a link is the folder that it leads to: what is pasted loses it.
    const bool plain = dotted || (entry.kind == Entry::Kind::Link && !pasted_);
    step->toldSource = plain ? entry.path : Spell(entry.path, links_);
    // Seldom to where it is already.
    const std::wstring folder =
        chance.OneIn(6) ? now_.at(std::wstring(views::FolderOfPath(key))).path : SomeFolder();
    if (HasDottedFolder(folder + L'\\')) {
        return false;
    }
    std::wstring told = chance.OneIn(3) ? SpellThroughLink(folder + L"\\.", links_) : folder;
    if (told.ends_with(L"\\.")) {
        told.resize(told.size() - 2);
    }
    std::wstring name(views::NameOfPath(entry.path));
    if (pasted_) {
        step->toldSource = platform::CanonicalPath(step->toldSource);
        step->toldDestination = told;
        step->destination = folder;
        return true;
    }
    if (chance.OneIn(4)) {
        told = Spell(told, links_);
    }
    if (chance.OneIn(4)) {
        name = Key(name);
    } else if (chance.OneIn(4)) {
        const Entry& other = now_.at(SomeKey(now_));
        if (!IsDotted(other.path.back())) {
            name = views::NameOfPath(other.path);
        }
    }
    step->destination = folder + L'\\' + name;
    step->toldDestination = told + L'\\' + name;
    const std::wstring goal = Key(step->destination);
    return entry.kind == Entry::Kind::File || goal == key || !LiesIn(goal, key);
}

// Another program deletes the source or a part of it, or saves something where it is to go.
Plan Sequence::PlotMeddling(Step* step) {
    Plan plan;
    if (step->kind == Step::Kind::Delete || LiesIn(Key(step->destination), Key(step->source)) ||
        LiesIn(Key(step->source), Key(step->destination))) {
        return plan;
    }
    plan.mishap = Mishap::Meanwhile;
    plan.call = chance.Dice(1 + chance.Dice(40));
    std::vector<std::wstring> keys;
    for (const auto& [key, entry] : now_) {
        if (LiesIn(key, Key(step->source)) && entry.kind != Entry::Kind::Link) {
            keys.push_back(key);
        }
    }
    if (keys.empty()) {
        keys.push_back(Key(step->source));
    }
    const std::wstring key = keys[chance.Dice(keys.size())];
    const std::wstring path = now_.at(key).path;
    const bool saves = chance.OneIn(4);
    step->meddled = true;
    ++counts_[meddled];
    plan.meanwhile = [this, step, key, path, saves] {
        if (saves) {
            std::wstring goal = step->destination;
            goal += pasted_ ? L'\\' + std::wstring(views::NameOfPath(step->source)) : L"";
            goal += path.substr(step->source.size());
            if (const unsigned id = disk_.MakeFile(goal)) {
                step->appeared[Key(goal)] = id;
            }
            return;
        }
        for (const auto& [other, entry] : now_) {
            if (LiesIn(other, key)) {
                step->vanished.insert(entry.id);
            }
        }
        Wipe(path);
    };
    return plan;
}

Plan Sequence::Plot(Step* step) {
    Plan plan;
    constexpr unsigned toTheEnd = 1u << 30;
    plan.call = chance.Dice(1 + chance.Dice(40));
    switch (chance.Dice(10)) {
        case 0:
        case 1:
            plan.mishap = Mishap::Fails;
            plan.calls = chance.OneIn(3) ? toTheEnd : 1 + (chance.OneIn(2) ? chance.Dice(4) : 0);
            step->mishap = L"calls fail from " + Digits(plan.call) + L", " + Digits(plan.calls);
            break;
        case 2:
            plan.mishap = Mishap::FailsSometimes;
            plan.oneIn = 2 + chance.Dice(20);
            step->mishap = L"calls fail, one in " + Digits(plan.oneIn);
            break;
        case 3:
            plan.mishap = Mishap::Full;
            plan.room = chance.Dice(chance.OneIn(2) ? 300 : 100000);
            step->mishap = L"room for " + Digits(plan.room);
            ++counts_[full];
            break;
        case 4:
            plan = PlotMeddling(step);
            step->mishap = L"meddling at " + Digits(plan.call);
            break;
        case 5:
        case 6:
        case 7:
            plan.mishap = Mishap::Ends;
            step->mishap = L"ends at " + Digits(plan.call);
            break;
        default:
            break;
    }
    constexpr Moment moments[] = {Moment::Before, Moment::Within, Moment::Within, Moment::After};
    plan.moment = chance.Of(moments);
    plan.movesByCopying = !hasDottedNames || chance.OneIn(2);
    return plan;
}

void Sequence::Work(const Step& step, Answers& answers) {
    if (step.kind == Step::Kind::Delete) {
        views::RequireOwnName(step.toldSource);
        const DWORD attributes = GetFileAttributesW(step.toldSource.c_str());
        if (attributes == INVALID_FILE_ATTRIBUTES) {
            throw faults::W32Fault();
        }
        if (attributes & FILE_ATTRIBUTE_DIRECTORY) {
            views::RecursiveDelete(step.toldSource, &answers);
        } else if (!DeleteFileW(step.toldSource.c_str())) {
            throw faults::W32Fault();
        }
        return;
    }
    views::FileTransfer transfer(answers);
    if (step.kind == Step::Kind::Move) {
        transfer.MoveItem(step.toldSource, step.toldDestination);
    } else {
        transfer.CopyItem(step.toldSource, step.toldDestination);
    }
}

void Sequence::Do(Step* step) {
    ++counts_[steps];
    ++counts_[step->kind == Step::Kind::Delete ? deletions
              : step->kind == Step::Kind::Copy ? copies
                                               : moves];
    Plan plan = Plot(step);
    const Outcome* outcome = nullptr;
    if (really_) {
        plan.end = [&] {
            step->outcome = *outcome;
            if (outcome->endless) {
                return;
            }
            ++counts_[ended];
            ++counts_[endedProcesses];
            WriteJournal(*step, counts_);
            EndProcess(endedExitCode);
        };
    }
    if (tells_) {
        TellStep(*step);
    }
    Mishaps mishaps(std::move(plan));
    outcome = &mishaps.Current();
    Answers answers(*step, *outcome, counts_);
    try {
        if (pasted_ && step->kind != Step::Kind::Delete) {
            const DWORD attributes = GetFileAttributesW(step->toldSource.c_str());
            if (attributes == INVALID_FILE_ATTRIBUTES) {
                throw faults::W32Fault();
            }
            const std::optional<std::wstring> target =
                views::PasteTarget(step->toldDestination, step->toldSource, attributes);
            if (target) {
                step->destination += L'\\' + std::wstring(views::NameOfPath(*target));
                step->toldDestination = *target;
                Work(*step, answers);
            }
        } else {
            Work(*step, answers);
        }
    } catch (const faults::W32Fault&) {
        ++counts_[failedSteps];
    } catch (const std::exception&) {
        ++counts_[failedSteps];
    }
    step->outcome = mishaps.Result();
    counts_[failedCalls] += step->outcome.failures;
    counts_[ended] += step->outcome.ended;
}

void Sequence::TellStep(const Step& step) const {
    const wchar_t* const kinds[] = {L"delete ", L"copy ", L"move "};
    Tell(L"  step " + Digits(step.number) + L": " + kinds[static_cast<int>(step.kind)] +
         step.toldSource + L" -> " + step.toldDestination + (pasted_ ? L" (pasted)" : L"") +
         (step.mishap.empty() ? L"" : L", " + step.mishap));
}

// What a process that has ended may leave of a file is of no further use.
void Sequence::RemoveCut() {
    for (auto entry = now_.begin(); entry != now_.end();) {
        if (entry->second.kind == Entry::Kind::File && entry->second.id == 0) {
            Wipe(entry->second.path);
            entry = now_.erase(entry);
        } else {
            ++entry;
        }
    }
}

void Sequence::Run() {
    chance.Seed(seed_);
    Disk::Clear();
    disk_.Grow();
    now_ = disk_.Look(State(), true);
    ++counts_[sequences];
    const unsigned count = 4 + chance.Dice(5);
    for (unsigned number = 1; number <= count && now_.size() < mostEntries; ++number) {
        Step step;
        pasted_ = false;
        if (!Choose(&step)) {
            continue;
        }
        step.seed = seed_;
        step.number = number;
        step.before = now_;
        step.made = disk_.Made();
        Do(&step);
        std::vector<std::wstring> wrong;
        if (step.outcome.endless) {
            wrong.push_back(L"it came to no end");
        } else {
            now_ = disk_.Look(step.before, number == count);
            wrong = Judge(step, now_);
        }
        TellComplaints(step, wrong, counts_);
        if (!wrong.empty()) {
            break;
        }
        RemoveCut();
    }
}

}  // namespace

void TellComplaints(const Step& step, const std::vector<std::wstring>& wrong, Counts& counts) {
    if (wrong.empty()) {
        return;
    }
    ++counts[failedSequences];
    counts[complaints] += static_cast<unsigned>(wrong.size());
    const wchar_t* const kinds[] = {L"deleting ", L"copying ", L"moving "};
    Tell(L"seed " + Digits(step.seed) + L", step " + Digits(step.number) + L", " +
         kinds[static_cast<int>(step.kind)] + step.toldSource + L" to " + step.toldDestination +
         L" [" + step.mishap + (step.outcome.ended ? L", ended" : L"") + L"]");
    for (const std::wstring& sentence : wrong) {
        Tell(L"    " + sentence);
    }
}

void RunSequence(unsigned seed, bool really, bool tells, Counts* counts) {
    Sequence(seed, really, tells, *counts).Run();
}

unsigned JudgeJournal(Counts* counts) {
    Step step;
    if (!ReadJournal(&step, counts)) {
        return 0;
    }
    Disk disk;
    disk.SetMade(step.made);
    TellComplaints(step, Judge(step, disk.Look(step.before, true)), *counts);
    return step.seed;
}

}  // namespace conservation
