// What the program's work costs in instructions and in calls of the system. They are the same in
// every run that does the same, on any machine.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace emulator {

class Counts {
 public:
    // Whether every piece of work is told as soon as it is done.
    bool tellsSteps = false;

    // The program waits for something to happen: a piece of work is done.
    void Idle();
    // The first message that a piece of work took.
    void Took(unsigned message);
    // The program calls the system, through the trap of this number.
    void Called(unsigned trap, const std::string& name);
    // A window has been painted.
    void Painted();
    // Tells of the whole run; limit names so many functions with the most instructions.
    void PrintFunctions(unsigned limit) const;

 private:
    struct Function {
        std::string name;
        unsigned calls = 0;
    };

    // The calls of the piece of work that ends here, how many and the most frequent of them.
    std::string Calls();

    std::uint64_t stepStart_ = 0;
    // One for each trap.
    std::vector<Function> functions_;
    unsigned message_ = 0;
    bool painted_ = false;
};

}  // namespace emulator
