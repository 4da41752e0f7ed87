#include "ui/window/held_fault.h"

#include <exception>
#include <utility>

namespace ui {

namespace {

std::exception_ptr held;

}  // namespace

void HoldException() noexcept {
    if (!held) {
        held = std::current_exception();
    }
}

bool ExceptionHeld() noexcept {
    return held != nullptr;
}

void RethrowHeldException() {
    if (held) {
        std::rethrow_exception(std::exchange(held, nullptr));
    }
}

LRESULT Dispatch(const MSG& message) {
    const LRESULT result = DispatchMessageW(&message);
    RethrowHeldException();
    return result;
}

LRESULT Send(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    const LRESULT result = SendMessageW(window, message, wParam, lParam);
    RethrowHeldException();
    return result;
}

}  // namespace ui
