#include "tests/support/unix_command.h"

#include <iterator>

#include "tests/support/wait.h"

namespace test {

namespace {

std::wstring Widen(const std::string& text) {
    return std::wstring(text.begin(), text.end());
}

// A line becomes one argument, in which the system counts quotes.
std::string Quoted(const std::string& text) {
    std::string quoted = "\"";
    for (const char letter : text) {
        if (letter == '"') {
            quoted += '\\';
        }
        quoted += letter;
    }
    return quoted + '"';
}

constexpr wchar_t unixRoot[] = L"\\\\?\\unix";

// As the system underneath writes it.
std::string UnixPath(const std::wstring& name) {
    std::string path;
    for (const wchar_t letter : name.substr(std::size(unixRoot) - 1)) {
        path += letter == L'\\' ? '/' : static_cast<char>(letter);
    }
    return path;
}

}  // namespace

std::wstring UnixFileName() {
    static volatile LONG count = 0;
    // Devices that run side by side may number their processes alike, but no two share a screen.
    wchar_t display[32] = {};
    GetEnvironmentVariableW(L"DISPLAY", display, 32);
    const std::wstring name = unixRoot + std::wstring(L"\\tmp\\vantor-finger") + display + L'-' +
                              std::to_wstring(GetCurrentProcessId()) + L'-' +
                              std::to_wstring(InterlockedIncrement(&count));
    // One that was killed on this screen, with the same number, may have left its own.
    DeleteFileW(name.c_str());
    return name;
}

std::string ReadUnixFile(const std::wstring& name) {
    const HANDLE file = CreateFileW(name.c_str(), GENERIC_READ,
                                    FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                    OPEN_EXISTING, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        return "";
    }
    std::string text;
    char part[4096];
    DWORD size = 0;
    while (ReadFile(file, part, sizeof part, &size, nullptr) && size > 0) {
        text.append(part, size);
    }
    CloseHandle(file);
    while (!text.empty() && text.back() == '\n') {
        text.pop_back();
    }
    return text;
}

// The process's handle is signalled at once; a file says when it is through.
std::optional<std::string> RunUnixCommand(const std::string& line) {
    const std::wstring name = UnixFileName();
    const std::string path = UnixPath(name);
    DeleteFileW(name.c_str());
    std::wstring command =
        Widen("\\\\?\\unix\\bin\\sh -c " +
              Quoted("{ " + line + "; } >" + path + ".new; mv " + path + ".new " + path));
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process = {};
    if (!CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                        &startup, &process)) {
        return std::nullopt;
    }
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    constexpr DWORD longestCommand = 30000;
    if (!WaitFor([&] { return GetFileAttributesW(name.c_str()) != INVALID_FILE_ATTRIBUTES; },
                 longestCommand)) {
        return std::nullopt;
    }
    const std::string text = ReadUnixFile(name);
    DeleteFileW(name.c_str());
    return text;
}

}  // namespace test
