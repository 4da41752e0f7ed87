// What every control draws with: fonts, brushes and image strips, loaded once at start-up or, where
// many starts never draw them, with the first need.
#pragma once

#include <optional>

#include "ui/paint/brushes.h"
#include "ui/paint/fonts.h"
#include "ui/paint/images.h"

namespace ui {

class DrawingResources {
 public:
    FontSet fonts;
    SolidBrushes brushes;

    // Loads everything anew for this device's screen, freeing what was there.
    void Load();
    // Frees the pictures, brushes and fonts.
    void Free();
    // Loaded when it is first asked for: on a small upright screen nothing is drawn from it.
    ImageStrip& MainStrip();
    // The size of its icons in pixels, which is known without loading it; 0 when there is none.
    int MainIconSize() const;
    // The next larger main strip, where a larger icon is needed; empty with the largest. Kept for
    // the toolkit: nothing of the program draws from it.
    const ImageStrip& SecondStrip();
    const ImageStrip& StatusStrip();
    // The size of its icons in pixels, which is known without loading it; 0 when there is none.
    int StatusIconSize() const;

 private:
    // Nothing before Load and after Free.
    std::optional<UINT> mainStripId_;
    std::optional<ImageStrip> mainStrip_;
    std::optional<ImageStrip> secondStrip_;
    std::optional<ImageStrip> statusStrip_;
};

// The program's drawing resources.
DrawingResources& Resources();

inline const FontSet& Fonts() {
    return Resources().fonts;
}

}  // namespace ui
