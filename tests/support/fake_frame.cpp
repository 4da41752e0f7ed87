#include "tests/support/fake_frame.h"

#include "platform/handles.h"

namespace test {

namespace {

constexpr int barHeight = 40;

}  // namespace

bool FakeFrame::PaneWindow::Open(HWND parent, const RECT& bounds) {
    return Create(L"TestPane", L"", ui::childStyle, bounds, parent);
}

LRESULT FakeFrame::PaneWindow::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_TIMER && frame_.view_) {
        frame_.view_->Timer(wParam);
        return 0;
    }
    return Default(message, wParam, lParam);
}

FakeFrame::FakeFrame() {
    const RECT screen = {0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)};
    Create(L"TestFrame", L"", WS_POPUP | WS_VISIBLE | WS_CLIPCHILDREN, screen, nullptr);
    RECT pane = ClientRectangle();
    RECT bar = pane;
    bar.top = pane.bottom = pane.bottom - barHeight;
    pane_.Open(Handle(), pane);
    bar_.Open(Handle(), bar);
}

bool FakeFrame::Open(views::View& view, const views::ViewArgument& argument) {
    view_ = &view;
    const platform::WindowDC dc(Handle());
    view.Layout(dc);
    view.Arrange(pane_.ClientRectangle());
    const bool active = view.Activate(argument);
    SetForegroundWindow(Handle());
    view.Focus();
    UpdateWindow(Handle());
    return active;
}

void FakeFrame::SwitchTo(views::ViewIndex view, const views::ViewArgument& argument) {
    switchedTo = view;
    switchedWith = argument;
}

bool FakeFrame::FrameKey(WPARAM key) {
    lastKey = key;
    return false;
}

std::optional<std::wstring> FakeFrame::StoredText(const wchar_t* name) const {
    const auto found = texts.find(name);
    return found == texts.end() ? std::nullopt : std::optional<std::wstring>(found->second);
}

std::optional<DWORD> FakeFrame::StoredNumber(const wchar_t* name) const {
    const auto found = numbers.find(name);
    return found == numbers.end() ? std::nullopt : std::optional<DWORD>(found->second);
}

LRESULT FakeFrame::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_COMMAND && view_) {
        view_->Command(LOWORD(wParam));
        return 0;
    }
    if (message == WM_INITMENUPOPUP && view_) {
        view_->UpdateMenu(bar_.Menu());
        return 0;
    }
    return Default(message, wParam, lParam);
}

}  // namespace test
