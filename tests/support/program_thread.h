// Looking at the program's objects from the user's thread.
#pragma once

#include <functional>

#include "platform/windows.h"

namespace test {

// Runs functions on the thread that made it, the program's, between two of its messages: what they
// look at is whole.
class ProgramThread {
 public:
    ProgramThread();
    ~ProgramThread();
    ProgramThread(const ProgramThread&) = delete;
    ProgramThread& operator=(const ProgramThread&) = delete;

    // Waits until the function has run. Any thread.
    void Call(const std::function<void()>& function) const;

 private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

    HWND window_;
};

}  // namespace test
