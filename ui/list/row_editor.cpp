#include "ui/list/row_editor.h"

#include <algorithm>

#include "platform/aygshell.h"
#include "text/resources.h"
#include "ui/paint/drawing_resources.h"
#include "ui/window/modal_loop.h"
#include "ui/window/window.h"
#include "ui/window/window_text.h"

namespace ui {

size_t BaseNameLength(const std::wstring& name, bool folder) {
    const size_t dot = name.rfind(L'.');
    return folder || dot == std::wstring::npos || dot == 0 ? name.size() : dot;
}

RECT EditorBounds(HWND list, const RECT& row, HFONT font) {
    const platform::WindowDC dc(list);
    const int line = TextHeight(dc, font);
    const int height = std::min(Height(row), line + line / 4 + 4 * GetSystemMetrics(SM_CYBORDER));
    RECT bounds = row;
    bounds.top += (Height(row) - height) / 2;
    bounds.bottom = bounds.top + height;
    return bounds;
}

RowEditor::RowEditor(HWND list, HWND bar, const RECT& area, HFONT font, const std::wstring& text,
                     size_t selected)
    : bar_(bar), font_(font) {
    const RECT bounds = EditorBounds(list, area, font);
    edit_ = CreateWindowExW(
        0, L"EDIT", text.c_str(), WS_CHILD | WS_VISIBLE | WS_BORDER | ES_AUTOHSCROLL, bounds.left,
        bounds.top, Width(bounds), Height(bounds), list, nullptr, text::ProgramModule(), nullptr);
    if (!edit_) {
        return;
    }
    SetWindowLongPtrW(edit_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    previous_ = reinterpret_cast<WNDPROC>(
        SetWindowLongPtrW(edit_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(Procedure)));
    SendMessageW(edit_, WM_SETFONT, reinterpret_cast<WPARAM>(font), TRUE);
    SendMessageW(edit_, EM_LIMITTEXT, MAX_PATH - 1, 0);
    SendMessageW(edit_, EM_SETSEL, 0, static_cast<LPARAM>(selected));
    SetFocus(edit_);
    platform::ShowInputPanel(true);
}

RowEditor::~RowEditor() {
    if (edit_) {
        SetFocus(GetParent(edit_));
        DestroyWindow(edit_);
    }
}

void RowEditor::Place(const RECT& area) {
    const RECT bounds = EditorBounds(GetParent(edit_), area, font_);
    MoveWindow(edit_, bounds.left, bounds.top, Width(bounds), Height(bounds), TRUE);
}

std::wstring RowEditor::Text() const {
    return WindowText(edit_);
}

int RowEditor::Run() {
    result_ = 0;
    const auto filter = [this](const MSG& message) {
        const bool tap = message.message == WM_LBUTTONDOWN || message.message == WM_LBUTTONDBLCLK;
        if (tap && message.hwnd != edit_ && message.hwnd != bar_) {
            result_ = IDOK;
            return LoopStep::End;
        }
        TranslateMessage(&message);
        return LoopStep::Dispatch;
    };
    const bool finished = RunModalLoop([this] { return result_ == 0 && edit_; }, filter);
    return finished && edit_ ? result_ : IDCANCEL;
}

LRESULT CALLBACK RowEditor::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    const auto self = reinterpret_cast<RowEditor*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    const WNDPROC previous = self->previous_;
    switch (message) {
        case WM_KEYDOWN:
            if (wParam == VK_RETURN || wParam == VK_ESCAPE) {
                self->Finish(wParam == VK_RETURN ? IDOK : IDCANCEL);
                return 0;
            }
            break;
        case WM_KEYUP:
            // The hardware's soft keys, which are those of the bar.
            if (wParam == VK_F1 || wParam == VK_F2) {
                self->Finish(wParam == VK_F1 ? IDOK : IDCANCEL);
                return 0;
            }
            break;
        case WM_CHAR:
            // The characters of those keys; a control of one line would beep.
            if (wParam == L'\r' || wParam == 27) {
                return 0;
            }
            break;
        case WM_GETDLGCODE:
            return DLGC_WANTALLKEYS;
        case WM_DESTROY:
            self->edit_ = nullptr;
            platform::ShowInputPanel(false);
            SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(previous));
            break;
        default:
            break;
    }
    return CallWindowProcW(previous, window, message, wParam, lParam);
}

}  // namespace ui
