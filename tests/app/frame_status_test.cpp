// System Status in the main frame: what the frame passes on to it.
#include "res/resource.h"
#include "tests/app/frame_fixture.h"
#include "tests/support/fake_device.h"
#include "tests/support/wait.h"

using namespace test;

class FrameStatus : public FrameFixture {
 protected:
    void OpenStatus() {
        CleanSettings::SetNumber(L"view", 3);
        Open();
    }
    bool Shows(const std::wstring& text) {
        const DrawnTexts drawn;
        RedrawWindow(frame.Handle(), nullptr, nullptr,
                     RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);
        return drawn.Has(text);
    }

    FakeDevice device;
};

TEST_F(FrameStatus, ACardAppearsAndDisappearsWithItsDeviceEvent) {
    OpenStatus();
    EXPECT_EQ(Caption(), L"System Status");
    EXPECT_FALSE(Shows(L"M:"));
    device.volumes[L'M'] = FakeVolume{DRIVE_REMOVABLE, 1 << 20, 1 << 19};
    SendMessageW(frame.Handle(), WM_DEVICECHANGE, 0x8000, 0);
    EXPECT_TRUE(Shows(L"M:"));
    device.volumes.clear();
    EXPECT_TRUE(Shows(L"M:"));
    SendMessageW(frame.Handle(), WM_DEVICECHANGE, 0x8004, 0);
    EXPECT_FALSE(Shows(L"M:"));
}

TEST_F(FrameStatus, TheTimerReachesTheView) {
    OpenStatus();
    device.batteryPercent = 21;
    EXPECT_FALSE(Shows(L"21%"));
    SendMessageW(frame.Pane(), WM_TIMER, 1, 0);
    EXPECT_TRUE(Shows(L"21%"));
}

TEST_F(FrameStatus, ComingBackReadsTheValuesAndGoingAwayStopsTheTimer) {
    OpenStatus();
    SendMessageW(frame.Handle(), WM_ACTIVATE, WA_INACTIVE, 0);
    // The timer is gone: there is none to end.
    EXPECT_FALSE(KillTimer(frame.Pane(), 1));
    device.batteryPercent = 21;
    SendMessageW(frame.Handle(), WM_ACTIVATE, WA_ACTIVE, 0);
    EXPECT_TRUE(Shows(L"21%"));
    EXPECT_TRUE(KillTimer(frame.Pane(), 1));
}

TEST_F(FrameStatus, AnotherViewIsNotDisturbed) {
    OpenStatus();
    Command(ID_SHOW_FILES);
    EXPECT_FALSE(KillTimer(frame.Pane(), 1));
    const int readings = device.powerReadings;
    SendMessageW(frame.Handle(), WM_DEVICECHANGE, 0x8000, 0);
    SendMessageW(frame.Pane(), WM_TIMER, 1, 0);
    EXPECT_EQ(device.powerReadings, readings);
}
