#include <gtest/gtest.h>

#include "tests/e2e/files_fixture.h"
#include "ui/window/window.h"

using namespace test;

class FilesTouch : public FilesProgram {
 protected:
    void MakeRows(int count) const {
        for (int number = 0; number < count; ++number) {
            folder.MakeFile(L"file " + std::to_wstring(100 + number));
        }
    }
    POINT PathPoint(int percent) const {
        const RECT bar = ScreenRectangleOf(PathBar());
        return POINT{bar.left + ui::Width(bar) * percent / 100, (bar.top + bar.bottom) / 2};
    }
    // Drags until the program has seen that it is a drag, which it does not follow; the finger
    // stays down.
    void Drag(POINT from, POINT to, int steps = 10) const {
        ASSERT_TRUE(Finger().Down(from).Followed().DragTo(from, to, steps).Play());
        ASSERT_TRUE(LetsGoOfFinger(Window()));
    }
    // Proves that what was played before has been handled: a hold selects a row.
    void ExpectQuiet(const std::wstring& path) const {
        ASSERT_TRUE(Finger().Hold(RowPoint(0)).Play());
        EXPECT_TRUE(ShowsSelected(0));
        EXPECT_TRUE(Shows(path));
    }
};

TEST_F(FilesTouch, ATapOpensAFolderWithNothingSelected) {
    folder.MakeFolder(L"inner");
    folder.MakeFile(L"inner\\file");
    Start();
    ASSERT_TRUE(Finger().Tap(RowPoint(0)).Play());
    EXPECT_TRUE(Shows(folder.Path() + L"\\inner"));
    EXPECT_TRUE(ShowsSelected(0, false));
}

TEST_F(FilesTouch, AHoldOnlySelects) {
    folder.MakeFolder(L"inner");
    Start();
    ASSERT_TRUE(Finger().Hold(RowPoint(0)).Play());
    EXPECT_TRUE(ShowsSelected(0));
    EXPECT_TRUE(Shows(folder.Path()));
}

TEST_F(FilesTouch, ATapOnAFileSelectsItAndOpensNothing) {
    folder.MakeFile(L"a");
    folder.MakeFile(L"b");
    Start();
    ASSERT_TRUE(Finger().Tap(RowPoint(1)).Play());
    EXPECT_TRUE(ShowsSelected(1));
    EXPECT_TRUE(Shows(folder.Path()));
    EXPECT_TRUE(ShowsSelected(0, false));
}

TEST_F(FilesTouch, ATapBelowTheLastRowDoesNothing) {
    folder.MakeFolder(L"inner");
    Start();
    ASSERT_TRUE(Finger().Tap(RowPoint(3)).Play());
    ExpectQuiet(folder.Path());
}

TEST_F(FilesTouch, ADragScrollsSnapsToARowAndSelectsNothing) {
    MakeRows(40);
    Start();
    const Picture before = StillListPicture();
    const int height = RowHeight();
    const POINT from = RowPoint(6);
    // Three rows and a little: the rows come to rest on the third.
    const POINT to = {from.x, from.y - 3 * height - height / 4};
    ASSERT_TRUE(Finger().Down(from).Followed().DragTo(from, to).Play());
    // A finger that is lifted before its moves are looked at has tapped.
    ASSERT_TRUE(WaitFor([&] { return !(ListPicture() == before); }));
    ASSERT_TRUE(Finger().Up().Play());
    const Picture after = StillListPicture();
    // Left of the scroll indicator, what stood on the fourth row stands on the first.
    const int width = before.Width() - 20;
    for (int y = 0; y < 2 * height; ++y) {
        for (int x = 0; x < width; x += 3) {
            ASSERT_EQ(after.At(x, y), before.At(x, y + 3 * height)) << x << ' ' << y;
        }
    }
    for (int row = 0; row < 6; ++row) {
        EXPECT_EQ(after.At(1, row * height + height / 2), GetSysColor(COLOR_WINDOW));
    }
    EXPECT_TRUE(Shows(folder.Path()));
}

TEST_F(FilesTouch, ADragOverRowsThatAllFitMovesNothing) {
    MakeRows(3);
    Start();
    const Picture before = StillListPicture();
    const POINT from = RowPoint(2);
    Drag(from, POINT{from.x, from.y + 120});
    EXPECT_EQ(StillListPicture(), before);
    ASSERT_TRUE(Finger().Up().Play());
    EXPECT_EQ(StillListPicture(), before);
}

TEST_F(FilesTouch, ASidewaysDragOnTheListDoesNothing) {
    MakeRows(40);
    folder.MakeFolder(L"inner");
    Start();
    const Picture before = StillListPicture();
    const POINT from = RowPoint(0);
    Drag(from, POINT{from.x - 120, from.y});
    ASSERT_TRUE(Finger().Up().Play());
    EXPECT_EQ(StillListPicture(), before);
    EXPECT_TRUE(Shows(folder.Path()));
}

TEST_F(FilesTouch, ALeftwardDragOnThePathBarGoesUp) {
    folder.MakeFolder(L"inner");
    folder.MakeFile(L"inner\\a");
    StartAt(folder.Path() + L"\\inner");
    Drag(PathPoint(80), PathPoint(30));
    ASSERT_TRUE(Finger().Up().Play());
    EXPECT_TRUE(Shows(folder.Path()));
    EXPECT_TRUE(ShowsSelected(0));
}

TEST_F(FilesTouch, ARightwardDragOnThePathBarDoesNothing) {
    folder.MakeFolder(L"inner");
    Start();
    Drag(PathPoint(30), PathPoint(80));
    ASSERT_TRUE(Finger().Up().Play());
    ExpectQuiet(folder.Path());
}

TEST_F(FilesTouch, ATapOnThePathBarDoesNothing) {
    folder.MakeFolder(L"inner");
    Start();
    ASSERT_TRUE(Finger().Tap(PathPoint(50)).Play());
    ExpectQuiet(folder.Path());
}

TEST_F(FilesTouch, AShortLeftwardMoveOnThePathBarDoesNothing) {
    folder.MakeFolder(L"inner");
    Start();
    const POINT from = PathPoint(50);
    const POINT to = {from.x - GetSystemMetrics(SM_CXSCREEN) / 20, from.y};
    ASSERT_TRUE(Finger().Down(from).Followed().DragTo(from, to).Up().Play());
    ExpectQuiet(folder.Path());
}

TEST_F(FilesTouch, ASlowVerticalDragOnThePathBarDoesNothing) {
    folder.MakeFolder(L"inner");
    Start();
    const POINT from = PathPoint(50);
    Drag(from, POINT{from.x - 10, from.y + 160}, 40);
    ASSERT_TRUE(Finger().Up().Play());
    ExpectQuiet(folder.Path());
}

TEST_F(FilesTouch, ALeftwardDragOnThePathBarOfTheRootDoesNothing) {
    StartAt(L"");
    Drag(PathPoint(80), PathPoint(30));
    ASSERT_TRUE(Finger().Up().Play());
    ExpectQuiet(L"\\");
}

class FilesKeyboard : public FilesProgram {};

TEST_F(FilesKeyboard, ArrowsSelectAndEnterOpens) {
    folder.MakeFolder(L"one");
    folder.MakeFolder(L"two");
    Start();
    ASSERT_TRUE(Finger().Key("Down").Key("Down").Play());
    EXPECT_TRUE(ShowsSelected(1));
    EXPECT_TRUE(Shows(folder.Path()));
    ASSERT_TRUE(Finger().Key("Return").Play());
    EXPECT_TRUE(Shows(folder.Path() + L"\\two"));
    ASSERT_TRUE(Finger().Key("Left").Play());
    EXPECT_TRUE(Shows(folder.Path()));
    EXPECT_TRUE(ShowsSelected(1));
}

TEST_F(FilesKeyboard, F8ShowsWhatIsNew) {
    folder.MakeFile(L"b");
    Start();
    ASSERT_TRUE(Finger().Key("Down").Play());
    ASSERT_TRUE(ShowsSelected(0));
    folder.MakeFile(L"a");
    ASSERT_TRUE(Finger().Key("F8").Play());
    EXPECT_TRUE(ShowsSelected(1));
}

TEST_F(FilesKeyboard, TheBackKeyGoesUpAndIsPassedOnAtTheRoot) {
    folder.MakeFile(L"a");
    Start();
    const auto back = [&](WORD modifiers) {
        return SendMessageW(Window(), WM_HOTKEY, 27, MAKELPARAM(modifiers, VK_ESCAPE));
    };
    ASSERT_TRUE(BringToFront(Window()));
    back(0);
    EXPECT_TRUE(Shows(folder.Path()));
    back(0x1000);
    EXPECT_TRUE(Shows(L"\\Temp"));
    back(0x1000);
    EXPECT_TRUE(Shows(L"\\"));
    back(0x1000);
    EXPECT_TRUE(Shows(L"\\"));
}
