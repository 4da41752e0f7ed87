#include "platform/power.h"

namespace platform {

bool ReadBattery(BatteryStatus* status) {
    SYSTEM_POWER_STATUS power = {};
    if (!GetSystemPowerStatus(&power)) {
        return false;
    }
    *status = BatteryStatus{power.BatteryFlag, power.BatteryLifePercent};
    return true;
}

}  // namespace platform
