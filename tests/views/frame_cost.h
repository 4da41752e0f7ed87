// What one frame of a window takes and gives back again while it is drawn.
#pragma once

#include "platform/windows.h"

namespace test {

struct FrameCost {
    // Memory blocks (malloc, from which operator new draws).
    int blocks = 0;
    // Texts that the platform's formatters made.
    int formattings = 0;
    int brushes = 0;
    int fonts = 0;
    // Bitmaps of the screen's kind, and ones whose pixels are blended.
    int bitmaps = 0;
    int sections = 0;
    // Device contexts in memory.
    int contexts = 0;
};

// Has a window of this process drawn a few times, so that all that is kept is there, and once more.
FrameCost CostOfFrame(HWND window);

}  // namespace test
