// The System Status view: gauges of the device's battery, memory and storage.
#pragma once

#include "views/list_view.h"
#include "views/status/gauge_rows.h"

namespace views {

class SystemStatusView final : public ListView, private ui::RowPainter<Gauge> {
 public:
    explicit SystemStatusView(Frame& frame);

    void Layout(HDC dc) override;
    bool Activate(const ViewArgument& argument) override;
    bool Deactivate(HDC dc) override;
    void Resume() override;
    void Suspend() override;
    void FlagsChanged(DWORD mask, DWORD value) override;
    std::wstring Title() const override;
    void UpdateMenu(HMENU) override {}
    void Refresh() override;
    void DeviceChanged(WPARAM event) override;
    void Timer(UINT_PTR timer) override;

 private:
    using Gauges = ui::RowList<Gauge>::Rows;

    int RowHeight(const Gauge&) const override { return rows_.Height(); }
    void DrawRow(const DRAWITEMSTRUCT& place, const Gauge& gauge) const override {
        rows_.Draw(place, gauge);
    }

    // Fills the list with the gauges of what the device has now; a selected one stays selected.
    void Build();
    static void AddStorage(Gauges& gauges);
    // Starts a new period of the timer that keeps the gauges up to date (SetTimer).
    void StartTimer();
    void StopTimer();

    GaugeRows rows_;
    ui::RowList<Gauge> list_{*this, *this};
};

}  // namespace views
