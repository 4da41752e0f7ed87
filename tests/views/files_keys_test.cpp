// The keys and the mouse's buttons in Files.
#include "res/resource.h"
#include "tests/support/box.h"
#include "tests/support/input_taken.h"
#include "tests/support/shell_clipboard.h"
#include "tests/views/clipboard_fixture.h"
#include "views/key_table.h"

using namespace test;
using namespace views;

namespace {

class FilesKeyboard : public ClipboardFixture {
 protected:
    // Shows a folder of the test's and gives its list the keyboard.
    void Show(const std::wstring& name = L"from") {
        OpenFolder();
        GoTo(name);
        SetForegroundWindow(frame.Handle());
        View().Focus();
        ASSERT_TRUE(PumpUntil([this] {
            return GetForegroundWindow() == frame.Handle() && GetFocus() == List().Handle();
        }));
        frame.commands.clear();
    }
    void Play(Finger& finger) {
        PumpWhileUser([&] { input.Play(finger); });
    }
    void Press(const std::string& key) { Play(Finger().Key(key)); }
    // The commands that these keys give.
    std::vector<WORD> CommandsOf(const std::vector<std::string>& keys) {
        frame.commands.clear();
        for (const std::string& key : keys) {
            Press(key);
        }
        return frame.commands;
    }
    Names Marked() const {
        Names names;
        for (const unsigned row : List().MarkedRows()) {
            names.push_back(Item(row).name);
        }
        return names;
    }
    POINT RowPoint(unsigned row) const {
        const int height = List().GetTotalHeight() / static_cast<int>(List().GetCount());
        return OnScreen(List().Handle(), 150, static_cast<int>(row) * height + height / 2);
    }

    InputTaken input;
    using Commands = std::vector<WORD>;
};

using FilesMouse = FilesKeyboard;

BOOL WINAPI NoPaths(UINT) {
    return FALSE;
}

}  // namespace

TEST_F(FilesKeyboard, DeleteAsksAndDeletes) {
    Show();
    Select(L"photo.jpg");
    PumpWhileUser([&] {
        input.Play(Finger().Key("Delete"));
        Answer(L"photo.jpg", "Return");
        EXPECT_TRUE(WaitFor([&] { return !ExistsAt(From(L"photo.jpg")); }));
    });
    EXPECT_EQ(frame.commands, Commands{ID_DELETE});
    EXPECT_EQ(Rows(), Names{L"Docs"});
}

TEST_F(FilesKeyboard, CopiedFilesArePasted) {
    Show();
    Select(L"photo.jpg");
    Press("ctrl+c");
    EXPECT_EQ(PathsRead(), Names{Outside(From(L"photo.jpg"))});
    EXPECT_EQ(EffectRead(), 0u);
    GoTo(L"to");
    Press("ctrl+v");
    EXPECT_TRUE(ExistsAt(To(L"photo.jpg")));
    EXPECT_TRUE(ExistsAt(From(L"photo.jpg")));
    EXPECT_EQ(Rows(), Names{L"photo.jpg"});
}

TEST_F(FilesKeyboard, CutFilesAreMoved) {
    Show();
    Select(L"Docs");
    Press("ctrl+x");
    EXPECT_EQ(EffectRead(), 2u);
    GoTo(L"to");
    Press("ctrl+v");
    EXPECT_TRUE(ExistsAt(To(L"Docs\\a.txt")));
    EXPECT_FALSE(ExistsAt(From(L"Docs")));
}

TEST_F(FilesKeyboard, DoNothingWhereTheirItemInTheMenuIsGray) {
    const PlatformHook<decltype(NoPaths)> paths("IsClipboardFormatAvailable", NoPaths);
    Show();
    EXPECT_EQ(CommandsOf({"Delete", "ctrl+c", "ctrl+x", "ctrl+v", "Right", "alt+Return", "space",
                          "Insert", "Menu"}),
              Commands());
    EXPECT_FALSE(List().Marking());
    Show(L"to");
    EXPECT_EQ(CommandsOf({"ctrl+a", "shift+Down", "shift+End"}), Commands());
    EXPECT_FALSE(List().Marking());
}

TEST_F(FilesKeyboard, MeanNothingTogetherWithOthers) {
    Show();
    Select(L"photo.jpg");
    EXPECT_EQ(CommandsOf({"ctrl+Delete", "shift+Delete", "ctrl+shift+c", "ctrl+alt+c", "ctrl+space",
                          "ctrl+Right", "shift+BackSpace"}),
              Commands());
    EXPECT_EQ(View().Title(), folder.Path() + L"\\from");
}

TEST_F(FilesKeyboard, RightOpensAndBackspaceGoesUp) {
    Show();
    Select(L"Docs");
    Press("Right");
    EXPECT_EQ(View().Title(), From(L"Docs"));
    Press("BackSpace");
    EXPECT_EQ(View().Title(), folder.Path() + L"\\from");
    EXPECT_EQ(Selected(), L"Docs");
}

TEST_F(FilesKeyboard, AltAndEnterShowProperties) {
    Show();
    Select(L"photo.jpg");
    PumpWhileUser([&] {
        input.Play(Finger().Key("alt+Return"));
        const HWND page = WaitForWindow(L"#32770");
        EXPECT_EQ(TextOf(page), L"Properties");
        AnswerBox(page, Finger().Key("Return"));
    });
    EXPECT_EQ(frame.commands, Commands{ID_PROPERTIES});
}

TEST_F(FilesKeyboard, TheFifthRefreshesAsTheEighthDoes) {
    Show();
    folder.MakeFile(L"from\\new");
    Press("F5");
    EXPECT_EQ(Rows(), (Names{L"Docs", L"new", L"photo.jpg"}));
    EXPECT_EQ(CommandsOf({"F8", "F5"}), (Commands{ID_REFRESH, ID_REFRESH}));
}

TEST_F(FilesKeyboard, SpaceAndInsertMarkARowAndBeginTheMode) {
    for (const std::string key : {"space", "Insert"}) {
        Show();
        Select(L"photo.jpg");
        Press(key);
        EXPECT_TRUE(List().Marking()) << key;
        EXPECT_EQ(Marked(), Names{L"photo.jpg"}) << key;
        EXPECT_EQ(frame.Bar().ButtonCount(), 4u);
        Press(key);
        EXPECT_TRUE(List().Marking()) << key;
        EXPECT_EQ(Marked(), Names()) << key;
    }
}

TEST_F(FilesKeyboard, ControlAndAMarkEverything) {
    Show();
    Press("ctrl+a");
    EXPECT_EQ(Marked(), (Names{L"Docs", L"photo.jpg"}));
    EXPECT_EQ(View().Title(), folder.Path() + L"\\from (2)");
    Press("space");
    Press("Down");
    Press("space");
    EXPECT_EQ(Marked(), Names{L"photo.jpg"});
    Press("ctrl+a");
    EXPECT_EQ(Marked(), (Names{L"Docs", L"photo.jpg"}));
    // What is marked is what the others are for.
    Press("ctrl+x");
    EXPECT_EQ(PathsRead(), (Names{Outside(From(L"Docs")), Outside(From(L"photo.jpg"))}));
    EXPECT_FALSE(List().Marking());
}

TEST_F(FilesKeyboard, ShiftMarksAlongTheWay) {
    folder.MakeFile(L"from\\a");
    folder.MakeFile(L"from\\b");
    Show();
    Press("Down");
    Press("shift+Down");
    EXPECT_EQ(Marked(), (Names{L"Docs", L"a"}));
    Press("shift+End");
    EXPECT_EQ(Marked(), (Names{L"Docs", L"a", L"b", L"photo.jpg"}));
    Press("shift+Up");
    EXPECT_EQ(Marked(), (Names{L"Docs", L"a", L"b"}));
    EXPECT_EQ(Selected(), L"b");
    EXPECT_EQ(View().Title(), folder.Path() + L"\\from (3)");
    Press("Escape");
    EXPECT_FALSE(List().Marking());
    // Without it nothing is marked.
    Press("Up");
    EXPECT_FALSE(List().Marking());
}

TEST_F(FilesKeyboard, OfferWhatTheBarOffersWhileRowsAreMarked) {
    PutPaths({From(L"photo.jpg")});
    Show();
    Press("ctrl+a");
    Select(L"Docs");
    EXPECT_EQ(CommandsOf({"Right", "ctrl+v", "alt+Return"}), Commands());
    EXPECT_EQ(Marked().size(), 2u);
    EXPECT_EQ(CommandsOf({"Escape"}), Commands{IDCANCEL});
    EXPECT_EQ(CommandsOf({"Escape"}), Commands());
}

TEST_F(FilesKeyboard, ReachTheEditorOfANameAlone) {
    Show();
    Select(L"photo.jpg");
    PumpWhileUser([&] {
        PostMessageW(frame.Handle(), WM_COMMAND, ID_RENAME, 0);
        ASSERT_TRUE(WaitForEditor());
        input.Play(Finger().Key("End").Key("BackSpace").Key("d").Key("ctrl+a").Key("Home"));
        input.Play(Finger().Key("shift+End").Key("Delete"));
        input.Play(Finger().Key("n").Key("o").Key("Right").Key("shift+Home").Key("ctrl+x"));
        input.Play(Finger().Key("ctrl+v").Key("space").Key("x"));
        // Nor does the mouse reach the rows behind it.
        input.Play(Finger().RightClick(RowPoint(0)));
        input.Play(Finger().BackButton(RowPoint(0)));
        EXPECT_FALSE(FindVisible(L"kx::PopupMenu"));
        Finger().Key("Return").Play();
        EXPECT_TRUE(WaitFor([&] { return ExistsAt(From(L"no x")); }));
    });
    EXPECT_EQ(frame.commands, Commands{ID_RENAME});
    EXPECT_FALSE(List().Marking());
    EXPECT_EQ(Selected(), L"no x");
    EXPECT_EQ(View().Title(), folder.Path() + L"\\from");
}

TEST_F(FilesKeyboard, LettersGoToTheNextNameThatBeginsSo) {
    folder.MakeFile(L"from\\Paul");
    Show();
    Press("p");
    EXPECT_EQ(Selected(), L"Paul");
    Press("p");
    EXPECT_EQ(Selected(), L"photo.jpg");
    EXPECT_EQ(frame.commands, Commands());
}

TEST_F(FilesMouse, TheRightButtonOpensTheActionsOfItsRow) {
    Show();
    PumpWhileUser([&] {
        input.Play(Finger().RightClick(RowPoint(1)));
        const HWND menu = WaitForWindow(L"kx::PopupMenu");
        const RECT place = ScreenRectangleOf(menu);
        const POINT row = RowPoint(1);
        EXPECT_EQ(place.left, row.x);
        // The row stays in sight.
        EXPECT_FALSE(PtInRect(&place, row));
        EXPECT_EQ(Selected(), L"photo.jpg");
        // The last of the actions.
        Finger().Key("End").Key("Return").Play();
        const HWND page = WaitForWindow(L"#32770");
        EXPECT_EQ(TextOf(page), L"Properties");
        AnswerBox(page, Finger().Key("Return"));
    });
    EXPECT_EQ(frame.commands, Commands{ID_PROPERTIES});
}

TEST_F(FilesMouse, TheMenuKeyOpensTheActionsOfTheSelectedRow) {
    Show();
    Select(L"photo.jpg");
    PumpWhileUser([&] {
        input.Play(Finger().Key("Menu"));
        const HWND menu = WaitForWindow(L"kx::PopupMenu");
        const RECT place = ScreenRectangleOf(menu);
        EXPECT_EQ(place.left, ScreenRectangleOf(List().Handle()).left);
        EXPECT_FALSE(PtInRect(&place, RowPoint(1)));
        // A tap on the bar closes it and acts at once.
        const RECT bar = ScreenRectangleOf(frame.Bar().Handle());
        input.Play(Finger().Tap(bar.right - 20, (bar.top + bar.bottom) / 2));
        const HWND views = WaitForAnother(L"kx::PopupMenu", menu);
        EXPECT_EQ(ScreenRectangleOf(views).bottom, bar.top);
        Finger().Key("Escape").Play();
        EXPECT_TRUE(WaitFor([] { return !FindVisible(L"kx::PopupMenu"); }));
    });
    EXPECT_EQ(frame.commands, Commands());
}

TEST_F(FilesMouse, WhileRowsAreMarkedTheRightButtonOnlySelects) {
    Show();
    View().Command(ID_SELECT);
    Play(Finger().RightClick(RowPoint(1)));
    Press("Menu");
    EXPECT_FALSE(FindVisible(L"kx::PopupMenu"));
    EXPECT_EQ(Selected(), L"photo.jpg");
    EXPECT_EQ(Marked(), Names());
    EXPECT_EQ(frame.commands, Commands());
}

TEST_F(FilesMouse, TheBackButtonGoesUpFromRowsAndStrip) {
    Show(L"from\\Docs");
    Play(Finger().BackButton(RowPoint(1)));
    EXPECT_EQ(View().Title(), folder.Path() + L"\\from");
    EXPECT_EQ(Selected(), L"Docs");
    Play(Finger().BackButton(MiddleOf(PathBar())));
    EXPECT_EQ(View().Title(), folder.Path());
    SendMessageW(PathBar(), WM_XBUTTONUP, MAKEWPARAM(0, XBUTTON1), 0);
    EXPECT_EQ(View().Title(), folder.Path());
    SendMessageW(List().Handle(), WM_MOUSEHWHEEL, MAKEWPARAM(0, static_cast<WORD>(-WHEEL_DELTA)),
                 0);
    EXPECT_EQ(View().Title(), L"\\Temp");
}
