#include "views/files/open_file.h"
#include "res/resource.h"
#include "tests/views/rows.h"

#include <gtest/gtest.h>

#include "faults/fault.h"
#include "platform/shell.h"
#include "platform/shortcuts.h"
#include "tests/support/double_click.h"
#include "tests/support/drawn_texts.h"
#include "tests/support/finger.h"
#include "tests/support/input_taken.h"
#include "tests/support/platform_hook.h"
#include "tests/support/user.h"
#include "tests/support/wait.h"
#include "tests/support/windows_seen.h"
#include "tests/views/files_fixture.h"

using namespace test;
using namespace views;

namespace {

// What the shell was asked for, and what it answers.
struct Asked {
    SHELLEXECUTEINFOW info;
    std::wstring file;
    std::wstring parameters;
};
std::vector<Asked> asked;
DWORD errorGiven = ERROR_SUCCESS;

BOOL WINAPI NoteExecution(SHELLEXECUTEINFOW* info) {
    asked.push_back(
        Asked{*info, info->lpFile, info->lpParameters ? info->lpParameters : L"(none)"});
    SetLastError(errorGiven);
    return errorGiven == ERROR_SUCCESS;
}
using ExecutionHook = PlatformHook<decltype(NoteExecution)>;

// Ends the program that shows a window; false when there is no such window in time.
bool EndProgramShowing(const std::wstring& title) {
    HWND window = nullptr;
    if (!WaitFor([&] { return (window = FindWindowW(nullptr, title.c_str())) != nullptr; })) {
        return false;
    }
    PostMessageW(window, WM_CLOSE, 0, 0);
    return WaitFor([&] { return !IsWindow(window); });
}

}  // namespace

TEST(FolderOfCommand, IsTheFolderWithOrWithoutQuotes) {
    EXPECT_EQ(FolderOfCommand(L"\\My Documents"), L"\\My Documents");
    EXPECT_EQ(FolderOfCommand(L"\"\\My Documents\""), L"\\My Documents");
}

TEST(FolderOfCommand, IsNoneOfAFileOrOfNothing) {
    EXPECT_EQ(FolderOfCommand(L"\\windows\\notepad.exe"), std::nullopt);
    EXPECT_EQ(FolderOfCommand(L"\"\\none\""), std::nullopt);
    for (const wchar_t* command : {L"", L"\"", L"\"\"", L"\"\" "}) {
        EXPECT_EQ(FolderOfCommand(command), std::nullopt) << command;
    }
}

TEST(FolderOfCommand, LosesOneCharacterAtEachEndOfAQuotedCommand) {
    EXPECT_EQ(FolderOfCommand(L"\"\\My Documentsx"), L"\\My Documents");
    EXPECT_EQ(FolderOfCommand(L"\"\\My Documents\" -x"), std::nullopt);
}

TEST(FolderOfCommand, IsTheRootWhereTheNameBeginsWithTheDigit0) {
    const TemporaryFolder folder;
    ASSERT_TRUE(CreateDirectoryW(L"\\0rders", nullptr));
    ASSERT_TRUE(CreateDirectoryW(L"\\O0", nullptr));
    EXPECT_EQ(FolderOfCommand(L"\\0rders"), L"");
    EXPECT_EQ(FolderOfCommand(L"\"\\0rders\""), L"");
    EXPECT_EQ(FolderOfCommand(L"\\O0"), L"\\O0");
    EXPECT_EQ(FolderOfCommand(L"\\0none"), std::nullopt);
    RemoveDirectoryW(L"\\0rders");
    RemoveDirectoryW(L"\\O0");
}

TEST(FolderOfCommand, IsAPathWithoutABackslashAtItsEnd) {
    EXPECT_EQ(FolderOfCommand(L"\\Temp\\"), L"\\Temp");
    EXPECT_EQ(FolderOfCommand(L"\\"), L"");
}

class OpenFile : public FilesFixture {
 protected:
    OpenFile() {
        asked.clear();
        errorGiven = ERROR_SUCCESS;
    }
    std::wstring MakeShortcut(const std::wstring& name, const std::wstring& command) {
        const std::wstring path = folder.Path() + L"\\" + name;
        EXPECT_TRUE(platform::CreateShortcut(path.c_str(), command.c_str())) << GetLastError();
        return path;
    }
    POINT PointOf(const std::wstring& name) {
        RECT row = {};
        UpdateWindow(frame.Handle());
        EXPECT_TRUE(List().RowRectangle(RowOf(name), &row));
        return OnScreen(List().Handle(), (row.left + row.right) / 2, (row.top + row.bottom) / 2);
    }
    // Two quick taps on a folder with a file in it open the folder and nothing else.
    void ExpectFolderOpened(const std::function<void(POINT, const InputTaken&)>& tapTwice) {
        const LongDoubleClick pairs;
        const ExecutionHook hook("ShellExecuteExW", NoteExecution);
        const std::wstring inner = folder.MakeFolder(L"inner");
        folder.MakeFile(L"inner\\a.txt");
        OpenFolder();
        View().Focus();
        tapTwice(PointOf(L"inner"), InputTaken());
        EXPECT_EQ(View().Title(), inner);
        EXPECT_EQ(Selected(), L"");
        EXPECT_TRUE(asked.empty());
    }
    void TapOn(const std::wstring& name) {
        const POINT point = PointOf(name);
        PumpWhileUser([&] {
            Finger().Tap(point).Play();
            EXPECT_TRUE(WaitFor([&] { return Selected() == name || View().Title() != before; }));
        });
    }
    // Runs an action that shows an error, and tells what the box says.
    std::string ErrorOf(const std::function<void()>& action) {
        const DrawnTexts drawn;
        WhileUser(
            [&] {
                const HWND box = WaitForWindow(L"#32770");
                EXPECT_TRUE(box);
                EXPECT_TRUE(drawn.Shows(L"Ok"));
                EXPECT_TRUE(drawn.Shows(L"Error"));
                EXPECT_TRUE(Finger().Key("Return").Play());
                EXPECT_TRUE(WaitFor([] { return !FindVisible(L"#32770"); }));
            },
            action);
        return drawn.All();
    }
    std::string ErrorOfOpening(const std::wstring& name) {
        return ErrorOf([&] { test::Tap(List(), RowOf(name)); });
    }
    std::wstring before;
};

TEST_F(OpenFile, AsksTheShellForTheFileAndNothingElse) {
    const ExecutionHook hook("ShellExecuteExW", NoteExecution);
    folder.MakeFile(L"a b.txt");
    OpenFolder();
    before = View().Title();
    TapOn(L"a b.txt");
    ASSERT_EQ(asked.size(), 1u);
    const SHELLEXECUTEINFOW& info = asked[0].info;
    EXPECT_EQ(asked[0].file, L"C:" + folder.Path() + L"\\a b.txt");
    EXPECT_EQ(info.cbSize, sizeof info);
    EXPECT_EQ(info.fMask, 0x400u);
    EXPECT_EQ(info.nShow, 1);
    EXPECT_FALSE(info.hwnd || info.lpVerb || info.lpParameters || info.lpDirectory ||
                 info.lpIDList || info.lpClass || info.hkeyClass || info.dwHotKey || info.hIcon ||
                 info.hProcess);
    EXPECT_EQ(View().Title(), before);
    EXPECT_EQ(Selected(), L"a b.txt");
}

TEST_F(OpenFile, StartsTheProgramForItsType) {
    folder.MakeFile(L"a b.txt", "text");
    OpenFolder();
    Select(L"a b.txt");
    EXPECT_TRUE(View().Command(ID_OPEN));
    bool shown = false;
    PumpWhileUser([&] { shown = EndProgramShowing(L"a b.txt - Notepad"); });
    EXPECT_TRUE(shown);
}

TEST_F(OpenFile, StartsAProgram) {
    ASSERT_TRUE(CopyFileW(L"\\windows\\notepad.exe", (folder.Path() + L"\\n.exe").c_str(), TRUE));
    OpenFolder();
    test::Tap(List(), RowOf(L"n.exe"));
    bool shown = false;
    PumpWhileUser([&] { shown = EndProgramShowing(L"Untitled - Notepad"); });
    EXPECT_TRUE(shown);
}

TEST_F(OpenFile, OfATypeWithoutAProgramSaysSo) {
    folder.MakeFile(L"a.zzz");
    OpenFolder();
    SetLastError(ERROR_NO_ASSOCIATION);
    const std::wstring expected = faults::FullText(faults::W32Fault());
    const std::string texts = ErrorOfOpening(L"a.zzz");
    EXPECT_NE(texts.find(std::string(expected.begin(), expected.begin() + 10)), std::string::npos)
        << texts;
    EXPECT_EQ(Selected(), L"a.zzz");
    EXPECT_EQ(View().Title(), folder.Path());
}

TEST_F(OpenFile, ThatVanishedBeforeTheTapSaysSo) {
    const std::wstring path = folder.MakeFile(L"a.txt");
    OpenFolder();
    DeleteFileW(path.c_str());
    EXPECT_NE(ErrorOfOpening(L"a.txt").find("File not found"), std::string::npos);
    EXPECT_NE(RowOf(L"a.txt"), ui::noRow);
}

TEST_F(OpenFile, ShowsThePlatformsMessageForAnyFailure) {
    const ExecutionHook hook("ShellExecuteExW", NoteExecution);
    errorGiven = ERROR_ACCESS_DENIED;
    folder.MakeFile(L"a.txt");
    OpenFolder();
    EXPECT_NE(ErrorOfOpening(L"a.txt").find("Access denied"), std::string::npos);
}

TEST_F(OpenFile, UnderAPathThatIsTooLongSaysSo) {
    std::wstring deep = folder.Path();
    std::vector<std::wstring> made;
    while (deep.size() < 230) {
        deep += L"\\" + std::wstring(20, L'd');
        CreateDirectoryW(deep.c_str(), nullptr);
        made.push_back(deep);
    }
    OpenAt(deep);
    List().Insert(MakeFileItem(std::wstring(100, L'f'), 0, FILETIME{}, 0));
    const std::string texts = ErrorOf([&] { test::Tap(List(), 0); });
    EXPECT_NE(texts.find("ong"), std::string::npos) << texts;
}

TEST_F(OpenFile, ThatIsAShortcutToAFolderGoesThere) {
    const ExecutionHook hook("ShellExecuteExW", NoteExecution);
    const std::wstring inner = folder.MakeFolder(L"some inner");
    MakeShortcut(L"to.lnk", L'"' + inner + L'"');
    OpenFolder();
    before = View().Title();
    TapOn(L"to.lnk");
    EXPECT_EQ(View().Title(), inner);
    EXPECT_EQ(TextOf(PathBar()), inner);
    EXPECT_EQ(List().GetCount(), 0u);
    EXPECT_TRUE(asked.empty());
    EXPECT_TRUE(View().Command(ID_UP));
    EXPECT_EQ(Selected(), L"some inner");
}

TEST_F(OpenFile, ThatIsAShortcutByAnotherNameGoesThereToo) {
    const ExecutionHook hook("ShellExecuteExW", NoteExecution);
    const std::wstring inner = folder.MakeFolder(L"inner");
    MakeShortcut(L"a.txt", L'"' + inner + L'"');
    OpenFolder();
    test::Tap(List(), RowOf(L"a.txt"));
    EXPECT_EQ(View().Title(), inner);
}

TEST_F(OpenFile, ThatIsAShortcutToTheRootGoesToTheRoot) {
    MakeShortcut(L"to.lnk", L"\"\\\"");
    OpenFolder();
    test::Tap(List(), RowOf(L"to.lnk"));
    EXPECT_EQ(View().Title(), L"\\");
    EXPECT_NE(RowOf(L"My Documents"), ui::noRow);
    test::Tap(List(), RowOf(L"My Documents"));
    EXPECT_EQ(View().Title(), L"\\My Documents");
}

TEST_F(OpenFile, ThatIsAShortcutToAFileIsForTheShell) {
    const ExecutionHook hook("ShellExecuteExW", NoteExecution);
    MakeShortcut(L"to.lnk", L'"' + folder.MakeFile(L"a.txt") + L'"');
    OpenFolder();
    test::Tap(List(), RowOf(L"to.lnk"));
    ASSERT_EQ(asked.size(), 1u);
    EXPECT_EQ(asked[0].file, L"C:" + folder.Path() + L"\\to.lnk");
}

TEST_F(OpenFile, ThatIsAShortcutToADocumentOpensTheDocument) {
    MakeShortcut(L"to.lnk", L'"' + folder.MakeFile(L"the document.txt") + L'"');
    OpenFolder();
    test::Tap(List(), RowOf(L"to.lnk"));
    bool shown = false;
    PumpWhileUser([&] { shown = EndProgramShowing(L"the document.txt - Notepad"); });
    EXPECT_TRUE(shown);
}

TEST_F(OpenFile, ThatIsAShortcutToNothingSaysSo) {
    MakeShortcut(L"to.lnk", L"\"\\none\\none.txt\"");
    OpenFolder();
    EXPECT_NE(ErrorOfOpening(L"to.lnk").find("not found"), std::string::npos);
}

TEST_F(OpenFile, ThatIsAShortcutWhoseCommandCannotBeReadIsForTheShell) {
    const ExecutionHook hook("ShellExecuteExW", NoteExecution);
    folder.MakeFile(L"text.lnk", "no shortcut");
    MakeShortcut(L"empty.lnk", L"");
    const std::wstring inner = folder.MakeFolder(L"inner");
    MakeShortcut(L"long.lnk", inner + L" " + std::wstring(262, L'x'));
    OpenFolder();
    for (const wchar_t* name : {L"text.lnk", L"empty.lnk", L"long.lnk"}) {
        test::Tap(List(), RowOf(name));
    }
    EXPECT_EQ(asked.size(), 3u);
    EXPECT_EQ(View().Title(), folder.Path());
}

// The second press of a quick pair is meant for the row that the first one has opened.
TEST_F(OpenFile, OfAFolderByTwoQuickTapsOpensNothingInIt) {
    ExpectFolderOpened([](POINT point, const InputTaken& input) {
        PumpWhileUser([&] { input.Play(Finger().Tap(point).Tap(point)); });
    });
}

// The pair has come as a whole before the program looks at its first press.
TEST_F(OpenFile, OfAFolderByTwoQuickTapsThatWaitOpensNothingInIt) {
    ExpectFolderOpened([this](POINT point, const InputTaken& input) {
        EXPECT_TRUE(PumpUntil([&] { return GetForegroundWindow() == frame.Handle(); }));
        EXPECT_TRUE(Finger().Tap(point).Tap(point).Play());
        PumpWhileUser([&] { input.Play(Finger()); });
    });
}

TEST_F(OpenFile, OfAFolderAndAHoldAtOnceSelectsInIt) {
    const ExecutionHook hook("ShellExecuteExW", NoteExecution);
    const std::wstring inner = folder.MakeFolder(L"inner");
    folder.MakeFile(L"inner\\a.txt");
    OpenFolder();
    View().Focus();
    const POINT point = PointOf(L"inner");
    const InputTaken input;
    PumpWhileUser([&] { input.Play(Finger().Tap(point).Hold(point)); });
    EXPECT_EQ(View().Title(), inner);
    EXPECT_EQ(Selected(), L"a.txt");
    EXPECT_TRUE(asked.empty());
}

TEST_F(OpenFile, OfAFolderNeverAsksTheShell) {
    const ExecutionHook hook("ShellExecuteExW", NoteExecution);
    folder.MakeFolder(L"inner.lnk");
    OpenFolder();
    test::Tap(List(), RowOf(L"inner.lnk"));
    EXPECT_EQ(View().Title(), folder.Path() + L"\\inner.lnk");
    EXPECT_TRUE(asked.empty());
}
