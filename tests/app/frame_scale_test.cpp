// The main window on a PC's large screen: sized, minimised, and on a monitor of another scale.
#include <cstring>

#include "platform/desktop/screen.h"
#include "platform/main_window.h"
#include "res/resource.h"
#include "tests/app/frame_fixture.h"
#include "tests/support/box.h"
#include "tests/support/finger.h"
#include "tests/support/input_taken.h"
#include "tests/support/monitor.h"
#include "tests/support/wait.h"
#include "tests/support/windows_seen.h"
#include "ui/paint/drawing_resources.h"
#include "ui/paint/screen_metrics.h"
#include "ui/paint/theme.h"

using namespace test;

namespace {

constexpr UINT scaleChanged = 0x02E0;

UINT monitorDots = 0;

UINT WINAPI DotsOfMonitor(HWND) {
    return monitorDots;
}

// The system tells each window the dots per inch of its monitor.
FARPROC WINAPI FindFunction(HMODULE module, const char* name);

class Scale {
 public:
    explicit Scale(UINT dots) : hook_("GetProcAddress", FindFunction) {
        original = hook_.Original();
        monitorDots = dots;
    }
    ~Scale() {
        // What the process keeps goes back with it.
        monitorDots = static_cast<UINT>(systemDots_);
        platform::desktop::TakeScaleOf(nullptr);
        ui::ForgetScreenMetrics();
        ui::Resources().Load();
    }
    static decltype(&GetProcAddress) original;

 private:
    const int systemDots_ = platform::desktop::DotsPerInch();
    PlatformHook<FARPROC(HMODULE, const char*)> hook_;
};

decltype(&GetProcAddress) Scale::original = nullptr;

FARPROC WINAPI FindFunction(HMODULE module, const char* name) {
    return reinterpret_cast<ULONG_PTR>(name) > 0xFFFF && std::strcmp(name, "GetDpiForWindow") == 0
               ? reinterpret_cast<FARPROC>(reinterpret_cast<void*>(DotsOfMonitor))
               : Scale::original(module, name);
}

// A screen on which the window does not fill everything, though this machine's is smaller.
constexpr RECT largeScreen = {0, 0, 640, 620};

class FrameOnAPC : public FrameFixture {
 protected:
    int BarHeight() { return ui::Height(ScreenRectangleOf(frame.Bar().Handle())); }
    HWND List() { return FindChild(frame.Handle(), L"kx::TouchList"); }
    HWND PathBar() const { return FindChild(frame.Handle(), L"kx::PathBar"); }
    LONG_PTR Style() const { return GetWindowLongPtrW(frame.Handle(), GWL_STYLE); }
    void TellScale(UINT dots) const {
        monitorDots = dots;
        SendMessageW(frame.Handle(), scaleChanged, MAKEWPARAM(dots, dots), 0);
    }
    // The distance of the lines between the first rows that are on the screen; 0 without two.
    int RowHeight() {
        const RECT list = ScreenRectangleOf(List());
        const RECT screen = {0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)};
        RECT seen;
        if (!IntersectRect(&seen, &list, &screen)) {
            return 0;
        }
        const Picture picture = Picture::OfScreen(seen);
        const COLORREF rule =
            ui::MixColors(GetSysColor(COLOR_WINDOWTEXT), GetSysColor(COLOR_WINDOW), 32);
        int first = -1;
        for (int y = 0; y < picture.Height(); ++y) {
            if (picture.At(picture.Width() / 2, y) == rule &&
                picture.At(picture.Width() - 20, y) == rule) {
                if (first >= 0) {
                    return y - first;
                }
                first = y;
            }
        }
        return 0;
    }
    // Whether the system itself follows the finger, which holds the window's edge.
    bool SystemSizes() const {
        GUITHREADINFO thread = {};
        thread.cbSize = sizeof thread;
        return GetGUIThreadInfo(GetWindowThreadProcessId(frame.Handle(), nullptr), &thread) &&
               (thread.flags & GUI_INMOVESIZE) != 0;
    }
    void ExpectEverythingInPlace() {
        // What the frame is in the middle of comes to its end first.
        SendMessageW(frame.Handle(), WM_NULL, 0, 0);
        RECT client = frame.ClientRectangle();
        MapWindowPoints(frame.Handle(), nullptr, reinterpret_cast<POINT*>(&client), 2);
        const RECT bar = ScreenRectangleOf(frame.Bar().Handle());
        const RECT pane = ScreenRectangleOf(frame.Pane());
        const RECT list = ScreenRectangleOf(List());
        EXPECT_EQ(bar.bottom, client.bottom);
        EXPECT_EQ(bar.right, client.right);
        EXPECT_EQ(pane.bottom, bar.top);
        EXPECT_EQ(pane.right, client.right);
        EXPECT_EQ(list.bottom, pane.bottom);
        EXPECT_EQ(list.right, pane.right);
        EXPECT_EQ(list.top, ScreenRectangleOf(PathBar()).bottom);
    }
};

}  // namespace

TEST_F(FrameOnAPC, HasAFrameOnlyWhereItDoesNotFillTheScreen) {
    constexpr LONG_PTR frameStyle =
        WS_CAPTION | WS_SYSMENU | WS_THICKFRAME | WS_MINIMIZEBOX | WS_MAXIMIZEBOX;
    {
        const Monitor monitor(largeScreen);
        Open();
        EXPECT_EQ(Style() & frameStyle, frameStyle);
        EXPECT_TRUE(SendMessageW(frame.Handle(), WM_GETICON, ICON_SMALL, 0));
        frame.Destroy();
    }
    app::MainFrame small;
    ASSERT_TRUE(small.Open());
    EXPECT_EQ(GetWindowLongPtrW(small.Handle(), GWL_STYLE) & frameStyle, WS_CAPTION);
    EXPECT_TRUE(SendMessageW(small.Handle(), WM_GETICON, ICON_BIG, 0));
}

TEST_F(FrameOnAPC, IsSizedByItsEdge) {
    const Monitor monitor(largeScreen);
    Open();
    RunFrame([this] {
        BringToFront(frame.Handle());
        const RECT before = ScreenRectangleOf(frame.Handle());
        const POINT edge = {before.left + 1, 300};
        const POINT target = {edge.x - 10, 300};
        Finger().Down(edge).Play();
        EXPECT_TRUE(WaitFor([this] { return SystemSizes(); }));
        Finger().MoveTo(edge.x - 4, 300).MoveTo(target).Up().Play();
        EXPECT_TRUE(WaitFor([&] {
            return ScreenRectangleOf(frame.Handle()).left == before.left - 10;
        })) << ScreenRectangleOf(frame.Handle()).left;
        // Its loop would swallow the end of the program's.
        EXPECT_TRUE(WaitFor([this] { return !SystemSizes(); }));
        EXPECT_EQ(ScreenRectangleOf(frame.Handle()).right, before.right);
        ExpectEverythingInPlace();
    });
}

TEST_F(FrameOnAPC, IsNeverTooSmallForItsBarAndSomeRows) {
    const Monitor monitor(largeScreen);
    const Scale scale(96);
    Open();
    MoveWindow(frame.Handle(), 0, 0, 10, 10, TRUE);
    const RECT place = ScreenRectangleOf(frame.Handle());
    EXPECT_EQ(ui::Width(place), 160);
    EXPECT_EQ(ui::Height(place), 160);
    ExpectEverythingInPlace();
}

TEST_F(FrameOnAPC, ComesBackAsItWasAfterItWasMinimised) {
    const Monitor monitor(largeScreen);
    Open();
    const RECT list = ScreenRectangleOf(List());
    ShowWindow(frame.Handle(), SW_MINIMIZE);
    ASSERT_TRUE(IsIconic(frame.Handle()));
    platform::RestoreWindow(frame.Handle());
    EXPECT_FALSE(IsIconic(frame.Handle()));
    const RECT now = ScreenRectangleOf(List());
    EXPECT_TRUE(EqualRect(&list, &now));
    ExpectEverythingInPlace();
}

// A window that is minimised gives the keyboard to none of its parts.
TEST_F(FrameOnAPC, GivesTheKeyboardToItsRowsAfterAPageWasClosedWhileItWasMinimised) {
    Open();
    const HWND window = frame.Handle();
    const auto seen = [window] {
        GUITHREADINFO thread = {};
        thread.cbSize = sizeof thread;
        GetGUIThreadInfo(GetWindowThreadProcessId(window, nullptr), &thread);
        return thread;
    };
    RunFrame([&] {
        ASSERT_TRUE(WaitFor([&] { return seen().hwndFocus == List(); }));
        PostMessageW(window, WM_SYSCOMMAND, SC_MINIMIZE, 0);
        ASSERT_TRUE(WaitFor([&] { return IsIconic(window); }));
        PostMessageW(window, WM_COMMAND, ID_ABOUT, 0);
        HWND page = nullptr;
        ASSERT_TRUE(WaitFor([&] {
            page = seen().hwndActive;
            return page && page != window;
        }));
        PostMessageW(page, WM_COMMAND, IDCANCEL, 0);
        ASSERT_TRUE(WaitFor([&] { return IsWindowEnabled(window) && !IsWindow(page); }));
        ASSERT_TRUE(WaitFor([&] { return seen().hwndFocus == window; }));
        ShowWindowAsync(window, SW_RESTORE);
        EXPECT_TRUE(WaitFor([&] { return seen().hwndFocus == List(); }));
    });
}

TEST_F(FrameOnAPC, OpensAtTheScaleOfItsMonitor) {
    const Monitor monitor(largeScreen);
    int heights[2] = {};
    for (const UINT dots : {96u, 192u}) {
        const Scale scale(dots);
        app::MainFrame window;
        ASSERT_TRUE(window.Open());
        heights[dots / 192] = ui::Height(ScreenRectangleOf(window.Bar().Handle()));
        EXPECT_EQ(ui::GetScreenMetrics().shortSide, 240 * dots / 96);
        LOGFONTW font = {};
        GetObjectW(ui::Fonts().Base(), sizeof font, &font);
        EXPECT_EQ(font.lfHeight, -static_cast<LONG>(12 * dots / 96));
    }
    EXPECT_GE(heights[1], 2 * heights[0] - 2);
    EXPECT_LE(heights[1], 2 * heights[0] + 2);
}

TEST_F(FrameOnAPC, FollowsTheScaleOfAnotherMonitor) {
    const Monitor monitor(RECT{0, 0, 1600, 1500});
    const Scale scale(96);
    Open();
    RunFrame([this] {
        Command(ID_SHOW_SYSTEM_STATUS);
        ASSERT_TRUE(WaitForCaption(L"System Status"));
        Command(ID_SHOW_FILES);
        ASSERT_TRUE(WaitForCaption(L"\\"));
        const RECT before = ScreenRectangleOf(frame.Handle());
        const int bar = BarHeight();
        const int strip = ui::Height(ScreenRectangleOf(PathBar()));
        // Half of it: a window twice as large would not find room on this machine's screen.
        TellScale(48);
        EXPECT_TRUE(WaitFor(
            [&] { return ui::Width(ScreenRectangleOf(frame.Handle())) == ui::Width(before) / 2; }));
        ExpectEverythingInPlace();
        const RECT now = ScreenRectangleOf(frame.Handle());
        EXPECT_EQ(ui::Height(now), ui::Height(before) / 2);
        EXPECT_EQ((now.left + now.right) / 2, (before.left + before.right) / 2);
        EXPECT_LE(BarHeight(), bar / 2 + 2);
        EXPECT_LE(ui::Height(ScreenRectangleOf(PathBar())), strip / 2 + 2);
        TellScale(96);
        EXPECT_TRUE(WaitFor([&] {
            const RECT place = ScreenRectangleOf(frame.Handle());
            return EqualRect(&place, &before) && BarHeight() == bar;
        }));
        ExpectEverythingInPlace();
    });
}

TEST_F(FrameOnAPC, TakesAnotherScaleWhenItsOwnBoxHasClosed) {
    const Monitor monitor(RECT{0, 0, 1600, 1500});
    const Scale scale(96);
    Open();
    RunFrame([this] {
        const int bar = BarHeight();
        PostMessageW(frame.Handle(), WM_COMMAND, ID_SETTINGS, 0);
        const HWND page = WaitForWindow(L"#32770");
        ASSERT_TRUE(page);
        TellScale(192);
        SendMessageW(frame.Handle(), WM_NULL, 0, 0);
        EXPECT_EQ(BarHeight(), bar);
        PostMessageW(page, WM_COMMAND, IDCANCEL, 0);
        EXPECT_TRUE(WaitFor([&] { return BarHeight() >= 2 * bar - 2; }));
    });
}

TEST_F(FrameOnAPC, ShowsItsRowsAtTheNewScale) {
    // In the middle of this machine's screen, whatever its scale.
    const Monitor monitor(RECT{-560, -680, 1040, 1320});
    const Scale scale(96);
    Open();
    RunFrame([this] {
        BringToFront(frame.Handle());
        int row = 0;
        EXPECT_TRUE(WaitFor([&] { return (row = RowHeight()) > 0; }));
        TellScale(192);
        // As high as a thumb needs; the system's icons keep the size of its first screen.
        EXPECT_TRUE(WaitFor([&] { return RowHeight() == 60; })) << RowHeight();
        EXPECT_LT(row, 60);
    });
}
