#include "platform/top_windows.h"

#include <exception>

#include "platform/aygshell.h"

namespace platform {

namespace {

struct Enumeration {
    bool (*visit)(void* context, HWND window);
    void* context;
    // No exception may cross the platform's frames.
    std::exception_ptr fault;
};

BOOL CALLBACK VisitWindow(HWND window, LPARAM parameter) {
    Enumeration& enumeration = *reinterpret_cast<Enumeration*>(parameter);
    try {
        return enumeration.visit(enumeration.context, window);
    } catch (...) {
        enumeration.fault = std::current_exception();
        return FALSE;
    }
}

}  // namespace

bool EnumerateWindows(bool (*visit)(void* context, HWND window), void* context) {
    Enumeration enumeration = {visit, context, nullptr};
    const BOOL complete = EnumWindows(VisitWindow, reinterpret_cast<LPARAM>(&enumeration));
    if (enumeration.fault) {
        std::rethrow_exception(enumeration.fault);
    }
    return complete != FALSE;
}

HWND InnermostOwnedWindow(HWND window) {
    HWND found = window;
    do {
        window = found;
        const HWND menuBar = FindMenuBar(window);
        ForEachWindow([&found, window, menuBar](HWND other) {
            if (other == menuBar || !IsWindowVisible(other) ||
                GetWindow(other, GW_OWNER) != window) {
                return true;
            }
            found = other;
            return false;
        });
    } while (found != window);
    return window;
}

}  // namespace platform
