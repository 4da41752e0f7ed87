#include "reach.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <set>

namespace emulator {

void Reached(const char* kind, const std::string& what) {
    static const char* const path = std::getenv("VANTOR_HANDHELD_REACH");
    static std::set<std::string> once;
    if (!path) {
        return;
    }
    const std::string kindOfLine = kind;
    std::string line = kindOfLine + ' ' + what;
    std::replace(line.begin(), line.end(), '\n', ' ');
    line += '\n';
    if (kindOfLine != "menu" && kindOfLine != "command" && !once.insert(line).second) {
        return;
    }
    if (std::FILE* file = std::fopen(path, "a")) {
        std::fputs(line.c_str(), file);
        std::fclose(file);
    }
}

}  // namespace emulator
