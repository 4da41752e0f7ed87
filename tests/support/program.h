// The program itself, started as a person would start it and watched from outside.
#pragma once

#include <string>

#include "platform/handles.h"
#include "platform/windows.h"

namespace test {

class Program {
 public:
    // Starts the installed program with the given arguments. Ends it when the object goes.
    explicit Program(const std::wstring& arguments = L"");
    ~Program();
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    bool Started() const { return static_cast<bool>(process_); }
    DWORD ProcessId() const { return processId_; }
    HANDLE Process() const { return process_.Get(); }
    // The visible main window; null until there is one.
    HWND MainWindow() const;
    bool WaitForMainWindow() const;
    // The exit code; 0xFFFFFFFF when the program did not end in time.
    DWORD WaitForExit() const;
    // Closes the main window and waits.
    DWORD Close() const;

 private:
    platform::UniqueHandle process_;
    DWORD processId_ = 0;
};

}  // namespace test
