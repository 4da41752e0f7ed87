#include <stdexcept>
#include <vector>

#include "faults/fault.h"
#include "res/resource.h"
#include "tests/app/frame_fixture.h"
#include "tests/support/finger.h"
#include "tests/support/platform_hook.h"
#include "tests/support/wait.h"
#include "tests/support/windows_seen.h"
#include "ui/paint/drawing_resources.h"

using namespace test;

namespace {

using FileInfo = DWORD_PTR(const wchar_t*, DWORD, SHFILEINFOW*, UINT, UINT);
FileInfo* fileInfo = nullptr;
int breaks = 0;

// Something deep in a view's activation that ends in a fault once.
DWORD_PTR WINAPI BreakOnFileInfo(const wchar_t* path, DWORD attributes, SHFILEINFOW* info,
                                 UINT size, UINT flags) {
    if (breaks > 0) {
        --breaks;
        throw faults::W32Fault(E_ACCESSDENIED);
    }
    return fileInfo(path, attributes, info, size, flags);
}

using Show = BOOL(HWND, int);
Show* show = nullptr;

BOOL WINAPI BreakOnHide(HWND window, int command) {
    if (command == SW_HIDE && breaks > 0) {
        --breaks;
        throw std::runtime_error("internal");
    }
    return show(window, command);
}

using MakeWindow = HWND(DWORD, const wchar_t*, const wchar_t*, DWORD, int, int, int, int, HWND,
                        HMENU, HINSTANCE, void*);
MakeWindow* makeWindow = nullptr;
const wchar_t* scarceClass = nullptr;
int windowsAllowed = 0;

// Has room for so many windows of a class and no more.
HWND WINAPI CreateFewWindows(DWORD extended, const wchar_t* windowClass, const wchar_t* title,
                             DWORD style, int x, int y, int width, int height, HWND parent,
                             HMENU menu, HINSTANCE module, void* data) {
    if (reinterpret_cast<ULONG_PTR>(windowClass) > 0xFFFF &&
        std::wstring(windowClass) == scarceClass && windowsAllowed-- <= 0) {
        SetLastError(ERROR_NOT_ENOUGH_MEMORY);
        return nullptr;
    }
    return makeWindow(extended, windowClass, title, style, x, y, width, height, parent, menu,
                      module, data);
}

BOOL WINAPI NoMetrics(HDC, TEXTMETRICW*) {
    return FALSE;
}

using Move = BOOL(HWND, int, int, int, int, BOOL);
Move* moveWindow = nullptr;
BOOL WINAPI BreakOnMove(HWND window, int x, int y, int width, int height, BOOL repaint) {
    if (ClassOf(window) == L"kx::TouchList") {
        throw std::bad_alloc();
    }
    return moveWindow(window, x, y, width, height, repaint);
}

using FindFile = HANDLE(const wchar_t*, WIN32_FIND_DATAW*);
HANDLE WINAPI BreakOnFind(const wchar_t*, WIN32_FIND_DATAW*) {
    throw std::bad_alloc();
}

BOOL WINAPI BreakOnPower(SYSTEM_POWER_STATUS*) {
    if (breaks > 0) {
        --breaks;
        throw std::bad_alloc();
    }
    return FALSE;
}

BOOL CALLBACK AddWindow(HWND window, LPARAM windows) {
    reinterpret_cast<std::vector<HWND>*>(windows)->push_back(window);
    return TRUE;
}

class FrameViews : public FrameFixture {};

}  // namespace

TEST_F(FrameViews, OpenOnTheRootOfFilesOnAFreshDevice) {
    Open();
    EXPECT_EQ(Caption(), L"\\");
    EXPECT_EQ(frame.Flags(), 0u);
    EXPECT_FALSE(CleanSettings::Number(L"view"));
    EXPECT_FALSE(CleanSettings::Number(L"flags"));
    EXPECT_FALSE(CleanSettings::Text(L"path"));
}

TEST_F(FrameViews, OpenOnTheStoredOne) {
    const wchar_t* const captions[] = {L"\\", L"Applications (", L"Processes (", L"System Status"};
    for (DWORD view = 0; view < 4; ++view) {
        CleanSettings::SetNumber(L"view", view);
        Open();
        EXPECT_TRUE(Caption().starts_with(captions[view])) << view;
        frame.Destroy();
    }
}

// A bar with a key that is a command shows from the start what the menu says of it.
TEST_F(FrameViews, OpenWithTheirCommandsUpToDate) {
    CleanSettings::SetNumber(L"view", 3);
    Open();
    EXPECT_TRUE(ItemState(ID_SHOW_SYSTEM_STATUS) & MF_CHECKED);
    EXPECT_FALSE(ItemState(ID_SHOW_FILES) & MF_CHECKED);
}

TEST_F(FrameViews, OpenOnFilesWhenTheStoredOneIsNone) {
    for (const DWORD view : {4u, 7u, 0x80000000u, 0xFFFFFFFFu}) {
        CleanSettings::SetNumber(L"view", view);
        Open();
        EXPECT_EQ(Caption(), L"\\") << view;
        frame.Destroy();
    }
}

TEST_F(FrameViews, AreSwitchedByTheirCommands) {
    Open();
    Command(ID_SHOW_APPLICATIONS);
    EXPECT_TRUE(Caption().starts_with(L"Applications (")) << testing::PrintToString(Caption());
    Command(ID_SHOW_PROCESSES);
    EXPECT_TRUE(Caption().starts_with(L"Processes (")) << testing::PrintToString(Caption());
    Command(ID_SHOW_DLLS);
    EXPECT_TRUE(Caption().starts_with(L"Dlls (")) << testing::PrintToString(Caption());
    Command(ID_SHOW_SYSTEM_STATUS);
    EXPECT_EQ(Caption(), L"System Status");
    Command(ID_SHOW_FILES);
    EXPECT_EQ(Caption(), L"\\");
    Command(ID_SHOW_FILES);
    EXPECT_EQ(Caption(), L"\\");
}

TEST_F(FrameViews, ShowOneListAtATime) {
    Open();
    for (const UINT command : {601u, 602u, 603u, 620u, 600u}) {
        Command(command);
        int lists = 0;
        for (HWND child = GetWindow(frame.Pane(), GW_CHILD); child;
             child = GetWindow(child, GW_HWNDNEXT)) {
            lists += IsWindowVisible(child) && ClassOf(child) == L"kx::TouchList";
        }
        EXPECT_EQ(lists, 1) << command;
    }
}

TEST_F(FrameViews, HaveTheirOwnMenus) {
    // A command that only this view's menu has.
    const struct {
        UINT view;
        UINT own;
    } menus[] = {{ID_SHOW_FILES, ID_NEW_FOLDER},
                 {ID_SHOW_APPLICATIONS, ID_STOP_ALL},
                 {ID_SHOW_PROCESSES, ID_SHOW_DLLS},
                 {ID_SHOW_DLLS, ID_SHOW_SIZE}};
    Open();
    for (const auto& menu : menus) {
        Command(menu.view);
        for (const auto& other : menus) {
            EXPECT_EQ(ItemState(other.own) != noItem, other.own == menu.own)
                << menu.view << ' ' << other.own;
        }
    }
    Command(ID_SHOW_SYSTEM_STATUS);
    EXPECT_EQ(frame.Bar().ButtonCount(), 2u);
    EXPECT_EQ(GetMenuItemID(frame.Bar().Menu(), 0), 610u);
}

TEST_F(FrameViews, AreAllOfferedByEveryMenu) {
    Open();
    for (const UINT view : {600u, 601u, 602u, 603u, 620u}) {
        Command(view);
        for (const UINT command : {600u, 601u, 602u, 603u, 610u, 680u, 57664u, 57665u}) {
            EXPECT_NE(ItemState(command), noItem) << view << ' ' << command;
        }
    }
}

TEST_F(FrameViews, AreSwitchedByTheNumberKeys) {
    Open();
    RunFrame([this] {
        SetForegroundWindow(frame.Handle());
        Finger().Key("4").Play();
        EXPECT_TRUE(WaitForCaption(L"System Status"));
        Finger().Key("2").Play();
        EXPECT_TRUE(WaitFor([this] { return Caption().starts_with(L"Applications ("); }));
        Finger().Key("3").Play();
        EXPECT_TRUE(WaitFor([this] { return Caption().starts_with(L"Processes ("); }));
        Finger().Key("1").Play();
        EXPECT_TRUE(WaitForCaption(L"\\"));
        Finger().Key("5").Key("4").Play();
        EXPECT_TRUE(WaitForCaption(L"System Status"));
    });
}

TEST_F(FrameViews, ThatFailToOpenAreReportedAndTheProgramGoesOn) {
    Open();
    Command(ID_SHOW_SYSTEM_STATUS);
    const DrawnTexts drawn;
    const PlatformHook<FileInfo> hook("SHGetFileInfoW", BreakOnFileInfo);
    fileInfo = hook.Original();
    const std::wstring text =
        L"The action can't be completed\r\n" + faults::FullText(faults::W32Fault(E_ACCESSDENIED));
    RunFrame([&] {
        SetForegroundWindow(frame.Handle());
        breaks = 1;
        PostMessageW(frame.Handle(), WM_COMMAND, ID_SHOW_FILES, 0);
        const HWND box = WaitForWindow(L"#32770");
        ASSERT_TRUE(box);
        EXPECT_TRUE(drawn.Shows(L"Ok"));
        EXPECT_EQ(TextOf(box), L"Error");
        EXPECT_EQ(GetWindow(box, GW_OWNER), frame.Handle());
        EXPECT_TRUE(drawn.Shows(text)) << drawn.All();
        Finger().Key("Return").Play();
        EXPECT_TRUE(WaitFor([&] { return !IsWindow(box); }));
        PostMessageW(frame.Handle(), WM_COMMAND, ID_SHOW_APPLICATIONS, 0);
        EXPECT_TRUE(WaitFor([this] { return Caption().starts_with(L"Applications ("); }));
        PostMessageW(frame.Handle(), WM_COMMAND, ID_SHOW_FILES, 0);
        EXPECT_TRUE(WaitForCaption(L"\\"));
    });
    EXPECT_EQ(loopResult, 1);
}

TEST_F(FrameViews, ThatFailToOpenHaveTakenThePlaceOfTheOldOne) {
    Open();
    Command(ID_SHOW_SYSTEM_STATUS);
    const PlatformHook<FileInfo> hook("SHGetFileInfoW", BreakOnFileInfo);
    fileInfo = hook.Original();
    RunFrame([&] {
        SetForegroundWindow(frame.Handle());
        breaks = 1;
        PostMessageW(frame.Handle(), WM_COMMAND, ID_SHOW_FILES, 0);
        const HWND box = WaitForWindow(L"#32770");
        ASSERT_TRUE(box);
        EXPECT_EQ(Caption(), L"\\");
        Finger().Key("Return").Play();
        EXPECT_TRUE(WaitFor([&] { return !IsWindow(box); }));
    });
    EXPECT_EQ(CleanSettings::Number(L"view"), 0u);
}

TEST_F(FrameViews, WithoutAWindowOfTheirOwnAreNoFrame) {
    const PlatformHook<MakeWindow> hook("CreateWindowExW", CreateFewWindows);
    makeWindow = hook.Original();
    scarceClass = L"kx::TouchList";
    for (windowsAllowed = 0; windowsAllowed < 5;) {
        const int allowed = windowsAllowed;
        ASSERT_FALSE(frame.Open()) << allowed;
        EXPECT_FALSE(frame.Handle());
        windowsAllowed = allowed + 1;
    }
    scarceClass = L"kx::PathBar";
    windowsAllowed = 0;
    ASSERT_FALSE(frame.Open());
    EXPECT_FALSE(CleanSettings::Number(L"view"));
    windowsAllowed = 1;
    EXPECT_TRUE(frame.Open());
}

TEST_F(FrameViews, WithoutTheHeightOfTheirTextAreNoFrame) {
    {
        const PlatformHook<BOOL(HDC, TEXTMETRICW*)> metrics("GetTextMetricsW", NoMetrics);
        EXPECT_FALSE(frame.Open());
        EXPECT_FALSE(frame.Handle());
    }
    EXPECT_FALSE(CleanSettings::Number(L"view"));
    EXPECT_TRUE(frame.Open());
}

TEST_F(FrameViews, ThatCannotBePlacedAreNoFrame) {
    {
        const PlatformHook<Move> move("MoveWindow", BreakOnMove);
        moveWindow = move.Original();
        bool raised = false;
        try {
            EXPECT_FALSE(frame.Open());
        } catch (...) {
            raised = true;
        }
        EXPECT_FALSE(raised);
    }
    EXPECT_FALSE(CleanSettings::Number(L"view"));
}

TEST_F(FrameViews, ThatCannotBringTheirMenuUpToDateAreReportedAndTheProgramGoesOn) {
    Open();
    const DrawnTexts drawn;
    const PlatformHook<FindFile> find("FindFirstFileW", BreakOnFind);
    RunFrame([&] {
        SetForegroundWindow(frame.Handle());
        PostMessageW(frame.Handle(), WM_INITMENUPOPUP,
                     reinterpret_cast<WPARAM>(GetSubMenu(frame.Bar().Menu(), 1)), 1);
        const HWND box = WaitForWindow(L"#32770");
        ASSERT_TRUE(box);
        EXPECT_TRUE(drawn.Shows(L"The action can't be completed\r\nUnexpected error."));
        Finger().Key("Return").Play();
        EXPECT_TRUE(WaitFor([&] { return !IsWindow(box); }));
    });
    EXPECT_EQ(loopResult, 1);
}

TEST_F(FrameViews, ThatFailWhenTheProgramComesToTheFrontAreReported) {
    CleanSettings::SetNumber(L"view", 3);
    Open();
    const DrawnTexts drawn;
    const PlatformHook<BOOL(SYSTEM_POWER_STATUS*)> power("GetSystemPowerStatus", BreakOnPower);
    breaks = 1;
    RunFrame([&] {
        PostMessageW(frame.Handle(), WM_ACTIVATE, WA_ACTIVE, 0);
        const HWND box = WaitForWindow(L"#32770");
        ASSERT_TRUE(box);
        EXPECT_TRUE(drawn.Shows(L"The action can't be completed\r\nUnexpected error."));
        Finger().Key("Return").Play();
        EXPECT_TRUE(WaitFor([&] { return !IsWindow(box); }));
    });
    EXPECT_EQ(loopResult, 1);
}

TEST_F(FrameViews, StayWhenTheyFailBeforeGivingWay) {
    Open();
    const DrawnTexts drawn;
    const PlatformHook<Show> hook("ShowWindow", BreakOnHide);
    show = hook.Original();
    RunFrame([&] {
        SetForegroundWindow(frame.Handle());
        breaks = 1;
        PostMessageW(frame.Handle(), WM_COMMAND, ID_SHOW_SYSTEM_STATUS, 0);
        const HWND box = WaitForWindow(L"#32770");
        ASSERT_TRUE(box);
        EXPECT_TRUE(drawn.Shows(L"Ok"));
        EXPECT_TRUE(drawn.Shows(L"The action can't be completed\r\nUnexpected error."));
        EXPECT_EQ(Caption(), L"\\");
        Finger().Key("Return").Play();
        EXPECT_TRUE(WaitFor([&] { return !IsWindow(box); }));
        EXPECT_EQ(Caption(), L"\\");
    });
    EXPECT_EQ(CleanSettings::Number(L"view"), 0u);
}

TEST_F(FrameViews, IgnoreCommandsTheyDoNotSupport) {
    Open();
    Command(ID_SHOW_SYSTEM_STATUS);
    for (const UINT command : {1u, 2u, 604u, 611u, 612u, 615u, 619u, 621u, 650u, 670u, 700u, 57633u,
                               57634u, 0x8F00u, 0x8FFFu, 0u, 65535u}) {
        Command(command);
        EXPECT_EQ(Caption(), L"System Status") << command;
        EXPECT_EQ(frame.Flags(), 0u) << command;
    }
    EXPECT_FALSE(FindVisible(L"#32770"));
}

TEST_F(FrameViews, LeaveABandOfTheFontsHeightToTheBar) {
    Open();
    const platform::WindowDC dc(frame.Handle());
    const int height = ui::TextHeight(dc, ui::Fonts().Base());
    RECT client;
    GetClientRect(frame.Handle(), &client);
    const RECT bar = frame.Bar().ClientRectangle();
    EXPECT_EQ(bar.bottom, height + 2 * ((height + 1) / 2));
    EXPECT_EQ(bar.right, client.right);
    RECT pane;
    GetClientRect(frame.Pane(), &pane);
    EXPECT_EQ(pane.bottom + bar.bottom, client.bottom);
}

// Each window paints all of itself at once: what is erased before would flicker.
TEST_F(FrameViews, AreNeverErased) {
    Open();
    const platform::WindowDC dc(frame.Handle());
    const platform::UniqueBitmap bitmap(CreateCompatibleBitmap(dc, 10, 10));
    const platform::UniqueMemoryDC canvas(CreateCompatibleDC(dc));
    const platform::Selected selected(canvas.Get(), bitmap.Get());
    for (const UINT command : {600u, 601u, 602u, 620u, 603u}) {
        Command(command);
        std::vector<HWND> windows = {frame.Handle()};
        EnumChildWindows(frame.Handle(), AddWindow, reinterpret_cast<LPARAM>(&windows));
        for (const HWND window : windows) {
            SetPixel(canvas.Get(), 0, 0, RGB(1, 2, 3));
            EXPECT_EQ(
                SendMessageW(window, WM_ERASEBKGND, reinterpret_cast<WPARAM>(canvas.Get()), 0), 1)
                << testing::PrintToString(ClassOf(window));
            EXPECT_EQ(GetPixel(canvas.Get(), 0, 0), RGB(1, 2, 3))
                << testing::PrintToString(ClassOf(window));
        }
        // The frame, the pane, the bar, the slide bar, five lists and the path bar.
        EXPECT_EQ(windows.size(), 10u);
    }
}

TEST_F(FrameViews, StandInAWindowOfTheStatedStyles) {
    Open();
    EXPECT_EQ(ClassOf(frame.Handle()), L"Vantor Main Window");
    EXPECT_TRUE(GetWindowLongW(frame.Handle(), GWL_STYLE) & WS_CLIPCHILDREN);
    EXPECT_FALSE(GetWindow(frame.Handle(), GW_OWNER));
    EXPECT_FALSE(GetParent(frame.Handle()));
    EXPECT_EQ(GetWindowLongW(frame.Pane(), GWL_STYLE), 0x56000000);
    EXPECT_EQ(GetParent(frame.Pane()), frame.Handle());
}
