// What a gauge shows for what the platform reports.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/power.h"

namespace views {

// The icons of the status strip.
enum class GaugeIcon : int {
    Battery = 0,
    BatteryCharging = 1,
    BatteryUnknown = 2,
    Memory = 3,
    Storage = 4,
    StorageCard = 5
};

struct GaugeReading {
    GaugeIcon icon = GaugeIcon::BatteryUnknown;
    // The bar's value, 0 to 100.
    unsigned percent = 0;
    std::wstring text;
};

// A battery that cannot be read is given as null.
GaugeReading ReadingOfBattery(const platform::BatteryStatus* status);
// Sizes in bytes.
GaugeReading ReadingOfMemory(uint64_t total, uint64_t available, unsigned load);
GaugeReading ReadingOfStorage(GaugeIcon icon, uint64_t total, uint64_t totalFree);
// A resource whose values cannot be read.
GaugeReading UnknownReading(GaugeIcon icon);

// The color of the bar: red where the resource runs out.
COLORREF BatteryBarColor(unsigned percent);
COLORREF UsageBarColor(unsigned percent);

// The path of a store; false with the last error ERROR_BUFFER_OVERFLOW for a device's name of more
// than 249 characters.
bool StorePath(std::wstring_view deviceName, std::wstring* path);
// Whether a partition's volume is the storage folder of this name (CompareStringW). Volumes whose
// names begin with '0' never are.
bool IsVolumeOfFolder(std::wstring_view volumeName, std::wstring_view folder);

}  // namespace views
