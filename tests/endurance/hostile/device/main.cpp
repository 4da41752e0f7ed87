// Gives the program's readers of outside input what they should not be given, on a device: through
// the files, the registry, the clipboard and the loader of the system itself.
//
//   hostile_input parts                          names the kinds of input
//   hostile_input run PART FIRST COUNT SECONDS   so many inputs of a kind, from a seed on
//
// A run tells of the first input that came out wrong; its last line is "# PART NEXT TRIED ACCEPTED
// WRONG", in which NEXT is the seed to go on with. Ends with 1 when something was wrong, and a
// crash tells its seed.
#include <objbase.h>

#include <cstdio>
#include <cstdlib>

#include "tests/endurance/hostile/device/parts.h"
#include "tests/support/crash.h"
#include "text/resources.h"

namespace hostile {

const std::vector<Part>& Parts() {
    static const std::vector<Part> parts = {hiddenApps,  values,  clipboard, shortcuts, entries,
                                            loadedPacks, formats, versions,  menus,     starts};
    return parts;
}

namespace {

unsigned seed = 0;
const char* partName = "";

void TellSeed(char* text, size_t size) {
    std::snprintf(text, size, "WRONG\t%s\t%u\ta crash\t\n", partName, seed);
}

int Run(const Part& part, unsigned first, unsigned count, unsigned seconds) {
    const DWORD end = GetTickCount() + seconds * 1000;
    partName = part.name;
    unsigned accepted = 0;
    unsigned wrong = 0;
    for (seed = first; seed - first < count && wrong == 0; ++seed) {
        if (static_cast<int>(GetTickCount() - end) >= 0) {
            break;
        }
        Chance chance;
        chance.Seed(seed);
        bool whole = false;
        const Bytes input = part.make(chance, &whole);
        bool taken = false;
        const std::string found = part.judge(input, whole, &taken);
        accepted += taken;
        if (!found.empty()) {
            std::printf("WRONG\t%s\t%u\t%s\t\n", part.name, seed, found.c_str());
            ++wrong;
        }
    }
    std::printf("#\t%s\t%u\t%u\t%u\t%u\n", part.name, seed, seed - first, accepted, wrong);
    return wrong == 0 ? 0 : 1;
}

unsigned Number(const char* word) {
    return static_cast<unsigned>(std::strtoul(word, nullptr, 10));
}

}  // namespace

int Main(int count, char** words) {
    const std::string what = count > 1 ? words[1] : "";
    if (what == "parts") {
        for (const Part& part : Parts()) {
            std::printf("%s\n", part.name);
        }
        return 0;
    }
    for (const Part& part : Parts()) {
        if (what == "run" && count == 6 && std::string(words[2]) == part.name) {
            test::EndWhenCrashed(TellSeed);
            CoInitializeEx(nullptr, COINIT_MULTITHREADED);
            text::SetProgramModule(GetModuleHandleW(nullptr));
            return Run(part, Number(words[3]), Number(words[4]), Number(words[5]));
        }
    }
    std::printf("hostile_input: see main.cpp for what it is told\n");
    return 2;
}

}  // namespace hostile

int main(int count, char** words) {
    return hostile::Main(count, words);
}
