// The edge of a user's action, where its faults are caught and shown.
#pragma once

#include <new>
#include <string>

#include "faults/fault.h"
#include "text/format.h"
#include "text/resources.h"
#include "ui/dialog/message_box.h"

namespace ui {

// The text that stands for the exception being handled: a fault's full text, or "Unexpected
// error." for anything else. Call it in a handler only. Throws std::bad_alloc.
std::wstring TextOfCurrentException();

// Says that something has failed where there is no memory for saying what (MessageBoxW).
void TellWithoutMemory(HWND owner);

// Throws the exception being handled on when the action's window has gone: with it went everything
// that could show the fault or end the program, so the run ends with it. Call it in a handler only.
void LeaveIfGone(HWND owner);

// The context string of general actions of the frame and the views.

// Runs `action`; a fault is shown with the context string `context`, whose last insert is the
// fault's text, behind `inserts`. What the action had done before the fault stays done. A fault
// that outlives `owner` is thrown on.
template <typename Action, typename... Inserts>
void RunAction(HWND owner, UINT context, Action action, const Inserts&... inserts) {
    try {
        action();
    } catch (...) {
        LeaveIfGone(owner);
        try {
            if (!Tell(owner, text::FormatText(context, inserts..., TextOfCurrentException()),
                      IDS_ERROR)) {
                TellWithoutMemory(owner);
            }
        } catch (const std::bad_alloc&) {
            LeaveIfGone(owner);
            TellWithoutMemory(owner);
        }
    }
}

}  // namespace ui
