// Keeps the screen painted while a long operation runs.
#pragma once

#include "views/files/folder_walk.h"

namespace views {

class PaintProgress : public WalkProgress {
 public:
    // Paints what waits to be painted, now and then (WM_PAINT).
    void OnProgress() override;

 private:
    // The system's time of the last painting, in milliseconds.
    DWORD lastPainted_ = 0;
};

}  // namespace views
