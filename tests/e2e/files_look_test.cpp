#include <gtest/gtest.h>

#include "tests/e2e/files_fixture.h"
#include "ui/window/window.h"

using namespace test;

namespace {

constexpr DWORD showFileSize = 4;
constexpr DWORD showFileDate = 8;

// Whether anything but one colour is in a part of a picture.
bool HasMarks(const Picture& picture, const RECT& area) {
    for (int y = area.top; y < area.bottom; ++y) {
        for (int x = area.left; x < area.right; ++x) {
            if (picture.At(x, y) != picture.At(area.left, area.top)) {
                return true;
            }
        }
    }
    return false;
}

}  // namespace

class FilesLook : public FilesProgram {
 protected:
    // A part of a row without its rule, in parts of a hundred of the list's width and the row.
    RECT Part(int row, int left, int top, int right, int bottom) const {
        int above = 0;
        for (int index = 0; index < row; ++index) {
            above += RowHeight(index);
        }
        const int height = RowHeight(row) - 2;
        const int width = ui::Width(ScreenRectangleOf(List()));
        return RECT{width * left / 100, above + height * top / 100, width * right / 100,
                    above + height * bottom / 100};
    }
};

TEST_F(FilesLook, FoldersKeepOneLineWhenOnlySizesAreShown) {
    folder.MakeFolder(L"a");
    folder.MakeFile(L"b", "12345");
    Start(showFileSize);
    EXPECT_GT(RowHeight(1), RowHeight(0));
}

TEST_F(FilesLook, ASecondLineStandsBelowTheName) {
    folder.MakeFile(L"a", "12345");
    Start(showFileSize);
    const Picture picture = StillListPicture();
    EXPECT_TRUE(HasMarks(picture, Part(0, 8, 5, 60, 55)));
    EXPECT_TRUE(HasMarks(picture, Part(0, 8, 60, 60, 100)));
    EXPECT_FALSE(HasMarks(picture, Part(0, 70, 0, 100, 100)));
}

TEST_F(FilesLook, TheSizeStandsAtTheRightOfTheDate) {
    folder.MakeFolder(L"a");
    folder.MakeFile(L"b", "12345");
    Start(showFileSize | showFileDate);
    ASSERT_EQ(RowHeight(0), RowHeight(1));
    const Picture picture = StillListPicture();
    EXPECT_TRUE(HasMarks(picture, Part(0, 8, 60, 60, 100)));
    EXPECT_FALSE(HasMarks(picture, Part(0, 75, 0, 100, 100)));
    EXPECT_TRUE(HasMarks(picture, Part(1, 8, 60, 60, 100)));
    EXPECT_TRUE(HasMarks(picture, Part(1, 75, 60, 100, 100)));
    EXPECT_FALSE(HasMarks(picture, Part(1, 75, 0, 100, 50)));
}

TEST_F(FilesLook, RowsHaveIconsAtTheLeft) {
    folder.MakeFolder(L"a");
    Start();
    EXPECT_TRUE(HasMarks(StillListPicture(), Part(0, 1, 0, 8, 100)));
}

TEST_F(FilesLook, ALongNameEndsInsideItsRow) {
    folder.MakeFile(std::wstring(120, L'W'));
    Start();
    const Picture picture = StillListPicture();
    EXPECT_TRUE(HasMarks(picture, Part(0, 85, 0, 99, 100)));
    EXPECT_FALSE(HasMarks(picture, Part(0, 99, 0, 100, 100)));
    // An ellipsis leaves the upper half of its place empty.
    EXPECT_FALSE(HasMarks(picture, Part(0, 97, 0, 100, 50)));
}

TEST_F(FilesLook, ASelectedRowHasTheColoursOfASelectionFromEdgeToEdge) {
    folder.MakeFile(L"a");
    folder.MakeFile(L"b");
    Start();
    const int height = RowHeight();
    ASSERT_TRUE(Finger().Hold(RowPoint(0)).Play());
    ASSERT_TRUE(ShowsSelected(0));
    const Picture picture = StillListPicture();
    const COLORREF selection = GetSysColor(COLOR_HIGHLIGHT);
    EXPECT_EQ(picture.At(0, 0), selection);
    EXPECT_EQ(picture.At(picture.Width() - 1, 0), selection);
    EXPECT_EQ(picture.At(0, height - 1), selection);
    EXPECT_EQ(picture.At(0, height), GetSysColor(COLOR_WINDOW));
    int textPixels = 0;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < picture.Width(); ++x) {
            textPixels += picture.At(x, y) == GetSysColor(COLOR_HIGHLIGHTTEXT);
        }
    }
    EXPECT_GT(textPixels, 5);
}

TEST_F(FilesLook, TheCaptionAndThePathBarNameTheFolder) {
    const std::wstring inner = folder.MakeFolder(L"Some inner folder");
    folder.MakeFile(L"Some inner folder\\a");
    StartAt(inner);
    EXPECT_EQ(TextOf(Window()), inner);
    EXPECT_EQ(TextOf(PathBar()), inner);
    const RECT bar = ScreenRectangleOf(PathBar());
    const RECT list = ScreenRectangleOf(List());
    EXPECT_EQ(bar.bottom, list.top);
    EXPECT_EQ(bar.left, list.left);
    EXPECT_EQ(bar.right, list.right);
    EXPECT_TRUE(
        HasMarks(Picture::OfWindowDrawnAnew(PathBar()), RECT{0, 0, 200, ui::Height(bar) - 4}));
}

TEST_F(FilesLook, ALongPathKeepsItsEndInThePathBar) {
    const std::wstring outer = folder.MakeFolder(std::wstring(60, L'm'));
    folder.MakeFolder(std::wstring(60, L'm') + L"\\end");
    folder.MakeFile(std::wstring(60, L'm') + L"\\end\\a");
    StartAt(outer + L"\\end");
    const Picture picture = Picture::OfWindowDrawnAnew(PathBar());
    const int margin = picture.Height() / 4;
    EXPECT_TRUE(HasMarks(picture, RECT{0, 0, picture.Width() / 2, picture.Height() - 4}));
    EXPECT_FALSE(HasMarks(
        picture, RECT{picture.Width() - margin, 0, picture.Width(), picture.Height() - 4}));
}
