#include "app/run.h"

#include "app/main_frame.h"
#include "faults/fault.h"
#include "platform/handles.h"
#include "platform/main_window.h"
#include "platform/processes.h"
#include "platform/scope_exit.h"
#include "platform/top_windows.h"
#include "res/resource.h"
#include "text/resources.h"
#include "ui/window/held_fault.h"

namespace app {

namespace {

// Waits for the running instance's window and activates it. False when it has just ended.
bool ActivateRunningInstance(HANDLE event) {
    if (WaitForSingleObject(event, INFINITE) != WAIT_OBJECT_0) {
        throw faults::W32Fault(E_UNEXPECTED);
    }
    const HWND window = FindWindowW(mainWindowClass, nullptr);
    if (!window) {
        return false;
    }
    if (!IsWindowVisible(window)) {
        ShowWindow(window, SW_SHOW);
    }
    platform::RestoreWindow(window);
    SetForegroundWindow(platform::InnermostOwnedWindow(window));
    return true;
}

// When a fault passes, the frame's end must not disturb the message box that shows it:
// neither by its quit message nor by a second fault, of saving the settings.
void ForgetTheFramesEnd() {
    MSG quit;
    PeekMessageW(&quit, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE);
    try {
        ui::RethrowHeldException();
    } catch (...) {
    }
}

int RunMainFrame(Module& module, HANDLE event, int showCommand) {
    MessageLoop loop;
    module.AddMessageLoop(&loop);
    const platform::ScopeExit unregister([&module] { module.RemoveMessageLoop(); });
    platform::ScopeExit faultPasses(ForgetTheFramesEnd);
    MainFrame frame;
    if (!frame.Open(showCommand)) {
        throw faults::Fault(text::TextOf(IDS_CANNOT_CREATE_MAIN_WINDOW));
    }
    if (!platform::SignalEvent(event)) {
        throw faults::W32Fault();
    }
    loop.AddFilter([&frame](const MSG& message) { return frame.PreTranslate(message); });
    loop.AddIdleHandler([&frame](int) { return frame.Idle(); });
    ShowWindow(frame.Handle(), showCommand);
    const int result = loop.Run();
    faultPasses.Release();
    return result;
}

}  // namespace

int Run(Module& module, int showCommand) {
    // A handheld may leave the error of an earlier call in place when the event is new.
    SetLastError(ERROR_SUCCESS);
    // Lets instances start one at a time.
    const platform::UniqueHandle event(CreateEventW(nullptr, FALSE, FALSE, instanceEventName));
    const DWORD error = GetLastError();
    // On every way out, so that the next instance in the queue is never left waiting.
    const platform::ScopeExit signal([&event] {
        if (event) {
            platform::SignalEvent(event.Get());
        }
    });
    if (error != ERROR_SUCCESS && error != ERROR_ALREADY_EXISTS) {
        throw faults::W32Fault(faults::ResultFromError(error));
    }
    int result = 0;
    if (error == ERROR_SUCCESS || !ActivateRunningInstance(event.Get())) {
        result = RunMainFrame(module, event.Get(), showCommand);
    }
    module.RunExitHook();
    return result;
}

}  // namespace app
