#include "ui/window/window.h"

#include "platform/handles.h"
#include "text/resources.h"
#include "ui/window/held_fault.h"

namespace ui {

Window::~Window() {
    Destroy();
}

void Window::Destroy() {
    if (handle_) {
        DestroyWindow(handle_);
    }
}

RECT Window::ClientRectangle() const {
    RECT client = {};
    GetClientRect(handle_, &client);
    return client;
}

bool Window::Create(const wchar_t* className, const wchar_t* title, DWORD style, const RECT& bounds,
                    HWND parent, UINT_PTR id) {
    WNDCLASSW windowClass = {};
    windowClass.style = CS_HREDRAW | CS_VREDRAW | CS_DBLCLKS;
    windowClass.lpfnWndProc = Procedure;
    windowClass.hInstance = text::ProgramModule();
    windowClass.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_WINDOW + 1);
    windowClass.lpszClassName = className;
    // Fails for every window of the class but the first, with an error that not every system tells;
    // without a class no window is created.
    RegisterClassW(&windowClass);
    const bool placed = bounds.left != CW_USEDEFAULT;
    const HWND created = CreateWindowExW(
        0, className, title, style, bounds.left, placed ? bounds.top : CW_USEDEFAULT,
        placed ? Width(bounds) : CW_USEDEFAULT, placed ? Height(bounds) : CW_USEDEFAULT, parent,
        reinterpret_cast<HMENU>(id), text::ProgramModule(), this);
    if (!created) {
        handle_ = nullptr;
    }
    RethrowHeldException();
    return created != nullptr;
}

LRESULT Window::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    return Default(message, wParam, lParam);
}

unsigned Window::PartAt(POINT point) {
    const unsigned count = platform::hasAssistiveTechnology ? PartCount() : 0;
    for (unsigned part = 1; part <= count; ++part) {
        platform::AccessiblePart description;
        if (Describe(part, &description) && PtInRect(&description.bounds, point)) {
            return part;
        }
    }
    return 0;
}

LRESULT CALLBACK Window::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    auto self = reinterpret_cast<Window*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (!self && (message == WM_NCCREATE || message == WM_CREATE)) {
        self = static_cast<Window*>(reinterpret_cast<CREATESTRUCTW*>(lParam)->lpCreateParams);
        self->handle_ = window;
        SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(self));
    }
    if (!self) {
        return DefWindowProcW(window, message, wParam, lParam);
    }
    // The class has no cursor, and that of another window's edge or text would stay.
    if (message == WM_SETCURSOR && reinterpret_cast<HWND>(wParam) == window &&
        LOWORD(lParam) == HTCLIENT) {
        SetCursor(platform::ShownCursor::ForWindows());
        return TRUE;
    }
    LRESULT result;
    try {
        result = platform::AsksForParts(message)
                     ? platform::AnswerAccessibility(window, message, wParam, lParam, *self)
                     : self->OnMessage(message, wParam, lParam);
    } catch (...) {
        HoldException();
        result = message == WM_CREATE ? -1 : 0;
        // A dialog's loop is the platform's: the dialog must come to know.
        PostMessageW(GetActiveWindow(), WM_NULL, 0, 0);
    }
    // The last message that a handheld sends; a PC's further ones are left to the platform.
    if (message == WM_DESTROY) {
        SetWindowLongPtrW(window, GWLP_USERDATA, 0);
        self->handle_ = nullptr;
    }
    return result;
}

}  // namespace ui
