// A long day with the program: a thousand taps, after which it must work as it did at first.
#include "res/resource.h"
#include "tests/e2e/files_fixture.h"
#include "ui/window/window.h"

using namespace test;

namespace {

class FilesTaps : public FilesProgram {
 protected:
    static constexpr int rows = 5;

    void StartWithRows() {
        for (const wchar_t* name : {L"a", L"b", L"c", L"d", L"e"}) {
            folder.MakeFolder(name);
        }
        Start();
    }
    int Taps() const { return taps_; }

    // Marks two rows and takes the marks back, again and again. The finger stays where the rows
    // meet: a finger that is far away at once after a tap has dragged.
    void MarkRows(int upper) {
        ChooseCommand(IDR_FILES, ID_SELECT);
        ASSERT_TRUE(ShowsCaption(folder.Path() + L" (0)"));
        ASSERT_TRUE(Finger().Key("Home").Play());
        ASSERT_TRUE(ShowsSelected(0));
        constexpr int times = 45;
        const int half = RowHeight() / 2;
        constexpr int distance = 8;
        const POINT above = RowPoint(upper);
        Finger finger;
        for (int time = 0; time < times; ++time) {
            finger.QuickTap(POINT{above.x, above.y + half + (time % 2 ? distance : -distance)});
        }
        // What the key does is seen after all taps: the upper row was tapped once more.
        ASSERT_TRUE(finger.Key("End").Play());
        ASSERT_TRUE(ShowsSelected(rows - 1));
        ASSERT_EQ(TextOf(Window()), folder.Path() + L" (1)");
        ChooseCommand(IDR_FILES_MARKING, IDCANCEL);
        ASSERT_TRUE(WaitFor([this] { return TextOf(Window()) == folder.Path(); }));
        AnswerAndTakeForeignMessage();
        taps_ += 2 + times + 1;
    }

    // Edits a name, tapping into it.
    void EditName() {
        ChooseCommand(IDR_FILES, ID_RENAME);
        ASSERT_TRUE(WaitFor([this] { return Editor() != nullptr; }));
        const RECT editor = ScreenRectangleOf(Editor());
        const POINT middle = MiddleOf(Editor());
        AnswerAndTakeForeignMessage();
        ASSERT_TRUE(Finger().QuickTap(middle).QuickTap(POINT{editor.left + 8, middle.y}).Play());
        AnswerAndTakeForeignMessage();
        ChooseCommand(IDR_DONE_CANCEL, IDCANCEL);
        ASSERT_TRUE(WaitFor([this] { return !Editor(); }));
        taps_ += 2 + 2 + 1;
    }

    // While the program waits for input it answers a message of another program, and then something
    // comes that a PC's system posts and a handheld's does not: the finger on a border.
    void AnswerAndTakeForeignMessage() {
        ASSERT_EQ(TextOf(Window()), folder.Path());
        PostMessageW(Window(), WM_NCMOUSEMOVE, HTBORDER, 0);
    }

    HWND Editor() const {
        const HWND editor = FindChild(List(), L"Edit");
        return editor ? editor : FindChild(List(), L"EDIT");
    }

 private:
    int taps_ = 0;
};

}  // namespace

TEST_F(FilesTaps, AThousandAreAllTaken) {
    StartWithRows();
    while (Taps() < 1000) {
        MarkRows(Taps() % (rows - 2));
        ASSERT_FALSE(HasFatalFailure()) << "after " << Taps() << " taps";
        EditName();
        ASSERT_FALSE(HasFatalFailure()) << "after " << Taps() << " taps";
    }
    // It takes what is posted, draws, and takes keys and taps.
    PostMessageW(Window(), WM_HOTKEY, 0, MAKELPARAM(MOD_KEYUP, VK_ESCAPE));
    EXPECT_TRUE(Shows(L"\\Temp"));
    ASSERT_TRUE(Finger().Key("Return").Play());
    EXPECT_TRUE(Shows(folder.Path()));
    ASSERT_TRUE(Finger().Key("Home").Play());
    EXPECT_TRUE(ShowsSelected(0));
    ASSERT_TRUE(Finger().Key("Down").Play());
    EXPECT_TRUE(ShowsSelected(0, false));
    EXPECT_TRUE(ShowsSelected(1));
    ASSERT_TRUE(Finger().Tap(RowPoint(2)).Play());
    EXPECT_TRUE(Shows(folder.Path() + L"\\c"));
}
