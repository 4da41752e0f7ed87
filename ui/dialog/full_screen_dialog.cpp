#include "ui/dialog/full_screen_dialog.h"

#include <algorithm>

#include "platform/aygshell.h"
#include "ui/paint/clipped_text.h"
#include "ui/paint/drawing_resources.h"
#include "ui/paint/paint.h"
#include "ui/paint/spacing.h"
#include "ui/paint/theme.h"
#include "ui/window/held_fault.h"

namespace ui {

unsigned NextStop(unsigned current, unsigned count, bool forward) {
    return count == 0 ? 0 : (current + (forward ? 1 : count - 1)) % count;
}

bool FullScreenDialog::SetUp() {
    SetWindowTextW(Handle(), caption_.c_str());
    if (!platform::MakeFullScreen(Handle()) || !bar_.Open(Handle(), RECT{}) ||
        !bar_.LoadBar(menu_) || !OpenContents()) {
        return false;
    }
    const platform::WindowDC dc(Handle());
    const int line = TextHeight(dc, Fonts().Base());
    bandHeight_ = BandHeight(line);
    Arrange();
    ContentsReady();
    SetFocus(Contents());
    return true;
}

void FullScreenDialog::Arrange() {
    RECT client;
    if (!GetClientRect(Handle(), &client)) {
        return;
    }
    const int stripBottom = platform::ShellShowsCaption() ? client.top : client.top + bandHeight_;
    const int barTop = std::max<int>(client.top, client.bottom - bandHeight_);
    MoveWindow(bar_.Handle(), client.left, barTop, Width(client), client.bottom - barTop, TRUE);
    ArrangeContents(RECT{client.left, std::min(stripBottom, barTop), client.right, barTop});
}

void FullScreenDialog::FollowVisibleArea() {
    RECT area;
    // Not MakeFullScreen again, which would close the input panel under an editor.
    if (platform::VisibleArea(Handle(), &area)) {
        MoveWindow(Handle(), area.left, area.top, Width(area), Height(area), TRUE);
    }
}

void FullScreenDialog::Paint(HDC dc, const RECT& client) {
    FillWithSystemColor(dc, client, COLOR_WINDOW);
    if (platform::ShellShowsCaption()) {
        return;
    }
    const RECT strip = {client.left, client.top, client.right, client.top + bandHeight_};
    FillWithColor(dc, strip, barColor);
    const platform::Selected font(dc, Fonts().Bold());
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, barTextColor);
    RECT text = strip;
    text.left += bandHeight_ / 4;
    text.right -= bandHeight_ / 4;
    DrawClippedLine(dc, text, caption_);
}

void FullScreenDialog::MoveFocus(bool forward) {
    const HWND stops[] = {Contents(), bar_.Handle()};
    const HWND focus = GetFocus();
    unsigned current = 0;
    for (unsigned stop = 0; stop < 2; ++stop) {
        if (focus == stops[stop] || IsChild(stops[stop], focus)) {
            current = stop;
        }
    }
    SetFocus(stops[NextStop(current, 2, forward)]);
}

bool FullScreenDialog::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_INITDIALOG:
            if (!SetUp()) {
                End(IDCANCEL);
                MessageBeep(~0u);
            }
            // The focus is set.
            return false;
        case WM_SIZE:
            if (Contents()) {
                Arrange();
            }
            return true;
        case WM_ACTIVATE:
            if (LOWORD(wParam) != WA_INACTIVE && Contents()) {
                FollowVisibleArea();
            }
            return false;
        case WM_SETTINGCHANGE:
        case WM_DISPLAYCHANGE:
            if (Contents()) {
                FollowVisibleArea();
            }
            return false;
        case WM_SETFOCUS:
            SetFocus(Contents());
            return true;
        case WM_KEYUP:
            if (wParam == VK_F1 || wParam == VK_F2) {
                bar_.ActivateButton(wParam == VK_F1 ? 0 : 1);
                return true;
            }
            return false;
        case WM_MOUSEWHEEL:
            // Over the bar, or passed on by it.
            if (Contents()) {
                Send(Contents(), message, wParam, lParam);
            }
            return true;
        case WM_NEXTDLGCTL:
            if (lParam == 0) {
                // Kept on purpose: docs/compatibility.md#tab-direction
                MoveFocus(wParam != 0);
                return true;
            }
            return false;
        case WM_PAINT:
            PaintWindow(Handle(), [this](HDC dc, const RECT& client) { Paint(dc, client); });
            return true;
        case WM_ERASEBKGND:
            SetWindowLongPtrW(Handle(), DWLP_MSGRESULT, 1);
            return true;
        case WM_NOTIFY:
            SetWindowLongPtrW(
                Handle(), DWLP_MSGRESULT,
                static_cast<LONG_PTR>(OnNotify(*reinterpret_cast<const NMHDR*>(lParam))));
            return true;
        case WM_COMMAND:
            if (!OnCommand(LOWORD(wParam)) &&
                (LOWORD(wParam) == IDOK || LOWORD(wParam) == IDCANCEL)) {
                End(LOWORD(wParam));
            }
            return true;
        default:
            return false;
    }
}

}  // namespace ui
