#include "platform/desktop/screen.h"

#include <algorithm>
#include <cwchar>

#include "platform/handles.h"

namespace platform::desktop {

namespace {

// The longest short side of a screen that the window fills, in pixels.
constexpr LONG smallScreen = 600;

// Dots per inch of the monitor that shows the main window; 0 until it has been told.
int monitorDots = 0;

}  // namespace

int DotsPerInch() {
    if (monitorDots > 0) {
        return monitorDots;
    }
    const WindowDC screen(nullptr);
    const int dots = screen ? GetDeviceCaps(screen, LOGPIXELSY) : 0;
    return dots > 0 ? dots : 96;
}

bool TakeScaleOf(HWND window) {
    using DpiForWindow = UINT(WINAPI*)(HWND);
    const auto dpiForWindow = reinterpret_cast<DpiForWindow>(reinterpret_cast<void*>(
        GetProcAddress(GetModuleHandleW(L"user32.dll"), "GetDpiForWindow")));
    const int dots = dpiForWindow ? static_cast<int>(dpiForWindow(window)) : 0;
    if (dots <= 0 || dots == DotsPerInch()) {
        return false;
    }
    monitorDots = dots;
    return true;
}

namespace {

LONG ShortSide(const RECT& area) {
    return std::min(area.right - area.left, area.bottom - area.top);
}

int CALLBACK NoteFont(const LOGFONTW*, const TEXTMETRICW*, DWORD, LPARAM found) {
    *reinterpret_cast<bool*>(found) = true;
    return 0;
}

bool FontExists(HDC dc, const wchar_t* face) {
    LOGFONTW wanted = {};
    wanted.lfCharSet = DEFAULT_CHARSET;
    std::wcsncpy(wanted.lfFaceName, face, LF_FACESIZE - 1);
    bool found = false;
    EnumFontFamiliesExW(dc, &wanted, NoteFont, reinterpret_cast<LPARAM>(&found), 0);
    return found;
}

}  // namespace

HFONT CreateSystemFont() {
    // The proportions of a handheld's system font: 12 pixels at 96 dots per inch.
    LOGFONTW font = {};
    font.lfHeight = -MulDiv(12, DotsPerInch(), 96);
    font.lfWeight = FW_NORMAL;
    font.lfCharSet = DEFAULT_CHARSET;
    font.lfQuality = ANTIALIASED_QUALITY;
    font.lfPitchAndFamily = VARIABLE_PITCH | FF_SWISS;
    const WindowDC screen(nullptr);
    for (const wchar_t* face : {L"Segoe UI", L"DejaVu Sans", L"Tahoma"}) {
        if (FontExists(screen, face)) {
            std::wcsncpy(font.lfFaceName, face, LF_FACESIZE - 1);
            break;
        }
    }
    return CreateFontIndirectW(&font);
}

bool ScreenRectangle(RECT* rectangle) {
    MONITORINFO monitor = {};
    monitor.cbSize = sizeof monitor;
    if (!GetMonitorInfoW(MonitorFromWindow(nullptr, MONITOR_DEFAULTTONEAREST), &monitor)) {
        return false;
    }
    *rectangle = monitor.rcMonitor;
    if (ShortSide(monitor.rcMonitor) > smallScreen) {
        const int dots = DotsPerInch();
        *rectangle = RECT{0, 0, MulDiv(240, dots, 96), MulDiv(320, dots, 96)};
    }
    return true;
}

bool WorkArea(HWND window, RECT* area) {
    MONITORINFO monitor = {};
    monitor.cbSize = sizeof monitor;
    if (!GetMonitorInfoW(MonitorFromWindow(window, MONITOR_DEFAULTTONEAREST), &monitor)) {
        return false;
    }
    *area = monitor.rcWork;
    return true;
}

bool IsSmall(const RECT& workArea) {
    return ShortSide(workArea) <= smallScreen;
}

RECT WindowPlace(const RECT& workArea, int dotsPerInch) {
    if (IsSmall(workArea)) {
        return workArea;
    }
    const LONG workHeight = workArea.bottom - workArea.top;
    const LONG height = std::min<LONG>(workHeight, MulDiv(640, dotsPerInch, 96));
    const LONG width = std::min(workArea.right - workArea.left, height * 3 / 4);
    RECT place;
    place.left = workArea.left + (workArea.right - workArea.left - width) / 2;
    place.top = workArea.top + (workHeight - height) / 2;
    place.right = place.left + width;
    place.bottom = place.top + height;
    return place;
}

RECT RescaledPlace(const RECT& place, const RECT& workArea, int dotsBefore, int dotsNow) {
    if (IsSmall(workArea)) {
        return workArea;
    }
    const auto scaled = [=](LONG size, LONG most) {
        return std::min<LONG>(MulDiv(size, dotsNow, dotsBefore), most);
    };
    const LONG width = scaled(place.right - place.left, workArea.right - workArea.left);
    const LONG height = scaled(place.bottom - place.top, workArea.bottom - workArea.top);
    RECT now;
    now.left = std::clamp<LONG>((place.left + place.right - width) / 2, workArea.left,
                                workArea.right - width);
    now.top = std::clamp<LONG>((place.top + place.bottom - height) / 2, workArea.top,
                               workArea.bottom - height);
    now.right = now.left + width;
    now.bottom = now.top + height;
    return now;
}

}  // namespace platform::desktop
