// The System Status view: gauges of the device's battery, memory and storage.
#pragma once

#include "res/resource.h"
#include "views/list_view.h"
#include "views/status/gauge_rows.h"

namespace views {

class SystemStatusView final : public ListView {
 public:
    explicit SystemStatusView(Frame& frame) : ListView(frame, IDR_SYSTEM_STATUS) {}
    ~SystemStatusView() override { List().Clear(); }

    void Layout(HDC dc) override;
    bool Activate(const ViewArgument& argument) override;
    bool Deactivate(HDC dc) override;
    void Resume() override;
    void Suspend() override;
    void FlagsChanged(DWORD mask, DWORD value) override;
    std::wstring Title() const override;
    void DrawRow(const DRAWITEMSTRUCT& row) override;
    void DeleteRow(ULONG_PTR data) override;
    void Tap(unsigned) override {}
    void UpdateMenu(HMENU) override {}
    void Refresh() override;
    int RowHeight(ULONG_PTR) const override { return rows_.Height(); }
    void DeviceChanged(WPARAM event) override;
    void Timer(UINT_PTR timer) override;

 private:
    static Gauge& GaugeOf(ULONG_PTR data) { return *reinterpret_cast<Gauge*>(data); }
    // Fills the list with the gauges of what the device has now; a selected one stays selected.
    void Build();
    void AddStorage();
    void Insert(unsigned row, GaugeOwner gauge);
    // Starts a new period of the timer that keeps the gauges up to date (SetTimer).
    void StartTimer();
    void StopTimer();

    GaugeRows rows_;
};

}  // namespace views
