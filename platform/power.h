// The device's power.
#pragma once

#include "platform/windows.h"

namespace platform {

// What a battery tells of itself, in the platform's values: 8 charging, 128 no battery and 255
// unknown among the flags; a percentage of 255 is unknown.
struct BatteryStatus {
    BYTE flag = 0;
    BYTE lifePercent = 0;
};

// Reads the main battery anew (GetSystemPowerStatusEx2; GetSystemPowerStatus on a PC). False on
// failure.
bool ReadBattery(BatteryStatus* status);

// What GlobalMemoryStatus fills in: 32 bytes on a handheld.
#ifdef UNDER_CE
static_assert(sizeof(MEMORYSTATUS) == 32);
#endif

}  // namespace platform
