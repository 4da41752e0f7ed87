#include <gtest/gtest.h>

#include <stdexcept>

#include "faults/fault.h"
#include "res/resource.h"
#include "tests/faults/no_memory.h"
#include "tests/support/drawn_texts.h"
#include "tests/support/finger.h"
#include "tests/support/platform_hook.h"
#include "tests/support/user.h"
#include "tests/support/wait.h"
#include "tests/support/windows_seen.h"
#include "ui/dialog/action.h"

using namespace test;

namespace {

int systemBoxes = 0;
HWND ownerOfSystemBox = nullptr;
int WINAPI NoteSystemBox(HWND owner, LPCWSTR text, LPCWSTR, UINT) {
    ++systemBoxes;
    ownerOfSystemBox = owner;
    EXPECT_STREQ(text, faults::noMessage);
    return IDOK;
}
INT_PTR WINAPI NoDialog(HINSTANCE, const DLGTEMPLATE*, HWND, DLGPROC, LPARAM) {
    throw std::bad_alloc();
}
HWND WINAPI NoWindow(DWORD, LPCWSTR, LPCWSTR, DWORD, int, int, int, int, HWND, HMENU, HINSTANCE,
                     void*) {
    return nullptr;
}
INT_PTR WINAPI NoBox(HINSTANCE, const DLGTEMPLATE*, HWND, DLGPROC, LPARAM) {
    return -1;
}

class Reporting : public testing::Test {
 protected:
    Reporting()
        : owner(CreateWindowExW(0, L"STATIC", L"", WS_POPUP | WS_VISIBLE, 0, 0, 480, 640, nullptr,
                                nullptr, nullptr, nullptr)) {
        SetForegroundWindow(owner);
    }
    ~Reporting() override { DestroyWindow(owner); }

    // Runs an action whose failure is shown and reads what is shown.
    void ReadBox(const std::function<void()>& action) {
        WhileUser(
            [this] {
                box = WaitForWindow(L"#32770");
                caption = TextOf(box);
                ownerOfBox = GetWindow(box, GW_OWNER);
                ownerEnabled = IsWindowEnabled(owner);
                hasOneButton = drawn.Shows(L"Ok");
                EXPECT_TRUE(Finger().Key("Return").Play());
            },
            action);
    }

    HWND owner;
    const DrawnTexts drawn;
    HWND box = nullptr;
    HWND ownerOfBox = nullptr;
    BOOL ownerEnabled = TRUE;
    bool hasOneButton = false;
    std::wstring caption;
};

}  // namespace

TEST_F(Reporting, ShowsAFaultBehindTheContextAndItsInserts) {
    ReadBox([this] {
        ui::RunAction(
            owner, IDS_CANNOT_RENAME, [] { throw faults::Fault(std::wstring(L"It is\r\nin use")); },
            std::wstring(L"a.txt"));
    });
    EXPECT_EQ(caption, L"Error");
    EXPECT_EQ(ownerOfBox, owner);
    EXPECT_FALSE(ownerEnabled);
    EXPECT_TRUE(hasOneButton);
    EXPECT_TRUE(drawn.Shows(L"Can't rename 'a.txt' \r\nIt is in use")) << drawn.All();
}

TEST_F(Reporting, ShowsTheCodeOfAFaultWithoutAText) {
    ReadBox([this] { ui::RunAction(owner, IDS_ACTION_FAILED, [] { throw faults::Fault(); }); });
    EXPECT_TRUE(drawn.Shows(L"The action can't be completed\r\n0x80000008")) << drawn.All();
}

TEST_F(Reporting, ShowsAnyOtherExceptionAsUnexpected) {
    ReadBox([this] {
        ui::RunAction(owner, IDS_CANNOT_LIST_PROCESSES,
                      [] { throw std::runtime_error("internal"); });
    });
    EXPECT_EQ(caption, L"Error");
    EXPECT_TRUE(drawn.Shows(L"Can't enumerate process\r\nUnexpected error.")) << drawn.All();
}

TEST_F(Reporting, ShowsWhatIsNoExceptionObjectAsUnexpected) {
    ReadBox([this] { ui::RunAction(owner, IDS_ACTION_FAILED, [] { throw 5; }); });
    EXPECT_TRUE(drawn.Shows(L"The action can't be completed\r\nUnexpected error.")) << drawn.All();
}

TEST_F(Reporting, LeavesDoneWhatTheActionHadDone) {
    int steps = 0;
    ReadBox([&] {
        ui::RunAction(owner, IDS_ACTION_FAILED, [&] {
            ++steps;
            if (steps > 0) {
                throw faults::Fault(std::wstring(L"enough"));
            }
            ++steps;
        });
    });
    EXPECT_EQ(steps, 1);
}

TEST_F(Reporting, WithoutMemoryTellsThatSomethingHasFailedAndGoesOn) {
    const PlatformHook<decltype(NoteSystemBox)> boxes("MessageBoxW", NoteSystemBox);
    const PlatformHook<decltype(NoDialog)> dialogs("DialogBoxIndirectParamW", NoDialog);
    systemBoxes = 0;
    bool raised = false;
    {
        const NoMemory none;
        try {
            ui::RunAction(owner, IDS_ACTION_FAILED, [] { throw faults::W32Fault(E_ACCESSDENIED); });
            ui::RunAction(owner, IDS_ACTION_FAILED, [] { throw std::bad_alloc(); });
        } catch (...) {
            raised = true;
        }
    }
    EXPECT_FALSE(raised);
    EXPECT_EQ(systemBoxes, 2);
    EXPECT_EQ(ownerOfSystemBox, owner);
}

TEST_F(Reporting, ABoxThatCannotBeMadeLeavesItToTheSystem) {
    const PlatformHook<decltype(NoteSystemBox)> boxes("MessageBoxW", NoteSystemBox);
    const PlatformHook<decltype(NoBox)> dialogs("DialogBoxIndirectParamW", NoBox);
    systemBoxes = 0;
    ui::RunAction(owner, IDS_ACTION_FAILED, [] { throw faults::W32Fault(E_ACCESSDENIED); });
    EXPECT_EQ(systemBoxes, 1);
    EXPECT_EQ(ownerOfSystemBox, owner);
}

TEST_F(Reporting, ABoxThatCannotHaveItsButtonLeavesItToTheSystem) {
    const PlatformHook<decltype(NoteSystemBox)> boxes("MessageBoxW", NoteSystemBox);
    const PlatformHook<decltype(NoWindow)> windows("CreateWindowExW", NoWindow);
    systemBoxes = 0;
    ui::RunAction(owner, IDS_ACTION_FAILED, [] { throw faults::W32Fault(E_ACCESSDENIED); });
    EXPECT_EQ(systemBoxes, 1);
    EXPECT_EQ(ownerOfSystemBox, owner);
}

TEST_F(Reporting, ShowsNothingWhenTheActionSucceeds) {
    bool done = false;
    ui::RunAction(owner, IDS_ACTION_FAILED, [&] { done = true; });
    EXPECT_TRUE(done);
    EXPECT_FALSE(FindVisible(L"#32770"));
}
