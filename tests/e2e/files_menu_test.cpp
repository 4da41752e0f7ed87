#include <gtest/gtest.h>

#include "tests/e2e/files_fixture.h"

using namespace test;

class FilesPopups : public FilesProgram {
 protected:
    // Places in the popups, counted from the top.
    enum Action { open = 0, up = 2, select = 3, newFolder = 8 };
    enum Menu { refresh = 4, showHidden = 5, showSystem = 6, showFileSize = 7, showFileDate = 8 };
};

TEST_F(FilesPopups, UpGoesUp) {
    folder.MakeFile(L"a");
    Start();
    Choose(0, up);
    EXPECT_TRUE(Shows(L"\\Temp"));
}

TEST_F(FilesPopups, OpenOpensTheFolderThatAHoldHasSelected) {
    folder.MakeFolder(L"inner");
    Start();
    ASSERT_TRUE(Finger().Hold(RowPoint(0)).Play());
    ASSERT_TRUE(ShowsSelected(0));
    Choose(0, open);
    EXPECT_TRUE(Shows(folder.Path() + L"\\inner"));
}

TEST_F(FilesPopups, RefreshShowsWhatIsNewAndKeepsTheSelection) {
    folder.MakeFile(L"b");
    Start();
    ASSERT_TRUE(Finger().Hold(RowPoint(0)).Play());
    ASSERT_TRUE(ShowsSelected(0));
    folder.MakeFile(L"a");
    Choose(1, refresh);
    EXPECT_TRUE(ShowsSelected(1));
}

TEST_F(FilesPopups, ShowHiddenShowsAndHidesAgain) {
    SetFileAttributesW(folder.MakeFile(L"hidden").c_str(), FILE_ATTRIBUTE_HIDDEN);
    folder.MakeFile(L"plain");
    Start();
    const Picture before = StillListPicture();
    Choose(1, showHidden);
    ASSERT_TRUE(WaitFor([&] { return !(StillListPicture() == before); }));
    ASSERT_TRUE(Finger().Hold(RowPoint(1)).Play());
    EXPECT_TRUE(ShowsSelected(1));
    Choose(1, showHidden);
    EXPECT_TRUE(ShowsSelected(0));
    EXPECT_TRUE(ShowsSelected(1, false));
    EXPECT_EQ(Running().Close(), 0u);
    EXPECT_EQ(CleanSettings::Number(L"flags"), 0u);
}

TEST_F(FilesPopups, TheDisplayOptionsAreKept) {
    folder.MakeFile(L"a");
    Start();
    const int one = RowHeight();
    Choose(1, showFileSize);
    EXPECT_TRUE(WaitFor([&] { return RowHeight() > one; }));
    Choose(1, showFileDate);
    Choose(1, showSystem);
    EXPECT_EQ(Running().Close(), 0u);
    EXPECT_EQ(CleanSettings::Number(L"flags"), 0x0Eu);
    EXPECT_EQ(CleanSettings::Text(L"path"), folder.Path());
}

TEST_F(FilesPopups, ADisabledActionIsIgnored) {
    folder.MakeFolder(L"inner");
    Start();
    const RECT bar = ScreenRectangleOf(Bar());
    ASSERT_TRUE(Finger().Tap(bar.left + 20, (bar.top + bar.bottom) / 2).Play());
    const HWND popup = Popup();
    ASSERT_TRUE(popup);
    ASSERT_TRUE(Finger().Tap(EntryPoint(popup, open)).Play());
    // The popup, which is still there, has done what it does about the tap.
    Picture::OfWindowDrawnAnew(popup);
    EXPECT_EQ(FindVisible(L"kx::PopupMenu", true), popup);
    ASSERT_TRUE(Finger().Key("Escape").Play());
    EXPECT_TRUE(WaitFor([] { return !FindVisible(L"kx::PopupMenu", true); }));
    EXPECT_TRUE(Shows(folder.Path()));
}
