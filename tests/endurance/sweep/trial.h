// One action with one failure, and what is to be said of it.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tests/endurance/sweep/actions.h"
#include "tests/endurance/sweep/world.h"

namespace sweep {

enum class Verdict {
    // Nothing can be seen of the failure.
    Same,
    // A box has told it.
    Told,
    // Something is missing or was not done, harmlessly and without a word.
    Less,
    Wrong,
    // The program has ended with a box that says so,
    Ended,
    // or without one.
    Aborted,
    // The program was ended on purpose: everything is as before the action, or as after it;
    Before,
    After,
    // some of it is as before and the rest as after, or has a copy at both places;
    Between,
    // something is neither, but lies beside under a name of its own.
    Aside,
};
const char* NameOf(Verdict verdict);

struct Result {
    Verdict verdict = Verdict::Same;
    // What is wrong, or what is less.
    std::string what;
    std::string call;
    std::string at;
    // Calls that were counted, and failures among them: none when the action has fewer calls.
    unsigned counted = 0;
    unsigned failures = 0;
};

// What is seen during and after an action.
struct Observation {
    bool ended = false;
    // The box with which it ended, and how.
    std::string lastBox;
    DWORD exitCode = 0;
    std::string complaint;
    // What is wrong by itself, without any comparison.
    std::vector<std::string> wrongs;
    // The rows as long as nothing is read anew, if they differ from the disk. Where failures go on
    // after one has been told, there is nothing to be had that the rows could be read into.
    std::string oldRows;
    std::vector<Box> boxes;
    std::vector<Box> questions;
    unsigned beeps = 0;
    std::vector<std::string> notes;
    Disk before;
    Disk disk;
    Settings settings;
    std::vector<std::string> bar;
    std::vector<std::string> barLater;
    std::vector<std::string> rowsLater;
    // Before and after, each time with the same files and the same view.
    Holding heldBefore;
    Holding held;
    std::string kept;
};

// What an action can be put through, a call at a time.
class Ordeal {
 public:
    Ordeal() = default;
    virtual ~Ordeal() = default;
    Ordeal(const Ordeal&) = delete;
    Ordeal& operator=(const Ordeal&) = delete;

    // Does the action without failures and gives the number of its calls; none when it does not go
    // well even so.
    virtual std::optional<unsigned> Prepare(const std::string& action, unsigned kinds) = 0;
    virtual Result Try(const Plan& plan) = 0;
    // Ends the program as a person does; what is wrong with that.
    virtual std::string End() = 0;
    // What is wrong already without failures.
    const std::string& Trouble() const { return trouble_; }

 protected:
    std::string trouble_;
};

class Trials final : public Ordeal {
 public:
    Trials() : stage_(subject_) {}
    ~Trials() override;

    // Done again until what the program keeps for ever is there.
    std::optional<unsigned> Prepare(const std::string& action, unsigned kinds) override;
    Result Try(const Plan& plan) override;
    std::string End() override;

 private:
    bool Fresh();
    void ShowEverything();
    bool Reset();
    Observation Perform(const Plan& plan);
    Observation PerformAction(const Plan& plan);
    Observation PerformStart(const Plan& plan);
    Observation PerformExit(const Plan& plan);
    void Arm(const Plan& plan);
    void LookAtEnd(Observation* seen);
    void LookAround(Observation* seen);
    void LookAtFiles(Observation* seen);
    void LookAtBase(Observation* seen);
    Result Judge(const Observation& seen, const Plan& plan) const;

    Subject subject_;
    Stage stage_;
    std::string name_;
    const Action* action_ = nullptr;
    Observation clean_;
};

}  // namespace sweep
