// No exception may cross the platform's frames: a window procedure holds it here, and the
// innermost of our loops throws it on after the call that dispatched the message has returned.
#pragma once

#include "platform/windows.h"

namespace ui {

// Keeps the exception that is being handled; the first one kept wins.
void HoldException() noexcept;

bool ExceptionHeld() noexcept;

// Throws the kept exception, if there is one.
void RethrowHeldException();

// DispatchMessageW, then RethrowHeldException.
LRESULT Dispatch(const MSG& message);

// SendMessageW, then RethrowHeldException.
LRESULT Send(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

}  // namespace ui
