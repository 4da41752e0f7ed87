// A keyboard and a mouse, where a handheld or a PC has them.
#include "tests/e2e/files_fixture.h"

using namespace test;

namespace {

class KeyboardAndMouse : public FilesProgram {
 protected:
    void Press(const std::string& key) const {
        ASSERT_TRUE(Finger().In(Window()).Key(key).Play()) << key;
    }
    bool Exists(const std::wstring& name) const {
        return GetFileAttributesW((folder.Path() + name).c_str()) != INVALID_FILE_ATTRIBUTES;
    }
    bool Counts(int marks) const {
        return ShowsCaption(folder.Path() + L" (" + std::to_wstring(marks) + L")");
    }
    bool ShowsFolder(const std::wstring& name) const { return Shows(folder.Path() + name); }
};

}  // namespace

TEST_F(KeyboardAndMouse, TheWheelScrollsByWholeRows) {
    for (int number = 10; number < 50; ++number) {
        folder.MakeFolder(std::to_wstring(number));
    }
    Start();
    const POINT first = RowPoint(0);
    const POINT second = RowPoint(1);
    ASSERT_TRUE(Finger().Turn(first, -2).Tap(first).Play());
    EXPECT_TRUE(ShowsFolder(L"\\16"));
    Press("BackSpace");
    EXPECT_TRUE(ShowsFolder(L""));
    // From the strip and the bar as well; going up has brought the folder left to the top.
    Press("Home");
    ASSERT_TRUE(ShowsSelected(0));
    ASSERT_TRUE(Finger().Turn(MiddleOf(PathBar()), -1).Play());
    ASSERT_TRUE(Finger().Turn(MiddleOf(Bar()), -1).Tap(second).Play());
    EXPECT_TRUE(ShowsFolder(L"\\17"));
}

TEST_F(KeyboardAndMouse, TheRightButtonOpensTheActionsOfItsRow) {
    folder.MakeFolder(L"a");
    folder.MakeFile(L"b");
    Start();
    const POINT row = RowPoint(1);
    ASSERT_TRUE(Finger().RightClick(row).Play());
    const HWND popup = Popup();
    ASSERT_TRUE(popup);
    // The row stays in sight.
    const RECT place = ScreenRectangleOf(popup);
    EXPECT_FALSE(PtInRect(&place, row));
    ASSERT_TRUE(Finger().Key("End").Key("Return").Play());
    const HWND page = Dialog();
    EXPECT_TRUE(WaitFor([&] { return TextOf(page) == L"Properties"; }));
    Answer(Finger().Key("Escape"));
    EXPECT_TRUE(ShowsSelected(1));
    Press("Menu");
    ASSERT_TRUE(Popup());
    ASSERT_TRUE(Finger().Key("Escape").Play());
    EXPECT_TRUE(WaitFor([] { return !FindVisible(L"kx::PopupMenu", true); }));
}

TEST_F(KeyboardAndMouse, TheBackButtonGoesUp) {
    folder.MakeFolder(L"a");
    folder.MakeFile(L"a\\b");
    StartAt(folder.Path() + L"\\a");
    ASSERT_TRUE(Finger().BackButton(MiddleOf(List())).Play());
    EXPECT_TRUE(ShowsFolder(L""));
    ASSERT_TRUE(Finger().BackButton(MiddleOf(PathBar())).Play());
    EXPECT_TRUE(Shows(L"\\Temp"));
}

TEST_F(KeyboardAndMouse, FilesAreCopiedMovedAndDeletedByKeys) {
    folder.MakeFolder(L"inner");
    folder.MakeFile(L"one.txt");
    folder.MakeFile(L"two.txt");
    Start();
    Press("o");
    EXPECT_TRUE(ShowsSelected(1));
    Press("ctrl+c");
    Press("Home");
    Press("Right");
    ASSERT_TRUE(ShowsFolder(L"\\inner"));
    Press("ctrl+v");
    EXPECT_TRUE(WaitFor([&] { return Exists(L"\\inner\\one.txt"); }));
    Press("BackSpace");
    ASSERT_TRUE(ShowsFolder(L""));
    Press("t");
    EXPECT_TRUE(ShowsSelected(2));
    Press("ctrl+x");
    Press("i");
    EXPECT_TRUE(ShowsSelected(0));
    Press("Right");
    ASSERT_TRUE(ShowsFolder(L"\\inner"));
    Press("ctrl+v");
    EXPECT_TRUE(WaitFor([&] { return Exists(L"\\inner\\two.txt") && !Exists(L"\\two.txt"); }));
    Press("Home");
    Press("Delete");
    Answer(Finger().Key("Return"));
    EXPECT_TRUE(WaitFor([&] { return !Exists(L"\\inner\\one.txt"); }));
    EXPECT_TRUE(Exists(L"\\one.txt"));
}

TEST_F(KeyboardAndMouse, RowsAreMarkedByKeys) {
    folder.MakeFolder(L"a");
    folder.MakeFile(L"b");
    folder.MakeFile(L"c");
    Start();
    Press("ctrl+a");
    EXPECT_TRUE(Counts(3));
    Press("Escape");
    EXPECT_TRUE(ShowsFolder(L""));
    Press("Home");
    Press("shift+Down");
    EXPECT_TRUE(Counts(2));
    Press("shift+Up");
    EXPECT_TRUE(Counts(1));
    Press("Insert");
    EXPECT_TRUE(Counts(0));
    Press("space");
    EXPECT_TRUE(Counts(1));
}

TEST_F(KeyboardAndMouse, AltAndEnterShowPropertiesAndNoMenuOfTheWindow) {
    folder.MakeFile(L"a");
    Start();
    Press("alt+Return");
    Press("Down");
    EXPECT_TRUE(ShowsSelected(0));
    Press("alt+Return");
    const HWND page = Dialog();
    EXPECT_TRUE(WaitFor([&] { return TextOf(page) == L"Properties"; }));
    Answer(Finger().Key("Return"));
}

TEST_F(KeyboardAndMouse, DigitsThatChooseAViewDoSoAndOthersFindRows) {
    folder.MakeFolder(L"2");
    folder.MakeFolder(L"a");
    folder.MakeFolder(L"7");
    Start();
    Press("7");
    EXPECT_TRUE(ShowsSelected(1));
    Press("3");
    EXPECT_TRUE(ShowsCaption(L"Processes ("));
    Press("4");
    EXPECT_TRUE(ShowsCaption(L"System Status"));
    Press("F5");
    Press("1");
    EXPECT_TRUE(ShowsFolder(L""));
    EXPECT_TRUE(ShowsSelected(1));
    Press("F5");
    EXPECT_TRUE(ShowsSelected(1));
}
