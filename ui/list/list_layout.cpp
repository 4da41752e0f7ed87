#include "ui/list/list_layout.h"

#include <algorithm>
#include <cstdint>

namespace ui {

unsigned LargestTop(const ItemRecords& items, int clientHeight) {
    unsigned top = static_cast<unsigned>(items.size()) - 1;
    int sum = items[top].height;
    while (sum < clientHeight && top > 0) {
        sum += items[top - 1].height;
        if (sum >= clientHeight) {
            break;
        }
        --top;
    }
    return top;
}

RowHit RowBelow(const ItemRecords& items, unsigned start, int distance) {
    int top = 0;
    for (unsigned index = start; index < items.size(); ++index) {
        const int bottom = top + items[index].height;
        if (bottom > distance) {
            return RowHit{index, top, bottom};
        }
        top = bottom;
    }
    return RowHit{};
}

unsigned TopToShow(const ItemRecords& items, unsigned row, int clientHeight) {
    int sum = items[row].height;
    while (row > 0 && sum + items[row - 1].height <= clientHeight) {
        --row;
        sum += items[row].height;
    }
    return row;
}

unsigned PageUp(const ItemRecords& items, unsigned row, int clientHeight) {
    int sum = 0;
    while (row > 0 && sum < clientHeight) {
        --row;
        sum += items[row].height;
    }
    return row;
}

unsigned PageDown(const ItemRecords& items, unsigned row, int clientHeight) {
    const RowHit hit = RowBelow(items, row, clientHeight);
    return hit.index == noRow ? static_cast<unsigned>(items.size()) - 1 : hit.index;
}

DragPosition FollowFinger(const ItemRecords& items, unsigned maxTop, int clientHeight,
                          DragPosition position, int distance) {
    position.offset += distance;
    const int half = clientHeight / 2;
    if (position.offset < 0) {
        int sum = 0;
        while (position.top > 0 && sum < -position.offset) {
            --position.top;
            sum += items[position.top].height;
        }
        position.offset += sum;
        if (position.top == 0) {
            position.offset = std::max(position.offset, -half);
        }
        return position;
    }
    while (position.top < maxTop && items[position.top].height <= position.offset) {
        position.offset -= items[position.top].height;
        ++position.top;
    }
    if (position.top == maxTop) {
        position.offset = std::min(position.offset, half);
    }
    return position;
}

SlideToRest PlanSlide(const ItemRecords& items, unsigned maxTop, int totalHeight,
                      DragPosition position) {
    const int meanHeight =
        static_cast<int>(static_cast<unsigned>(totalHeight) / static_cast<unsigned>(items.size()));
    SlideToRest slide;
    slide.newTop = position.top;
    slide.step = -meanHeight;
    if (position.offset > 0) {
        const int height = items[position.top].height;
        if (position.top < maxTop && position.offset > height / 2) {
            slide.newTop = position.top + 1;
            slide.target = -height;
        } else {
            slide.step = meanHeight;
        }
    }
    const int distance = slide.target + position.offset;
    const int reach = distance < 0 ? -distance : distance;
    if (meanHeight > 0 && reach >= meanHeight) {
        slide.first = distance % slide.step - position.offset;
    } else {
        slide.step = distance;
        slide.first = -position.offset;
    }
    return slide;
}

RECT ScrollThumb(const RECT& client, int totalHeight, unsigned top, unsigned count, int width,
                 int shortest) {
    const int height = client.bottom - client.top;
    if (totalHeight <= height || count == 0) {
        return RECT{};
    }
    const auto tall = static_cast<int64_t>(height);
    const int length = std::max(static_cast<int>(tall * height / totalHeight), shortest);
    RECT thumb;
    thumb.top = client.top + static_cast<LONG>(tall * top / count);
    thumb.top = std::min<LONG>(thumb.top, client.bottom - length);
    thumb.bottom = thumb.top + length;
    thumb.left = client.right - width;
    thumb.right = client.right;
    return thumb;
}

}  // namespace ui
