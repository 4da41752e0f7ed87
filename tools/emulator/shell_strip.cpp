#include "shell_strip.h"

#include "machine.h"
#include "screen.h"
#include "sweep_channel.h"

namespace emulator {

namespace {

constexpr COLORREF stripColor = RGB(30, 60, 110);
constexpr WCHAR stripClass[] = u"HHTaskBar";

HWND strip = nullptr;

void Paint(HWND window) {
    PAINTSTRUCT paint;
    const HDC dc = BeginPaint(window, &paint);
    RECT area;
    GetClientRect(window, &area);
    const HBRUSH brush = CreateSolidBrush(stripColor);
    FillRect(dc, &area, brush);
    DeleteObject(brush);
    WCHAR caption[MAX_PATH] = {};
    const HWND front = GetForegroundWindow();
    GetWindowTextW(front, caption, MAX_PATH);
    LOGFONTW description = {};
    description.lfHeight = -MulDiv(12, TheMachine().device.dotsPerInch, 96);
    description.lfWeight = FW_BOLD;
    const Text face = u"DejaVu Sans";
    face.copy(description.lfFaceName, face.size());
    const HFONT font = CreateFontIndirectW(&description);
    const HGDIOBJ before = SelectObject(dc, font);
    SetTextColor(dc, RGB(255, 255, 255));
    SetBkMode(dc, TRANSPARENT);
    area.left += area.bottom / 4;
    DrawTextW(dc, caption, -1, &area, DT_SINGLELINE | DT_VCENTER | DT_END_ELLIPSIS | DT_NOPREFIX);
    SelectObject(dc, before);
    DeleteObject(font);
    EndPaint(window, &paint);
}

LRESULT WINAPI StripProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == RegisterWindowMessageA(sweep::turnMessage)) {
        TurnScreen(wParam != 0);
        return 0;
    }
    switch (message) {
        case WM_PAINT:
            Paint(window);
            return 0;
        case WM_MOUSEACTIVATE:
            return MA_NOACTIVATE;
        default:
            return DefWindowProcW(window, message, wParam, lParam);
    }
}

}  // namespace

void MakeShellStrip() {
    const Device& device = TheMachine().device;
    if (device.caption == 0 || FindWindowW(stripClass, nullptr)) {
        return;
    }
    WNDCLASSW description = {};
    description.lpfnWndProc = StripProcedure;
    description.hInstance = GetModuleHandleW(nullptr);
    description.lpszClassName = stripClass;
    RegisterClassW(&description);
    strip = CreateWindowExW(WS_EX_NOACTIVATE | WS_EX_TOOLWINDOW, stripClass, nullptr,
                            WS_POPUP | WS_VISIBLE, 0, 0, ScreenArea().right, device.caption,
                            nullptr, nullptr, description.hInstance, nullptr);
}

void PlaceShellStrip() {
    if (strip) {
        SetWindowPos(strip, nullptr, 0, 0, ScreenArea().right, TheMachine().device.caption,
                     SWP_NOZORDER | SWP_NOACTIVATE);
    }
}

void RefreshShellStrip() {
    if (strip) {
        InvalidateRect(strip, nullptr, FALSE);
    }
}

}  // namespace emulator
