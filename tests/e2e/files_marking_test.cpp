#include "tests/e2e/files_fixture.h"
#include "tests/support/keyboard.h"
#include "ui/window/window.h"

using namespace test;

namespace {

class FilesMarking : public FilesProgram {
 protected:
    // Places on the bar of the mode.
    enum Button { deleteMarked, copy, cut, cancel };
    // The place of "Select" in the popup of the left button.
    static constexpr int select = 3;

    void StartMarking() {
        folder.MakeFolder(L"a");
        folder.MakeFolder(L"b");
        folder.MakeFile(L"c");
        Start();
        before = StillListPicture();
        Choose(0, select);
        ASSERT_TRUE(Counts(0));
    }
    bool Counts(int marks) const {
        return ShowsCaption(folder.Path() + L" (" + std::to_wstring(marks) + L")");
    }
    bool HasLeft() const { return ShowsCaption(folder.Path()); }
    bool ShowsCaption(const std::wstring& caption) const {
        return WaitFor([&] { return TextOf(Window()) == caption; });
    }
    void TapButton(Button button) const {
        const RECT bar = ScreenRectangleOf(Bar());
        const int x = bar.left + ui::Width(bar) * (1 + 2 * button) / 8;
        ASSERT_TRUE(Finger().Tap(x, (bar.top + bar.bottom) / 2).Play());
    }

    Picture before;
};

}  // namespace

TEST_F(FilesMarking, TapsMarkRowsAndTheCaptionCounts) {
    StartMarking();
    ASSERT_TRUE(Finger().Tap(RowPoint(0)).Play());
    EXPECT_TRUE(Counts(1));
    ASSERT_TRUE(Finger().Tap(RowPoint(2)).Play());
    EXPECT_TRUE(Counts(2));
    ASSERT_TRUE(Finger().Tap(RowPoint(0)).Play());
    EXPECT_TRUE(Counts(1));
    EXPECT_EQ(TextOf(PathBar()), folder.Path());
}

TEST_F(FilesMarking, CancelEndsIt) {
    StartMarking();
    ASSERT_TRUE(WaitFor([&] { return StillListPicture() != before; }));
    TapButton(cancel);
    EXPECT_TRUE(HasLeft());
    EXPECT_TRUE(WaitFor([&] { return ListPicture() == before; }));
    // Rows open again.
    ASSERT_TRUE(Finger().Tap(RowPoint(1)).Play());
    EXPECT_TRUE(Shows(folder.Path() + L"\\b"));
}

TEST_F(FilesMarking, EscapeEndsIt) {
    StartMarking();
    ASSERT_TRUE(Finger().Tap(RowPoint(1)).Play());
    ASSERT_TRUE(Counts(1));
    ASSERT_TRUE(Finger().Key("Escape").Play());
    EXPECT_TRUE(HasLeft());
    EXPECT_TRUE(ShowsSelected(1));
}

TEST_F(FilesMarking, TheBackKeyEndsItAndThenGoesUp) {
    StartMarking();
    const LPARAM back = MAKELPARAM(MOD_KEYUP, VK_ESCAPE);
    PostMessageW(Window(), WM_HOTKEY, 0, back);
    EXPECT_TRUE(HasLeft());
    PostMessageW(Window(), WM_HOTKEY, 0, back);
    EXPECT_TRUE(Shows(L"\\Temp"));
}

TEST_F(FilesMarking, KeysMark) {
    StartMarking();
    ASSERT_TRUE(Finger().Key("Down").Key("space").Play());
    EXPECT_TRUE(Counts(1));
    ASSERT_TRUE(Finger().Key("Down").Key("Return").Play());
    EXPECT_TRUE(Counts(2));
    ASSERT_TRUE(Finger().Key("space").Play());
    EXPECT_TRUE(Counts(1));
}

TEST_F(FilesMarking, RefreshDropsTheMarks) {
    StartMarking();
    ASSERT_TRUE(Finger().Tap(RowPoint(1)).Play());
    ASSERT_TRUE(Counts(1));
    ASSERT_TRUE(Finger().Key("F8").Play());
    EXPECT_TRUE(Counts(0));
    ASSERT_TRUE(Finger().Tap(RowPoint(2)).Play());
    EXPECT_TRUE(Counts(1));
}

TEST_F(FilesMarking, AnotherViewEndsIt) {
    StartMarking();
    ASSERT_TRUE(Finger().Tap(RowPoint(1)).Play());
    ASSERT_TRUE(Counts(1));
    ASSERT_TRUE(Finger().Key("4").Play());
    EXPECT_TRUE(ShowsCaption(L"System Status"));
    ASSERT_TRUE(Finger().Key("1").Play());
    EXPECT_TRUE(HasLeft());
    EXPECT_TRUE(ShowsSelected(1));
}

TEST_F(FilesMarking, GrayedButtonsDoNothing) {
    StartMarking();
    for (const Button button : {deleteMarked, copy, cut}) {
        TapButton(button);
    }
    ASSERT_TRUE(Finger().Tap(RowPoint(0)).Play());
    EXPECT_TRUE(Counts(1));
    EXPECT_FALSE(FindVisible(L"#32770", true)) << DescribeScreen(Window());
}

TEST_F(FilesMarking, GrayedButtonsComeToLifeWithAMark) {
    StartMarking();
    ASSERT_TRUE(WaitFor([&] { return StillListPicture() != before; }));
    const Picture grayed = Picture::OfWindowDrawnAnew(Bar());
    ASSERT_TRUE(Finger().Tap(RowPoint(0)).Play());
    EXPECT_TRUE(WaitFor([&] { return Picture::OfWindow(Bar()) != grayed; }));
    ASSERT_TRUE(Finger().Tap(RowPoint(0)).Play());
    EXPECT_TRUE(WaitFor([&] { return Picture::OfWindow(Bar()) == grayed; }));
}
