#include "platform/mouse.h"

namespace platform {

UINT RowsPerWheelNotch() {
    constexpr UINT usual = 3;
    UINT rows = usual;
    return SystemParametersInfoW(SPI_GETWHEELSCROLLLINES, 0, &rows, 0) ? rows : usual;
}

}  // namespace platform
