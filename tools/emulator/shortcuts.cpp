#include "shortcuts.h"

#include <algorithm>

namespace emulator {

namespace {

constexpr DWORD longestFile = 4096;

}  // namespace

std::optional<Text> ReadShortcut(const Text& path) {
    const Text ending = u".lnk";
    if (path.size() < ending.size() ||
        lstrcmpiW(path.c_str() + path.size() - ending.size(), ending.c_str()) != 0) {
        return std::nullopt;
    }
    const HANDLE file = CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                    OPEN_EXISTING, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        return std::nullopt;
    }
    std::string bytes(longestFile, '\0');
    DWORD read = 0;
    ReadFile(file, bytes.data(), longestFile, &read, nullptr);
    CloseHandle(file);
    bytes.resize(read);
    const size_t sign = bytes.find('#');
    const bool number = sign != std::string::npos && sign > 0 &&
                        std::all_of(bytes.begin(), bytes.begin() + static_cast<long>(sign),
                                    [](char c) { return c >= '0' && c <= '9'; });
    if (!number) {
        SetLastError(ERROR_BAD_FORMAT);
        return std::nullopt;
    }
    const auto length = static_cast<size_t>(std::stoul(bytes.substr(0, sign)));
    return Widen(bytes.substr(sign + 1, length));
}

bool WriteShortcut(const Text& path, const Text& command) {
    const std::string narrow = Narrow(command.c_str());
    const std::string bytes = std::to_string(narrow.size()) + "#" + narrow;
    const HANDLE file =
        CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        return false;
    }
    DWORD written = 0;
    const BOOL result =
        WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
    CloseHandle(file);
    return result != FALSE;
}

CommandParts TakeApart(const Text& command) {
    const size_t start = std::min(command.find_first_not_of(u' '), command.size());
    const bool quoted = start < command.size() && command[start] == u'"';
    const size_t from = quoted ? start + 1 : start;
    const size_t end = std::min(command.find(quoted ? u'"' : u' ', from), command.size());
    const size_t rest = command.find_first_not_of(u' ', std::min(end + 1, command.size()));
    return {command.substr(from, end - from), rest == Text::npos ? Text() : command.substr(rest)};
}

}  // namespace emulator
