#include "tests/endurance/sweep/trial.h"

#include <algorithm>

#include "res/resource.h"
#include "tests/support/wait.h"

namespace sweep {

namespace {

// The first times a program does something it loads what it then keeps.
constexpr int warmUps = 3;

// A caption, a text and a button.
constexpr size_t partsOfMessage = 3;

size_t PartsWithText(const Box& box) {
    return static_cast<size_t>(std::count_if(
        box.texts.begin(), box.texts.end(), [](const std::string& text) { return !text.empty(); }));
}

bool SaysNothing(const Box& box) {
    return PartsWithText(box) < (box.systems ? 1 : std::max(box.texts.size(), partsOfMessage));
}

std::string TextOf(const std::vector<Box>& boxes, bool messages) {
    std::string text;
    for (const Box& box : boxes) {
        if (box.message == messages) {
            text += '{' + Joined(box.texts) + '}';
        }
    }
    return text;
}

}  // namespace

const char* NameOf(Verdict verdict) {
    switch (verdict) {
        case Verdict::Same:
            return "same";
        case Verdict::Told:
            return "told";
        case Verdict::Less:
            return "less";
        case Verdict::Wrong:
            return "WRONG";
        case Verdict::Ended:
            return "ended";
        case Verdict::Before:
            return "before";
        case Verdict::After:
            return "after";
        case Verdict::Between:
            return "between";
        case Verdict::Aside:
            return "aside";
        default:
            return "aborted";
    }
}

Trials::~Trials() {
    subject_.Kill();
    RemoveDisk();
    ForgetSettings();
}

bool Trials::Fresh() {
    stage_.EndSample();
    subject_.Kill();
    ForgetHiddenApps();
    MakeDisk();
    MakeSettings();
    if (!subject_.Start(inFiles)) {
        return false;
    }
    ShowEverything();
    return subject_.Title() == folderPath;
}

// What is loaded with the first need is there then, and the calls of actions are the same ones.
void Trials::ShowEverything() {
    constexpr WORD views[] = {ID_SHOW_SYSTEM_STATUS, ID_SHOW_PROCESSES, ID_SHOW_APPLICATIONS,
                              ID_SHOW_FILES};
    for (const WORD view : views) {
        subject_.Command(view);
    }
    stage_.SoftKey(1);
    stage_.CloseEverything();
    stage_.Select(2);
    stage_.Command(ID_PROPERTIES);
    stage_.CloseEverything();
    stage_.Command(ID_DELETE);
    stage_.CloseEverything();
}

// Files, in the folder, with its first contents.
bool Trials::Reset() {
    if (!subject_.Runs() || !subject_.Window() || (action_ && action_->leavesTrace)) {
        return Fresh();
    }
    stage_.EndSample();
    stage_.CloseEverything();
    MakeDisk();
    if (LookAtSettings()["langid"] != std::to_string(0x409)) {
        MakeSettings();
    }
    subject_.Command(ID_SHOW_FILES);
    for (int depth = 0; depth < 4 && subject_.Title() != folderPath; ++depth) {
        subject_.Command(ID_UP);
    }
    // Rows that are marked are so no longer.
    subject_.Command(IDCANCEL);
    subject_.Command(ID_REFRESH);
    stage_.CloseEverything();
    subject_.Key(subject_.List(), VK_HOME);
    return subject_.Title() == folderPath;
}

void Trials::Arm(const Plan& plan) {
    stage_.Begin();
    subject_.Arm(plan);
}

// It has ended, or shows its last box.
void Trials::LookAtEnd(Observation* seen) {
    seen->ended = true;
    if (subject_.Runs()) {
        const HWND dialog = subject_.Dialog();
        if (dialog) {
            const Box box = stage_.Read(dialog);
            seen->lastBox = box.caption + ": " + Joined(box.texts);
            subject_.Post(dialog, WM_COMMAND, IDOK);
        }
        if (!test::WaitFor([&] { return !subject_.Runs(); }, 5000)) {
            seen->wrongs.push_back("it has no window and does not end");
            subject_.Kill();
            return;
        }
    }
    seen->exitCode = subject_.ExitCode();
    seen->complaint = subject_.Complaint();
}

void Trials::LookAtFiles(Observation* seen) {
    const std::wstring title = subject_.Title();
    if (title.rfind(folderPath, 0) != 0) {
        return;
    }
    // With marked rows their number stands behind the folder.
    const std::wstring folder = title.substr(0, title.find(L" ("));
    const Disk entries = EntriesOf(folder);
    const std::string wrong = RowsAgainst(subject_.DrawnBy(subject_.List()), entries);
    if (!wrong.empty()) {
        // A folder that cannot be listed to its end is listed as far as it can, and a new entry
        // that cannot be read has no row.
        const std::string call = subject_.FailedCall();
        const bool listedShort = (call.rfind("Find", 0) == 0 || call == "GetFileAttributesExW") &&
                                 wrong.find(" +") == std::string::npos;
        if (listedShort) {
            stage_.Note("rows are missing");
            seen->notes = stage_.Notes();
        } else {
            seen->oldRows = wrong;
        }
        subject_.Command(ID_REFRESH);
        // The title may have been another view's.
        const std::string still = subject_.Title() == title
                                      ? RowsAgainst(subject_.DrawnBy(subject_.List()), entries)
                                      : std::string();
        if (!still.empty()) {
            seen->wrongs.push_back("rows differ also after a refresh:" + still);
        }
    }
    const HWND strip = subject_.Child(subject_.Window(), L"kx::PathBar");
    const std::vector<std::string> path = subject_.DrawnBy(strip);
    if (strip && (path.size() != 1 || path[0] != Narrow(folder))) {
        seen->wrongs.push_back("the path strip shows " + Joined(path));
    }
}

void Trials::LookAround(Observation* seen) {
    if (!subject_.CameToRest()) {
        seen->wrongs.push_back("it does not come to rest");
    }
    DWORD_PTR answer = 0;
    if (!SendMessageTimeoutW(subject_.Window(), WM_NULL, 0, 0, SMTO_NORMAL, 8000, &answer)) {
        seen->wrongs.push_back("it does not answer");
    }
    if (!IsWindowEnabled(subject_.Window())) {
        seen->wrongs.push_back("its window takes no input");
    }
    seen->disk = LookAtDisk();
    seen->settings = LookAtSettings();
    LookAtFiles(seen);
    seen->bar = subject_.DrawnBy(subject_.Child(subject_.Window(), L"kx::CmdBar"));
    if (seen->bar.empty()) {
        seen->wrongs.push_back("the soft keys are empty");
    }
}

// Another view, and back to where every action begins.
void Trials::LookAtBase(Observation* seen) {
    subject_.Command(ID_SHOW_SYSTEM_STATUS);
    if (subject_.Title() != L"System Status") {
        seen->wrongs.push_back("it does not switch to System Status");
    }
    if (!Reset()) {
        seen->wrongs.push_back("it does not come back to the folder");
        return;
    }
    seen->barLater = subject_.DrawnBy(subject_.Child(subject_.Window(), L"kx::CmdBar"));
    seen->rowsLater = subject_.DrawnBy(subject_.List());
    const std::string kept = subject_.NewHoldings();
    seen->held = subject_.Held();
    if (seen->held.things > seen->heldBefore.things) {
        seen->kept = kept;
    }
}

Observation Trials::PerformAction(const Plan& plan) {
    Observation seen;
    if (!Reset() && !Fresh()) {
        seen.wrongs.push_back("it does not start");
        return seen;
    }
    seen.heldBefore = subject_.Held();
    action_->prepare(stage_);
    seen.before = LookAtDisk();
    const unsigned beeps = subject_.Beeps();
    Arm(plan);
    action_->act(stage_);
    subject_.Disarm();
    seen.questions = stage_.Questions();
    seen.beeps = subject_.Beeps() - beeps;
    if (!subject_.Runs() || !subject_.Window()) {
        seen.disk = LookAtDisk();
        LookAtEnd(&seen);
        return seen;
    }
    action_->look(stage_);
    seen.boxes = stage_.CloseEverything();
    seen.notes = stage_.Notes();
    if (!subject_.Runs() || !subject_.Window()) {
        LookAtEnd(&seen);
        return seen;
    }
    LookAround(&seen);
    LookAtBase(&seen);
    return seen;
}

Observation Trials::PerformStart(const Plan& plan) {
    Observation seen;
    subject_.Kill();
    MakeDisk();
    MakeSettings();
    seen.before = LookAtDisk();
    Arm(plan);
    subject_.Launch(inFiles);
    test::WaitFor([&] {
        subject_.ComesToRest();
        return !subject_.Runs() || subject_.Window() || subject_.Dialog();
    });
    subject_.ComesToRest();
    subject_.Disarm();
    if (!subject_.Runs() || !subject_.Window()) {
        LookAtEnd(&seen);
        return seen;
    }
    seen.boxes = stage_.CloseEverything();
    stage_.Begin();
    stage_.NoteTitle();
    if (subject_.Runs() && subject_.Window()) {
        LookAround(&seen);
        stage_.Note("rows " + Joined(subject_.DrawnBy(subject_.List())));
        subject_.Command(ID_EXIT);
    }
    seen.notes = stage_.Notes();
    LookAtEnd(&seen);
    seen.ended = false;
    return seen;
}

Observation Trials::PerformExit(const Plan& plan) {
    Observation seen;
    if (!Fresh()) {
        seen.wrongs.push_back("it does not start");
        return seen;
    }
    stage_.Select(0);
    stage_.KeyOnList(VK_RETURN);
    stage_.Command(ID_SHOW_FILE_SIZE);
    seen.before = LookAtDisk();
    Arm(plan);
    subject_.Command(ID_EXIT);
    subject_.Disarm();
    if (subject_.Runs() && subject_.Window()) {
        // One that has told that it cannot ends the next time.
        seen.boxes = stage_.CloseEverything();
        if (seen.boxes.empty()) {
            seen.wrongs.push_back("it does not end");
        }
        subject_.Command(ID_EXIT);
    }
    LookAtEnd(&seen);
    seen.ended = false;
    seen.disk = seen.before;
    seen.settings = LookAtSettings();
    return seen;
}

Observation Trials::Perform(const Plan& plan) {
    return name_ == "start"  ? PerformStart(plan)
           : name_ == "exit" ? PerformExit(plan)
                             : PerformAction(plan);
}

std::optional<unsigned> Trials::Prepare(const std::string& action, unsigned kinds) {
    name_ = action;
    action_ = FindAction(action);
    trouble_.clear();
    clean_ = Observation();
    if (!action_ && action != "start" && action != "exit") {
        trouble_ = "there is no such action";
        return std::nullopt;
    }
    Plan plan = {};
    plan.kinds = kinds;
    const bool startsAnew = !action_ || action_->leavesTrace;
    for (int round = 0; round < (startsAnew ? 1 : warmUps); ++round) {
        clean_ = Perform(plan);
    }
    if (!clean_.oldRows.empty()) {
        trouble_ = "rows:" + clean_.oldRows + "; ";
    }
    for (const std::string& wrong : clean_.wrongs) {
        trouble_ += wrong + "; ";
    }
    if (clean_.held.things > clean_.heldBefore.things) {
        trouble_ += "it holds more: " + clean_.kept;
    }
    if (clean_.ended || clean_.exitCode != 0) {
        trouble_ += "it ended: " + clean_.lastBox + clean_.complaint;
    }
    return trouble_.empty() ? std::optional(subject_.Counted()) : std::nullopt;
}

// What is loaded with the first need is held from then on, what is forgotten is held once more each
// time: so it is done again.
Result Trials::Try(const Plan& plan) {
    Observation seen = Perform(plan);
    if (seen.held.things > seen.heldBefore.things || seen.held.blocks > seen.heldBefore.blocks) {
        const Observation again = Perform(plan);
        if (again.held.things <= again.heldBefore.things) {
            seen.held.things = seen.heldBefore.things;
        }
        if (again.held.blocks <= again.heldBefore.blocks) {
            seen.held.blocks = seen.heldBefore.blocks;
        }
    }
    Result result = Judge(seen, plan);
    result.call = subject_.FailedCall();
    result.at = subject_.FailedAt();
    result.counted = subject_.Counted();
    result.failures = subject_.Failures();
    return result;
}

namespace {

// What is skipped without a word on purpose: an entry that is not found goes with nobody's doing.
bool IsToBeSilent(const std::string& action, const std::string& call) {
    return action == "delete marked" && call == "GetFileAttributesW";
}

}  // namespace

Result Trials::Judge(const Observation& seen, const Plan& plan) const {
    Result result;
    std::vector<std::string> wrongs = seen.wrongs;
    if (!seen.complaint.empty()) {
        wrongs.push_back("it was stopped: " + seen.complaint);
    }
    if (name_ != "start") {
        const std::string lost = Lost(seen.before, clean_.disk, seen.disk);
        if (!lost.empty()) {
            wrongs.push_back("lost:" + lost);
        }
    }
    if (seen.ended && wrongs.empty()) {
        result.verdict =
            seen.lastBox.empty() || seen.exitCode != 0 ? Verdict::Aborted : Verdict::Ended;
        result.what = seen.lastBox + " exit code " + std::to_string(seen.exitCode);
        return result;
    }
    for (const Box& question : seen.questions) {
        if (SaysNothing(question)) {
            wrongs.push_back("it asks without a text: " + Joined(question.texts));
        }
    }
    for (const Box& box : seen.boxes) {
        if (box.message && SaysNothing(box)) {
            wrongs.push_back("a box without a text: " + Joined(box.texts));
        }
    }
    const std::string messages = TextOf(seen.boxes, true);
    const bool beeped = seen.beeps > clean_.beeps;
    const bool told = beeped || (messages != TextOf(clean_.boxes, true) && !messages.empty());
    const bool toldAtEnd = seen.lastBox != clean_.lastBox && !seen.lastBox.empty();
    const std::string change = Difference(seen.before, seen.disk);
    const bool asWanted = seen.disk == clean_.disk;
    // A folder that could not be listed, and was told so, has no rows.
    const bool none = told && change.empty() && seen.oldRows.find(" +") == std::string::npos;
    if (!seen.oldRows.empty() && !none && (!told || plan.times == 1)) {
        wrongs.push_back("rows differ from the disk:" + seen.oldRows);
    }
    const bool silent = IsToBeSilent(name_, subject_.FailedCall());
    if (!told && !silent && !asWanted && !change.empty() && name_ != "start") {
        wrongs.push_back("partly done without a word:" + change);
    }
    if (!told && !silent && !asWanted && change.empty() &&
        seen.questions.size() >= clean_.questions.size() && name_ != "start") {
        wrongs.push_back("nothing done without a word");
    }
    if (seen.settings != clean_.settings && !told && !toldAtEnd) {
        wrongs.push_back("settings:" + Told(seen.settings) + " not" + Told(clean_.settings));
    }
    if (seen.exitCode != 0) {
        wrongs.push_back("exit code " + std::to_string(seen.exitCode));
    }
    if (action_ && !seen.rowsLater.empty() && seen.rowsLater != clean_.rowsLater) {
        wrongs.push_back("rows later: " + Joined(seen.rowsLater));
    }
    if (action_ && seen.barLater != clean_.barLater) {
        wrongs.push_back("soft keys later: " + Joined(seen.barLater));
    }
    if (seen.held.things > seen.heldBefore.things) {
        wrongs.push_back("it holds " + std::to_string(seen.held.things - seen.heldBefore.things) +
                         " more: " + seen.kept);
    } else if (seen.held.blocks > seen.heldBefore.blocks) {
        wrongs.push_back("it holds " + std::to_string(seen.held.blocks - seen.heldBefore.blocks) +
                         " blocks of the heap more");
    }
    if (!wrongs.empty()) {
        result.verdict = Verdict::Wrong;
        for (const std::string& wrong : wrongs) {
            result.what += wrong + "; ";
        }
        result.what += messages;
        return result;
    }
    if (told || toldAtEnd) {
        result.verdict = Verdict::Told;
        result.what = (beeped ? "beep" : "") + messages + (toldAtEnd ? seen.lastBox : "");
        return result;
    }
    const auto differ = [&](const char* what, const std::string& now, const std::string& wanted) {
        if (now != wanted) {
            result.verdict = Verdict::Less;
            result.what += std::string(what) + ": " + now + "; ";
        }
    };
    differ("notes", Joined(seen.notes), Joined(clean_.notes));
    differ("soft keys", Joined(seen.bar), Joined(clean_.bar));
    differ("pages", TextOf(seen.boxes, false), TextOf(clean_.boxes, false));
    differ("questions", TextOf(seen.questions, true), TextOf(clean_.questions, true));
    differ("boxes", messages, TextOf(clean_.boxes, true));
    return result;
}

std::string Trials::End() {
    if (!subject_.Runs() || !subject_.Window()) {
        return "";
    }
    Reset();
    Observation seen;
    subject_.Command(ID_EXIT);
    LookAtEnd(&seen);
    std::string wrong = seen.lastBox + seen.complaint + Joined(seen.wrongs);
    if (seen.exitCode != 0) {
        wrong += " exit code " + std::to_string(seen.exitCode);
    }
    if (LookAtSettings()["path"] != Narrow(folderPath)) {
        wrong += " settings" + Told(LookAtSettings());
    }
    return wrong;
}

}  // namespace sweep
