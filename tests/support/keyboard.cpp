#include "tests/support/keyboard.h"

#include <cstdio>

#include "tests/support/unix_command.h"
#include "tests/support/windows_seen.h"

namespace test {

namespace {

GUITHREADINFO ThreadOf(HWND window) {
    GUITHREADINFO information = {};
    information.cbSize = sizeof information;
    GetGUIThreadInfo(GetWindowThreadProcessId(window, nullptr), &information);
    return information;
}

std::string Narrow(const std::wstring& text) {
    char narrow[1024] = {};
    WideCharToMultiByte(CP_UTF8, 0, text.c_str(), -1, narrow, sizeof narrow - 1, nullptr, nullptr);
    return narrow;
}

std::string Describe(HWND window) {
    if (!window) {
        return "none";
    }
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    const RECT place = ScreenRectangleOf(window);
    // Asks nobody: a window that hangs is of interest here.
    wchar_t caption[256] = {};
    InternalGetWindowText(window, caption, 256);
    char text[512];
    std::snprintf(text, sizeof text, "%p %s \"%s\" process %lx at %ld,%ld-%ld,%ld%s%s screen's %u",
                  static_cast<void*>(window), Narrow(ClassOf(window)).c_str(),
                  Narrow(caption).c_str(), process, place.left, place.top, place.right,
                  place.bottom, IsWindowVisible(window) ? "" : " hidden",
                  IsWindowEnabled(window) ? "" : " disabled", ScreenWindowOf(window));
    return text;
}

BOOL CALLBACK AddWindow(HWND window, LPARAM parameter) {
    // What the system keeps to itself is never seen.
    if (IsWindowVisible(window) || !ClassOf(window).starts_with(L"MSCTF")) {
        *reinterpret_cast<std::string*>(parameter) += "  " + Describe(window) + '\n';
    }
    return TRUE;
}

}  // namespace

unsigned ScreenWindowOf(HWND window) {
    return static_cast<unsigned>(
        reinterpret_cast<ULONG_PTR>(GetPropW(window, L"__wine_x11_whole_window")));
}

KeyboardState LookAtKeyboard() {
    KeyboardState state;
    state.front = GetForegroundWindow();
    if (!state.front || state.front == GetDesktopWindow()) {
        return KeyboardState{};
    }
    const GUITHREADINFO thread = ThreadOf(state.front);
    const HWND focus = thread.hwndFocus;
    state.captured = thread.hwndCapture != nullptr;
    if (focus == state.front || IsChild(state.front, focus)) {
        state.focus = focus;
    }
    state.screenWindow = ScreenWindowOf(state.front);
    return state;
}

std::string DescribeScreen(HWND expected) {
    std::string text;
    if (expected) {
        text +=
            "meant: " + (IsWindow(expected) ? Describe(expected) : "a window that is gone") + '\n';
    }
    const HWND front = GetForegroundWindow();
    text += "in front: " + Describe(front) + '\n';
    if (front) {
        const GUITHREADINFO thread = ThreadOf(front);
        text += "focus: " + Describe(thread.hwndFocus) +
                "\ncapture: " + Describe(thread.hwndCapture) + '\n';
    }
    text += "the screen's keyboard: " +
            RunUnixCommand("xdotool getwindowfocus -f").value_or("unknown") + "\nwindows:\n";
    EnumWindows(AddWindow, reinterpret_cast<LPARAM>(&text));
    return text;
}

}  // namespace test
