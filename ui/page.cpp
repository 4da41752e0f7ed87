#include "ui/page.h"

#include <algorithm>
#include <string>

#include "platform/aygshell.h"
#include "text/resources.h"
#include "ui/clipped_text.h"
#include "ui/drawing_resources.h"
#include "ui/paint.h"
#include "ui/theme.h"

namespace ui {

unsigned NextStop(unsigned current, unsigned count, bool forward) {
    return count == 0 ? 0 : (current + (forward ? 1 : count - 1)) % count;
}

bool Page::SetUp() {
    SetWindowTextW(Handle(), std::wstring(text::LoadText(caption_)).c_str());
    if (!platform::MakeFullScreen(Handle()) || !bar_.Open(Handle(), RECT{}) ||
        !bar_.LoadBar(barMenu_) || !list_.Open(Handle(), RECT{}, 1)) {
        return false;
    }
    const platform::WindowDC dc(Handle());
    const int line = TextHeight(dc, Fonts().Base());
    bandHeight_ = line + 2 * ((line + 1) / 2);
    Fill(list_);
    Arrange();
    list_.Layout();
    SetFocus(list_.Handle());
    return true;
}

void Page::Arrange() {
    RECT client;
    if (!GetClientRect(Handle(), &client)) {
        return;
    }
    const int stripBottom = platform::ShellShowsCaption() ? client.top : client.top + bandHeight_;
    const int barTop = std::max<int>(client.top, client.bottom - bandHeight_);
    const int listTop = std::min(stripBottom, barTop);
    MoveWindow(bar_.Handle(), client.left, barTop, Width(client), client.bottom - barTop, TRUE);
    MoveWindow(list_.Handle(), client.left, listTop, Width(client), barTop - listTop, TRUE);
}

void Page::FollowVisibleArea() {
    RECT area;
    // Not MakeFullScreen again, which would close the input panel under an editor.
    if (platform::VisibleArea(Handle(), &area)) {
        MoveWindow(Handle(), area.left, area.top, Width(area), Height(area), TRUE);
    }
}

void Page::Paint(HDC dc, const RECT& client) {
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
    DrawClippedLine(dc, text, text::LoadText(caption_));
}

void Page::MoveFocus(bool forward) {
    const HWND stops[] = {list_.Handle(), bar_.Handle()};
    const HWND focus = GetFocus();
    unsigned current = 0;
    for (unsigned stop = 0; stop < 2; ++stop) {
        if (focus == stops[stop] || IsChild(stops[stop], focus)) {
            current = stop;
        }
    }
    SetFocus(stops[NextStop(current, 2, forward)]);
}

bool Page::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_INITDIALOG:
            if (!SetUp()) {
                End(IDCANCEL);
                MessageBeep(~0u);
            }
            // The focus is set.
            return false;
        case WM_SIZE:
            if (list_.Handle()) {
                Arrange();
            }
            return true;
        case WM_ACTIVATE:
            if (LOWORD(wParam) != WA_INACTIVE && list_.Handle()) {
                FollowVisibleArea();
            }
            return false;
        case WM_SETTINGCHANGE:
        case WM_DISPLAYCHANGE:
            if (list_.Handle()) {
                FollowVisibleArea();
            }
            return false;
        case WM_SETFOCUS:
            SetFocus(list_.Handle());
            return true;
        case WM_NEXTDLGCTL:
            if (lParam == 0) {
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
        case WM_NOTIFY: {
            const auto& notification = *reinterpret_cast<const NMHDR*>(lParam);
            LRESULT result = OnNotify(notification);
            if (result == 0 && notification.hwndFrom == list_.Handle() &&
                notification.code == NM_RETURN) {
                SendMessageW(Handle(), WM_COMMAND, IDOK, 0);
                result = 1;
            }
            SetWindowLongPtrW(Handle(), DWLP_MSGRESULT, static_cast<LONG_PTR>(result));
            return true;
        }
        case WM_COMMAND:
            if (LOWORD(wParam) == IDOK && !list_.CloseEditor()) {
                return true;
            }
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
