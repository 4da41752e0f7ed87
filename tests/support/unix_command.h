// Programs of the system underneath, which has the screen and its input.
#pragma once

#include <optional>
#include <string>

namespace test {

// Runs a line of the shell and gives back what it wrote to its output, without the end of its last
// line; nothing when it does not come to its end.
std::optional<std::string> RunUnixCommand(const std::string& line);

// A name for a file of the system underneath, as this system calls it; no other test has it.
std::wstring UnixFileName();
// What stands in such a file, without the end of its last line; nothing when there is none.
std::string ReadUnixFile(const std::wstring& name);

}  // namespace test
