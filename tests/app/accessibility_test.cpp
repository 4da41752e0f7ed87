// What a screen reader is told, asked as one asks: through the system, from another thread.
#include <atomic>
#include <optional>
#include <vector>

#include "platform/handles.h"
#include "res/resource.h"
#include "tests/app/frame_fixture.h"
#include "tests/support/box.h"
#include "tests/support/finger.h"
#include "tests/support/told.h"
#include "tests/support/wait.h"
#include "tests/support/windows_seen.h"
#include "tests/support/world.h"
#include "ui/dialog/message_box.h"

using namespace test;

namespace {

using Names = std::vector<std::wstring>;

class Accessibility : public FrameFixture {
 protected:
    // Shows the frame in a folder of its own; the script is the screen reader.
    void Listen(const std::function<void()>& script, DWORD flags = 0) {
        folder_.MakeFolder(L"Letters");
        folder_.MakeFile(L"a & b.txt", "12");
        folder_.MakeFile(L"plan.txt");
        CleanSettings::SetText(L"path", folder_.Path());
        CleanSettings::SetNumber(L"flags", flags);
        Open();
        RunFrame([&] {
            CoInitializeEx(nullptr, COINIT_MULTITHREADED);
            BringToFront(frame.Handle());
            script();
            CoUninitialize();
        });
    }
    void AddFile(const std::wstring& name) { folder_.MakeFile(name); }
    HWND List() { return FindChild(frame.Handle(), L"kx::TouchList"); }
    HWND BarWindow() { return frame.Bar().Handle(); }

 private:
    const TemporaryFolder folder_;
};

}  // namespace

TEST_F(Accessibility, TheListTellsItsRowsAndTheFolder) {
    Listen([this] {
        const Told list(List());
        EXPECT_EQ(list.Role(), ROLE_SYSTEM_LIST);
        EXPECT_EQ(list.Name(), Caption());
        EXPECT_EQ(list.Names(), (Names{L"Letters", L"a & b.txt", L"plan.txt"}));
        EXPECT_EQ(list.Role(1), ROLE_SYSTEM_LISTITEM);
        EXPECT_EQ(list.NameOfNoPart(), E_INVALIDARG);
        EXPECT_EQ(list.Selection(), 0);
    });
}

TEST_F(Accessibility, TheSelectedRowIsToldAsSelectedAndFocused) {
    Listen([this] {
        Finger().Key("Down").Key("Down").Play();
        const Told list(List());
        EXPECT_TRUE(WaitFor([&] { return list.Selection() == 2; }));
        EXPECT_EQ(list.Focus(), 2);
        constexpr LONG both = STATE_SYSTEM_SELECTED | STATE_SYSTEM_FOCUSED;
        EXPECT_EQ(list.State(2) & both, both);
        EXPECT_EQ(list.State(1) & both, 0);
        EXPECT_EQ(list.Name(2), L"a & b.txt");
    });
}

TEST_F(Accessibility, ARowTellsAllThatItShowsWholeAndWhereItIs) {
    Listen(
        [this] {
            const Told list(List());
            EXPECT_EQ(list.Name(2), L"a & b.txt, 2 bytes");
            const RECT row = list.Place(2);
            const RECT window = ScreenRectangleOf(List());
            EXPECT_EQ(row.left, window.left);
            EXPECT_EQ(row.right, window.right);
            EXPECT_GT(row.top, window.top);
            EXPECT_EQ(list.At(POINT{row.left + 5, row.top + 5}), 2);
            EXPECT_EQ(list.At(POINT{row.left + 5, row.top - 5}), 1);
        },
        0x04);
}

TEST_F(Accessibility, OnePartLeadsToTheNextAndToTheOneBefore) {
    Listen([this] {
        const Told list(List());
        EXPECT_EQ(list.To(NAVDIR_FIRSTCHILD, 0), 1);
        EXPECT_EQ(list.To(NAVDIR_LASTCHILD, 0), 3);
        EXPECT_EQ(list.To(NAVDIR_NEXT, 1), 2);
        EXPECT_EQ(list.To(NAVDIR_PREVIOUS, 3), 2);
        EXPECT_EQ(list.To(NAVDIR_UP, 2), 1);
        EXPECT_EQ(list.To(NAVDIR_NEXT, 3), 0);
        EXPECT_EQ(list.To(NAVDIR_PREVIOUS, 1), 0);
        EXPECT_EQ(list.To(NAVDIR_NEXT, 4), 0);
    });
}

TEST_F(Accessibility, TheRoomBelowTheRowsIsNone) {
    Listen([this] {
        const Told list(List());
        const RECT window = ScreenRectangleOf(List());
        EXPECT_EQ(list.At(POINT{window.left + 5, window.bottom - 5}), CHILDID_SELF);
        EXPECT_EQ(list.State(CHILDID_SELF) & STATE_SYSTEM_UNAVAILABLE, 0);
        EXPECT_EQ(list.State(1) & STATE_SYSTEM_UNAVAILABLE, 0);
    });
}

std::atomic<int> described = 0;
HDC(WINAPI* createCompatible)(HDC) = nullptr;
HDC WINAPI NoteRead(HDC dc) {
    ++described;
    return createCompatible(dc);
}

// Screen readers ask with each move of a mouse.
TEST_F(Accessibility, TheRowAtAPointIsToldWithoutReadingTheOthers) {
    for (int file = 100; file < 300; ++file) {
        AddFile(L"b " + std::to_wstring(file));
    }
    Listen([this] {
        const Told list(List());
        ASSERT_EQ(list.Count(), 203);
        Finger().Key("End").Play();
        EXPECT_TRUE(WaitFor([&] { return list.Selection() == 203; }));
        const RECT row = list.Place(203);
        const RECT above = list.Place(202);
        const PlatformHook reads("CreateCompatibleDC", NoteRead);
        createCompatible = reads.Original();
        described = 0;
        EXPECT_EQ(list.At(POINT{row.left + 5, row.top + 5}), 203);
        EXPECT_EQ(list.At(POINT{above.left + 5, above.top + 5}), 202);
        EXPECT_LE(described, 10);
    });
}

TEST_F(Accessibility, MarkedRowsAreToldAsChecked) {
    Listen([this] {
        Finger().Key("Down").Key("space").Play();
        const Told list(List());
        EXPECT_TRUE(WaitFor([&] { return (list.State(1) & STATE_SYSTEM_CHECKED) != 0; }));
        EXPECT_EQ(list.State(2) & STATE_SYSTEM_CHECKED, 0);
    });
}

TEST_F(Accessibility, TheBarTellsItsButtons) {
    Listen([this] {
        const Told bar(BarWindow());
        EXPECT_EQ(bar.Role(), ROLE_SYSTEM_TOOLBAR);
        EXPECT_EQ(bar.Names(), (Names{L"Actions", L"Menu"}));
        EXPECT_EQ(bar.Role(1), ROLE_SYSTEM_PUSHBUTTON);
        EXPECT_TRUE(bar.State(1) & STATE_SYSTEM_HASPOPUP);
        const RECT place = bar.Place(2);
        EXPECT_EQ(bar.At(POINT{place.left + 5, place.top + 5}), 2);
    });
}

TEST_F(Accessibility, AMenuTellsItsItems) {
    Listen([this] {
        Finger().Key("F1").Play();
        const HWND popup = WaitForWindow(L"kx::PopupMenu");
        ASSERT_TRUE(popup);
        const Told menu(popup);
        EXPECT_EQ(menu.Role(), ROLE_SYSTEM_MENUPOPUP);
        EXPECT_EQ(menu.Role(1), ROLE_SYSTEM_MENUITEM);
        EXPECT_EQ(menu.Name(1), L"Open");
        EXPECT_TRUE(menu.State(1) & STATE_SYSTEM_UNAVAILABLE);
        Finger().Key("Escape").Play();
        EXPECT_TRUE(WaitFor([] { return !FindVisible(L"kx::PopupMenu"); }));
        Finger().Key("F2").Play();
        const HWND other = WaitForWindow(L"kx::PopupMenu");
        ASSERT_TRUE(other);
        const Told views(other);
        EXPECT_EQ(views.Name(1), L"Files");
        EXPECT_TRUE(views.State(1) & STATE_SYSTEM_CHECKED);
        EXPECT_FALSE(views.State(2) & STATE_SYSTEM_CHECKED);
        Finger().Key("Escape").Play();
        EXPECT_TRUE(WaitFor([] { return !FindVisible(L"kx::PopupMenu"); }));
    });
}

TEST_F(Accessibility, ABoxTellsItsQuestionAndItsButtons) {
    Listen([this] {
        Finger().Key("Down").Key("Down").Key("Delete").Play();
        const HWND box = WaitForBox();
        ASSERT_TRUE(box);
        const Told buttons(FindChild(box, L"kx::MBButtonsBar"));
        EXPECT_EQ(
            buttons.Name().compare(0, 49, L"Are you sure you want to permanently delete this "), 0)
            << std::string(buttons.Name().begin(), buttons.Name().end());
        EXPECT_EQ(buttons.Names(), (Names{L"Yes", L"No"}));
        EXPECT_EQ(buttons.Focus(), 1);
        Finger().Key("Escape").Play();
        EXPECT_TRUE(WaitFor([&] { return !IsWindow(box); }));
    });
}

TEST_F(Accessibility, APageTellsItsLines) {
    Listen([this] {
        Finger().Key("Down").Key("Down").Key("alt+Return").Play();
        const HWND page = WaitForWindow(L"#32770");
        ASSERT_TRUE(page);
        const Told lines(FindChild(page, L"DlgControlList"));
        const Names names = lines.Names();
        const auto has = [&](const std::wstring& name) {
            return std::find(names.begin(), names.end(), name) != names.end();
        };
        EXPECT_TRUE(has(L"a & b.txt"));
        EXPECT_TRUE(has(L"Size:, 2 bytes")) << names.size();
        EXPECT_TRUE(has(L"Read-only"));
        Finger().Key("Escape").Play();
        EXPECT_TRUE(WaitFor([&] { return !IsWindow(page); }));
    });
}

TEST_F(Accessibility, BesideTheOnlyButtonOfABarIsNone) {
    Listen([this] {
        PostMessageW(frame.Handle(), WM_COMMAND, ID_ABOUT, 0);
        const HWND page = WaitForWindow(L"#32770");
        ASSERT_TRUE(page);
        const Told bar(FindChild(page, L"kx::CmdBar"));
        EXPECT_EQ(bar.Count(), 1);
        const RECT button = bar.Place(1);
        EXPECT_EQ(bar.At(POINT{button.left + 5, button.top + 5}), 1);
        EXPECT_EQ(bar.At(POINT{button.right + 5, button.top + 5}), CHILDID_SELF);
        Finger().Key("Escape").Play();
        EXPECT_TRUE(WaitFor([&] { return !IsWindow(page); }));
    });
}

TEST_F(Accessibility, WhatIsToldGoesWithItsLastReader) {
    Listen([this] {
        void* found = nullptr;
        ASSERT_EQ(AccessibleObjectFromWindow(List(), static_cast<DWORD>(OBJID_CLIENT),
                                             IID_IAccessible, &found),
                  S_OK);
        EXPECT_EQ(static_cast<IAccessible*>(found)->Release(), 0u);
    });
}

TEST_F(Accessibility, ANumberThatNobodyAskedWithIsNoQuestion) {
    Listen([this] {
        for (const WPARAM number : {WPARAM{0}, WPARAM{1}, ~WPARAM{0}}) {
            EXPECT_EQ(SendMessageW(List(), WM_APP + 0x3D, number, -1), 0);
        }
        EXPECT_EQ(Told(List()).Count(), 3);
    });
}

TEST_F(Accessibility, AWindowThatHasGoneTellsNothing) {
    std::optional<Told> list;
    Listen([&] { list.emplace(List()); });
    EXPECT_EQ(list->Count(), 0);
    EXPECT_EQ(list->Name(1), L"(none)");
}
