// Applications that run beside the program under test, as processes of their own.
#pragma once

#include <string>

#include "platform/handles.h"
#include "tests/support/crash_file.h"

namespace test {

class SampleProgram {
 public:
    // Starts tests/sample_program with its manners ("polite"), a title and a file that it keeps
    // open, if any, and waits for its window. The process is ended with the object; a test fails
    // when it has crashed.
    SampleProgram(const std::wstring& manners, const std::wstring& title,
                  const std::wstring& heldFile = L"");
    ~SampleProgram();
    SampleProgram(const SampleProgram&) = delete;
    SampleProgram& operator=(const SampleProgram&) = delete;

    // The program's file as a handheld writes its path.
    static std::wstring Path();

    // Its main window.
    HWND Window() const { return window_; }
    // Its window with this title; null when there is none.
    HWND WindowCalled(const wchar_t* title) const;
    DWORD ProcessId() const { return processId_; }
    HANDLE Process() const { return process_.Get(); }
    bool Runs() const { return WaitForSingleObject(process_.Get(), 0) == WAIT_TIMEOUT; }

 private:
    CrashFile crashes_;
    platform::UniqueHandle process_;
    DWORD processId_ = 0;
    HWND window_ = nullptr;
};

}  // namespace test
