// Rounds of a script each, what is wrong after one, and the shortest script that still does it.
#pragma once

#include <string>

#include "tests/endurance/monkey/hand.h"

namespace monkey {

// Empty when nothing is wrong.
struct Wrong {
    // The kind, by which a shorter script is known to do the same: "crashed", "hangs", "lingers",
    // "lost", "harmed", or "more" with the counter's name.
    std::string kind;
    std::string what;
    explicit operator bool() const { return !kind.empty(); }
};

class Play {
 public:
    explicit Play(const std::wstring& tools) : program_(tools), hand_(program_, device_) {}

    // One round more with the program as it is, or with a new one. `played` gets what the program
    // has been given since it started, this round's last.
    Wrong Round(const Script& script);
    // The same with a new program and a new folder.
    Wrong Replay(const Script& script, const std::string& wanted);
    // Leaves out what does not matter, for so many seconds at most.
    Script Shrunk(const Script& script, const std::string& kind, unsigned seconds);
    Wrong End();

    // Since the program was started.
    const Script& Played() const { return played_; }
    size_t Events() const { return events_; }
    unsigned Starts() const { return starts_; }
    unsigned OwnEnds() const { return ownEnds_; }

 private:
    Wrong Fresh();
    // The program has ended as it should: it is started again.
    Wrong Again();
    Wrong Trouble(State state);
    Wrong PlayRound(const Script& script);
    // Comes home after each round of the script.
    Wrong PlayAndComeHome(const Script& script);
    // As a person would: closes what is open, and goes back to the folder.
    Wrong ComeHome();
    bool CloseWhatIsOpen();
    bool GoHome();
    // Whether a counter rises with each time that a script is played.
    Wrong LooksForMore(const Script& script);

    Device device_;
    Program program_;
    Hand hand_;
    Script played_;
    // The folders that it went through on its last way home.
    std::wstring way_;
    Counts highest_ = {};
    // Rounds since the program was started.
    unsigned warm_ = 0;
    size_t events_ = 0;
    unsigned starts_ = 0;
    unsigned ownEnds_ = 0;
    unsigned rounds_ = 0;
};

}  // namespace monkey
