#include "platform/aygshell.h"

#include "platform/windows.h"

namespace {

struct SIPINFO {
    DWORD cbSize;
    DWORD fdwFlags;
    RECT rcVisibleDesktop;
    RECT rcSipRect;
    DWORD dwImDataSize;
    void* pvImData;
};
static_assert(sizeof(SIPINFO) == 48);

struct SHINITDLGINFO {
    DWORD dwMask;
    HWND hDlg;
    DWORD dwFlags;
};
static_assert(sizeof(SHINITDLGINFO) == 12);

constexpr DWORD SHIDIM_FLAGS = 1;
constexpr DWORD SHIDIF_SIPDOWN = 0x0008;
constexpr DWORD SHIDIF_FULLSCREENNOMENUBAR = 0x0010;

// The message that asks a menu bar to hand a hardware key to the window it belongs to.
constexpr UINT SHCMBM_OVERRIDEKEY = WM_USER + 403;
constexpr WORD SHMBOF_NODEFAULT = 1;
constexpr WORD SHMBOF_NOTIFY = 2;

}  // namespace

extern "C" {
HBITMAP SHLoadImageResource(HINSTANCE module, UINT id);
HWND SHFindMenuBar(HWND window, DWORD flags);
BOOL SipGetInfo(SIPINFO* info);
BOOL SipShowIM(DWORD flags);
BOOL SHInitDialog(SHINITDLGINFO* info);
BOOL SHFullScreen(HWND window, DWORD flags);
}

namespace platform {

HWND FindMenuBar(HWND window) {
    return SHFindMenuBar(window, 0);
}

HBITMAP LoadImageResource(HINSTANCE module, UINT id) {
    return SHLoadImageResource(module, id);
}

bool VisibleArea(HWND window, RECT* area) {
    SIPINFO panel = {};
    panel.cbSize = sizeof panel;
    if (SipGetInfo(&panel)) {
        *area = panel.rcVisibleDesktop;
        return true;
    }
    MONITORINFO monitor = {};
    monitor.cbSize = sizeof monitor;
    if (!GetMonitorInfoW(MonitorFromWindow(window, MONITOR_DEFAULTTONEAREST), &monitor)) {
        return false;
    }
    *area = monitor.rcWork;
    return true;
}

void ShowInputPanel(bool show) {
    SipShowIM(show ? 1 : 0);
}

void HideInputPanelButton(HWND window) {
    constexpr DWORD hideButton = 8;
    SHFullScreen(window, hideButton);
}

bool MakeFullScreen(HWND dialog) {
    SHINITDLGINFO info = {};
    info.dwMask = SHIDIM_FLAGS;
    info.hDlg = dialog;
    info.dwFlags = SHIDIF_SIPDOWN | SHIDIF_FULLSCREENNOMENUBAR;
    return SHInitDialog(&info) != FALSE;
}

bool ShellShowsCaption() {
    return true;
}

void ClaimBackKey(HWND window) {
    if (const HWND bar = SHFindMenuBar(window, 0)) {
        constexpr WORD bits = SHMBOF_NODEFAULT | SHMBOF_NOTIFY;
        SendMessageW(bar, SHCMBM_OVERRIDEKEY, VK_ESCAPE, MAKELPARAM(bits, bits));
    }
}

}  // namespace platform
