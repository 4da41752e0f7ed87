// What every control draws with: fonts and image strips, loaded once at start-up.
#pragma once

#include "ui/fonts.h"
#include "ui/images.h"

namespace ui {

struct DrawingResources {
    FontSet fonts;
    ImageStrip mainStrip;
    // The next larger main strip, where a larger icon is needed; empty with the largest.
    ImageStrip secondStrip;
    ImageStrip statusStrip;

    // Loads everything anew for this device's screen, freeing what was there.
    void Load();
    // Frees the pictures and fonts.
    void Free();
};

// The program's drawing resources.
DrawingResources& Resources();

inline const FontSet& Fonts() {
    return Resources().fonts;
}

}  // namespace ui
