#include "platform/windows.h"
#include "res/resource.h"
#include "tests/app/frame_fixture.h"
#include "tests/support/drawn_texts.h"
#include "tests/support/finger.h"
#include "tests/support/monitor.h"
#include "tests/support/wait.h"
#include "tests/support/windows_seen.h"
#include "text/resources.h"
#include "views/list_view.h"

using namespace test;

namespace {

constexpr wchar_t popupClass[] = L"kx::PopupMenu";

LPARAM BackKey(UINT modifiers) {
    return MAKELPARAM(modifiers, VK_ESCAPE);
}

class FrameKeys : public FrameFixture {
 protected:
    // Opens on a folder with one folder in it.
    void OpenInFolder() {
        folder.MakeFolder(L"Inner");
        CleanSettings::SetText(L"path", folder.Path());
        Open();
    }
    // For the user's thread: selects the last row of Files.
    void SelectLast() const {
        const auto list =
            static_cast<ui::RowListWindow*>(reinterpret_cast<ui::Window*>(GetWindowLongPtrW(
                FindChild(frame.Handle(), views::ListView::listClass), GWLP_USERDATA)));
        Finger().Key("End").Play();
        EXPECT_TRUE(WaitFor([&] { return list->GetSelection() != ui::noRow; }));
    }
    std::wstring Parent() const { return folder.Path().substr(0, folder.Path().rfind(L'\\')); }
    void PressBack(UINT modifiers) const {
        SendMessageW(frame.Handle(), WM_HOTKEY, VK_ESCAPE, BackKey(modifiers));
    }

    const TemporaryFolder folder;
};

class FramePlace : public FrameKeys {};

std::vector<LONG> Edges(HWND window) {
    const RECT rectangle = ScreenRectangleOf(window);
    return {rectangle.left, rectangle.top, rectangle.right, rectangle.bottom};
}

using EdgeList = std::vector<LONG>;

}  // namespace

TEST_F(FrameKeys, TheBackKeyGoesUpInOpenFileAndThenLeavesIt) {
    folder.MakeFile(L"a.txt");
    CleanSettings::SetText(L"SelectAppPath", L"\\Temp");
    CleanSettings::SetText(L"path", folder.Path());
    Open();
    RunFrame([&] {
        SetForegroundWindow(frame.Handle());
        SelectLast();
        PostMessageW(frame.Handle(), WM_COMMAND, ID_OPEN_WITH, 0);
        const HWND dialog = WaitForWindow(L"#32770");
        ASSERT_TRUE(dialog);
        const auto shows = [&](const wchar_t* path) {
            return WaitFor([&] { return TextOf(FindChild(dialog, L"kx::PathBar")) == path; });
        };
        EXPECT_TRUE(shows(L"\\Temp"));
        PressBack(0);
        PressBack(MOD_KEYUP);
        EXPECT_TRUE(shows(L"\\"));
        EXPECT_TRUE(IsWindow(dialog));
        PressBack(MOD_KEYUP);
        EXPECT_TRUE(WaitFor([&] { return !IsWindow(dialog); }));
    });
}

TEST_F(FrameKeys, TheBackKeyClosesAPage) {
    folder.MakeFile(L"a.txt");
    CleanSettings::SetText(L"path", folder.Path());
    Open();
    RunFrame([&] {
        SetForegroundWindow(frame.Handle());
        SelectLast();
        PostMessageW(frame.Handle(), WM_COMMAND, ID_PROPERTIES, 0);
        const HWND page = WaitForWindow(L"#32770");
        ASSERT_TRUE(page);
        EXPECT_TRUE(WaitFor([&] { return FindChild(page, L"DlgControlList"); }));
        PressBack(MOD_KEYUP);
        EXPECT_TRUE(WaitFor([&] { return !IsWindow(page); }));
    });
}

TEST_F(FrameKeys, OfTheSoftKeysOpenAndCloseThePopups) {
    Open();
    const DrawnTexts drawn;
    RunFrame([&] {
        SetForegroundWindow(frame.Handle());
        Finger().Key("F1").Play();
        const HWND actions = WaitForWindow(popupClass);
        ASSERT_TRUE(actions);
        EXPECT_TRUE(WaitFor([&] { return drawn.Has(L"New Folder"); })) << drawn.All();
        EXPECT_FALSE(drawn.Has(L"Exit"));
        Finger().Key("F1").Play();
        EXPECT_TRUE(WaitFor([&] { return !IsWindow(actions); }));
        Finger().Key("F2").Play();
        const HWND menu = WaitForWindow(popupClass);
        ASSERT_TRUE(menu);
        EXPECT_TRUE(WaitFor([&] { return drawn.Has(L"Exit"); })) << drawn.All();
        Finger().Key("Escape").Play();
        EXPECT_TRUE(WaitFor([&] { return !IsWindow(menu); }));
    });
}

TEST_F(FrameKeys, OfTheLeftSoftKeySendACommandWhereItsButtonIsOne) {
    CleanSettings::SetNumber(L"view", 3);
    Open();
    RunFrame([&] {
        SetForegroundWindow(frame.Handle());
        Finger().Key("F1").Key("F2").Play();
        const HWND menu = WaitForWindow(popupClass);
        ASSERT_TRUE(menu);
        const DWORD middle = static_cast<DWORD>(ScreenRectangleOf(frame.Handle()).right / 2);
        EXPECT_GE(static_cast<DWORD>(ScreenRectangleOf(menu).right), middle);
        Finger().Key("Escape").Play();
        EXPECT_TRUE(WaitFor([&] { return !IsWindow(menu); }));
    });
}

TEST_F(FrameKeys, OfTheBackKeyGoUp) {
    OpenInFolder();
    RunFrame([&] {
        SetForegroundWindow(frame.Handle());
        PressBack(0);
        EXPECT_EQ(Caption(), folder.Path());
        PressBack(MOD_KEYUP);
        EXPECT_EQ(Caption(), Parent());
    });
}

TEST_F(FrameKeys, OfTheBackKeyCloseAnOpenPopupFirst) {
    OpenInFolder();
    RunFrame([&] {
        SetForegroundWindow(frame.Handle());
        Finger().Key("F2").Play();
        const HWND menu = WaitForWindow(popupClass);
        ASSERT_TRUE(menu);
        PressBack(0);
        PressBack(0x1000);
        EXPECT_TRUE(WaitFor([&] { return !IsWindow(menu); }));
        EXPECT_EQ(Caption(), folder.Path());
        PressBack(0x1000);
        EXPECT_EQ(Caption(), Parent());
    });
}

TEST_F(FrameKeys, OfOtherHotKeysDoNothing) {
    OpenInFolder();
    SendMessageW(frame.Handle(), WM_HOTKEY, VK_F3, MAKELPARAM(MOD_KEYUP, VK_F3));
    EXPECT_EQ(Caption(), folder.Path());
}

TEST_F(FrameKeys, ReachTheListAsSoonAsTheWindowIsActive) {
    OpenInFolder();
    RunFrame([&] {
        SetForegroundWindow(frame.Handle());
        Finger().Key("Down").Key("Return").Play();
        EXPECT_TRUE(WaitForCaption(folder.Path() + L"\\Inner"));
        Finger().Key("Left").Play();
        EXPECT_TRUE(WaitForCaption(folder.Path()));
    });
}

TEST_F(FramePlace, IsTheWorkAreaOfASmallScreen) {
    const Monitor monitor(RECT{0, 0, 480, 640}, RECT{0, 52, 480, 588});
    Open();
    EXPECT_EQ(Edges(frame.Handle()), (EdgeList{0, 52, 480, 588}));
}

TEST_F(FramePlace, FollowsTheWorkAreaAndKeepsTheSelection) {
    for (const wchar_t* name : {L"a", L"b", L"c"}) {
        folder.MakeFolder(name);
    }
    OpenInFolder();
    Monitor monitor(RECT{0, 0, 480, 640}, RECT{0, 0, 480, 640});
    RunFrame([&] {
        SetForegroundWindow(frame.Handle());
        Finger().Key("Down").Key("Down").Play();
        for (const UINT message : {WM_SETTINGCHANGE, WM_DISPLAYCHANGE}) {
            monitor.SetWorkArea(RECT{0, 40, 480, 420});
            SendMessageW(frame.Handle(), message, SPI_SETWORKAREA, 0);
            EXPECT_EQ(Edges(frame.Handle()), (EdgeList{0, 40, 480, 420})) << message;
            monitor.SetWorkArea(RECT{0, 0, 480, 640});
            SendMessageW(frame.Handle(), message, SPI_SETWORKAREA, 0);
            EXPECT_EQ(Edges(frame.Handle()), (EdgeList{0, 0, 480, 640})) << message;
        }
        Finger().Key("Return").Play();
        EXPECT_TRUE(WaitForCaption(folder.Path() + L"\\b")) << testing::PrintToString(Caption());
    });
}

TEST_F(FramePlace, FollowsTheWorkAreaWhenTheWindowIsActivated) {
    Monitor monitor(RECT{0, 0, 480, 640}, RECT{0, 0, 480, 640});
    Open();
    RunFrame([&] {
        // Once the screen has given it the keyboard it is not brought to the front by that any
        // more.
        SetForegroundWindow(frame.Handle());
        EXPECT_TRUE(Finger().KeyDown("shift").KeyUp("shift").In(frame.Handle()).Play());
        const HWND other = CreateWindowExW(0, L"STATIC", L"", WS_POPUP | WS_VISIBLE, 0, 0, 9, 9,
                                           nullptr, nullptr, nullptr, nullptr);
        SetForegroundWindow(other);
        // Its thread learns a little later that it is no longer in front.
        EXPECT_TRUE(WaitFor([&] {
            GUITHREADINFO info = {};
            info.cbSize = sizeof info;
            return GetGUIThreadInfo(GetWindowThreadProcessId(frame.Handle(), nullptr), &info) &&
                   info.hwndActive != frame.Handle();
        }));
        monitor.SetWorkArea(RECT{0, 40, 480, 420});
        EXPECT_EQ(Edges(frame.Handle()), (EdgeList{0, 0, 480, 640}));
        SetForegroundWindow(frame.Handle());
        EXPECT_TRUE(WaitFor([&] { return Edges(frame.Handle()) == (EdgeList{0, 40, 480, 420}); }));
        DestroyWindow(other);
    });
}

TEST_F(FramePlace, FollowsARotationAndTheBarStaysAtTheBottom) {
    Monitor monitor(RECT{0, 0, 480, 640}, RECT{0, 0, 480, 640});
    Open();
    monitor.SetWorkArea(RECT{0, 0, 300, 200});
    SendMessageW(frame.Handle(), WM_DISPLAYCHANGE, 32, MAKELPARAM(300, 200));
    RECT client;
    GetClientRect(frame.Handle(), &client);
    RECT bar = ScreenRectangleOf(frame.Bar().Handle());
    MapWindowPoints(nullptr, frame.Handle(), reinterpret_cast<POINT*>(&bar), 2);
    EXPECT_EQ(bar.bottom, client.bottom);
    EXPECT_EQ(bar.right, client.right);
    EXPECT_EQ(bar.left, 0);
}

TEST_F(FramePlace, MayBeTiny) {
    Monitor monitor(RECT{0, 0, 480, 640}, RECT{0, 0, 1, 1});
    Open();
    for (const UINT view : {601u, 602u, 603u, 620u, 600u}) {
        Command(view);
        UpdateWindow(frame.Handle());
    }
    Command(ID_SHOW_FILE_SIZE);
    for (const LONG size : {0, 1, 7, 30}) {
        monitor.SetWorkArea(RECT{0, 0, size, size});
        SendMessageW(frame.Handle(), WM_SETTINGCHANGE, 0, 0);
        UpdateWindow(frame.Handle());
    }
    monitor.SetWorkArea(RECT{0, 0, 480, 640});
    SendMessageW(frame.Handle(), WM_SETTINGCHANGE, 0, 0);
    EXPECT_EQ(Edges(frame.Handle()), (EdgeList{0, 0, 480, 640}));
    EXPECT_EQ(Caption(), L"\\");
}

TEST_F(FramePlace, StaysWhenTheScreenCannotBeAsked) {
    Monitor monitor(RECT{0, 0, 480, 640});
    Open();
    monitor.Fail();
    const EdgeList before = Edges(frame.Handle());
    SendMessageW(frame.Handle(), WM_SETTINGCHANGE, 0, 0);
    EXPECT_EQ(Edges(frame.Handle()), before);
}

TEST_F(FramePlace, IsLeftToThePersonOnALargeScreen) {
    const Monitor monitor(RECT{0, 0, 1920, 1080});
    Open();
    MoveWindow(frame.Handle(), 30, 40, 400, 500, TRUE);
    SendMessageW(frame.Handle(), WM_SETTINGCHANGE, 0, 0);
    EXPECT_EQ(Edges(frame.Handle()), (EdgeList{30, 40, 430, 540}));
}

TEST_F(FramePlace, TextsAreFormattedAnewWhenSettingsChange) {
    const Monitor monitor(RECT{0, 0, 480, 640});
    Open();
    const unsigned before = text::TextsVersion();
    SendMessageW(frame.Handle(), WM_SETTINGCHANGE, 0, 0);
    EXPECT_NE(text::TextsVersion(), before);
}
