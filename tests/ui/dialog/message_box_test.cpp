#include <atomic>

#include "platform/handles.h"
#include "res/resource.h"
#include "tests/support/platform_hook.h"
#include "tests/ui/dialog/sample_box.h"

using namespace test;

namespace {

const std::vector<UINT> yesNoCancel = {IDS_BUTTON_YES, IDS_BUTTON_NO, IDS_BUTTON_CANCEL};

class MessageBoxResult : public BoxTest {};
class MessageBoxKeys : public BoxTest {
 protected:
    // Shift is held until the program has taken the Tab.
    void PressTab(bool forward) {
        if (forward) {
            Play(Finger().Key("Tab"));
        } else {
            Play(Finger().KeyDown("shift").Key("Tab"));
            Play(Finger().KeyUp("shift"));
        }
    }
    int After(const std::vector<UINT>& buttons, unsigned defaultButton,
              const std::vector<std::string>& keys) {
        return Show(L"Really?", buttons, defaultButton, [&] {
            WaitForBox();
            Finger finger;
            for (const std::string& name : keys) {
                finger.Key(name);
            }
            finger.Play();
        });
    }
};

HDC WINAPI NoWindowDC(HWND) {
    return nullptr;
}

int WINAPI NoText(HDC, const wchar_t*, int, RECT*, UINT) {
    return 0;
}

class MessageBoxFailure : public BoxTest {};

RECT workArea = {};
BOOL WINAPI OtherWorkArea(HMONITOR, MONITORINFO* monitor) {
    monitor->rcMonitor = monitor->rcWork = workArea;
    return workArea.right > 0;
}
HLOCAL WINAPI NoMemory(UINT, SIZE_T) {
    return nullptr;
}
INT_PTR WINAPI NoDialog(HINSTANCE, const DLGTEMPLATE*, HWND, DLGPROC, LPARAM) {
    SetLastError(ERROR_INVALID_WINDOW_HANDLE);
    return -1;
}
INT_PTR WINAPI AnswerYes(HINSTANCE, const DLGTEMPLATE*, HWND, DLGPROC, LPARAM) {
    return IDS_BUTTON_YES;
}
// What it answers where the owner is no window.
INT_PTR WINAPI DialogWithoutOwner(HINSTANCE, const DLGTEMPLATE*, HWND, DLGPROC, LPARAM) {
    SetLastError(ERROR_INVALID_WINDOW_HANDLE);
    return 0;
}

// What the platform was asked for.
struct AskedDialog {
    std::vector<BYTE> dialogTemplate;
    HINSTANCE instance;
    HWND owner;
    LPARAM parameter;
};
std::vector<AskedDialog> dialogs;
INT_PTR WINAPI NoteDialog(HINSTANCE instance, const DLGTEMPLATE* dialogTemplate, HWND owner,
                          DLGPROC procedure, LPARAM parameter) {
    EXPECT_TRUE(procedure);
    // The fixed part, then three empty texts and the font.
    constexpr size_t size = 18 + 3 * 2 + 2 + 7 * 2;
    const auto bytes = reinterpret_cast<const BYTE*>(dialogTemplate);
    dialogs.push_back(
        AskedDialog{std::vector<BYTE>(bytes, bytes + size), instance, owner, parameter});
    return IDS_BUTTON_OK;
}
HWND WINAPI NoWindow(DWORD, const wchar_t*, const wchar_t*, DWORD, int, int, int, int, HWND, HMENU,
                     HINSTANCE, void*) {
    return nullptr;
}

std::atomic<HCURSOR> shownCursor = nullptr;
HCURSOR(WINAPI* setCursor)(HCURSOR) = nullptr;
HCURSOR WINAPI NoteCursor(HCURSOR cursor) {
    shownCursor = cursor;
    return setCursor(cursor);
}

int smallFullScreen = 0;
int(WINAPI* systemMetric)(int) = nullptr;
int WINAPI SmallFullScreen(int index) {
    return index == SM_CXFULLSCREEN || index == SM_CYFULLSCREEN ? smallFullScreen
                                                                : systemMetric(index);
}

}  // namespace

TEST_F(MessageBoxResult, IsTheStringOfTheTappedButton) {
    const std::vector<std::vector<UINT>> rows = {
        {IDS_BUTTON_OK},
        yesNo,
        yesNoCancel,
        {IDS_BUTTON_RETRY, IDS_BUTTON_IGNORE},
        {IDS_BUTTON_EXIT, IDS_BUTTON_DONE},
        {IDS_BUTTON_YES, IDS_BUTTON_NO, IDS_BUTTON_CANCEL, IDS_BUTTON_RETRY}};
    for (const std::vector<UINT>& row : rows) {
        const auto count = static_cast<unsigned>(row.size());
        for (unsigned index = 0; index < count; ++index) {
            EXPECT_EQ(Show(L"Really?", row, 0,
                           [&] { End(Finger().Tap(ButtonPoint(WaitForBox(), index, count))); }),
                      static_cast<int>(row[index]));
        }
    }
}

TEST_F(MessageBoxResult, AnErrorHasItsCaptionAndOneButton) {
    int result = 0;
    WhileUser(
        [&] {
            const HWND box = WaitForBox();
            EXPECT_EQ(TextOf(box), L"Error");
            EXPECT_EQ(GetWindow(box, GW_OWNER), owner.Handle());
            End(Finger().Tap(ButtonPoint(box, 0, 1)));
        },
        [&] { result = ui::ShowError(owner.Handle(), L"No such file."); });
    EXPECT_EQ(result, IDS_BUTTON_OK);
}

TEST_F(MessageBoxResult, TheOwnerWaitsForIt) {
    Show(L"Really?", yesNo, 0, [&] {
        const HWND box = WaitForBox();
        EXPECT_EQ(TextOf(box), L"Warning");
        EXPECT_FALSE(IsWindowEnabled(owner.Handle()));
        EXPECT_TRUE(GetWindowLongW(box, GWL_EXSTYLE) & WS_EX_TOPMOST);
        End();
    });
    EXPECT_TRUE(IsWindowEnabled(owner.Handle()));
    EXPECT_EQ(GetForegroundWindow(), owner.Handle());
}

TEST_F(MessageBoxResult, NothingWaitsWhileItAsks) {
    const PlatformHook<HCURSOR WINAPI(HCURSOR)> cursor("SetCursor", NoteCursor);
    setCursor = cursor.Original();
    const platform::WaitCursor waiting;
    EXPECT_EQ(shownCursor, LoadCursorW(nullptr, IDC_WAIT));
    Show(L"Really?", yesNo, 0, [&] {
        WaitForBox();
        EXPECT_EQ(shownCursor, LoadCursorW(nullptr, IDC_ARROW));
        Finger().Key("Return").Play();
    });
    EXPECT_EQ(shownCursor, LoadCursorW(nullptr, IDC_WAIT));
}

TEST_F(MessageBoxResult, HasTheStyleOfItsTemplate) {
    Show(L"Really?", yesNo, 0, [&] {
        const HWND box = WaitForBox();
        const auto style = static_cast<DWORD>(GetWindowLongW(box, GWL_STYLE));
        EXPECT_EQ(style & 0x80880000, 0x80880000);
        const auto bar = static_cast<DWORD>(GetWindowLongW(Bar(box), GWL_STYLE));
        EXPECT_EQ(bar & 0x56010000, 0x56010000u);
        End();
    });
}

TEST_F(MessageBoxKeys, EnterAtOnceAnswersTheDefault) {
    EXPECT_EQ(After(yesNo, 1, {"Return"}), IDS_BUTTON_NO);
    EXPECT_EQ(After(yesNo, 0, {"Return"}), IDS_BUTTON_YES);
    EXPECT_EQ(After(yesNoCancel, 2, {"Return"}), IDS_BUTTON_CANCEL);
}

TEST_F(MessageBoxKeys, ADefaultThatIsNotThereIsTheFirst) {
    EXPECT_EQ(After(yesNo, 7, {"Return"}), IDS_BUTTON_YES);
}

TEST_F(MessageBoxKeys, WithoutADefaultTheChoiceIsLeftToTheFirstKey) {
    EXPECT_EQ(After(yesNo, ui::noDefaultButton, {"Return", "Right", "Return"}), IDS_BUTTON_YES);
    EXPECT_EQ(After(yesNo, ui::noDefaultButton, {"Return", "Left", "Return"}), IDS_BUTTON_NO);
}

TEST_F(MessageBoxKeys, EscapeAnswersTwo) {
    EXPECT_EQ(After(yesNo, 0, {"Escape"}), 2);
}

TEST_F(MessageBoxKeys, ArrowsMoveTheFocusAndWrap) {
    EXPECT_EQ(After(yesNoCancel, 0, {"Right", "Return"}), IDS_BUTTON_NO);
    EXPECT_EQ(After(yesNoCancel, 0, {"Down", "Down", "Return"}), IDS_BUTTON_CANCEL);
    EXPECT_EQ(After(yesNoCancel, 0, {"Down", "Right", "Right", "Return"}), IDS_BUTTON_YES);
    EXPECT_EQ(After(yesNoCancel, 2, {"Left", "Return"}), IDS_BUTTON_NO);
    EXPECT_EQ(After(yesNoCancel, 2, {"Up", "Up", "Return"}), IDS_BUTTON_YES);
    EXPECT_EQ(After(yesNoCancel, 0, {"Up", "Return"}), IDS_BUTTON_CANCEL);
}

TEST_F(MessageBoxKeys, TabMovesTheFocusAndShiftTabMovesItBack) {
    EXPECT_EQ(After(yesNoCancel, 0, {"Tab", "Return"}), IDS_BUTTON_NO);
    EXPECT_EQ(Show(L"Really?", yesNoCancel, 1,
                   [&] {
                       WaitForBox();
                       PressTab(false);
                       End(Finger().Key("Return"));
                   }),
              IDS_BUTTON_YES);
}

TEST_F(MessageBoxKeys, TabWrapsAndIsPassedOnToTheDialog) {
    for (const bool forward : {true, false}) {
        const int result = Show(L"Really?", yesNo, forward ? 1 : 0, [&] {
            WaitForBox();
            const LONG before = InputTaken::Count(WM_NEXTDLGCTL);
            PressTab(forward);
            EXPECT_TRUE(WaitFor([&] { return InputTaken::Count(WM_NEXTDLGCTL) == before + 1; }));
            End(Finger().Key("Return"));
        });
        EXPECT_EQ(result, forward ? IDS_BUTTON_YES : IDS_BUTTON_NO);
    }
}

TEST_F(MessageBoxKeys, TabBetweenTheButtonsIsNotPassedOn) {
    Show(L"Really?", yesNo, 0, [&] {
        WaitForBox();
        const LONG before = InputTaken::Count(WM_NEXTDLGCTL);
        Play(Finger().Key("Tab"));
        EXPECT_EQ(InputTaken::Count(WM_NEXTDLGCTL), before);
        End();
    });
}

TEST_F(MessageBoxKeys, TheFocusIsSeenToMove) {
    Show(L"Really?", yesNo, 0, [&] {
        const HWND box = WaitForBox();
        // It is in front before it is drawn.
        Picture before = Picture::OfWindow(Bar(box));
        int alike = 0;
        EXPECT_TRUE(WaitFor([&] {
            const Picture earlier = std::exchange(before, Picture::OfWindow(Bar(box)));
            alike = before == earlier && !GetUpdateRect(Bar(box), nullptr, FALSE) ? alike + 1 : 0;
            return alike == 20;
        }));
        Play(Finger().Key("Right"));
        EXPECT_TRUE(WaitFor([&] { return !(Picture::OfWindow(Bar(box)) == before); }));
        Play(Finger().Key("Left"));
        EXPECT_TRUE(WaitFor([&] { return Picture::OfWindow(Bar(box)) == before; }));
        End();
    });
}

TEST_F(MessageBoxKeys, OtherKeysAreIgnored) {
    EXPECT_EQ(After(yesNo, 1, {"a", "y", "space", "Home", "F1", "Return"}), IDS_BUTTON_NO);
}

TEST_F(MessageBoxFailure, AskingToEraseIsAnsweredWithoutDrawing) {
    Show(L"Really?", {IDS_BUTTON_OK}, 0, [&] {
        const HWND box = WaitForBox();
        EXPECT_EQ(SendMessageW(box, WM_ERASEBKGND, 0, 0), 1);
        Finger().Key("Return").Play();
    });
}

TEST_F(MessageBoxFailure, WithoutMemoryForItsTemplateItIsNotCreated) {
    const PlatformHook memory("LocalAlloc", NoMemory);
    SetLastError(0);
    EXPECT_EQ(ui::ShowError(owner.Handle(), L"No such file."), -1);
    EXPECT_EQ(GetLastError(), 14u);
}

TEST_F(MessageBoxResult, TheDialogIsBuiltOfATemplateInThePlatformsForm) {
    const BYTE expected[] = {0,   0, 0x88, 0x80,                  // the style
                             0,   0, 0,    0,                     // no other style
                             0,   0,                              // no controls
                             0,   0, 0,    0,    10,  0, 10,  0,  // the place in dialog units
                             0,   0, 0,    0,    0,   0,          // no menu, class and title
                             8,   0,                              // the font
                             'S', 0, 'y',  0,    's', 0, 't', 0, 'e', 0, 'm', 0, 0, 0};
    dialogs.clear();
    const PlatformHook dialog("DialogBoxIndirectParamW", NoteDialog);
    EXPECT_EQ(ui::ShowError(owner.Handle(), L"No such file."), IDS_BUTTON_OK);
    ASSERT_EQ(dialogs.size(), 1u);
    EXPECT_EQ(dialogs[0].dialogTemplate,
              std::vector<BYTE>(std::begin(expected), std::end(expected)));
    // Not a language pack's, whose texts it may show.
    EXPECT_EQ(dialogs[0].instance, GetModuleHandleW(nullptr));
    EXPECT_EQ(dialogs[0].owner, owner.Handle());
    EXPECT_NE(dialogs[0].parameter, 0);
}

TEST_F(MessageBoxFailure, WhatHasNoTextIsNotAsked) {
    const PlatformHook dialog("DialogBoxIndirectParamW", AnswerYes);
    EXPECT_TRUE(ui::Confirm(owner.Handle(), L"Really?", ui::DefaultButton::Yes));
    EXPECT_EQ(ui::ShowMessage(owner.Handle(), L"", IDS_WARNING, 2, yesNo.data(), 0),
              ui::messageNotCreated);
    EXPECT_FALSE(ui::Confirm(owner.Handle(), L"", ui::DefaultButton::Yes));
}

TEST_F(MessageBoxFailure, ADialogThatCannotBeCreatedIsToldSo) {
    const PlatformHook dialog("DialogBoxIndirectParamW", NoDialog);
    EXPECT_EQ(ui::ShowError(owner.Handle(), L"No such file."), -1);
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INVALID_WINDOW_HANDLE));
}

TEST_F(MessageBoxFailure, ADialogWhoseOwnerHasGoneIsNotCreated) {
    const PlatformHook dialog("DialogBoxIndirectParamW", DialogWithoutOwner);
    EXPECT_EQ(ui::ShowError(owner.Handle(), L"No such file."), -1);
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INVALID_WINDOW_HANDLE));
}

TEST_F(MessageBoxFailure, WithoutItsButtonsItEndsWithTwo) {
    const PlatformHook window("CreateWindowExW", NoWindow);
    EXPECT_EQ(ui::ShowError(owner.Handle(), L"No such file."), 2);
    EXPECT_FALSE(ui::Tell(owner.Handle(), L"No such file.", IDS_ERROR));
}

TEST_F(MessageBoxFailure, ATextThatCannotBeMeasuredEndsItWithTwo) {
    for (const bool withoutDC : {false, true}) {
        std::unique_ptr<PlatformHook<decltype(NoWindowDC)>> dc;
        std::unique_ptr<PlatformHook<decltype(NoText)>> text;
        if (withoutDC) {
            dc = std::make_unique<PlatformHook<decltype(NoWindowDC)>>("GetDC", NoWindowDC);
        } else {
            text = std::make_unique<PlatformHook<decltype(NoText)>>("DrawTextW", NoText);
        }
        EXPECT_EQ(ui::ShowError(owner.Handle(), L"No such file."), 2) << withoutDC;
        EXPECT_FALSE(ui::Confirm(owner.Handle(), L"Really?", ui::DefaultButton::Yes));
    }
}

TEST_F(MessageBoxFailure, AWorkAreaWithoutRoomEndsItWithTwo) {
    const PlatformHook monitor("GetMonitorInfoW", OtherWorkArea);
    workArea = RECT{0, 0, 200, 10};
    EXPECT_EQ(ui::ShowError(owner.Handle(), L"No such file."), 2);
}

TEST_F(MessageBoxFailure, AMonitorThatCannotBeReadIsTheFullScreen) {
    const PlatformHook monitor("GetMonitorInfoW", OtherWorkArea);
    workArea = RECT{};
    const PlatformHook metrics("GetSystemMetrics", SmallFullScreen);
    systemMetric = metrics.Original();
    smallFullScreen = 220;
    Show(L"Hm", {IDS_BUTTON_OK}, 0, [&] {
        const RECT box = ScreenRectangleOf(WaitForBox());
        EXPECT_NEAR((box.left + box.right) / 2, 110, 1);
        EXPECT_NEAR((box.top + box.bottom) / 2, 110, 1);
        End();
    });
    smallFullScreen = 10;
    EXPECT_EQ(ui::ShowError(owner.Handle(), L"No such file."), 2);
}

TEST_F(MessageBoxFailure, TheFullScreenBeginsInItsCorner) {
    const auto place = [&] {
        RECT box = {};
        Show(L"Hm", {IDS_BUTTON_OK}, 0, [&] {
            box = ScreenRectangleOf(WaitForBox());
            End();
        });
        return box;
    };
    const PlatformHook monitor("GetMonitorInfoW", OtherWorkArea);
    const PlatformHook metrics("GetSystemMetrics", SmallFullScreen);
    systemMetric = metrics.Original();
    // Half a pixel is seen at one of two sizes.
    for (const int size : {220, 221}) {
        workArea = RECT{0, 0, size, size};
        const RECT readable = place();
        workArea = RECT{};
        smallFullScreen = size;
        const RECT unreadable = place();
        EXPECT_TRUE(EqualRect(&readable, &unreadable)) << size;
    }
}

TEST_F(MessageBoxFailure, AQuitEndsItAndIsPostedAgain) {
    const DWORD program = GetCurrentThreadId();
    int code = 0;
    WhileUser(
        [&] {
            WaitForBox();
            PostThreadMessageW(program, WM_QUIT, 4, 0);
        },
        [&] {
            const UINT ok = IDS_BUTTON_OK;
            const int result = ui::ShowMessage(owner.Handle(), L"Hm", IDS_WARNING, 1, &ok, 0);
            EXPECT_NE(result, IDS_BUTTON_OK);
            MSG message;
            while (GetMessageW(&message, nullptr, 0, 0) > 0) {
            }
            code = static_cast<int>(message.wParam);
        });
    EXPECT_EQ(code, 4);
}
