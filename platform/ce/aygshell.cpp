#include "platform/aygshell.h"

#include "platform/ce/late_function.h"
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

constexpr wchar_t shell[] = L"aygshell.dll";
constinit platform::ce::LateFunction<BOOL(SHINITDLGINFO*)> initDialog(shell, L"SHInitDialog", 56);
constinit platform::ce::LateFunction<HBITMAP(HINSTANCE, UINT)> loadImageResource(
    shell, L"SHLoadImageResource", 64);
constinit platform::ce::LateFunction<HWND(HWND, DWORD)> findMenuBar(shell, L"SHFindMenuBar", 188);
constinit platform::ce::LateFunction<BOOL(HWND, DWORD)> fullScreen(shell, L"SHFullScreen");

}  // namespace

extern "C" {
BOOL SipGetInfo(SIPINFO* info);
BOOL SipShowIM(DWORD flags);
}

namespace platform {

HWND FindMenuBar(HWND window) {
    const auto find = findMenuBar.Find();
    return find ? find(window, 0) : nullptr;
}

HBITMAP LoadImageResource(HINSTANCE module, UINT id) {
    const auto load = loadImageResource.Find();
    return load ? load(module, id) : nullptr;
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
    if (const auto arrange = fullScreen.Find()) {
        arrange(window, hideButton);
    }
}

bool MakeFullScreen(HWND dialog) {
    SHINITDLGINFO info = {};
    info.dwMask = SHIDIM_FLAGS;
    info.hDlg = dialog;
    info.dwFlags = SHIDIF_SIPDOWN | SHIDIF_FULLSCREENNOMENUBAR;
    if (const auto init = initDialog.Find()) {
        return init(&info) != FALSE;
    }
    ShowInputPanel(false);
    RECT area;
    return VisibleArea(dialog, &area) &&
           SetWindowPos(dialog, HWND_TOP, area.left, area.top, area.right - area.left,
                        area.bottom - area.top, SWP_NOACTIVATE);
}

bool ShellShowsCaption() {
    return true;
}

void ClaimBackKey(HWND window) {
    if (const HWND bar = FindMenuBar(window)) {
        constexpr WORD bits = SHMBOF_NODEFAULT | SHMBOF_NOTIFY;
        SendMessageW(bar, SHCMBM_OVERRIDEKEY, VK_ESCAPE, MAKELPARAM(bits, bits));
    }
}

}  // namespace platform
