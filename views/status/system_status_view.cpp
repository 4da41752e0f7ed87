#include "views/status/system_status_view.h"

#include <dbt.h>

#include "platform/handles.h"
#include "res/resource.h"
#include "text/resources.h"
#include "views/status/storage_folders.h"

namespace views {

namespace {

constexpr UINT_PTR updateTimer = 1;
constexpr UINT updatePeriod = 60000;

// The display options after which the view measures and reads anew.
// Kept on purpose: docs/compatibility.md#watched-bits
constexpr DWORD watchedFlags = 0x06C0;

}  // namespace

SystemStatusView::SystemStatusView(Frame& frame) : ListView(frame, IDR_SYSTEM_STATUS) {
    SetList(list_);
}

void SystemStatusView::Layout(HDC dc) {
    ListView::Layout(dc);
    rows_.Layout(dc);
}

bool SystemStatusView::Activate(const ViewArgument& argument) {
    if (!ListView::Activate(argument)) {
        return false;
    }
    Build();
    StartTimer();
    return true;
}

bool SystemStatusView::Deactivate(HDC dc) {
    StopTimer();
    return ListView::Deactivate(dc);
}

void SystemStatusView::Resume() {
    Refresh();
    StartTimer();
}

void SystemStatusView::Suspend() {
    StopTimer();
}

void SystemStatusView::FlagsChanged(DWORD mask, DWORD) {
    if (!(mask & watchedFlags)) {
        return;
    }
    {
        const platform::WindowDC dc(GetFrame().MainWindow());
        Rescale(dc);
    }
    Refresh();
}

std::wstring SystemStatusView::Title() const {
    return text::TextOf(IDS_SYSTEM_STATUS_TITLE);
}

void SystemStatusView::Refresh() {
    for (unsigned row = 0; row < list_.GetCount(); ++row) {
        if (!list_[row].Update()) {
            Build();
            return;
        }
    }
    InvalidateRect(list_.Handle(), nullptr, FALSE);
}

void SystemStatusView::DeviceChanged(WPARAM event) {
    if (event == DBT_DEVICEARRIVAL || event == DBT_DEVICEREMOVECOMPLETE) {
        Build();
    }
}

void SystemStatusView::Timer(UINT_PTR timer) {
    if (timer == updateTimer) {
        Refresh();
    }
}

void SystemStatusView::Build() {
    const platform::WaitCursor wait;
    const Gauge* const before = list_.Selected();
    const std::wstring label = before ? before->Label() : std::wstring();
    const std::wstring folder = before ? before->Folder() : std::wstring();
    Gauges gauges;
    for (const auto make : {MakeBatteryGauge, MakeMemoryGauge}) {
        GaugeOwner gauge = make();
        if (gauge->Update()) {
            gauges.Add(std::move(gauge));
        }
    }
    AddStorage(gauges);
    list_.Show(std::move(gauges));
    if (!label.empty()) {
        list_.SetSelection(list_.Find([&](const Gauge& gauge) {
            return gauge.Label() == label && gauge.Folder() == folder;
        }));
    }
}

void SystemStatusView::AddStorage(Gauges& gauges) {
    size_t afterStorage = gauges.Count();
    for (const StorageFolder& folder : FindStorageFolders()) {
        const std::wstring path = L"\\" + folder.name;
        GaugeOwner gauge = folder.isCard ? MakeStorageCardGauge(path) : MakeStorageGauge(path);
        // A card that has gone since it was listed keeps its row until the next update.
        gauge->Update();
        if (folder.isCard) {
            gauges.Add(std::move(gauge));
        } else {
            gauges.Insert(afterStorage++, std::move(gauge));
        }
    }
}

void SystemStatusView::StartTimer() {
    SetTimer(GetFrame().Pane(), updateTimer, updatePeriod, nullptr);
}

void SystemStatusView::StopTimer() {
    KillTimer(GetFrame().Pane(), updateTimer);
}

}  // namespace views
