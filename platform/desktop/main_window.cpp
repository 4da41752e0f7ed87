#include "platform/main_window.h"

#include <commctrl.h>

#include "platform/desktop/screen.h"

namespace platform {

namespace {

// Of the window's own messages; WINVER is that of earlier systems.
constexpr UINT scaleChangedMessage = 0x02E0;  // WM_DPICHANGED

// The smallest window, at 96 dots per inch: the bar's labels and some rows have room.
constexpr int smallestSide = 160;

LRESULT CALLBACK MainWindowProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam,
                                     UINT_PTR id, DWORD_PTR) {
    switch (message) {
        case WM_GETMINMAXINFO: {
            const LRESULT result = DefSubclassProc(window, message, wParam, lParam);
            const int side = MulDiv(smallestSide, desktop::DotsPerInch(), 96);
            reinterpret_cast<MINMAXINFO*>(lParam)->ptMinTrackSize = POINT{side, side};
            return result;
        }
        case scaleChangedMessage:
            // The loop looks at the scale when it comes to rest; a sent message does not wake it.
            PostMessageW(window, WM_NULL, 0, 0);
            return 0;
        case WM_NCDESTROY:
            RemoveWindowSubclass(window, MainWindowProcedure, id);
            break;
        default:
            break;
    }
    return DefSubclassProc(window, message, wParam, lParam);
}

void ShowIcon(HWND window, UINT id, WPARAM size, int width, int height) {
    // Shared: nobody frees it.
    const HANDLE icon = LoadImageW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(id), IMAGE_ICON,
                                   width, height, LR_SHARED);
    SendMessageW(window, WM_SETICON, size, reinterpret_cast<LPARAM>(icon));
}

}  // namespace

void AdaptMainWindow(HWND window) {
    RECT workArea;
    if (!desktop::WorkArea(window, &workArea) || desktop::IsSmall(workArea)) {
        return;
    }
    const LONG_PTR style = GetWindowLongPtrW(window, GWL_STYLE);
    SetWindowLongPtrW(window, GWL_STYLE,
                      style | WS_SYSMENU | WS_THICKFRAME | WS_MINIMIZEBOX | WS_MAXIMIZEBOX);
    SetWindowPos(window, nullptr, 0, 0, 0, 0,
                 SWP_FRAMECHANGED | SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    SetWindowSubclass(window, MainWindowProcedure, 0, 0);
}

void ShowMainWindowIcon(HWND window, UINT icon) {
    ShowIcon(window, icon, ICON_BIG, GetSystemMetrics(SM_CXICON), GetSystemMetrics(SM_CYICON));
    ShowIcon(window, icon, ICON_SMALL, GetSystemMetrics(SM_CXSMICON),
             GetSystemMetrics(SM_CYSMICON));
}

bool AdoptScale(HWND window, RECT* place) {
    const int before = desktop::DotsPerInch();
    if (!desktop::TakeScaleOf(window)) {
        return false;
    }
    RECT workArea;
    const bool movable = !IsZoomed(window) && !IsIconic(window);
    if (GetWindowRect(window, place) && movable && desktop::WorkArea(window, &workArea)) {
        *place = desktop::RescaledPlace(*place, workArea, before, desktop::DotsPerInch());
    }
    return true;
}

void RestoreWindow(HWND window) {
    if (IsIconic(window)) {
        ShowWindow(window, SW_RESTORE);
    }
}

}  // namespace platform
