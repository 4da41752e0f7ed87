#include "tests/support/unix_command.h"

#include <iterator>
#include <memory>
#include <vector>

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

namespace {

// A shell that stays for as long as this process: to start one takes this system longer than nearly
// every line that it is given.
class Shell {
 public:
    // Null where it cannot be started.
    static std::unique_ptr<Shell> Start();

    ~Shell();
    Shell(const Shell&) = delete;
    Shell& operator=(const Shell&) = delete;

    std::optional<std::string> Run(const std::string& line);

 private:
    Shell() = default;

    bool Write(const std::string& text) const;
    // Nothing until the shell is through with the line of this end.
    std::optional<std::string> AnswerTo(const std::string& end) const;

    std::string path_;
    std::wstring answers_;
    HANDLE lines_ = INVALID_HANDLE_VALUE;
    int count_ = 0;
};

// It reads what this process writes until this process ends, in whichever way. The process's handle
// is signalled at once, and there is nothing to write to until the shell reads.
std::unique_ptr<Shell> Shell::Start() {
    std::unique_ptr<Shell> shell(new Shell);
    shell->answers_ = UnixFileName();
    shell->path_ = UnixPath(shell->answers_);
    const std::string lines = shell->path_ + ".lines";
    std::wstring command =
        Widen("\\\\?\\unix\\bin\\sh -c " +
              Quoted("rm -f " + lines + "; mkfifo " + lines + " && exec sh <" + lines));
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process = {};
    if (!CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                        &startup, &process)) {
        return nullptr;
    }
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    const std::wstring name = shell->answers_ + L".lines";
    const bool reads = WaitFor([&] {
        shell->lines_ = CreateFileW(name.c_str(), GENERIC_WRITE,
                                    FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                    OPEN_EXISTING, 0, nullptr);
        return shell->lines_ != INVALID_HANDLE_VALUE;
    });
    // Nobody else needs its names; who ends without a word leaves nothing.
    if (!reads || !shell->Write("rm " + lines + "; trap 'rm -f " + shell->path_ + "' EXIT\n")) {
        return nullptr;
    }
    return shell;
}

Shell::~Shell() {
    if (lines_ != INVALID_HANDLE_VALUE) {
        CloseHandle(lines_);
    }
}

bool Shell::Write(const std::string& text) const {
    DWORD written = 0;
    return WriteFile(lines_, text.data(), static_cast<DWORD>(text.size()), &written, nullptr) &&
           written == text.size();
}

std::optional<std::string> Shell::AnswerTo(const std::string& end) const {
    std::string text = ReadUnixFile(answers_);
    if (!text.ends_with(end)) {
        return std::nullopt;
    }
    text.resize(text.size() - end.size());
    while (!text.empty() && text.back() == '\n') {
        text.pop_back();
    }
    return text;
}

std::optional<std::string> Shell::Run(const std::string& line) {
    const std::string end = "end of line " + std::to_string(++count_);
    if (!Write("cd /; { { " + line + "; } </dev/null; echo '" + end + "'; } >" + path_ + '\n')) {
        return std::nullopt;
    }
    constexpr DWORD longestCommand = 30000;
    std::optional<std::string> answer;
    WaitFor(
        [&] {
            answer = AnswerTo(end);
            return answer.has_value();
        },
        longestCommand);
    return answer;
}

// Those that have no line to run. Several threads of a process may run one at a time.
class IdleShells {
 public:
    std::unique_ptr<Shell> Take() {
        AcquireSRWLockExclusive(&lock_);
        std::unique_ptr<Shell> shell;
        if (!shells_.empty()) {
            shell = std::move(shells_.back());
            shells_.pop_back();
        }
        ReleaseSRWLockExclusive(&lock_);
        return shell ? std::move(shell) : Shell::Start();
    }

    void GiveBack(std::unique_ptr<Shell> shell) {
        AcquireSRWLockExclusive(&lock_);
        shells_.push_back(std::move(shell));
        ReleaseSRWLockExclusive(&lock_);
    }

 private:
    SRWLOCK lock_ = SRWLOCK_INIT;
    std::vector<std::unique_ptr<Shell>> shells_;
};

IdleShells idleShells;

}  // namespace

std::optional<std::string> RunUnixCommand(const std::string& line) {
    std::unique_ptr<Shell> shell = idleShells.Take();
    if (!shell) {
        return std::nullopt;
    }
    std::optional<std::string> answer = shell->Run(line);
    // One that has not come to an end gets no other line.
    if (answer) {
        idleShells.GiveBack(std::move(shell));
    }
    return answer;
}

}  // namespace test
