#include "app/language_menu.h"

#include "app/main_frame.h"
#include "app/module.h"
#include "tests/app/language_fixture.h"
#include "text/resources.h"
#include "ui/popup/menu_items.h"

using namespace test;

namespace {

constexpr UINT firstLanguage = 0x8F00;

struct Question {
    std::wstring text;
    std::wstring caption;
    UINT style;
};
std::vector<Question> questions;
int answer = IDNO;

int WINAPI Answer(HWND, LPCWSTR text, LPCWSTR caption, UINT style) {
    questions.push_back(Question{text, caption, style});
    return answer;
}

std::vector<std::wstring> started;

BOOL WINAPI NoteStart(LPCWSTR program, LPWSTR arguments, LPSECURITY_ATTRIBUTES,
                      LPSECURITY_ATTRIBUTES, BOOL inherit, DWORD, LPVOID, LPCWSTR, LPSTARTUPINFOW,
                      LPPROCESS_INFORMATION process) {
    started.push_back(program);
    EXPECT_EQ(arguments, nullptr);
    EXPECT_FALSE(inherit);
    *process = {};
    process->hProcess = CreateEventW(nullptr, FALSE, FALSE, nullptr);
    process->hThread = CreateEventW(nullptr, FALSE, FALSE, nullptr);
    return TRUE;
}

int beeps = 0;
BOOL WINAPI CountBeep(UINT) {
    ++beeps;
    return TRUE;
}

LSTATUS WINAPI FailAlways(HKEY, DWORD, LPWSTR, LPDWORD, LPDWORD, LPDWORD, LPBYTE, LPDWORD) {
    return ERROR_NOT_ENOUGH_MEMORY;
}

class LanguageMenu : public LanguageFixture {
 protected:
    LanguageMenu() {
        questions.clear();
        started.clear();
        answer = IDNO;
        EXPECT_TRUE(frame.Open());
    }
    ~LanguageMenu() override {
        frame.Destroy();
        app::TheModule().SetExitHook(nullptr);
        MSG message;
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        }
    }
    HMENU Popup() { return GetSubMenu(frame.Bar().Menu(), 1); }
    // What the bar tells the frame before it shows the menu.
    void OpenMenu() {
        SendMessageW(frame.Handle(), WM_INITMENUPOPUP, reinterpret_cast<WPARAM>(Popup()), 1);
    }
    std::vector<ui::MenuItem> Languages() {
        std::vector<ui::MenuItem> items;
        ui::MenuItem item;
        while (ui::ReadMenuItem(app::FindLanguageMenu(Popup()), static_cast<UINT>(items.size()),
                                &item)) {
            items.push_back(item);
        }
        return items;
    }
    bool Enabled() {
        ui::MenuItem item;
        for (UINT position = 0; ui::ReadMenuItem(Popup(), position, &item); ++position) {
            if (item.submenu) {
                return !item.Disabled();
            }
        }
        ADD_FAILURE() << "no language menu";
        return false;
    }
    void Choose(UINT position) {
        SendMessageW(frame.Handle(), WM_COMMAND, firstLanguage + position, 0);
    }
    static bool ClosePosted() {
        MSG message;
        return PeekMessageW(&message, nullptr, WM_CLOSE, WM_CLOSE, PM_NOREMOVE);
    }

    const PlatformHook<decltype(Answer)> box{"MessageBoxW", Answer};
    const PlatformHook<decltype(NoteStart)> start{"CreateProcessW", NoteStart};
    app::MainFrame frame;
};

}  // namespace

TEST_F(LanguageMenu, IsFilledWhenTheMenuOpens) {
    MakePack(L"vantor.exe.0407.ui", german, L"Gut");
    MakePack(L"vantor.exe.040c.ui", french, L"Bien");
    OpenMenu();
    const std::vector<ui::MenuItem> items = Languages();
    ASSERT_EQ(items.size(), 3u);
    EXPECT_EQ(items[0].Text(), L"German (Germany)");
    EXPECT_EQ(items[0].id, firstLanguage);
    EXPECT_EQ(items[0].image, german);
    EXPECT_FALSE(items[0].Checked());
    EXPECT_EQ(items[1].id, firstLanguage + 1);
    EXPECT_EQ(items[1].image, text::programLanguage);
    EXPECT_TRUE(items[1].Checked());
    EXPECT_EQ(items[2].image, french);
    EXPECT_TRUE(Enabled());
}

TEST_F(LanguageMenu, FollowsThePacksThatComeAndGo) {
    OpenMenu();
    EXPECT_EQ(Languages().size(), 1u);
    EXPECT_FALSE(Enabled());
    MakePack(L"vantor.exe.0407.ui", german, L"Gut");
    OpenMenu();
    EXPECT_EQ(Languages().size(), 2u);
    EXPECT_TRUE(Enabled());
    ASSERT_TRUE(DeleteFileW((folder.Path() + L"\\vantor.exe.0407.ui").c_str()));
    OpenMenu();
    EXPECT_EQ(Languages().size(), 1u);
    EXPECT_FALSE(Enabled());
}

TEST_F(LanguageMenu, StandsInTheMenuOfEveryView) {
    MakePack(L"vantor.exe.0407.ui", german, L"Gut");
    for (const UINT view : {600u, 601u, 602u, 603u, 620u}) {
        SendMessageW(frame.Handle(), WM_COMMAND, view, 0);
        OpenMenu();
        EXPECT_EQ(Languages().size(), 2u) << view;
    }
}

TEST_F(LanguageMenu, ThatCannotBeFilledLeavesTheMenuAsItIs) {
    SetOverride(folder.MakeFile(L"anything.dll"));
    const PlatformHook<decltype(FailAlways)> hook("RegEnumValueW", FailAlways);
    OpenMenu();
    EXPECT_EQ(Languages().size(), 1u);
    EXPECT_FALSE(Enabled());
    Choose(0);
    EXPECT_FALSE(CleanSettings::Number(L"langid"));
}

TEST_F(LanguageMenu, HasNoCommandsBeforeItIsFilled) {
    Choose(0);
    EXPECT_FALSE(CleanSettings::Number(L"langid"));
    EXPECT_TRUE(questions.empty());
}

TEST_F(LanguageMenu, OfAnItemWithoutALanguageStoresNone) {
    MakePack(L"vantor.exe.0407.ui", german, L"Gut");
    OpenMenu();
    // A menu that was loaded since may have the old one's handle.
    ui::SetMenuImage(app::FindLanguageMenu(Popup()), 0, 0);
    Choose(0);
    EXPECT_FALSE(CleanSettings::Number(L"langid"));
    EXPECT_TRUE(questions.empty());
}

// Its items are those of a filling that nobody stands for any more.
TEST_F(LanguageMenu, ThatCannotBeFilledAgainBeeps) {
    MakePack(L"vantor.exe.0407.ui", german, L"Gut");
    OpenMenu();
    ASSERT_EQ(Languages().size(), 2u);
    SetOverride(folder.MakeFile(L"anything.dll"));
    const PlatformHook<decltype(FailAlways)> hook("RegEnumValueW", FailAlways);
    const PlatformHook<decltype(CountBeep)> beep("MessageBeep", CountBeep);
    OpenMenu();
    ASSERT_EQ(Languages().size(), 2u);
    beeps = 0;
    Choose(0);
    EXPECT_FALSE(CleanSettings::Number(L"langid"));
    EXPECT_TRUE(questions.empty());
    EXPECT_EQ(beeps, 1);
}

TEST_F(LanguageMenu, StoresTheLanguageInUseWithoutAQuestion) {
    MakePack(L"vantor.exe.0407.ui", german, L"Gut");
    OpenMenu();
    Choose(1);
    EXPECT_EQ(CleanSettings::Number(L"langid"), 0x0409u);
    EXPECT_TRUE(questions.empty());
    Choose(2);
    EXPECT_EQ(CleanSettings::Number(L"langid"), 0x0409u);
}

TEST_F(LanguageMenu, AsksBeforeItRestarts) {
    MakePack(L"vantor.exe.0407.ui", german, L"Gut");
    OpenMenu();
    Choose(0);
    EXPECT_EQ(CleanSettings::Number(L"langid"), 0x0407u);
    ASSERT_EQ(questions.size(), 1u);
    EXPECT_EQ(questions[0].text,
              L"Language option will be applied next time when application start.\nWould you like "
              L"to restart application right now?");
    EXPECT_EQ(questions[0].caption, L"Language changed");
    EXPECT_EQ(questions[0].style, static_cast<UINT>(MB_YESNO | MB_ICONQUESTION));
    // Declined: the program goes on in its old language.
    EXPECT_FALSE(ClosePosted());
    app::TheModule().RunExitHook();
    EXPECT_TRUE(started.empty());
    EXPECT_EQ(text::Language(), text::programLanguage);
}

TEST_F(LanguageMenu, RestartsThroughTheExitHook) {
    MakePack(L"vantor.exe.0407.ui", german, L"Gut");
    OpenMenu();
    answer = IDYES;
    Choose(0);
    EXPECT_TRUE(ClosePosted());
    EXPECT_TRUE(started.empty());
    app::TheModule().RunExitHook();
    EXPECT_EQ(started, std::vector<std::wstring>{folder.Path() + L"\\vantor.exe"});
}
