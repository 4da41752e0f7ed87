#include "views/status/gauges.h"

#include "platform/storage.h"
#include "res/resource.h"
#include "text/resources.h"

namespace views {

namespace {

class BatteryGauge final : public Gauge {
 public:
    BatteryGauge() : Gauge(text::TextOf(IDS_BATTERY)) {}

    bool Update() override {
        platform::BatteryStatus status;
        Show(ReadingOfBattery(platform::ReadBattery(&status) ? &status : nullptr));
        return true;
    }
    COLORREF BarColor() const override { return BatteryBarColor(Reading().percent); }
};

class MemoryGauge final : public Gauge {
 public:
    MemoryGauge() : Gauge(text::TextOf(IDS_MEMORY)) {}

    bool Update() override {
        MEMORYSTATUS status = {};
        status.dwLength = sizeof status;
        GlobalMemoryStatus(&status);
        Show(ReadingOfMemory(status.dwTotalPhys, status.dwAvailPhys, status.dwMemoryLoad));
        return true;
    }
};

class StorageGauge : public Gauge {
 public:
    explicit StorageGauge(std::wstring folder)
        : StorageGauge(text::TextOf(IDS_STORAGE), std::move(folder), GaugeIcon::Storage) {}

    bool Update() override {
        uint64_t total = 0;
        uint64_t totalFree = 0;
        Show(platform::StorageSpace(Folder().c_str(), &total, &totalFree)
                 ? ReadingOfStorage(icon_, total, totalFree)
                 : UnknownReading(icon_));
        return true;
    }

 protected:
    StorageGauge(std::wstring label, std::wstring folder, GaugeIcon icon)
        : Gauge(std::move(label), std::move(folder)), icon_(icon) {}

 private:
    GaugeIcon icon_;
};

class StorageCardGauge final : public StorageGauge {
 public:
    explicit StorageCardGauge(const std::wstring& folder)
        : StorageGauge(folder.substr(1), folder, GaugeIcon::StorageCard) {}

    bool Update() override {
        if (!platform::StorageExists(Folder().c_str())) {
            Show(UnknownReading(GaugeIcon::StorageCard));
            return false;
        }
        return StorageGauge::Update();
    }
};

}  // namespace

GaugeOwner MakeBatteryGauge() {
    return std::make_unique<BatteryGauge>();
}

GaugeOwner MakeMemoryGauge() {
    return std::make_unique<MemoryGauge>();
}

GaugeOwner MakeStorageGauge(std::wstring folder) {
    return std::make_unique<StorageGauge>(std::move(folder));
}

GaugeOwner MakeStorageCardGauge(const std::wstring& folder) {
    return std::make_unique<StorageCardGauge>(folder);
}

}  // namespace views
