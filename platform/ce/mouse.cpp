#include "platform/mouse.h"

namespace platform {

UINT RowsPerWheelNotch() {
    return 3;
}

}  // namespace platform
