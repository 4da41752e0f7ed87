#include "tests/endurance/sweep/ends.h"

#include <set>

#include "res/resource.h"
#include "tests/support/sample_program.h"
#include "tests/support/wait.h"
#include "views/files/set_aside.h"

namespace sweep {

namespace {

// What is changed before it is saved: the folder, the view and its display.
void ChangeSettings(Stage& stage) {
    stage.Select(0);
    stage.KeyOnList(VK_RETURN);
    stage.Command(ID_SHOW_PROCESSES);
    stage.Command(ID_SHOW_IMAGE_PATH);
}

const Action exitAction = {"exit", ChangeSettings, [](Stage& stage) { stage.Command(ID_EXIT); },
                           nullptr};

Left LookOutside() {
    return Left{LookAtDisk(), LookAtSettings(), HiddenApps().Read(), HiddenApps().Read(L".new"),
                HiddenApps().Read(L".bak")};
}

bool IsFile(const std::string& value) {
    return value.find("bytes") != std::string::npos;
}

// The name of the file that was set aside under this one; empty for any other name.
std::string NameSetAside(const std::string& name) {
    const std::string suffix = Narrow(views::setAsideSuffix);
    const size_t at = name.rfind(suffix);
    if (at == std::string::npos) {
        return "";
    }
    const std::string number = name.substr(at + suffix.size());
    const bool numbered = number.size() > 1 && number[0] == '-' &&
                          number.find_first_not_of("0123456789", 1) == std::string::npos;
    return number.empty() || numbered ? name.substr(0, at) : "";
}

std::string ValueAt(const std::map<std::string, std::string>& values, const std::string& name) {
    const auto found = values.find(name);
    return found == values.end() ? std::string() : found->second;
}

std::set<std::string> ContentsOf(const Disk& disk) {
    std::set<std::string> contents;
    for (const auto& [name, value] : disk) {
        if (IsFile(value)) {
            contents.insert(value);
        }
    }
    return contents;
}

// What one end has left, against what there was and what there would be.
class Judgement {
 public:
    Judgement(const Left& before, const Left& after, const Left& left, Ending ending)
        : before_(before), after_(after), left_(left), amid_(ending == Ending::Amid) {
        JudgePresent();
        JudgeMissing();
        JudgeSettings();
        JudgeHidden();
    }

    const std::vector<std::string>& Wrongs() const { return wrongs_; }
    Verdict Kind() const {
        return aside_             ? Verdict::Aside
               : left_ == before_ ? Verdict::Before
               : left_ == after_  ? Verdict::After
                                  : Verdict::Between;
    }

 private:
    // Every entry is what it was, or what it becomes, or is set aside.
    void JudgePresent() {
        for (const auto& [name, value] : left_.disk) {
            const std::string asideOf = NameSetAside(name);
            if (value == ValueAt(before_.disk, name) || value == ValueAt(after_.disk, name)) {
                continue;
            }
            if (!asideOf.empty() && value == ValueAt(before_.disk, asideOf)) {
                aside_ = true;
            } else if (!IsBegun(name, value)) {
                wrongs_.push_back(name + " is neither old nor new");
            }
        }
    }

    // The beginning of a copy that the system had not ended: only where its source is whole, and
    // nothing else stands under the name.
    bool IsBegun(const std::string& name, const std::string& value) const {
        const std::string wanted = ValueAt(after_.disk, name);
        return amid_ && IsFile(value) && IsFile(wanted) && Contents().count(wanted) != 0;
    }

    std::set<std::string> Contents() const { return ContentsOf(left_.disk); }

    // What the action leaves alone is there. What it moves is somewhere; what it removes or
    // replaces is still there, or is done with.
    void JudgeMissing() {
        const std::set<std::string> contents = Contents();
        const std::set<std::string> kept = ContentsOf(after_.disk);
        for (const auto& [name, value] : before_.disk) {
            const std::string now = ValueAt(left_.disk, name);
            const std::string wanted = ValueAt(after_.disk, name);
            if (wanted == value) {
                if (now != value) {
                    wrongs_.push_back(name + " is not as it was");
                }
            } else if (IsFile(value) && contents.count(value) == 0 &&
                       (kept.count(value) != 0 || now != wanted)) {
                wrongs_.push_back(name + " is lost");
            }
        }
    }

    void JudgeSettings() {
        Settings all = before_.settings;
        all.insert(after_.settings.begin(), after_.settings.end());
        all.insert(left_.settings.begin(), left_.settings.end());
        for (const auto& [name, value] : all) {
            const std::string now = ValueAt(left_.settings, name);
            if (now != ValueAt(before_.settings, name) && now != ValueAt(after_.settings, name)) {
                wrongs_.push_back("the setting " + name + " is " + now);
            }
        }
    }

    // The file holds the old list or the new one. Where there was one and is none, the new one
    // waits whole beside it; where the old one is none that could be read, a copy of it is kept.
    void JudgeHidden() {
        const auto isOne = [&](const std::string& list) {
            return list == before_.hidden || list == after_.hidden;
        };
        // A first list that is only begun stays beside, and is none.
        const bool begun = amid_ && before_.hidden.empty() && left_.hidden.empty();
        if (!begun && !isOne(left_.List())) {
            wrongs_.push_back("the hidden applications are neither list: " + left_.List());
        }
        if (!after_.oldHidden.empty() && left_.hidden != before_.hidden &&
            left_.oldHidden != before_.hidden) {
            wrongs_.push_back("hiddenapps.xml.bak is not the old file");
        }
        aside_ = aside_ || !left_.nextHidden.empty();
    }

    const Left& before_;
    const Left& after_;
    const Left& left_;
    bool amid_;
    bool aside_ = false;
    std::vector<std::string> wrongs_;
};

}  // namespace

const std::vector<const char*>& ActionsToEnd() {
    static const std::vector<const char*> actions = {
        "paste file",    "paste folder", "move file",    "move folder",      "overwrite",
        "move over",     "merge",        "move merging", "shortcut",         "rename",
        "rename folder", "new folder",   "delete file",  "delete folder",    "delete marked",
        "hide",          "hide another", "hide anew",    "settings changed", "exit"};
    return actions;
}

Ends::~Ends() {
    Clean();
    RemoveDisk();
    ForgetSettings();
}

void Ends::Clean() {
    stage_.EndSample();
    subject_.Kill();
    ForgetHiddenApps();
}

bool Ends::Begin() {
    Clean();
    MakeDisk();
    MakeSettings();
    return subject_.Start(inFiles) && subject_.Title() == folderPath;
}

bool Ends::Perform(const Plan& plan) {
    if (!Begin()) {
        return false;
    }
    action_->prepare(stage_);
    before_ = LookOutside();
    stage_.Begin();
    subject_.Arm(plan);
    action_->act(stage_);
    subject_.Disarm();
    if (subject_.Failures() != 0 && !test::WaitFor([&] { return !subject_.Runs(); }, 5000)) {
        return false;
    }
    left_ = LookOutside();
    return true;
}

std::optional<unsigned> Ends::Prepare(const std::string& action, unsigned kinds) {
    trouble_.clear();
    action_ = action == exitAction.name ? &exitAction : FindAction(action);
    if (!action_) {
        trouble_ = "there is no such action";
        return std::nullopt;
    }
    Plan plan = {};
    plan.kinds = kinds;
    if (!Perform(plan)) {
        trouble_ = "it does not start";
        return std::nullopt;
    }
    after_ = left_;
    if (after_ == before_) {
        trouble_ = "it changes nothing";
        return std::nullopt;
    }
    return subject_.Counted();
}

Result Ends::Try(const Plan& plan) {
    Result result;
    if (!Perform(plan)) {
        result.verdict = Verdict::Wrong;
        result.what = "it does not start, or does not end";
        result.failures = 1;
        return result;
    }
    result.counted = subject_.Counted();
    result.failures = subject_.Failures();
    if (result.failures == 0) {
        return result;
    }
    result.call = subject_.FailedCall();
    result.at = subject_.FailedAt();
    const Judgement judgement(before_, after_, left_, plan.ending);
    std::vector<std::string> wrongs = judgement.Wrongs();
    const std::string complaint = subject_.Complaint();
    if (!complaint.empty()) {
        wrongs.push_back("the emulator stopped it: " + complaint);
    }
    StartAgain(&wrongs);
    result.verdict = wrongs.empty() ? judgement.Kind() : Verdict::Wrong;
    result.what =
        Joined(wrongs) + (wrongs.empty() ? "" : ";") + Difference(before_.disk, left_.disk);
    return result;
}

// It comes up without a word, in the folder that is saved, and shows what there is.
void Ends::StartAgain(std::vector<std::string>* wrongs) {
    if (!subject_.Start(inFiles)) {
        wrongs->push_back("it does not start again: " + subject_.Complaint());
        return;
    }
    for (const Box& box : stage_.CloseEverything()) {
        wrongs->push_back("it starts with a box: " + Joined(box.texts));
    }
    const Left now = LookOutside();
    if (now.disk != left_.disk) {
        wrongs->push_back("starting again changes files:" + Difference(left_.disk, now.disk));
    }
    if (Narrow(subject_.Title()) != ValueAt(left_.settings, "path")) {
        wrongs->push_back("it starts again in " + Narrow(subject_.Title()));
        return;
    }
    LookAtFolder(wrongs);
    int row = 0;
    for (const auto& [name, kind] : EntriesOf(subject_.Title())) {
        if (kind.rfind("folder", 0) == 0) {
            stage_.Select(row++);
            stage_.KeyOnList(VK_RETURN);
            LookAtFolder(wrongs);
            subject_.Command(ID_UP);
        }
    }
    LookAtHidden(wrongs);
}

void Ends::LookAtFolder(std::vector<std::string>* wrongs) {
    const std::wstring folder = subject_.Title();
    const std::string wrong = RowsAgainst(subject_.DrawnBy(subject_.List()), EntriesOf(folder));
    if (!wrong.empty()) {
        wrongs->push_back("the rows of " + Narrow(folder) + " differ from the disk:" + wrong);
    }
}

// What the file says is hidden is so, and the file is in its place.
void Ends::LookAtHidden(std::vector<std::string>* wrongs) {
    const bool takenUp = left_.List() == before_.hidden || left_.List() == after_.hidden;
    const std::string kept = takenUp ? left_.List() : std::string();
    if (HiddenApps().Read() != kept) {
        wrongs->push_back("hiddenapps.xml is not in its place after the start");
    }
    if (before_.hidden == after_.hidden) {
        return;
    }
    subject_.Command(ID_SHOW_APPLICATIONS);
    bool shown = false;
    for (const std::string& text : subject_.DrawnBy(subject_.List())) {
        shown = shown || text.find("! sample") != std::string::npos;
    }
    const bool hidden = kept.find(Narrow(test::SampleProgram::Path())) != std::string::npos;
    if (shown == hidden) {
        wrongs->push_back(hidden ? "what is hidden is shown" : "what is not hidden is not shown");
    }
}

std::string Ends::End() {
    if (!Begin()) {
        return "it does not start";
    }
    subject_.Command(ID_EXIT);
    return subject_.ExitCode() == 0 ? "" : "it does not end well";
}

}  // namespace sweep
