#include "platform/desktop/screen.h"

#include <algorithm>
#include <cwchar>

#include "platform/handles.h"

namespace platform::desktop {

namespace {

// The longest short side of a screen that the window fills, in pixels.
constexpr LONG smallScreen = 600;

}  // namespace

int DotsPerInch() {
    const WindowDC screen(nullptr);
    const int dots = screen ? GetDeviceCaps(screen, LOGPIXELSY) : 0;
    return dots > 0 ? dots : 96;
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

RECT WindowPlace(const RECT& workArea, int dotsPerInch) {
    if (ShortSide(workArea) <= smallScreen) {
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

}  // namespace platform::desktop
