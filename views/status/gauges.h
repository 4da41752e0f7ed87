// The gauges of the System Status view: each reads one resource of the device.
#pragma once

#include <memory>

#include "views/status/gauge_rules.h"

namespace views {

class Gauge {
 public:
    virtual ~Gauge() = default;

    // Reads the values anew; false when the resource is gone. What cannot be read is shown as
    // unknown.
    virtual bool Update() = 0;
    virtual COLORREF BarColor() const { return UsageBarColor(reading_.percent); }

    const std::wstring& Label() const { return label_; }
    // What tells gauges of one label apart: a folder of storage. Empty for others.
    const std::wstring& Folder() const { return folder_; }
    const GaugeReading& Reading() const { return reading_; }

 protected:
    explicit Gauge(std::wstring label, std::wstring folder = std::wstring())
        : label_(std::move(label)), folder_(std::move(folder)) {}
    void Show(GaugeReading reading) { reading_ = std::move(reading); }

 private:
    std::wstring label_;
    std::wstring folder_;
    GaugeReading reading_;
};

using GaugeOwner = std::unique_ptr<Gauge>;

GaugeOwner MakeBatteryGauge();
GaugeOwner MakeMemoryGauge();
// Of a folder, with its leading backslash.
GaugeOwner MakeStorageGauge(std::wstring folder);
GaugeOwner MakeStorageCardGauge(const std::wstring& folder);

}  // namespace views
