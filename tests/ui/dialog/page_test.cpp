#include "ui/dialog/page.h"
#include "res/resource.h"

#include "tests/support/monitor.h"
#include "tests/support/platform_hook.h"
#include "tests/ui/bar/sample_bar.h"
#include "tests/ui/dialog/sample_form.h"

using namespace test;

namespace {

class SamplePage final : public ui::Page {
 public:
    explicit SamplePage(UINT bar) : Page(IDS_WARNING, bar) {}
    INT_PTR Run(HWND owner) { return RunDialog(owner, *this); }
    ui::FormList& Rows() { return List(); }
    ui::CommandBar& Keys() { return Bar(); }

    std::function<void(ui::FormList&)> fill;

 protected:
    void Fill(ui::FormList& list) override {
        if (fill) {
            fill(list);
        }
    }
};

UINT beep = 0;
int beeps = 0;
BOOL WINAPI NoteBeep(UINT kind) {
    beep = kind;
    ++beeps;
    return TRUE;
}
BOOL WINAPI NoPlace(HWND, HWND, int, int, int, int, UINT) {
    return FALSE;
}
HMENU WINAPI NoMenu(HINSTANCE, const wchar_t*) {
    return nullptr;
}
const wchar_t* missingClass = nullptr;
HWND(WINAPI* createWindow)
(DWORD, const wchar_t*, const wchar_t*, DWORD, int, int, int, int, HWND, HMENU, HINSTANCE,
 void*) = nullptr;
HWND WINAPI NoWindowOfClass(DWORD extended, const wchar_t* name, const wchar_t* title, DWORD style,
                            int x, int y, int width, int height, HWND parent, HMENU menu,
                            HINSTANCE instance, void* data) {
    if (!IS_INTRESOURCE(name) && lstrcmpW(name, missingClass) == 0) {
        return nullptr;
    }
    return createWindow(extended, name, title, style, x, y, width, height, parent, menu, instance,
                        data);
}

class PageTest : public testing::Test {
 protected:
    void SetUp() override {
        ASSERT_TRUE(owner.Open());
        ASSERT_TRUE(PumpUntil([&] { return GetForegroundWindow() == owner.Handle(); }));
    }
    INT_PTR Show(SamplePage& page, const std::function<void()>& script) {
        INT_PTR result = 0;
        WhileUser(script, [&] { result = page.Run(owner.Handle()); });
        return result;
    }
    // For the user's thread: the page, when its list has the keyboard.
    HWND WaitForPage() {
        const HWND page = WaitForWindow(L"#32770");
        EXPECT_TRUE(page);
        EXPECT_TRUE(FocusIs(FindChild(page, L"DlgControlList")));
        return page;
    }
    bool FocusIs(HWND window) {
        return WaitFor([&] {
            GUITHREADINFO info = {};
            info.cbSize = sizeof info;
            return GetGUIThreadInfo(GetWindowThreadProcessId(owner.Handle(), nullptr), &info) &&
                   info.hwndFocus == window;
        });
    }
    INT_PTR After(UINT bar, const std::string& key) {
        SamplePage page(bar);
        return Show(page, [&] {
            WaitForPage();
            Finger().Key(key).Play();
        });
    }
    // A page that cannot be set up.
    void ExpectRefusal() {
        beeps = 0;
        PlatformHook<BOOL(UINT)> hook("MessageBeep", NoteBeep);
        SamplePage page(IDR_DONE_CANCEL);
        EXPECT_EQ(page.Run(owner.Handle()), 2);
        EXPECT_EQ(beeps, 1);
        EXPECT_EQ(beep, 0xFFFFFFFFu);
        EXPECT_TRUE(IsWindowEnabled(owner.Handle()));
    }

    InputTaken input;
    SampleOwner owner;
};

class PageResult : public PageTest {};
class PageFocus : public PageTest {};
class PageFailure : public PageTest {};
class PagePlace : public PageTest {};

}  // namespace

TEST_F(PageResult, EnterIsOneAndEscapeIsTwo) {
    EXPECT_EQ(After(IDR_DONE_CANCEL, "Escape"), 2);
    SamplePage page(IDR_DONE_CANCEL);
    page.fill = [](ui::FormList& list) {
        list.AddRow(std::make_unique<ui::ValueRow>(L"Name", L"value"));
    };
    EXPECT_EQ(Show(page,
                   [&] {
                       WaitForPage();
                       Finger().Key("Return").Play();
                   }),
              1);
}

TEST_F(PageResult, TheSoftKeysAreOneAndTwo) {
    for (const unsigned button : {0u, 1u}) {
        SamplePage page(IDR_DONE_CANCEL);
        const INT_PTR result = Show(page, [&] {
            const RECT bar = ScreenRectangleOf(FindChild(WaitForPage(), L"kx::CmdBar"));
            const int quarter = ui::Width(bar) / 4;
            Finger()
                .Tap(bar.left + quarter * (button == 0 ? 1 : 3), (bar.top + bar.bottom) / 2)
                .Play();
        });
        EXPECT_EQ(result, button == 0 ? 1 : 2);
    }
}

TEST_F(PagePlace, AskingToEraseIsAnsweredWithoutDrawing) {
    SamplePage page(IDR_DONE);
    Show(page, [&] {
        EXPECT_EQ(SendMessageW(WaitForPage(), WM_ERASEBKGND, 0, 0), 1);
        Finger().Key("Escape").Play();
    });
}

TEST_F(PageFocus, TheWheelScrollsTheRowsFromTheBarAsWell) {
    SamplePage page(IDR_DONE_CANCEL);
    page.fill = [](ui::FormList& list) {
        for (int row = 0; row < 60; ++row) {
            list.AddRow(std::make_unique<ui::ValueRow>(L"Name", L"value"));
        }
    };
    Show(page, [&] {
        const HWND window = WaitForPage();
        const HWND list = FindChild(window, L"DlgControlList");
        input.Play(Finger().Turn(MiddleOf(list), -1));
        EXPECT_EQ(page.Rows().GetTopIndex(), 3u);
        input.Play(Finger().Turn(MiddleOf(page.Keys().Handle()), -1));
        EXPECT_EQ(page.Rows().GetTopIndex(), 6u);
        // Also when the bar has the keyboard.
        input.Play(Finger().Key("Tab"));
        EXPECT_TRUE(FocusIs(page.Keys().Handle()));
        input.Play(Finger().Turn(MiddleOf(list), 1).Turn(MiddleOf(page.Keys().Handle()), -2));
        EXPECT_EQ(page.Rows().GetTopIndex(), 9u);
        Finger().Key("Escape").Play();
    });
}

TEST_F(PageResult, TheHardwareSoftKeysAreTheBarsButtons) {
    EXPECT_EQ(After(IDR_DONE_CANCEL, "F1"), 1);
    EXPECT_EQ(After(IDR_DONE_CANCEL, "F2"), 2);
    SamplePage page(IDR_DONE);
    EXPECT_EQ(Show(page,
                   [&] {
                       const HWND window = WaitForPage();
                       // There is no second button; then with the keyboard on the bar.
                       input.Play(Finger().Key("F2"));
                       EXPECT_TRUE(IsWindow(window));
                       input.Play(Finger().Key("Tab"));
                       Finger().Key("F1").Play();
                   }),
              1);
}

TEST_F(PageResult, ItsBarHasTheButtonsOfItsMenu) {
    for (const auto& [menu, count] : {std::pair{IDR_DONE_CANCEL, 2u}, {IDR_DONE, 1u}}) {
        SamplePage page(menu);
        unsigned buttons = 0;
        page.fill = [&](ui::FormList&) { buttons = page.Keys().ButtonCount(); };
        Show(page, [&] {
            WaitForPage();
            Finger().Key("Escape").Play();
        });
        EXPECT_EQ(buttons, count);
    }
}

TEST_F(PageResult, CoversItsOwnerAndShowsItsCaption) {
    SamplePage page(IDR_DONE);
    Show(page, [&] {
        const HWND window = WaitForPage();
        const RECT place = ScreenRectangleOf(window);
        const RECT whole = ScreenRectangleOf(owner.Handle());
        EXPECT_TRUE(EqualRect(&place, &whole));
        EXPECT_EQ(TextOf(window), L"Warning");
        const RECT list = ScreenRectangleOf(FindChild(window, L"DlgControlList"));
        const RECT bar = ScreenRectangleOf(FindChild(window, L"kx::CmdBar"));
        EXPECT_EQ(list.bottom, bar.top);
        Finger().Key("Escape").Play();
    });
}

TEST_F(PagePlace, FollowsTheScreenAndKeepsTheSelectionAndTheScrolledRows) {
    Monitor monitor(RECT{0, 0, 480, 640});
    SamplePage page(IDR_DONE);
    page.fill = [](ui::FormList& list) {
        for (int row = 0; row < 30; ++row) {
            list.AddRow(std::make_unique<ui::CheckRow>(L"Row", false, [](bool) {}));
        }
    };
    Show(page, [&] {
        const HWND window = WaitForPage();
        input.Play(Finger().Key("End").Key("Up").Key("Up"));
        ASSERT_EQ(page.Rows().GetSelection(), 27u);
        const unsigned top = page.Rows().GetTopIndex();
        for (const UINT message : {WM_SETTINGCHANGE, WM_DISPLAYCHANGE}) {
            monitor.SetWorkArea(RECT{0, 30, 480, 400});
            SendMessageW(window, message, 0, 0);
            const RECT place = ScreenRectangleOf(window);
            EXPECT_EQ(place.top, 30);
            EXPECT_EQ(place.bottom, 400);
            const RECT list = ScreenRectangleOf(FindChild(window, L"DlgControlList"));
            const RECT bar = ScreenRectangleOf(FindChild(window, L"kx::CmdBar"));
            EXPECT_EQ(list.bottom, bar.top);
            EXPECT_GT(list.bottom, list.top + 50);
            EXPECT_EQ(page.Rows().GetSelection(), 27u);
            EXPECT_GE(page.Rows().GetTopIndex(), top);
            monitor.SetWorkArea(RECT{0, 0, 480, 640});
            SendMessageW(window, message, 0, 0);
            EXPECT_EQ(ScreenRectangleOf(window).bottom, 640);
            EXPECT_EQ(page.Rows().GetSelection(), 27u);
        }
        Finger().Key("Escape").Play();
    });
}

TEST_F(PageResult, ARowThatMayNotBeLeftKeepsThePage) {
    std::vector<RowScript> rows = EqualRows(3);
    rows[0].edits = true;
    rows[0].mayLeave = false;
    SamplePage page(IDR_DONE_CANCEL);
    page.fill = [&](ui::FormList& list) {
        for (RowScript& row : rows) {
            list.AddRow(std::make_unique<SampleRow>(row));
        }
    };
    EXPECT_EQ(Show(page,
                   [&] {
                       const HWND window = WaitForPage();
                       input.Play(Finger().Key("Down"));
                       EXPECT_TRUE(FindChild(window, L"Edit"));
                       input.Play(Finger().Key("Return"));
                       EXPECT_EQ(rows[0].asked, 1);
                       EXPECT_TRUE(FindChild(window, L"Edit"));
                       Finger().Key("Escape").Play();
                   }),
              2);
    EXPECT_EQ(rows[0].deleted, 1);
}

TEST_F(PageFocus, TabMovesBetweenListAndBarAndWraps) {
    SamplePage page(IDR_DONE_CANCEL);
    Show(page, [&] {
        const HWND window = WaitForPage();
        const HWND list = FindChild(window, L"DlgControlList");
        const HWND bar = FindChild(window, L"kx::CmdBar");
        for (int round = 0; round < 2; ++round) {
            input.Play(Finger().Key("Tab"));
            EXPECT_TRUE(FocusIs(bar));
            input.Play(Finger().Key("Tab"));
            EXPECT_TRUE(FocusIs(list));
        }
        for (const HWND expected : {bar, list, bar}) {
            input.Play(Finger().KeyDown("shift").Key("Tab"));
            EXPECT_TRUE(FocusIs(expected));
            input.Play(Finger().KeyUp("shift"));
        }
        Finger().Key("Escape").Play();
    });
}

TEST_F(PageFocus, StepsWrapInBothDirections) {
    EXPECT_EQ(ui::NextStop(0, 3, true), 1u);
    EXPECT_EQ(ui::NextStop(2, 3, true), 0u);
    EXPECT_EQ(ui::NextStop(0, 3, false), 2u);
    EXPECT_EQ(ui::NextStop(1, 3, false), 0u);
    EXPECT_EQ(ui::NextStop(0, 0, true), 0u);
}

TEST_F(PageFocus, EnterOnTheBarIsItsButton) {
    SamplePage page(IDR_DONE_CANCEL);
    EXPECT_EQ(Show(page,
                   [&] {
                       const HWND window = WaitForPage();
                       input.Play(Finger().Key("Tab"));
                       EXPECT_TRUE(FocusIs(FindChild(window, L"kx::CmdBar")));
                       Finger().Key("Right").Key("Return").Play();
                   }),
              2);
}

TEST_F(PageFailure, AScreenThatCannotBeFilledEndsWithTwoAndABeep) {
    PlatformHook<BOOL(HWND, HWND, int, int, int, int, UINT)> hook("SetWindowPos", NoPlace);
    ExpectRefusal();
}

TEST_F(PageFailure, AMissingMenuEndsWithTwoAndABeep) {
    PlatformHook<HMENU(HINSTANCE, const wchar_t*)> hook("LoadMenuW", NoMenu);
    ExpectRefusal();
}

TEST_F(PageFailure, AMissingWindowEndsWithTwoAndABeep) {
    PlatformHook<std::remove_pointer_t<decltype(createWindow)>> hook("CreateWindowExW",
                                                                     NoWindowOfClass);
    createWindow = hook.Original();
    for (const wchar_t* name : {L"DlgControlList", L"kx::CmdBar"}) {
        missingClass = name;
        ExpectRefusal();
    }
}

TEST_F(PageFailure, APageOfOnePixelStillEnds) {
    MoveWindow(owner.Handle(), 0, 0, 1, 1, TRUE);
    SamplePage page(IDR_DONE_CANCEL);
    page.fill = [](ui::FormList& list) {
        list.AddRow(std::make_unique<ui::ValueRow>(L"Name", std::wstring(10000, L'w')));
    };
    EXPECT_EQ(Show(page,
                   [&] {
                       const HWND window = WaitForWindow(L"#32770");
                       EXPECT_TRUE(WaitFor([&] { return FindChild(window, L"DlgControlList"); }));
                       PostMessageW(window, WM_COMMAND, IDCANCEL, 0);
                   }),
              2);
}
