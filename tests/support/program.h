// The program itself, started as a person would start it and watched from outside.
#pragma once

#include <optional>
#include <string>

#include "platform/handles.h"
#include "platform/windows.h"
#include "tests/support/crash_file.h"

namespace test {

// Whether the installed program is the handheld executable, on its emulator.
bool RunsOnHandheld();

// A platform function that the program is to see fail.
struct FailingCall {
    // As the program imports it; a handheld and a PC may call different functions.
    std::string name;
    // What it returns, and the last error that it leaves.
    DWORD64 result = 0;
    DWORD error = ERROR_ACCESS_DENIED;
    // How often it fails before it works again.
    unsigned times = 0x7FFFFFFF;
    // It fails only when this argument (0 or 1) is at least so large.
    unsigned argument = 0;
    DWORD atLeast = 0;
};

class Program {
 public:
    // Starts the installed program with the given arguments. With the object the program is closed;
    // a test fails when it does not close, when it or one that it has started in its place crashes,
    // and when its exit code is another than the one expected.
    explicit Program(const std::wstring& arguments = L"",
                     const std::optional<FailingCall>& failing = std::nullopt);
    ~Program();
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    bool Started() const { return static_cast<bool>(process_); }
    DWORD ProcessId() const { return processId_; }
    HANDLE Process() const { return process_.Get(); }
    // The visible main window; null until there is one.
    HWND MainWindow() const { return MainWindowOf(processId_); }
    bool WaitForMainWindow() const;
    // The exit code; 0xFFFFFFFF when the program did not end in time.
    DWORD WaitForExit() const;
    // Closes the main window and waits.
    DWORD Close() const;
    // The exit code is to be this one at the end, not 0.
    void ExpectExit(DWORD code) { expectedCode_ = code; }

 private:
    static HWND MainWindowOf(DWORD process);
    // Closes a process of the program, if it runs; empty when it ended as it should.
    std::string End(HANDLE process, DWORD id) const;

    CrashFile crashes_;
    platform::UniqueHandle process_;
    DWORD processId_ = 0;
    DWORD expectedCode_ = 0;
};

}  // namespace test
