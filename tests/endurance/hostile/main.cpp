// Gives the program's readers of outside input what they should not be given.
//
//   hostile parts                                    names the kinds of input
//   hostile run PART FIRST COUNT SECONDS FOLDER      so many inputs of a kind, from a seed on
//   hostile try PART FILE                            one input that was kept
//   hostile sample FIRST COUNT FOLDER                so many of each kind
//
// A run tells of each input that came out wrong, and keeps the smallest of its kind that does so in
// FOLDER; its last line is "# PART NEXT TRIED ACCEPTED WRONG", in which NEXT is the seed to go on
// with. Ends with 1 when something was wrong. Every input is tried in a process that a fault may
// end.
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <iterator>
#include <set>

#include "tests/endurance/hostile/parts.h"

namespace hostile {

const std::vector<Part>& Parts() {
    static const std::vector<Part> parts = {
        packs, versions, menus, inserts,   pictures,  fileLists, paths,   commands,      targets,
        names, numbers,  texts, languages, processes, modules,   regions, storageFolders};
    return parts;
}

namespace {

// Seconds of the processor's time that one input may take.
constexpr int longest = 2;
// How often a smaller input is tried for.
constexpr unsigned mostAttempts = 400;
constexpr int wrongCode = 3;
constexpr char endless[] = "it does not come to an end";

// What the process that tries the inputs tells the one that waits for it.
struct Told {
    unsigned seed;
    unsigned tried;
    unsigned accepted;
    char wrong[200];
};
Told* told = nullptr;

void LimitTime() {
    const itimerval limit = {{0, 0}, {longest, 0}};
    setitimer(ITIMER_PROF, &limit, nullptr);
}

// Ends the process when something is wrong.
void TryInput(const Part& part, const Bytes& input, bool whole) {
    LimitTime();
    bool accepted = false;
    const std::string wrong = part.judge(input, whole, &accepted);
    told->accepted += accepted;
    if (!wrong.empty()) {
        std::snprintf(told->wrong, sizeof told->wrong, "%s", wrong.c_str());
        _exit(wrongCode);
    }
}

Bytes InputOf(const Part& part, unsigned seed, bool* whole) {
    Chance chance;
    chance.Seed(seed);
    return part.make(chance, whole);
}

void ReplaceErrorOutput(const std::string& path) {
    const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    dup2(file, STDERR_FILENO);
    close(file);
}

// True when `work` came to its end in a process of its own.
template <typename Work>
bool Survives(const std::string& errors, Work work) {
    told->wrong[0] = 0;
    std::fflush(stdout);
    const pid_t child = fork();
    if (child == 0) {
        ReplaceErrorOutput(errors);
        work();
        _exit(0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    const bool ended = WIFEXITED(status);
    if (ended && WEXITSTATUS(status) == 0) {
        return true;
    }
    if (!told->wrong[0]) {
        std::snprintf(told->wrong, sizeof told->wrong, "%s",
                      !ended && WTERMSIG(status) == SIGPROF ? endless
                      : ended                               ? "a fault"
                                                            : "it was ended by a signal");
    }
    return false;
}

// Leaves out what can be left out while the same goes wrong.
Bytes Smallest(const Part& part, Bytes input, bool whole) {
    const std::string wrong = told->wrong;
    const auto fails = [&](const Bytes& smaller) {
        return !Survives("/dev/null", [&] { TryInput(part, smaller, whole); }) &&
               wrong == told->wrong;
    };
    // What takes long takes as long to make smaller.
    unsigned attempts = wrong == endless ? mostAttempts : 0;
    for (size_t length = input.size() / 2; length > 0; length /= 2) {
        for (size_t at = 0; at + length <= input.size() && attempts++ < mostAttempts;) {
            Bytes smaller = input;
            const auto place = smaller.begin() + static_cast<std::ptrdiff_t>(at);
            smaller.erase(place, place + static_cast<std::ptrdiff_t>(length));
            if (fails(smaller)) {
                input = smaller;
            } else {
                at += length;
            }
        }
    }
    std::snprintf(told->wrong, sizeof told->wrong, "%s", wrong.c_str());
    return input;
}

std::string FileName(const Part& part, unsigned seed, const std::string& folder) {
    return folder + "/" + part.name + "-" + std::to_string(seed);
}

void KeepAndTell(const Part& part, unsigned seed, const std::string& folder) {
    static std::set<std::string> seen;
    bool whole = false;
    const Bytes input = InputOf(part, seed, &whole);
    // Of what goes wrong alike one is enough.
    const bool first = seen.insert(told->wrong).second;
    const Bytes smallest = first ? Smallest(part, input, whole) : input;
    const std::string file = FileName(part, seed, folder);
    std::ofstream(file + ".input", std::ios::binary)
        .write(reinterpret_cast<const char*>(smallest.data()),
               static_cast<std::streamsize>(smallest.size()));
    // What is told of the one that was kept.
    const std::string wrong = told->wrong;
    Survives(file + ".txt", [&] { TryInput(part, smallest, whole); });
    std::printf("WRONG\t%s\t%u\t%s\t%s.input\n", part.name, seed, wrong.c_str(), file.c_str());
}

// The seeds from `first` on; false when something was wrong.
bool Run(const Part& part, unsigned first, unsigned count, unsigned seconds,
         const std::string& folder) {
    constexpr unsigned mostWrong = 10;
    const std::time_t end = std::time(nullptr) + static_cast<std::time_t>(seconds);
    *told = {};
    told->seed = first;
    unsigned wrong = 0;
    while (told->seed - first < count && std::time(nullptr) < end && wrong < mostWrong) {
        const bool survived = Survives(FileName(part, first, folder) + ".errors", [&] {
            for (; told->seed - first < count; ++told->seed) {
                if (told->seed % 256 == 0 && std::time(nullptr) >= end) {
                    break;
                }
                bool whole = false;
                const Bytes input = InputOf(part, told->seed, &whole);
                ++told->tried;
                TryInput(part, input, whole);
            }
        });
        unlink((FileName(part, first, folder) + ".errors").c_str());
        if (survived) {
            break;
        }
        ++wrong;
        const Told before = *told;
        KeepAndTell(part, before.seed, folder);
        *told = before;
        ++told->seed;
    }
    std::printf("#\t%s\t%u\t%u\t%u\t%u\n", part.name, told->seed, told->tried, told->accepted,
                wrong);
    return wrong == 0;
}

const Part* FindPart(const std::string& name) {
    for (const Part& part : Parts()) {
        if (name == part.name) {
            return &part;
        }
    }
    return nullptr;
}

int Try(const Part& part, const char* file) {
    std::ifstream stream(file, std::ios::binary);
    const Bytes input((std::istreambuf_iterator<char>(stream)), std::istreambuf_iterator<char>());
    told->accepted = 0;
    const bool survived = Survives("/dev/stdout", [&] { TryInput(part, input, false); });
    std::printf("%s\n", !survived ? told->wrong : told->accepted ? "accepted" : "refused");
    return survived ? 0 : 1;
}

unsigned Number(const char* word) {
    return static_cast<unsigned>(std::strtoul(word, nullptr, 10));
}

int Main(int count, char** words) {
    told = static_cast<Told*>(
        mmap(nullptr, sizeof(Told), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0));
    const std::string what = count > 1 ? words[1] : "";
    const Part* const part = count > 2 ? FindPart(words[2]) : nullptr;
    if (what == "parts") {
        for (const Part& each : Parts()) {
            std::printf("%s\n", each.name);
        }
        return 0;
    }
    if (what == "run" && part && count == 7) {
        return Run(*part, Number(words[3]), Number(words[4]), Number(words[5]), words[6]) ? 0 : 1;
    }
    if (what == "try" && part && count == 4) {
        return Try(*part, words[3]);
    }
    if (what == "sample" && count == 5) {
        bool good = true;
        for (const Part& each : Parts()) {
            good = Run(each, Number(words[2]), Number(words[3]), 600, words[4]) && good;
        }
        return good ? 0 : 1;
    }
    std::printf("hostile: see main.cpp for what it is told\n");
    return 2;
}

}  // namespace

}  // namespace hostile

int main(int count, char** words) {
    return hostile::Main(count, words);
}
