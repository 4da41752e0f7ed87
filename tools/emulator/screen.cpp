#include "screen.h"

#include <utility>

#include "machine.h"
#include "shell_strip.h"

namespace emulator {

namespace {

// What a handheld says when its screen has turned (winuser.h).
constexpr WPARAM settingReset = 0x3002;

bool isTurned = false;

BOOL CALLBACK TellWindow(HWND window, LPARAM) {
    SendMessageW(window, WM_SETTINGCHANGE, settingReset, 0);
    return TRUE;
}

}  // namespace

RECT ScreenArea() {
    RECT area = {0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)};
    if (isTurned) {
        std::swap(area.right, area.bottom);
    }
    return area;
}

RECT WorkArea() {
    RECT area = ScreenArea();
    if (!isTurned) {
        SystemParametersInfoW(SPI_GETWORKAREA, 0, &area, 0);
    }
    area.top += TheMachine().device.caption;
    return area;
}

void TurnScreen(bool turned) {
    if (turned == isTurned) {
        return;
    }
    isTurned = turned;
    PlaceShellStrip();
    EnumThreadWindows(GetCurrentThreadId(), TellWindow, 0);
}

}  // namespace emulator
