#include "ui/bar/slide.h"

#include "platform/windows.h"

namespace ui {

void Slide(int from, int to, const std::function<void(int)>& draw) {
    const DWORD start = GetTickCount();
    for (int step = 1; step <= slideSteps; ++step) {
        draw(step == slideSteps ? to : from + (to - from) * step / slideSteps);
        const DWORD due = slideDuration * static_cast<DWORD>(step) / slideSteps;
        const DWORD elapsed = GetTickCount() - start;
        if (elapsed < due) {
            Sleep(due - elapsed);
        }
    }
}

}  // namespace ui
