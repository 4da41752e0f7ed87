// What a run of the program reaches: which menus it loads, which commands it sends, which texts it
// reads and shows, which system calls it makes. Written for the tests that show a person's way
// through the program.
#pragma once

#include <string>

namespace emulator {

// Adds the line "kind what" to the file that VANTOR_HANDHELD_REACH names, if it names one. All but
// menus and commands, whose order tells something, are written once in a run.
void Reached(const char* kind, const std::string& what);

}  // namespace emulator
