// What the program has got from the system and not given back, with who asked for it.
#pragma once

#include <map>
#include <string>
#include <tuple>
#include <vector>

#include "call.h"

namespace emulator {

class Holdings {
 public:
    // A call is about to be served, and has been.
    void BeforeCall(const Call& call);
    void AfterCall(const Call& call, std::uint64_t result);

    // How many things are held; what the system has taken back by itself is not.
    size_t Count();
    // From here on what is got is new.
    void Mark() { marked_ = next_; }
    // A line for each new thing that is still held.
    std::vector<std::string> New();

 private:
    enum class Kind {
        Drawing,
        MemoryDC,
        WindowDC,
        Paint,
        Menu,
        Kernel,
        Search,
        Snapshot,
        Library,
        Clipboard,
        Key,
        Class,
        Timer,
        Window,
    };
    // A timer has a number besides its window.
    using Name = std::tuple<Kind, Address, Address>;
    struct Thing {
        std::string call;
        std::vector<Address> callers;
        unsigned long number;
    };
    struct Getter;
    struct Giver;

    void DropWhatHasGone();

    std::map<Name, Thing> things_;
    unsigned long next_ = 0;
    unsigned long marked_ = 0;
};

}  // namespace emulator
