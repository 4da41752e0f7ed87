#include <gtest/gtest.h>

#include "res/resource.h"
#include "tests/support/box.h"
#include "tests/support/finger.h"
#include "tests/support/platform_hook.h"
#include "tests/support/shell_clipboard.h"
#include "tests/support/user.h"
#include "tests/support/wait.h"
#include "tests/support/windows_seen.h"
#include "tests/views/fake_folder.h"
#include "tests/views/files_fixture.h"
#include "tests/views/rows.h"
#include "views/display_flags.h"

using namespace test;
using namespace views;

namespace {

bool clipboardHasPaths = false;
UINT formatAsked = 0;

BOOL WINAPI ClipboardFormat(UINT format) {
    formatAsked = format;
    return clipboardHasPaths;
}

using ClipboardHook = PlatformHook<decltype(ClipboardFormat)>;

std::vector<UINT> beeps;

BOOL WINAPI NotingBeep(UINT kind) {
    beeps.push_back(kind);
    return TRUE;
}

using BeepHook = PlatformHook<decltype(NotingBeep)>;

const std::vector<UINT> silence;
const std::vector<UINT> oneBeep = {0xFFFFFFFF};

}  // namespace

class FilesMenu : public FilesFixture {
 protected:
    bool Enabled(UINT command) {
        View().UpdateMenu(frame.Bar().Menu());
        const UINT state = GetMenuState(frame.Bar().Menu(), command, MF_BYCOMMAND);
        EXPECT_NE(state, ~0u) << command;
        return (state & (MF_GRAYED | MF_DISABLED)) == 0;
    }
    static constexpr UINT ofTheSelection[] = {ID_RENAME, ID_DELETE,    ID_CUT,       ID_COPY,
                                              ID_OPEN,   ID_OPEN_WITH, ID_PROPERTIES};
    static constexpr UINT always[] = {
        ID_UP,          ID_SELECT,         ID_REFRESH,        ID_NEW_FOLDER, ID_SHOW_HIDDEN,
        ID_SHOW_SYSTEM, ID_SHOW_FILE_SIZE, ID_SHOW_FILE_DATE, ID_EXIT};
};

TEST_F(FilesMenu, CommandsOnTheSelectionNeedOne) {
    folder.MakeFile(L"a");
    OpenFolder();
    for (const UINT command : ofTheSelection) {
        EXPECT_FALSE(Enabled(command)) << command;
    }
    Select(L"a");
    for (const UINT command : ofTheSelection) {
        EXPECT_TRUE(Enabled(command)) << command;
    }
    List().SetSelection(ui::noRow);
    for (const UINT command : ofTheSelection) {
        EXPECT_FALSE(Enabled(command)) << command;
    }
}

TEST_F(FilesMenu, OtherCommandsAreAlwaysThere) {
    OpenFolder();
    for (const UINT command : always) {
        EXPECT_TRUE(Enabled(command)) << command;
    }
}

TEST_F(FilesMenu, PastingNeedsPathsOnTheClipboard) {
    OpenFolder();
    const ClipboardHook hook("IsClipboardFormatAvailable", ClipboardFormat);
    clipboardHasPaths = false;
    EXPECT_FALSE(Enabled(ID_PASTE));
    EXPECT_FALSE(Enabled(ID_PASTE_SHORTCUT));
    EXPECT_EQ(formatAsked, 15u);
    clipboardHasPaths = true;
    EXPECT_TRUE(Enabled(ID_PASTE));
    EXPECT_TRUE(Enabled(ID_PASTE_SHORTCUT));
}

TEST_F(FilesMenu, PastingFollowsTheRealClipboard) {
    OpenFolder();
    ASSERT_TRUE(OpenClipboardInTurn(frame.Handle()));
    EmptyClipboard();
    SetClipboardData(CF_UNICODETEXT, GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, 16));
    CloseClipboard();
    EXPECT_FALSE(Enabled(ID_PASTE));
    ASSERT_TRUE(OpenClipboardInTurn(frame.Handle()));
    EmptyClipboard();
    SetClipboardData(CF_HDROP, GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, 64));
    CloseClipboard();
    EXPECT_TRUE(Enabled(ID_PASTE));
    EXPECT_TRUE(Enabled(ID_PASTE_SHORTCUT));
    ASSERT_TRUE(OpenClipboardInTurn(frame.Handle()));
    EmptyClipboard();
    CloseClipboard();
    EXPECT_FALSE(Enabled(ID_PASTE));
}

TEST_F(FilesMenu, TheFrameHearsOfEveryChangeOfTheSelection) {
    folder.MakeFile(L"a");
    OpenFolder();
    int before = frame.menuChanges;
    Select(L"a");
    EXPECT_GT(frame.menuChanges, before);
    DeleteFileW((folder.Path() + L"\\a").c_str());
    before = frame.menuChanges;
    View().Refresh();
    EXPECT_EQ(Selected(), L"");
    EXPECT_GT(frame.menuChanges, before);
}

TEST_F(FilesMenu, HasTheActionsOnTheLeftAndTheMenuOnTheRight) {
    OpenFolder();
    EXPECT_EQ(frame.Bar().ButtonCount(), 2u);
    wchar_t label[32] = {};
    GetMenuStringW(frame.Bar().Menu(), 0, label, 32, MF_BYPOSITION);
    EXPECT_STREQ(label, L"Actions");
    GetMenuStringW(frame.Bar().Menu(), 1, label, 32, MF_BYPOSITION);
    EXPECT_STREQ(label, L"Menu");
}

class FilesCommands : public FilesFixture {
 protected:
    FilesCommands() {
        folder.MakeFolder(L"inner");
        folder.MakeFile(L"file");
        beeps.clear();
    }
    const BeepHook hook{"MessageBeep", NotingBeep};
};

TEST_F(FilesCommands, UpGoesUp) {
    OpenAt(folder.Path() + L"\\inner");
    EXPECT_TRUE(View().Command(ID_UP));
    EXPECT_EQ(View().Title(), folder.Path());
    EXPECT_EQ(Selected(), L"inner");
    EXPECT_EQ(beeps, silence);
}

TEST_F(FilesCommands, RefreshListsTheFolderAgain) {
    OpenFolder();
    folder.MakeFile(L"new");
    EXPECT_TRUE(View().Command(ID_REFRESH));
    EXPECT_NE(RowOf(L"new"), ui::noRow);
}

TEST_F(FilesCommands, OpenEntersTheSelectedFolder) {
    OpenFolder();
    Select(L"inner");
    EXPECT_TRUE(View().Command(ID_OPEN));
    EXPECT_EQ(View().Title(), folder.Path() + L"\\inner");
    EXPECT_EQ(Selected(), L"");
}

TEST_F(FilesCommands, UnknownOnesAreLeftToTheFrame) {
    OpenFolder();
    for (const int command : {ID_SHOW_FILES, ID_SHOW_APPLICATIONS, ID_HIDE, ID_STOP, ID_STOP_ALL,
                              ID_SHOW_DLLS, ID_GO_TO_PROCESS, ID_SETTINGS, ID_SHOW_HIDDEN,
                              ID_SPARE_OPTION_1, ID_SPARE_OPTION_2, ID_ABOUT, 1}) {
        EXPECT_FALSE(View().Command(static_cast<WORD>(command))) << command;
    }
    EXPECT_EQ(beeps, silence);
}

TEST_F(FilesCommands, ATapOnAFolderOpensIt) {
    OpenFolder();
    Select(L"inner");
    test::Tap(List(), RowOf(L"inner"));
    EXPECT_EQ(View().Title(), folder.Path() + L"\\inner");
    EXPECT_EQ(TextOf(PathBar()), folder.Path() + L"\\inner");
    EXPECT_EQ(Selected(), L"");
    EXPECT_EQ(beeps, silence);
}

TEST_F(FilesCommands, AFolderOfTheRootOpensWithOneBackslash) {
    Open();
    test::Tap(List(), RowOf(L"Temp"));
    EXPECT_EQ(View().Title(), L"\\Temp");
}

TEST_F(FilesCommands, AFolderThatVanishedBeforeTheTapIsEmpty) {
    OpenFolder();
    RemoveDirectoryW((folder.Path() + L"\\inner").c_str());
    test::Tap(List(), RowOf(L"inner"));
    EXPECT_EQ(View().Title(), folder.Path() + L"\\inner");
    EXPECT_EQ(List().GetCount(), 0u);
}

class FilesKeys : public FilesFixture {
 protected:
    // Presses a key while the program's messages run, until the condition holds.
    template <typename Condition>
    void Press(const char* key, Condition condition) {
        SetForegroundWindow(frame.Handle());
        View().Focus();
        PumpWhileUser([&] {
            EXPECT_TRUE(Finger().Key(key).In(frame.Handle()).Play());
            EXPECT_TRUE(WaitFor(condition)) << key;
        });
    }
};

TEST_F(FilesKeys, TheLeftArrowGoesUp) {
    OpenAt(folder.MakeFolder(L"inner"));
    Press("Left", [&] { return Selected() == L"inner"; });
    EXPECT_EQ(View().Title(), folder.Path());
}

TEST_F(FilesKeys, TheLeftArrowGoesUpFromAnEmptyFolder) {
    OpenFolder();
    ASSERT_EQ(List().GetCount(), 0u);
    Press("Left", [&] { return View().Title() == L"\\Temp"; });
}

TEST_F(FilesKeys, F8PostsTheRefreshCommand) {
    OpenFolder();
    Press("F8", [&] { return !frame.commands.empty(); });
    EXPECT_EQ(frame.commands, std::vector<WORD>{ID_REFRESH});
    EXPECT_TRUE(View().Key(119));
}

TEST_F(FilesKeys, EnterOpensTheSelectedFolder) {
    folder.MakeFolder(L"inner");
    OpenFolder();
    Select(L"inner");
    Press("Return", [&] { return View().Title() == folder.Path() + L"\\inner"; });
}

TEST_F(FilesKeys, EnterWithNothingSelectedDoesNothing) {
    folder.MakeFolder(L"inner");
    OpenFolder();
    Press("Return", [] { return true; });
    Press("F8", [&] { return !frame.commands.empty(); });
    EXPECT_EQ(View().Title(), folder.Path());
}

TEST_F(FilesKeys, OthersAreLeftToTheList) {
    OpenFolder();
    for (const WPARAM key : {VK_UP, VK_DOWN, VK_HOME, VK_END, VK_F7, VK_F9, VK_ESCAPE, VK_TAB}) {
        EXPECT_FALSE(View().Key(key)) << key;
    }
}

TEST_F(FilesKeys, BackIsConsumedOnlyWhenItMoved) {
    OpenFolder();
    EXPECT_TRUE(View().Back());
    EXPECT_EQ(View().Title(), L"\\Temp");
    EXPECT_TRUE(View().Back());
    EXPECT_EQ(View().Title(), L"\\");
    EXPECT_FALSE(View().Back());
    EXPECT_EQ(View().Title(), L"\\");
}

// What each way into a folder does when the reading fails with a fault: the message is shown, the
// program goes on, and path, strip, title and rows are those of the folder that is shown.
class FilesFaults : public FilesFixture {
 protected:
    void ExpectMessage(const std::function<void()>& action) {
        fake.Add(L"a", FILE_ATTRIBUTE_DIRECTORY);
        fake.Add(L"b");
        fake.Add(L"c");
        OpenAt(folder.Path());
        fake.throwAfter = 2;
        WhileUser(
            [&] {
                const HWND box = WaitForBox();
                EXPECT_TRUE(FindChild(box, L"kx::MBButtonsBar"));
                AnswerBox(box, Finger().Key("Return"));
            },
            action);
        EXPECT_EQ(Rows(), (Names{L"a", L"b", L"c"}));
        EXPECT_EQ(List().GetTotalHeight(), 3 * HeightOf(L"b"));
        EXPECT_EQ(View().Title(), folder.Path());
        EXPECT_EQ(TextOf(PathBar()), folder.Path());
    }
    FakeFolder fake;
};

TEST_F(FilesFaults, OfTheLeftArrowAreShown) {
    ExpectMessage([&] { EXPECT_TRUE(View().Key(VK_LEFT)); });
}

TEST_F(FilesFaults, OfTheBackKeyAreShown) {
    ExpectMessage([&] { EXPECT_TRUE(View().Back()); });
}

TEST_F(FilesFaults, OfATapAreShown) {
    ExpectMessage([&] { test::Tap(List(), 0); });
}
