// The message loop of what takes over for a while: a menu, an editor, a press, a drag.
#pragma once

#include "ui/window/held_fault.h"

namespace ui {

// What a modal loop does with a message that its filter has seen.
enum class LoopStep { Dispatch, Skip, End };

// What came when a message was asked for; a failed call brings nothing.
enum class Fetched { Message, Nothing, Quit };

// Takes the next message (GetMessageW). One that asks the program to quit is posted again, for the
// loop around.
Fetched FetchMessage(MSG* message);

// Runs while `goesOn`, which is asked before each message, and until the filter, which sees each
// message first, ends it. An exception held while a message was dispatched ends it as well. False
// when the program is to quit.
template <typename GoesOn, typename Filter>
bool RunModalLoop(GoesOn goesOn, Filter filter) {
    while (goesOn()) {
        MSG message;
        const Fetched fetched = FetchMessage(&message);
        if (fetched == Fetched::Quit) {
            return false;
        }
        if (fetched == Fetched::Nothing) {
            continue;
        }
        const LoopStep step = filter(static_cast<const MSG&>(message));
        if (step == LoopStep::End) {
            break;
        }
        if (step == LoopStep::Dispatch) {
            Dispatch(message);
        }
    }
    return true;
}

}  // namespace ui
