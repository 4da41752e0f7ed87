// How large a message box is and where it stands.
#pragma once

#include "platform/windows.h"

namespace ui {

// What a message box is made of, in pixels.
struct MessageParts {
    SIZE text = {};
    int margin = 0;
    int captionHeight = 0;
    // The height reserved for the buttons.
    int barHeight = 0;
    int barWidth = 0;
    int titleWidth = 0;
};

// The widest that the text may be in a work area.
int WidestMessageText(const RECT& workArea, int margin);

// The box's client rectangle in screen coordinates, centred in the work area and never outside
// it. False when the work area is not taller than the buttons.
bool PlaceMessage(const RECT& workArea, const MessageParts& parts, RECT* place);

}  // namespace ui
