// The rows of System Status, and when they are read.
#include "res/resource.h"
#include "tests/support/heaps.h"
#include "tests/support/wait.h"
#include "tests/support/world.h"
#include "tests/views/status_fixture.h"

using namespace test;
using namespace views;

using Labels = std::vector<std::wstring>;

namespace {

// How often the first of the cards has been asked about.
int timesAsked = 0;
UINT(WINAPI* driveType)(const wchar_t*) = nullptr;
UINT WINAPI CountFirstCard(const wchar_t* root) {
    timesAsked += root[0] == L'M';
    return driveType(root);
}

}  // namespace

class StatusRows : public StatusFixture {};

TEST_F(StatusRows, AreTheBatteryTheMemoryTheStorageAndTheCards) {
    AddCard(L'M');
    device.volumes[L'N'] = FakeVolume{DRIVE_FIXED, 1000, 500};
    AddCard(L'O');
    device.volumes[L'P'] = FakeVolume{DRIVE_FIXED, 2000, 500};
    Open();
    EXPECT_EQ(ShownLabels(),
              (Labels{L"Battery", L"Memory", L"Storage", L"Storage", L"Storage", L"M:", L"O:"}));
    EXPECT_EQ(GaugeAt(2).Reading().text, L"64.00 MB free of 128.00 MB");
    EXPECT_EQ(GaugeAt(3).Reading().percent, 50u);
    EXPECT_EQ(GaugeAt(4).Reading().percent, 75u);
    EXPECT_EQ(GaugeAt(4).Reading().icon, GaugeIcon::Storage);
    EXPECT_EQ(GaugeAt(5).Reading().icon, GaugeIcon::StorageCard);
    EXPECT_EQ(GaugeAt(5).Reading().text, L"512.00 KB free of 1.00 MB");
}

TEST_F(StatusRows, DisksThatHoldNoFilesHaveNone) {
    device.volumes[L'M'].type = DRIVE_CDROM;
    device.volumes[L'N'].type = DRIVE_REMOTE;
    AddCard(L'O');
    device.volumes[L'O'].present = false;
    Open();
    EXPECT_EQ(ShownLabels(), (Labels{L"Battery", L"Memory", L"Storage"}));
}

TEST_F(StatusRows, ABatteryThatCannotBeReadHasOne) {
    device.hasPower = false;
    Open();
    EXPECT_EQ(GaugeAt(0).Reading().text, L"Unknown");
    EXPECT_EQ(GaugeAt(0).Reading().icon, GaugeIcon::BatteryUnknown);
}

TEST_F(StatusRows, StorageThatCannotBeReadHasOne) {
    device.current.readable = false;
    Open();
    ASSERT_EQ(List().GetCount(), 3u);
    EXPECT_EQ(GaugeAt(2).Reading().text, L"Unknown");
    EXPECT_EQ(GaugeAt(2).Reading().percent, 0u);
    EXPECT_EQ(GaugeAt(2).Reading().icon, GaugeIcon::Storage);
}

TEST_F(StatusRows, TheBarsHaveTheirColors) {
    device.batteryPercent = 10;
    device.memoryLoad = 90;
    device.current.total = 100;
    device.current.totalFree = 11;
    Open();
    EXPECT_EQ(GaugeAt(0).BarColor(), COLORREF{200});
    EXPECT_EQ(GaugeAt(1).BarColor(), COLORREF{200});
    EXPECT_EQ(GaugeAt(2).BarColor(), GetSysColor(COLOR_HIGHLIGHT));
    device.batteryPercent = 11;
    device.memoryLoad = 89;
    device.current.totalFree = 10;
    View().Refresh();
    EXPECT_EQ(GaugeAt(0).BarColor(), GetSysColor(COLOR_HIGHLIGHT));
    EXPECT_EQ(GaugeAt(1).BarColor(), GetSysColor(COLOR_HIGHLIGHT));
    EXPECT_EQ(GaugeAt(2).BarColor(), COLORREF{200});
}

TEST_F(StatusRows, TheTitleSaysWhereOneIs) {
    EXPECT_EQ(Open().Title(), L"System Status");
}

TEST_F(StatusRows, TheLeftButtonIsRefresh) {
    Open();
    const HMENU menu = frame.Bar().Menu();
    wchar_t label[32] = {};
    GetMenuStringW(menu, 0, label, 32, MF_BYPOSITION);
    EXPECT_STREQ(label, L"Refresh");
    EXPECT_EQ(GetMenuItemID(menu, 0), UINT{ID_REFRESH});
}

TEST_F(StatusRows, ACardThatVanishesWhileItIsFoundGoesWithTheNextUpdate) {
    AddCard(L'M');
    device.cardsVanish = true;
    Open();
    ASSERT_EQ(ShownLabels(), (Labels{L"Battery", L"Memory", L"Storage", L"M:"}));
    EXPECT_EQ(GaugeAt(3).Reading().text, L"Unknown");
    View().Refresh();
    EXPECT_EQ(ShownLabels(), (Labels{L"Battery", L"Memory", L"Storage"}));
}

class StatusUpdates : public StatusFixture {};

TEST_F(StatusUpdates, TheRefreshCommandReadsTheValuesAnew) {
    Open();
    device.batteryPercent = 33;
    device.memoryLoad = 12;
    EXPECT_TRUE(View().Command(ID_REFRESH));
    EXPECT_EQ(GaugeAt(0).Reading().text, L"33%");
    EXPECT_EQ(GaugeAt(1).Reading().percent, 12u);
}

TEST_F(StatusUpdates, TheKeyF8IsRefresh) {
    Open();
    device.batteryPercent = 33;
    EXPECT_TRUE(View().Key(VK_F8));
    EXPECT_TRUE(PumpUntil([&] { return GaugeAt(0).Reading().text == L"33%"; }));
    EXPECT_FALSE(View().Key(VK_F7));
}

TEST_F(StatusUpdates, ARemovedCardLosesItsRow) {
    AddCard(L'M');
    AddCard(L'N');
    Open();
    ASSERT_EQ(List().GetCount(), 5u);
    device.volumes.erase(L'M');
    View().Refresh();
    EXPECT_EQ(ShownLabels(), (Labels{L"Battery", L"Memory", L"Storage", L"N:"}));
}

TEST_F(StatusUpdates, NeverLetTheSystemAskForAMedium) {
    AddCard(L'M');
    Open();
    device.systemMayAsk = false;
    View().Refresh();
    device.volumes[L'M'].present = false;
    View().Refresh();
    EXPECT_FALSE(device.systemMayAsk);
}

TEST_F(StatusUpdates, ACardIsAskedNoMoreOftenBesideOthers) {
    AddCard(L'M');
    Open();
    const PlatformHook<UINT WINAPI(const wchar_t*)> hook("GetDriveTypeW", CountFirstCard);
    driveType = hook.Original();
    timesAsked = 0;
    View().DeviceChanged(0x8000);
    const int alone = timesAsked;
    EXPECT_GT(alone, 0);
    AddCard(L'N');
    AddCard(L'O');
    timesAsked = 0;
    View().DeviceChanged(0x8000);
    ASSERT_EQ(List().GetCount(), 6u);
    EXPECT_EQ(timesAsked, alone);
}

TEST_F(StatusUpdates, ANewCardWaitsForItsDeviceEvent) {
    Open();
    AddCard(L'M');
    View().Refresh();
    EXPECT_EQ(List().GetCount(), 3u);
    View().DeviceChanged(0x8000);
    EXPECT_EQ(List().GetCount(), 4u);
    device.volumes.erase(L'M');
    for (const WPARAM event : {0x0007, 0x8001, 0x8002, 0x8003, 0x8005}) {
        View().DeviceChanged(event);
        EXPECT_EQ(List().GetCount(), 4u);
    }
    View().DeviceChanged(0x8004);
    EXPECT_EQ(List().GetCount(), 3u);
}

TEST_F(StatusUpdates, TheSelectedRowStaysSelected) {
    AddCard(L'N');
    Open();
    List().SetSelection(3);
    View().Refresh();
    EXPECT_EQ(List().GetSelection(), 3u);
    AddCard(L'M');
    View().DeviceChanged(0x8000);
    EXPECT_EQ(List().GetSelection(), 4u);
    EXPECT_EQ(GaugeAt(4).Label(), L"N:");
    device.volumes.erase(L'N');
    View().Refresh();
    EXPECT_EQ(List().GetSelection(), ui::noRow);
}

TEST_F(StatusUpdates, TheSelectedOneOfSeveralDisksStaysSelected) {
    device.volumes[L'M'] = FakeVolume{DRIVE_FIXED, 1 << 20, 1 << 19};
    device.volumes[L'N'] = FakeVolume{DRIVE_FIXED, 1 << 20, 1 << 19};
    Open();
    ASSERT_EQ(ShownLabels(), (Labels{L"Battery", L"Memory", L"Storage", L"Storage", L"Storage"}));
    for (const unsigned row : {3u, 4u, 2u}) {
        List().SetSelection(row);
        View().DeviceChanged(0x8000);
        EXPECT_EQ(List().GetSelection(), row);
    }
}

TEST_F(StatusUpdates, TheirDisplayOptionsReadTheValuesAnew) {
    Open();
    for (const DWORD mask : {0x0040, 0x0080, 0x0200, 0x0400}) {
        const int before = device.powerReadings;
        View().FlagsChanged(mask, mask);
        EXPECT_EQ(device.powerReadings, before + 1) << mask;
    }
    const int before = device.powerReadings;
    View().FlagsChanged(~0x06C0u, 0);
    EXPECT_EQ(device.powerReadings, before);
}

TEST_F(StatusUpdates, AThousandLeaveNothingBehind) {
    AddCard(L'M');
    Open();
    const auto round = [&] {
        View().Refresh();
        View().DeviceChanged(0x8000);
        UpdateWindow(List().Handle());
    };
    for (int i = 0; i < 20; ++i) {
        round();
    }
    const Held held = CountHeld();
    const size_t before = BytesOnAllHeaps();
    for (int i = 0; i < 1000; ++i) {
        round();
    }
    EXPECT_EQ(BytesOnAllHeaps(), before);
    EXPECT_EQ(CountHeld(), held);
}

TEST_F(StatusUpdates, LeavingFreesTheRows) {
    Open();
    const ui::RowListWindow& list = List();
    ASSERT_EQ(list.GetCount(), 3u);
    EXPECT_TRUE(View().Deactivate(nullptr));
    EXPECT_EQ(list.GetCount(), 0u);
    EXPECT_FALSE(IsWindowVisible(list.Handle()));
}

namespace {

struct TimerCall {
    HWND window;
    UINT_PTR id;
    // 0 for the end of a timer.
    UINT period;
    bool operator==(const TimerCall&) const = default;
};
std::vector<TimerCall> calls;

using StartTimer = UINT_PTR(HWND, UINT_PTR, UINT, TIMERPROC);
using EndTimer = BOOL(HWND, UINT_PTR);

UINT_PTR WINAPI NoteStart(HWND window, UINT_PTR id, UINT period, TIMERPROC) {
    calls.push_back({window, id, period});
    return id;
}

BOOL WINAPI NoteEnd(HWND window, UINT_PTR id) {
    calls.push_back({window, id, 0});
    return TRUE;
}

}  // namespace

class StatusTimer : public StatusFixture {
 protected:
    StatusTimer() : start_("SetTimer", NoteStart), end_("KillTimer", NoteEnd) { calls.clear(); }
    std::vector<TimerCall> TakeCalls() { return std::exchange(calls, {}); }
    TimerCall Start() { return {frame.Pane(), 1, 60000}; }
    TimerCall End() { return {frame.Pane(), 1, 0}; }

 private:
    PlatformHook<StartTimer> start_;
    PlatformHook<EndTimer> end_;
};

TEST_F(StatusTimer, RunsFor60SecondsWhileTheViewIsShown) {
    Open();
    EXPECT_EQ(TakeCalls(), std::vector{Start()});
    View().Deactivate(nullptr);
    EXPECT_EQ(TakeCalls(), std::vector{End()});
}

TEST_F(StatusTimer, ReadsTheValuesAnew) {
    Open();
    device.batteryPercent = 21;
    SendMessageW(frame.Pane(), WM_TIMER, 2, 0);
    EXPECT_EQ(GaugeAt(0).Reading().text, L"75%");
    SendMessageW(frame.Pane(), WM_TIMER, 1, 0);
    EXPECT_EQ(GaugeAt(0).Reading().text, L"21%");
}

TEST_F(StatusTimer, IsStoppedBySuspendAndStartedAnewByResume) {
    Open();
    TakeCalls();
    View().Suspend();
    EXPECT_EQ(TakeCalls(), std::vector{End()});
    device.batteryPercent = 21;
    View().Resume();
    EXPECT_EQ(GaugeAt(0).Reading().text, L"21%");
    EXPECT_EQ(TakeCalls(), std::vector{Start()});
}

TEST_F(StatusTimer, IsNotStartedAnewByRefresh) {
    Open();
    TakeCalls();
    View().Command(ID_REFRESH);
    SendMessageW(frame.Pane(), WM_TIMER, 1, 0);
    EXPECT_EQ(TakeCalls(), std::vector<TimerCall>{});
}
