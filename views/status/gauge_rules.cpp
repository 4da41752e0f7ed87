#include "views/status/gauge_rules.h"

#include "res/resource.h"
#include "text/format.h"
#include "text/resources.h"

namespace views {

namespace {

constexpr BYTE flagCharging = 8;
constexpr BYTE flagNoBattery = 128;
constexpr BYTE flagUnknown = 255;
constexpr BYTE largestLifePercent = 254;

constexpr unsigned lowBattery = 11;
constexpr unsigned nearlyFull = 90;
constexpr COLORREF warningColor = RGB(200, 0, 0);

constexpr size_t longestDeviceName = 249;

std::wstring FreeOf(uint64_t total, uint64_t available) {
    return text::FormatText(IDS_FREE_OF, text::FormatSize(total), text::FormatSize(available));
}

COLORREF BarColor(bool warning) {
    return warning ? warningColor : GetSysColor(COLOR_HIGHLIGHT);
}

}  // namespace

GaugeReading ReadingOfBattery(const platform::BatteryStatus* status) {
    const BYTE flag =
        !status || status->lifePercent > largestLifePercent ? flagUnknown : status->flag;
    // Kept on purpose: docs/compatibility.md#charging-alone
    // Charging together with any other bit counts as not charging.
    if (flag == flagCharging) {
        return GaugeReading{GaugeIcon::BatteryCharging, status->lifePercent,
                            text::FormatText(IDS_CHARGING, status->lifePercent)};
    }
    if (flag != flagNoBattery && flag < flagUnknown) {
        return GaugeReading{GaugeIcon::Battery, status->lifePercent,
                            text::FormatText(IDS_PERCENT, status->lifePercent)};
    }
    return UnknownReading(GaugeIcon::BatteryUnknown);
}

GaugeReading ReadingOfMemory(uint64_t total, uint64_t available, unsigned load) {
    return GaugeReading{GaugeIcon::Memory, load, FreeOf(total, available)};
}

GaugeReading ReadingOfStorage(GaugeIcon icon, uint64_t total, uint64_t totalFree) {
    const bool sensible = total > 0 && totalFree <= total;
    const uint64_t percent = sensible ? (total - totalFree) * 100 / total : 0;
    return GaugeReading{icon, static_cast<unsigned>(percent), FreeOf(total, totalFree)};
}

GaugeReading UnknownReading(GaugeIcon icon) {
    return GaugeReading{icon, 0, text::TextOf(IDS_UNKNOWN)};
}

COLORREF BatteryBarColor(unsigned percent) {
    return BarColor(percent < lowBattery);
}

COLORREF UsageBarColor(unsigned percent) {
    return BarColor(percent >= nearlyFull);
}

bool StorePath(std::wstring_view deviceName, std::wstring* path) {
    if (deviceName.size() > longestDeviceName) {
        SetLastError(ERROR_BUFFER_OVERFLOW);
        return false;
    }
    path->clear();
    *path += L"\\StoreMgr\\";
    *path += deviceName;
    return true;
}

bool IsVolumeOfFolder(std::wstring_view volumeName, std::wstring_view folder) {
    // Kept on purpose: docs/compatibility.md#zero-volume
    if (!volumeName.empty() && volumeName[0] == L'0') {
        return false;
    }
    // Some storage managers name the volume as a path.
    if (!volumeName.empty() && volumeName[0] == L'\\') {
        volumeName.remove_prefix(1);
    }
    return CompareStringW(LOCALE_USER_DEFAULT, NORM_IGNORECASE, folder.data(),
                          static_cast<int>(folder.size()), volumeName.data(),
                          static_cast<int>(volumeName.size())) == CSTR_EQUAL;
}

}  // namespace views
