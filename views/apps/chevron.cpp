#include "views/apps/chevron.h"

namespace views {

void BlendChevron(ui::BlendSurface& surface, int width, int height, COLORREF color) {
    constexpr uint32_t opacity = 128;
    const int middle = height / 2;
    const int arm = ((height - middle) | 1) / 2;
    const int thickness = arm / 2;
    if (width < arm + thickness) {
        return;
    }
    for (int step = 0; step < thickness; ++step) {
        const int tip = width - step - 1;
        surface.BlendPixel(tip, middle, color, opacity);
        for (int reach = 1; reach < arm; ++reach) {
            surface.BlendPixel(tip - reach, middle - reach, color, opacity);
            surface.BlendPixel(tip - reach, middle + reach, color, opacity);
        }
    }
}

}  // namespace views
