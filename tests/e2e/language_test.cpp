// A person changes the program's language, from the settings and from the menu.
#include <gtest/gtest.h>

#include "platform/handles.h"
#include "res/resource.h"
#include "tests/support/box.h"
#include "tests/support/finger.h"
#include "tests/support/program.h"
#include "tests/support/wait.h"
#include "tests/support/windows_seen.h"
#include "tests/support/world.h"

using namespace test;

namespace {

constexpr wchar_t mainWindowClass[] = L"Vantor Main Window";
constexpr wchar_t dialogClass[] = L"#32770";
constexpr wchar_t popupClass[] = L"kx::PopupMenu";

DWORD OwnerOf(HWND window) {
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    return process;
}

// Presses keys in this window, which must have come.
void Press(HWND window, const std::vector<const char*>& keys) {
    ASSERT_TRUE(window);
    Finger finger;
    for (const char* key : keys) {
        finger.Key(key);
    }
    ASSERT_TRUE(finger.In(window).Play());
}

class LanguageChange : public testing::Test {
 protected:
    ~LanguageChange() override {
        if (const HWND left = FindVisible(mainWindowClass, true)) {
            const platform::UniqueHandle process(
                OpenProcess(SYNCHRONIZE | PROCESS_TERMINATE, FALSE, OwnerOf(left)));
            PostMessageW(left, WM_CLOSE, 0, 0);
            if (WaitForSingleObject(process.Get(), longestWait) != WAIT_OBJECT_0) {
                TerminateProcess(process.Get(), 1);
            }
        }
    }
    // The main window of a process other than the given one.
    static HWND WaitForOther(DWORD process) {
        HWND found = nullptr;
        WaitFor([&] {
            found = FindVisible(mainWindowClass, true);
            return found && OwnerOf(found) != process;
        });
        return found && OwnerOf(found) != process ? found : nullptr;
    }
    static void ToTheFront(const Program& program) {
        ASSERT_TRUE(program.WaitForMainWindow());
        ASSERT_TRUE(BringToFront(program.MainWindow()));
    }
    // Opens Settings from the menu, whose last items are Settings, About and Exit.
    static HWND OpenSettings(const Program& program) {
        Press(program.MainWindow(), {"F2"});
        Press(WaitForWindow(popupClass, true), {"End", "Up", "Up", "Return"});
        return WaitForBox(true);
    }

    const CleanSettings settings;
};

}  // namespace

TEST_F(LanguageChange, RestartsTheProgramInTheNewLanguageAndLosesNothing) {
    CleanSettings::SetText(L"path", L"\\My Documents");
    CleanSettings::SetNumber(L"flags", 0x0C);
    const Program program(L"-status");
    ToTheFront(program);
    ASSERT_TRUE(WaitFor([&] { return TextOf(program.MainWindow()) == L"System Status"; }));
    const HWND settingsPage = OpenSettings(program);
    // German is the first of the languages.
    Press(settingsPage, {"Home", "space", "F1"});
    ASSERT_TRUE(WaitFor([] { return CleanSettings::Number(L"langid") == 0x0407u; }));
    Press(WaitForBox(true, settingsPage), {"Return"});
    EXPECT_EQ(program.WaitForExit(), 0u);
    const HWND window = WaitForOther(program.ProcessId());
    ASSERT_TRUE(window);
    EXPECT_TRUE(WaitFor([&] { return TextOf(window) == L"Systemstatus"; }));
    EXPECT_EQ(CleanSettings::Number(L"view"), 3u);
    EXPECT_EQ(CleanSettings::Number(L"flags"), 0x0Cu);
    EXPECT_EQ(CleanSettings::Text(L"path"), L"\\My Documents");
    // The new program goes on where the old one was.
    SendMessageW(window, WM_COMMAND, ID_SHOW_FILES, 0);
    EXPECT_TRUE(WaitFor([&] { return TextOf(window) == L"\\My Documents"; }));
}

TEST_F(LanguageChange, DeclinedWaitsForTheNextStart) {
    {
        const Program program(L"-status");
        ToTheFront(program);
        const HWND settingsPage = OpenSettings(program);
        Press(settingsPage, {"Home", "space", "F1"});
        ASSERT_TRUE(WaitFor([] { return CleanSettings::Number(L"langid") == 0x0407u; }));
        Press(WaitForBox(true, settingsPage), {"Right", "Return"});
        EXPECT_TRUE(WaitFor([] { return !FindVisible(dialogClass, true); }));
        EXPECT_EQ(TextOf(program.MainWindow()), L"System Status");
        EXPECT_EQ(program.Close(), 0u);
    }
    EXPECT_FALSE(FindVisible(mainWindowClass, true));
    const Program program;
    ASSERT_TRUE(program.WaitForMainWindow());
    EXPECT_TRUE(WaitFor([&] { return TextOf(program.MainWindow()) == L"Systemstatus"; }));
}

TEST_F(LanguageChange, FromTheMenuRestartsToo) {
    CleanSettings::SetNumber(L"view", 2);
    CleanSettings::SetNumber(L"langid", 0x0407);
    const Program program;
    ToTheFront(program);
    ASSERT_TRUE(WaitFor([&] { return TextOf(program.MainWindow()).starts_with(L"Prozesse"); }));
    Press(program.MainWindow(), {"F2"});
    const HWND popup = WaitForWindow(popupClass, true);
    // The languages stand above Settings, About and Exit; French is the third of them.
    Press(popup, {"End", "Up", "Up", "Up", "Return"});
    Press(WaitForAnother(popupClass, popup), {"Home", "Down", "Down", "Return"});
    ASSERT_TRUE(WaitFor([] { return CleanSettings::Number(L"langid") == 0x040Cu; }));
    ASSERT_TRUE(
        WaitFor([] { return TextOf(FindVisible(dialogClass, true)) == L"Sprache ge\u00E4ndert"; }));
    Press(FindVisible(dialogClass, true), {"Return"});
    EXPECT_EQ(program.WaitForExit(), 0u);
    const HWND window = WaitForOther(program.ProcessId());
    ASSERT_TRUE(window);
    EXPECT_TRUE(WaitFor([&] { return TextOf(window).starts_with(L"Processus"); }));
}

TEST_F(LanguageChange, ToOneWithoutAPackStaysEnglish) {
    CleanSettings::SetNumber(L"langid", 0x0416);
    const Program program(L"-status");
    ASSERT_TRUE(program.WaitForMainWindow());
    EXPECT_TRUE(WaitFor([&] { return TextOf(program.MainWindow()) == L"System Status"; }));
}
