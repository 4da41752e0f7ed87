// An action in whose middle the program is ended, and what it leaves on the disk.
#pragma once

#include "tests/endurance/sweep/trial.h"

namespace sweep {

// The actions that change something that outlives the program.
const std::vector<const char*>& ActionsToEnd();

// What outlives the program.
struct Left {
    Disk disk;
    Settings settings;
    // The file of the hidden applications, and the ones beside it; empty where there is none.
    std::string hidden;
    std::string nextHidden;
    std::string oldHidden;
    // The list that the next start finds.
    const std::string& List() const { return hidden.empty() ? nextHidden : hidden; }
    bool operator==(const Left&) const = default;
};

// Every end happens in a program of its own, with the world of every action. Another one is then
// started on what is left.
class Ends final : public Ordeal {
 public:
    Ends() : stage_(subject_) {}
    ~Ends() override;

    std::optional<unsigned> Prepare(const std::string& action, unsigned kinds) override;
    Result Try(const Plan& plan) override;
    std::string End() override;

 private:
    // What is left is looked at when the program has ended, or has come to rest.
    bool Perform(const Plan& plan);
    bool Begin();
    void Clean();
    void StartAgain(std::vector<std::string>* wrongs);
    void LookAtFolder(std::vector<std::string>* wrongs);
    void LookAtHidden(std::vector<std::string>* wrongs);

    Subject subject_;
    Stage stage_;
    const Action* action_ = nullptr;
    Left before_;
    Left after_;
    // Of the end that is being tried.
    Left left_;
};

}  // namespace sweep
