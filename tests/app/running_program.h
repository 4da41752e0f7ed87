// The whole program as a function of this process: its entry is called, and it is watched from a
// second thread.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "platform/handles.h"
#include "tests/support/drawn_texts.h"
#include "tests/support/world.h"

namespace test {

// The event by which instances of every version know each other.
inline constexpr wchar_t eventName[] = L"{5D0C1A7E-3B94-4F2A-8E61-0A9B7C3D2E14}";

// Puts back what a run of the program takes down with it.
class RunningProgram : public testing::Test {
 protected:
    RunningProgram();
    ~RunningProgram() override;

    // Calls the entry while `script` acts as the person at the device.
    void Run(const std::function<void()>& script);
    // The same for a run that ends with a message box: reads it and presses its button.
    void RunToMessage(const std::function<void()>& script = [] {});
    // The same for a run that needs no person but is to be closed.
    void RunAndClose();

    // How the program is told to show its window.
    int showCommand = SW_SHOW;

    // The main window; waits for it.
    static HWND MainWindow();
    // Whether the event of the instances has been signalled; takes the signal.
    bool EventIsSignalled() const;

    const CleanSettings settings;
    const DrawnTexts drawn;
    // Held so that its state can be seen afterwards. It is signalled, as by an instance that has
    // just ended.
    platform::UniqueHandle event;
    int result = -1;

    // What the message box looked like.
    std::wstring caption;
    bool hasOwner = true;
    bool hasButton = false;
    bool mainWindowExisted = true;
};

}  // namespace test
