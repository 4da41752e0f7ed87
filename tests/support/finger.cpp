#include "tests/support/finger.h"

#include "tests/support/wait.h"

namespace test {

namespace {

std::wstring Widen(const std::string& text) {
    return std::wstring(text.begin(), text.end());
}

}  // namespace

Finger& Finger::Down(POINT point) {
    MoveTo(point);
    commands_ += " sleep 0.02 mousedown 1";
    return *this;
}

Finger& Finger::MoveTo(POINT point) {
    commands_ += " mousemove " + std::to_string(point.x) + ' ' + std::to_string(point.y);
    return *this;
}

Finger& Finger::Up() {
    commands_ += " mouseup 1";
    return *this;
}

Finger& Finger::QuickTap(POINT point) {
    MoveTo(point);
    commands_ += " mousedown 1 mouseup 1";
    return *this;
}

Finger& Finger::Wait(DWORD milliseconds) {
    const std::string fraction = std::to_string(1000 + milliseconds % 1000).substr(1);
    commands_ += " sleep " + std::to_string(milliseconds / 1000) + '.' + fraction;
    return *this;
}

Finger& Finger::RightClick(POINT point) {
    MoveTo(point);
    commands_ += " sleep 0.02 mousedown 3 sleep 0.06 mouseup 3";
    return *this;
}

Finger& Finger::DragTo(POINT from, POINT to, int steps) {
    for (int step = 1; step <= steps; ++step) {
        MoveTo(POINT{from.x + (to.x - from.x) * step / steps,
                     from.y + (to.y - from.y) * step / steps});
        Wait(15);
    }
    return *this;
}

Finger& Finger::Key(const std::string& name) {
    commands_ += " key " + name;
    return *this;
}

Finger& Finger::KeyDown(const std::string& name) {
    commands_ += " keydown " + name;
    return *this;
}

Finger& Finger::KeyUp(const std::string& name) {
    commands_ += " keyup " + name;
    return *this;
}

// The player is a program of the system underneath, whose process handle is signalled at once; a
// file says when it is through.
bool Finger::Play() {
    static volatile LONG count = 0;
    // Devices that run side by side may number their processes alike, but no two share a screen.
    char display[32] = {};
    GetEnvironmentVariableA("DISPLAY", display, sizeof display);
    const std::string marker = std::string("/tmp/vantor-finger") + display + '-' +
                               std::to_string(GetCurrentProcessId()) + '-' +
                               std::to_string(InterlockedIncrement(&count));
    const std::wstring seen = L"\\\\?\\unix" + Widen(marker);
    std::wstring markerPath = seen;
    for (wchar_t& character : markerPath) {
        if (character == L'/') {
            character = L'\\';
        }
    }
    DeleteFileW(markerPath.c_str());
    std::wstring command =
        Widen("\\\\?\\unix\\bin\\sh -c \"xdotool" + commands_ + "; echo > " + marker + "\"");
    commands_.clear();
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process = {};
    if (!CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                        &startup, &process)) {
        return false;
    }
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    const bool played = WaitFor(
        [&] { return GetFileAttributesW(markerPath.c_str()) != INVALID_FILE_ATTRIBUTES; }, 30000);
    DeleteFileW(markerPath.c_str());
    return played;
}

}  // namespace test
