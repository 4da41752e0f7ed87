// What the gauges show for what the platform reports.
#include <gtest/gtest.h>

#include "ui/paint/percentage_bar.h"
#include "views/status/gauge_rules.h"

using namespace views;

namespace {

constexpr COLORREF red = 200;

GaugeReading Battery(BYTE flag, BYTE percent) {
    const platform::BatteryStatus status = {flag, percent};
    return ReadingOfBattery(&status);
}

GaugeReading Storage(uint64_t total, uint64_t totalFree) {
    return ReadingOfStorage(GaugeIcon::Storage, total, totalFree);
}

void ExpectUnknownBattery(const GaugeReading& reading) {
    EXPECT_EQ(reading.icon, GaugeIcon::BatteryUnknown);
    EXPECT_EQ(reading.percent, 0u);
    EXPECT_EQ(reading.text, L"Unknown");
}

}  // namespace

TEST(StatusBattery, ShowsItsPercentage) {
    for (const BYTE flag : std::initializer_list<BYTE>{0, 1, 2, 4}) {
        const GaugeReading reading = Battery(flag, 57);
        EXPECT_EQ(reading.icon, GaugeIcon::Battery);
        EXPECT_EQ(reading.percent, 57u);
        EXPECT_EQ(reading.text, L"57%");
    }
}

TEST(StatusBattery, ShowsThatItIsCharging) {
    const GaugeReading reading = Battery(8, 40);
    EXPECT_EQ(reading.icon, GaugeIcon::BatteryCharging);
    EXPECT_EQ(reading.percent, 40u);
    EXPECT_EQ(reading.text, L"charging (40%)");
}

TEST(StatusBattery, ChargingWithAnotherBitCountsAsNotCharging) {
    for (const BYTE flag : std::initializer_list<BYTE>{9, 10, 12, 136}) {
        const GaugeReading reading = Battery(flag, 40);
        EXPECT_EQ(reading.icon, GaugeIcon::Battery);
        EXPECT_EQ(reading.text, L"40%");
    }
}

TEST(StatusBattery, IsUnknownWhenThereIsNone) {
    ExpectUnknownBattery(Battery(128, 50));
    ExpectUnknownBattery(Battery(255, 50));
}

TEST(StatusBattery, IsUnknownWhenItsPercentageOrAllIsUnknown) {
    ExpectUnknownBattery(Battery(1, 255));
    ExpectUnknownBattery(Battery(8, 255));
    ExpectUnknownBattery(ReadingOfBattery(nullptr));
    EXPECT_EQ(Battery(1, 254).text, L"254%");
}

TEST(StatusBattery, IsRedBelowElevenPercent) {
    EXPECT_EQ(BatteryBarColor(0), red);
    EXPECT_EQ(BatteryBarColor(10), red);
    EXPECT_EQ(BatteryBarColor(11), GetSysColor(COLOR_HIGHLIGHT));
    EXPECT_EQ(BatteryBarColor(100), GetSysColor(COLOR_HIGHLIGHT));
}

TEST(StatusUsage, IsRedFromNinetyPercent) {
    EXPECT_EQ(UsageBarColor(0), GetSysColor(COLOR_HIGHLIGHT));
    EXPECT_EQ(UsageBarColor(89), GetSysColor(COLOR_HIGHLIGHT));
    EXPECT_EQ(UsageBarColor(90), red);
    EXPECT_EQ(UsageBarColor(100), red);
}

TEST(StatusMemory, ShowsWhatIsFreeAndItsLoad) {
    const GaugeReading reading = ReadingOfMemory(64 << 20, 3 << 19, 89);
    EXPECT_EQ(reading.icon, GaugeIcon::Memory);
    EXPECT_EQ(reading.percent, 89u);
    EXPECT_EQ(reading.text, L"1.50 MB free of 64.00 MB");
}

TEST(StatusStorage, ShowsWhatIsFreeAndThePercentageInUse) {
    const GaugeReading reading = Storage(4096, 1024);
    EXPECT_EQ(reading.percent, 75u);
    EXPECT_EQ(reading.text, L"1.00 KB free of 4.00 KB");
    EXPECT_EQ(Storage(4096, 4096).percent, 0u);
    EXPECT_EQ(Storage(4096, 0).percent, 100u);
}

TEST(StatusStorage, ItsPercentageIsTruncated) {
    EXPECT_EQ(Storage(1000, 101).percent, 89u);
    EXPECT_EQ(Storage(1000, 100).percent, 90u);
    EXPECT_EQ(Storage(3, 1).percent, 66u);
}

TEST(StatusStorage, ManyTerabytesAreCountedRight) {
    const uint64_t terabyte = uint64_t{1} << 40;
    const GaugeReading reading = Storage(64 * terabyte, 16 * terabyte);
    EXPECT_EQ(reading.percent, 75u);
    EXPECT_EQ(reading.text, L"16.00 TB free of 64.00 TB");
}

TEST(StatusStorage, NoBytesAtAllAreAnEmptyBar) {
    const GaugeReading reading = Storage(0, 0);
    EXPECT_EQ(reading.percent, 0u);
    EXPECT_EQ(reading.text, L"0 bytes free of 0 bytes");
}

TEST(StatusStorage, MoreFreeThanThereIsIsAnEmptyBar) {
    EXPECT_EQ(Storage(100, 101).percent, 0u);
}

TEST(StatusStore, IsOpenedByItsDeviceName) {
    std::wstring path;
    ASSERT_TRUE(StorePath(L"DSK1:", &path));
    EXPECT_EQ(path, L"\\StoreMgr\\DSK1:");
}

TEST(StatusStore, ADeviceNameOf250CharactersIsNotOpened) {
    std::wstring path;
    EXPECT_TRUE(StorePath(std::wstring(249, L'd'), &path));
    EXPECT_EQ(path, L"\\StoreMgr\\" + std::wstring(249, L'd'));
    SetLastError(0);
    EXPECT_FALSE(StorePath(std::wstring(250, L'd'), &path));
    EXPECT_EQ(GetLastError(), 111u);
}

TEST(StatusStore, ItsVolumeIsTheFolderOfTheSameNameInAnyCase) {
    EXPECT_TRUE(IsVolumeOfFolder(L"Storage Card", L"STORAGE card"));
    EXPECT_FALSE(IsVolumeOfFolder(L"Storage Card", L"Storage Card2"));
    EXPECT_FALSE(IsVolumeOfFolder(L"Storage Card2", L"Storage Card"));
    EXPECT_FALSE(IsVolumeOfFolder(L"", L"Storage Card"));
    // As a path, which some storage managers tell.
    EXPECT_TRUE(IsVolumeOfFolder(L"\\Storage Card", L"Storage Card"));
    EXPECT_FALSE(IsVolumeOfFolder(L"\\", L"Storage Card"));
}

TEST(StatusStore, AVolumeWhoseNameBeginsWithZeroIsSkipped) {
    EXPECT_FALSE(IsVolumeOfFolder(L"0Storage", L"0Storage"));
    EXPECT_TRUE(IsVolumeOfFolder(L"1Storage", L"1Storage"));
    EXPECT_TRUE(IsVolumeOfFolder(L"Storage0", L"Storage0"));
}

TEST(StatusBar, GrowsWithTheBorder) {
    EXPECT_EQ(ui::PercentageBarHeight(1), 12);
    EXPECT_EQ(ui::PercentageBarHeight(2), 22);
}

TEST(StatusBar, IsFilledToThePercentage) {
    EXPECT_EQ(ui::FilledWidth(200, 0), 0);
    EXPECT_EQ(ui::FilledWidth(200, 50), 100);
    EXPECT_EQ(ui::FilledWidth(200, 100), 200);
    EXPECT_EQ(ui::FilledWidth(200, 254), 200);
}
