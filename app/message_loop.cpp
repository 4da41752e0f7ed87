#include "app/message_loop.h"

#include "ui/window/held_fault.h"

namespace app {

namespace {

// The system's own timer message; like paints and moves it says nothing new to idle handlers.
constexpr UINT systemTimerMessage = 0x0118;

bool LeavesIdleState(UINT message) {
    return message == WM_PAINT || message == WM_MOUSEMOVE || message == systemTimerMessage;
}

}  // namespace

bool MessageLoop::CallIdleHandlers(int count) {
    bool more = false;
    for (const IdleHandler& handler : idleHandlers_) {
        more = handler(count) || more;
    }
    return more;
}

bool MessageLoop::Filtered() {
    for (const Filter& filter : filters_) {
        if (filter(message_)) {
            return true;
        }
    }
    return false;
}

int MessageLoop::Run() {
    bool idle = true;
    int count = 0;
    for (;;) {
        while (idle && !PeekMessageW(&message_, nullptr, 0, 0, PM_NOREMOVE)) {
            idle = CallIdleHandlers(count++);
        }
        const BOOL received = GetMessageW(&message_, nullptr, 0, 0);
        if (received == -1) {
            continue;
        }
        if (received == 0) {
            return static_cast<int>(message_.wParam);
        }
        if (!Filtered()) {
            TranslateMessage(&message_);
            ui::Dispatch(message_);
        }
        if (!LeavesIdleState(message_.message)) {
            idle = true;
            count = 0;
        }
    }
}

}  // namespace app
