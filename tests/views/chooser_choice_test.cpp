#include "res/resource.h"
#include "tests/support/drawn_texts.h"
#include "tests/support/user.h"
#include "tests/support/wait.h"
#include "tests/support/windows_seen.h"
#include "tests/views/chooser_fixture.h"

using namespace test;
using namespace views;

namespace {

int beeps = 0;
BOOL WINAPI NoteBeep(UINT) {
    ++beeps;
    return TRUE;
}

}  // namespace

class ChooserChoice : public ChooserFixture {
 protected:
    ChooserChoice() {
        folder.MakeFile(L"b c.exe");
        folder.MakeFolder(L"inner");
        folder.MakeFile(L"inner\\d.exe");
        CleanSettings::SetText(L"SelectAppPath", folder.Path());
    }
    using Started = std::vector<std::pair<std::wstring, std::wstring>>;
    std::wstring File() const { return L"C:" + folder.Path() + L"\\a b.txt"; }
    std::wstring Program(const std::wstring& name) const {
        return L"C:" + folder.Path() + L"\\" + name;
    }
};

TEST_F(ChooserChoice, ATapOnAProgramStartsItWithThePathUnquoted) {
    OpenWith([&] { TapOn(L"b c.exe"); });
    EXPECT_EQ(started, (Started{{Program(L"b c.exe"), File()}}));
    EXPECT_EQ(CleanSettings::Number(L"SelectAppFlags"), 0xC00000u);
    EXPECT_EQ(CleanSettings::Text(L"SelectAppPath"), folder.Path());
    EXPECT_EQ(Selected(), L"a b.txt");
    EXPECT_EQ(View().Title(), folder.Path());
}

TEST_F(ChooserChoice, AHoldOnlySelects) {
    Look([&] {
        HoldOn(L"b c.exe");
        EXPECT_TRUE(IsWindow(Dialog()));
    });
}

TEST_F(ChooserChoice, EnterAndTheBarsOpenChooseTheSelectedRow) {
    OpenWith([&] {
        Press("End");
        Press("Return");
    });
    EXPECT_EQ(started.size(), 1u);
    OpenWith([&] {
        HoldOn(L"b c.exe");
        const RECT bar = ScreenRectangleOf(FindChild(Dialog(), L"kx::CmdBar"));
        Finger().Tap(bar.left + ui::Width(bar) / 4, (bar.top + bar.bottom) / 2).Play();
    });
    EXPECT_EQ(started, (Started{{Program(L"b c.exe"), File()}, {Program(L"b c.exe"), File()}}));
}

TEST_F(ChooserChoice, OpenBeepsWithNothingSelected) {
    beeps = 0;
    const PlatformHook<decltype(NoteBeep)> hook("MessageBeep", NoteBeep);
    Look([&] {
        const RECT bar = ScreenRectangleOf(FindChild(Dialog(), L"kx::CmdBar"));
        Finger().Tap(bar.left + ui::Width(bar) / 4, (bar.top + bar.bottom) / 2).Play();
        EXPECT_TRUE(WaitFor([] { return beeps == 1; }));
    });
}

TEST_F(ChooserChoice, AFolderIsEnteredAndSavedWithTheChoice) {
    OpenWith([&] {
        TapOn(L"inner");
        EXPECT_TRUE(WaitForRows({L"d.exe"}));
        EXPECT_EQ(ShownFolder(), folder.Path() + L"\\inner");
        EXPECT_EQ(Chosen(), L"");
        TapOn(L"d.exe");
    });
    EXPECT_EQ(started, (Started{{Program(L"inner\\d.exe"), File()}}));
    EXPECT_EQ(CleanSettings::Text(L"SelectAppPath"), folder.Path() + L"\\inner");
}

TEST_F(ChooserChoice, SavesTheFilterAndTheOptions) {
    frame.flags = 1;
    OpenWith([&] {
        ChooseFromMenu(2);
        EXPECT_TRUE(WaitFor([&] { return ChooserRow(L"a b.txt") != ui::noRow; }));
        ChooseFromMenu(4);
        EXPECT_TRUE(WaitFor([&] { return Checked(ID_SHOW_SYSTEM); }));
        TapOn(L"a b.txt");
    });
    EXPECT_EQ(CleanSettings::Number(L"SelectAppFlags"), 0x800003u);
    EXPECT_EQ(started, (Started{{File(), File()}}));
}

TEST_F(ChooserChoice, LeftGoesUpAndSelectsWhatWasLeft) {
    Look([&] {
        TapOn(L"inner");
        EXPECT_TRUE(WaitForRows({L"d.exe"}));
        Press("Left");
        EXPECT_TRUE(WaitForFolder(folder.Path()));
        EXPECT_TRUE(WaitFor([&] { return Chosen() == L"inner"; }));
        Press("Left");
        EXPECT_TRUE(WaitForFolder(L"\\Temp"));
        Press("Left");
        EXPECT_TRUE(WaitForFolder(L"\\"));
        EXPECT_TRUE(WaitFor([&] { return Chosen() == L"Temp"; }));
        Press("Left");
        Press("Home");
        EXPECT_TRUE(WaitFor([&] { return Chosen() == L"My Documents"; }));
        EXPECT_EQ(ShownFolder(), L"\\");
        TapOn(L"My Documents");
        EXPECT_TRUE(WaitForFolder(L"\\My Documents"));
    });
}

TEST_F(ChooserChoice, RightOpensAndBackspaceGoesUp) {
    OpenWith([&] {
        EXPECT_TRUE(WaitForFolder(folder.Path()));
        // Nothing is selected yet.
        Press("Right");
        Press("alt+Return");
        Press("Home");
        EXPECT_TRUE(WaitFor([&] { return Chosen() == L"inner"; }));
        Press("Right");
        EXPECT_TRUE(WaitForRows({L"d.exe"}));
        Press("BackSpace");
        EXPECT_TRUE(WaitForFolder(folder.Path()));
        EXPECT_TRUE(WaitFor([&] { return Chosen() == L"inner"; }));
        // The mouse's back button and its wheel do so too.
        Press("Right");
        EXPECT_TRUE(WaitForRows({L"d.exe"}));
        Finger().BackButton(MiddleOf(ListWindow())).Play();
        EXPECT_TRUE(WaitForFolder(folder.Path()));
        Press("Down");
        Press("Right");
    });
    EXPECT_EQ(started.size(), 1u);
}

TEST_F(ChooserChoice, LettersAndDigitsGoToTheNextNameThatBeginsSo) {
    folder.MakeFile(L"1st.exe");
    Look([&] {
        EXPECT_TRUE(WaitForFolder(folder.Path()));
        Press("b");
        EXPECT_TRUE(WaitFor([&] { return Chosen() == L"b c.exe"; }));
        Finger().Wait(1100).Play();
        Press("1");
        EXPECT_TRUE(WaitFor([&] { return Chosen() == L"1st.exe"; }));
    });
}

TEST_F(ChooserChoice, AltAndEnterShowProperties) {
    Look([&] {
        Press("b");
        EXPECT_TRUE(WaitFor([&] { return Chosen() == L"b c.exe"; }));
        Press("alt+Return");
        const HWND page = WaitForAnother(L"#32770", Dialog());
        EXPECT_EQ(TextOf(page), L"Properties");
        Finger().In(page).Key("Return").Play();
        EXPECT_TRUE(WaitFor([&] { return !IsWindow(page); }));
    });
}

TEST_F(ChooserChoice, TheBackKeyGoesUpAndLeavesAtTheRoot) {
    CleanSettings::SetText(L"SelectAppPath", L"\\Temp");
    OpenWith([&] {
        EXPECT_TRUE(SendMessageW(Dialog(), WM_HOTKEY, 0, MAKELPARAM(0, VK_ESCAPE)));
        EXPECT_EQ(ShownFolder(), L"\\Temp");
        EXPECT_TRUE(SendMessageW(Dialog(), WM_HOTKEY, 0, MAKELPARAM(MOD_KEYUP, VK_ESCAPE)));
        EXPECT_EQ(ShownFolder(), L"\\");
        EXPECT_EQ(Chosen(), L"Temp");
        SendMessageW(Dialog(), WM_HOTKEY, 0, MAKELPARAM(MOD_KEYUP, VK_ESCAPE));
        EXPECT_TRUE(WaitFor([&] { return !IsWindow(Dialog()); }));
    });
    EXPECT_TRUE(started.empty());
    EXPECT_EQ(CleanSettings::Text(L"SelectAppPath"), L"\\Temp");
}

TEST_F(ChooserChoice, ALeftwardDragOnThePathGoesUp) {
    Look([&] {
        const RECT strip = ScreenRectangleOf(FindChild(Dialog(), L"kx::PathBar"));
        const int middle = (strip.top + strip.bottom) / 2;
        Finger().Down(300, middle).DragTo(POINT{300, middle}, POINT{100, middle}).Up().Play();
        EXPECT_TRUE(WaitForFolder(L"\\Temp"));
    });
}

TEST_F(ChooserChoice, CancelInTheMenuLeaves) {
    OpenWith([&] {
        ChooseFromMenu(5);
        EXPECT_TRUE(WaitFor([&] { return !IsWindow(Dialog()); }));
    });
    EXPECT_TRUE(started.empty());
    EXPECT_FALSE(CleanSettings::Number(L"SelectAppFlags"));
}

TEST_F(ChooserChoice, PropertiesDescribesTheSelectedRow) {
    const DrawnTexts drawn;
    Look([&] {
        HoldOn(L"b c.exe");
        ChooseFromMenu(0);
        EXPECT_TRUE(drawn.Shows(L"Location:")) << drawn.All();
        EXPECT_TRUE(drawn.Shows(folder.Path())) << drawn.All();
        Press("Escape");
        EXPECT_TRUE(WaitFor([&] { return GetForegroundWindow() == Dialog(); }));
        EXPECT_EQ(Chosen(), L"b c.exe");
    });
}

TEST_F(ChooserChoice, PropertiesNeedsASelection) {
    Look([&] {
        const auto bar = static_cast<ui::CommandBar*>(reinterpret_cast<ui::Window*>(
            GetWindowLongPtrW(FindChild(Dialog(), L"kx::CmdBar"), GWLP_USERDATA)));
        SendMessageW(Dialog(), WM_INITMENUPOPUP, 0, 1);
        EXPECT_TRUE(GetMenuState(bar->Menu(), ID_PROPERTIES, MF_BYCOMMAND) & MF_GRAYED);
        HoldOn(L"inner");
        SendMessageW(Dialog(), WM_INITMENUPOPUP, 0, 1);
        EXPECT_FALSE(GetMenuState(bar->Menu(), ID_PROPERTIES, MF_BYCOMMAND) & MF_GRAYED);
    });
}

TEST_F(ChooserChoice, AProgramThatCannotBeStartedIsReported) {
    error = ERROR_ACCESS_DENIED;
    const DrawnTexts drawn;
    OpenWith([&] {
        TapOn(L"b c.exe");
        EXPECT_TRUE(WaitFor([&] { return !IsWindow(Dialog()); }));
        EXPECT_TRUE(WaitForWindow(L"#32770"));
        EXPECT_TRUE(drawn.Shows(L"Ok"));
        EXPECT_TRUE(drawn.Shows(L"Error"));
        Press("Return");
    });
    EXPECT_NE(drawn.All().find("Access denied"), std::string::npos) << drawn.All();
    EXPECT_EQ(started.size(), 1u);
}

TEST_F(ChooserChoice, AFolderThatVanishedIsEmpty) {
    folder.MakeFolder(L"gone");
    Look([&] {
        RemoveDirectoryW((folder.Path() + L"\\gone").c_str());
        TapOn(L"gone");
        EXPECT_TRUE(WaitForFolder(folder.Path() + L"\\gone"));
        EXPECT_EQ(ShownRows(), Names{});
        Press("Left");
        EXPECT_TRUE(WaitForFolder(folder.Path()));
    });
}
