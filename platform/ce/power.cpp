#include "platform/power.h"

namespace {

struct PowerStatus {
    BYTE ACLineStatus;
    BYTE BatteryFlag;
    BYTE BatteryLifePercent;
    BYTE Reserved1;
    DWORD BatteryLifeTime;
    DWORD BatteryFullLifeTime;
    BYTE Reserved2;
    BYTE BackupBatteryFlag;
    BYTE BackupBatteryLifePercent;
    BYTE Reserved3;
    DWORD BackupBatteryLifeTime;
    DWORD BackupBatteryFullLifeTime;
    DWORD BatteryVoltage;
    DWORD BatteryCurrent;
    DWORD BatteryAverageCurrent;
    DWORD BatteryAverageInterval;
    DWORD BatterymAHourConsumed;
    DWORD BatteryTemperature;
    DWORD BackupBatteryVoltage;
    BYTE BatteryChemistry;
};
static_assert(sizeof(PowerStatus) == 56);

}  // namespace

extern "C" DWORD GetSystemPowerStatusEx2(PowerStatus* status, DWORD size, BOOL update);

namespace platform {

bool ReadBattery(BatteryStatus* status) {
    PowerStatus power = {};
    if (!GetSystemPowerStatusEx2(&power, sizeof power, TRUE)) {
        return false;
    }
    *status = BatteryStatus{power.BatteryFlag, power.BatteryLifePercent};
    return true;
}

}  // namespace platform
