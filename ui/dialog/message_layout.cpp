#include "ui/dialog/message_layout.h"

#include <algorithm>

namespace ui {

int WidestMessageText(const RECT& workArea, int margin) {
    return std::max<int>(0, workArea.right - workArea.left - 2 * margin);
}

bool PlaceMessage(const RECT& workArea, const MessageParts& parts, RECT* place) {
    const int workWidth = workArea.right - workArea.left;
    const int workHeight = workArea.bottom - workArea.top;
    if (workHeight <= parts.barHeight) {
        return false;
    }
    const int wanted = std::max({static_cast<int>(parts.text.cx), parts.titleWidth});
    const int width = std::min(std::max(wanted + 2 * parts.margin, parts.barWidth), workWidth);
    const int height = std::min(
        static_cast<int>(parts.text.cy) + parts.captionHeight + 2 * parts.margin + parts.barHeight,
        workHeight);
    place->left = workArea.left + (workWidth - width) / 2;
    place->top = workArea.top + (workHeight - height) / 2;
    place->right = place->left + width;
    place->bottom = place->top + height;
    return true;
}

}  // namespace ui
