// Files at work: names, properties, copies and what is asked and told about them.
#include <shlobj.h>

#include "platform/handles.h"
#include "res/resource.h"
#include "tests/e2e/files_fixture.h"
#include "tests/support/sample_program.h"
#include "tests/support/shell_clipboard.h"
#include "ui/window/window.h"

using namespace test;

namespace {

class FilesWork : public FilesProgram {
 protected:
    ~FilesWork() override { ClearClipboard(); }
    static bool Exists(const std::wstring& path) {
        return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
    }
    std::wstring In(const std::wstring& name) const { return folder.Path() + L"\\" + name; }
    static bool HasFiles(const std::wstring& path) {
        WIN32_FIND_DATAW found;
        const platform::UniqueSearch search(FindFirstFileW((path + L"\\*").c_str(), &found));
        bool has = false;
        for (BOOL more = static_cast<bool>(search); more && !has;
             more = FindNextFileW(search.Get(), &found)) {
            has = !(found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY);
        }
        return has;
    }
    void HoldRow(int row) {
        ASSERT_TRUE(Finger().Hold(RowPoint(row)).Play());
        ASSERT_TRUE(ShowsSelected(row));
    }
    // The rows are drawn with their boxes when this returns.
    void StartMarking() {
        ChooseCommand(IDR_FILES, ID_SELECT);
        ASSERT_TRUE(ShowsCaption(folder.Path() + L" (0)"));
        StillListPicture();
    }
    static void Put(const std::wstring& path, DWORD effect) {
        PutOnClipboard(PathForOthers(path), effect);
    }
    // The caption of the box that opens, which the keys then close.
    std::wstring CaptionAnswered(Finger keys) {
        const std::wstring caption = TextOf(Dialog());
        Answer(keys);
        return caption;
    }
    static Finger Yes() { return Finger().Key("Left").Key("Return"); }
    static Finger Return() { return Finger().Key("Return"); }
    // The editor of a name, with the bar for it.
    bool Edits() const {
        return WaitFor([&] { return FindChild(List(), L"Edit") || FindChild(List(), L"EDIT"); });
    }
};

}  // namespace

TEST_F(FilesWork, ANewFolderGetsTheNameThatIsTyped) {
    folder.MakeFile(L"file");
    Start();
    ChooseCommand(IDR_FILES, ID_NEW_FOLDER);
    ASSERT_TRUE(Edits());
    ASSERT_TRUE(Finger().Key("a").Key("b").Play());
    ChooseCommand(IDR_DONE_CANCEL, IDOK);
    EXPECT_TRUE(WaitFor([&] { return Exists(In(L"ab")); }));
    EXPECT_TRUE(ShowsSelected(0));
}

TEST_F(FilesWork, ANewFolderNeedsANameOfItsOwn) {
    folder.MakeFile(L"a");
    Start();
    ChooseCommand(IDR_FILES, ID_NEW_FOLDER);
    ASSERT_TRUE(Edits());
    ASSERT_TRUE(Finger().Key("a").Key("Return").Play());
    EXPECT_EQ(CaptionAnswered(Return()), L"Error");
    EXPECT_EQ(GetFileAttributesW(In(L"a").c_str()) & FILE_ATTRIBUTE_DIRECTORY, 0u);
}

TEST_F(FilesWork, ANewFolderThatIsCancelledIsNotMade) {
    folder.MakeFile(L"file");
    Start();
    ChooseCommand(IDR_FILES, ID_NEW_FOLDER);
    ASSERT_TRUE(Edits());
    ChooseCommand(IDR_DONE_CANCEL, IDCANCEL);
    EXPECT_TRUE(WaitFor([&] { return !FindChild(List(), L"Edit"); }));
    EXPECT_FALSE(Exists(In(L"New Folder")));
}

TEST_F(FilesWork, RenamingGivesANewNameAndRefusesWhatCannotBeOne) {
    const std::wstring file = folder.MakeFile(L"one.txt", "1");
    folder.MakeFile(L"two.txt", "2");
    Start();
    HoldRow(0);
    ChooseCommand(IDR_FILES, ID_RENAME);
    ASSERT_TRUE(Edits());
    ASSERT_TRUE(Finger().Key("x").Key("Return").Play());
    EXPECT_TRUE(WaitFor([&] { return Exists(In(L"x.txt")); }));
    EXPECT_FALSE(Exists(file));

    // The name of the other file.
    ASSERT_TRUE(ShowsSelected(1));
    ChooseCommand(IDR_FILES, ID_RENAME);
    ASSERT_TRUE(Edits());
    ASSERT_TRUE(Finger().Key("t").Key("w").Key("o").Key("Return").Play());
    EXPECT_EQ(CaptionAnswered(Return()), L"Error");
    EXPECT_EQ(ContentOf(In(L"two.txt")), "2");
    EXPECT_EQ(ContentOf(In(L"x.txt")), "1");

    // No name at all: asked again.
    ChooseCommand(IDR_FILES, ID_RENAME);
    ASSERT_TRUE(Edits());
    ASSERT_TRUE(Finger().Key("End").Key("shift+Home").Key("BackSpace").Key("Return").Play());
    EXPECT_EQ(CaptionAnswered(Return()), L"Error");
    ASSERT_TRUE(Edits());
    ASSERT_TRUE(Finger().Key("Escape").Play());
    EXPECT_TRUE(WaitFor([&] { return !FindChild(List(), L"Edit"); }));
    EXPECT_TRUE(Exists(In(L"x.txt")));
}

TEST_F(FilesWork, ANameIsEditedOnAfterAnotherProgramWasInFront) {
    const std::wstring file = folder.MakeFile(L"one.txt", "1");
    folder.MakeFolder(L"a");
    Start();
    HoldRow(1);
    ChooseCommand(IDR_FILES, ID_RENAME);
    ASSERT_TRUE(Edits());
    {
        const SampleProgram other(L"polite", L"Other");
        ASSERT_TRUE(BringToFront(other.Window()));
        ASSERT_TRUE(BringToFront(Window()));
    }
    ASSERT_TRUE(Edits());
    ASSERT_TRUE(Finger().Key("End").Key("x").Key("Left").Key("y").Key("Return").Play());
    EXPECT_TRUE(WaitFor([&] { return Exists(In(L"one.txtyx")); }));
    EXPECT_FALSE(Exists(file));
    EXPECT_TRUE(Shows(folder.Path()));
}

TEST_F(FilesWork, TheBackKeyEndsTheEditingOfAName) {
    folder.MakeFile(L"one.txt", "1");
    Start();
    HoldRow(0);
    ChooseCommand(IDR_FILES, ID_RENAME);
    ASSERT_TRUE(Edits());
    constexpr WORD released = 0x1000;
    PostMessageW(Window(), WM_HOTKEY, VK_ESCAPE, MAKELPARAM(released, VK_ESCAPE));
    EXPECT_TRUE(WaitFor([&] { return !FindChild(List(), L"Edit"); }));
    EXPECT_TRUE(Shows(folder.Path()));
}

// Another spelling of a path must not end with a file overwritten by itself.
TEST_F(FilesWork, AFileIsKnownByEverySpellingOfItsPath) {
    folder.MakeFile(L"one.txt", "1");
    Start();
    const std::wstring parent = PathForOthers(folder.Path());
    const std::wstring spellings[] = {
        parent + L"\\\\one.txt",
        parent + L"\\.\\one.txt",
        parent + L"\\x\\..\\ONE.TXT",
        // What becomes of the root's path and a name behind it.
        (RunsOnHandheld() ? L"\\" : L"") + parent + L"\\one.txt",
        folder.Path().substr(1) + L"\\one.txt",
    };
    std::wstring copyName = L"one - Copy.txt";
    for (const std::wstring& spelling : spellings) {
        PutOnClipboard(spelling, 1);
        ChooseCommand(IDR_FILES, ID_PASTE);
        // Until it is written it cannot be deleted.
        EXPECT_TRUE(WaitFor([&] { return DeleteFileW(In(copyName).c_str()); }))
            << testing::PrintToString(spelling);
        EXPECT_FALSE(FindVisible(L"#32770", true)) << testing::PrintToString(spelling);
        EXPECT_EQ(ContentOf(In(L"one.txt")), "1");
    }
}

// What a shortcut or a setting spells its own way is shown as the disk has it.
TEST_F(FilesWork, AFolderIsShownUnderOneSpelling) {
    const std::wstring inner = folder.MakeFolder(L"Inner");
    folder.MakeFile(L"Inner\\a.txt");
    Start();
    std::wstring other = folder.Path() + L"\\.\\INNER\\";
    CleanSettings::SetText(L"path", other);
    Running().Close();
    // The program stores the folder that it showed.
    CleanSettings::SetText(L"path", other);
    StartAsStored();
    EXPECT_TRUE(Shows(inner));
}

// A folder is deleted up to what cannot be, and says so.
TEST_F(FilesWork, AFolderThatCannotBeDeletedStaysWithAMessage) {
    folder.MakeFolder(L"inner");
    const std::wstring file = folder.MakeFile(L"inner\\locked.txt", "1");
    SetFileAttributesW(file.c_str(), FILE_ATTRIBUTE_READONLY);
    Start();
    HoldRow(0);
    ChooseCommand(IDR_FILES, ID_DELETE);
    EXPECT_EQ(CaptionAnswered(Return()), L"Warning");
    EXPECT_EQ(CaptionAnswered(Return()), L"Error");
    EXPECT_TRUE(Exists(file));
    EXPECT_TRUE(ShowsSelected(0)) << "its row stays";
    SetFileAttributesW(file.c_str(), FILE_ATTRIBUTE_NORMAL);
}

TEST_F(FilesWork, AFolderWithAFileInUseAsksAboutIt) {
    folder.MakeFolder(L"inner");
    const std::wstring file = folder.MakeFile(L"inner\\held.txt", "1");
    const SampleProgram holder(L"polite", L"Holder", file);
    Start();
    HoldRow(0);
    ChooseCommand(IDR_FILES, ID_DELETE);
    EXPECT_EQ(CaptionAnswered(Return()), L"Warning");
    // "No" has the focus.
    EXPECT_EQ(CaptionAnswered(Return()), L"Warning");
    EXPECT_TRUE(Exists(file));
    EXPECT_TRUE(holder.Runs());
}

TEST_F(FilesWork, PropertiesAreShownAndChangeNothing) {
    const std::wstring file = folder.MakeFile(L"one.txt", "1");
    SetFileAttributesW(file.c_str(), FILE_ATTRIBUTE_READONLY);
    const DWORD attributes = GetFileAttributesW(file.c_str());
    Start();
    HoldRow(0);
    ChooseCommand(IDR_FILES, ID_PROPERTIES);
    const HWND dialog = Dialog();
    ASSERT_TRUE(dialog);
    EXPECT_EQ(TextOf(dialog), L"Properties");
    ASSERT_TRUE(Finger().Key("End").Key("space").Play());
    ChooseCommand(IDR_DONE, IDOK, dialog);
    EXPECT_TRUE(WaitFor([&] { return GetForegroundWindow() == Window(); }));
    EXPECT_EQ(GetFileAttributesW(file.c_str()), attributes);
    SetFileAttributesW(file.c_str(), FILE_ATTRIBUTE_NORMAL);
}

TEST_F(FilesWork, MarkedRowsAreCopiedCutAndDeletedAfterOneQuestion) {
    for (const wchar_t* name : {L"a.txt", L"b.txt", L"c.txt"}) {
        folder.MakeFile(name);
    }
    Start();
    StartMarking();
    ASSERT_TRUE(Finger().Tap(RowPoint(0)).Tap(RowPoint(1)).Play());
    ASSERT_TRUE(ShowsCaption(folder.Path() + L" (2)"));
    ChooseCommand(IDR_FILES_MARKING, ID_COPY);
    ASSERT_TRUE(Shows(folder.Path()));
    ChooseCommand(IDR_FILES, ID_PASTE);
    EXPECT_TRUE(
        WaitFor([&] { return Exists(In(L"a - Copy.txt")) && Exists(In(L"b - Copy.txt")); }));

    StartMarking();
    ASSERT_TRUE(Finger().Tap(RowPoint(0)).Play());
    ASSERT_TRUE(ShowsCaption(folder.Path() + L" (1)"));
    ChooseCommand(IDR_FILES_MARKING, ID_CUT);
    ASSERT_TRUE(Shows(folder.Path()));
    EXPECT_TRUE(WaitFor([] {
        return IsClipboardFormatAvailable(RegisterClipboardFormatW(L"Preferred DropEffect"));
    }));

    StartMarking();
    // Between the files stand their copies.
    ASSERT_TRUE(Finger().Tap(RowPoint(1)).Tap(RowPoint(3)).Play());
    ASSERT_TRUE(ShowsCaption(folder.Path() + L" (2)"));
    ChooseCommand(IDR_FILES_MARKING, ID_DELETE);
    EXPECT_EQ(CaptionAnswered(Return()), L"Warning");
    EXPECT_TRUE(WaitFor([&] { return !Exists(In(L"a.txt")) && !Exists(In(L"b.txt")); }));
    EXPECT_TRUE(Exists(In(L"a - Copy.txt")));
    EXPECT_TRUE(Exists(In(L"b - Copy.txt")));
    EXPECT_TRUE(Exists(In(L"c.txt")));
}

TEST_F(FilesWork, PastingAsksBeforeItOverwritesAndMerges) {
    const TemporaryFolder other;
    const std::wstring file = other.MakeFile(L"a.txt", "new");
    folder.MakeFile(L"a.txt", "old");
    const std::wstring tree = other.MakeFolder(L"tree");
    other.MakeFile(L"tree\\leaf", "leaf");
    folder.MakeFolder(L"tree");
    Start();
    Put(file, 1);
    ChooseCommand(IDR_FILES, ID_PASTE);
    // "No" has the focus.
    EXPECT_EQ(CaptionAnswered(Return()), L"Warning");
    EXPECT_EQ(ContentOf(In(L"a.txt")), "old");
    ChooseCommand(IDR_FILES, ID_PASTE);
    EXPECT_EQ(CaptionAnswered(Yes()), L"Warning");
    EXPECT_TRUE(WaitFor([&] { return ContentOf(In(L"a.txt")) == "new"; }));
    Put(tree, 1);
    ChooseCommand(IDR_FILES, ID_PASTE);
    EXPECT_EQ(CaptionAnswered(Yes()), L"Warning");
    EXPECT_TRUE(WaitFor([&] { return ContentOf(In(L"tree\\leaf")) == "leaf"; }));
}

TEST_F(FilesWork, ALongCopyShowsHowFarItIsAndCanBeStopped) {
    constexpr int files = 3000;
    const TemporaryFolder other;
    const std::wstring tree = other.MakeFolder(L"tree");
    for (int file = 0; file < files; ++file) {
        other.MakeFile(L"tree\\" + std::to_wstring(file));
    }
    folder.MakeFolder(L"tree");
    Start();
    Put(tree, 1);
    const DWORD start = GetTickCount();
    ChooseCommand(IDR_FILES, ID_PASTE);
    ASSERT_TRUE(Dialog());
    // The second in which nothing shows passes with the question.
    EXPECT_TRUE(WaitFor([&] { return GetTickCount() - start > 1500; }));
    EXPECT_EQ(CaptionAnswered(Yes()), L"Warning");
    ASSERT_TRUE(WaitFor([&] { return FindChild(Window(), L"kx::ProgressBand") != nullptr; }));
    ASSERT_TRUE(WaitFor([&] { return HasFiles(In(L"tree")); }));
    ASSERT_TRUE(Finger().Key("Escape").Play());
    EXPECT_EQ(CaptionAnswered(Return()), L"Warning");
    EXPECT_FALSE(FindChild(Window(), L"kx::ProgressBand"));
    int copied = 0;
    for (int file = 0; file < files; ++file) {
        const std::wstring name = L"tree\\" + std::to_wstring(file);
        copied += GetFileAttributesW(In(name).c_str()) != INVALID_FILE_ATTRIBUTES;
    }
    EXPECT_GT(copied, 0);
    EXPECT_LT(copied, files);
}

TEST_F(FilesWork, PastingRefusesAnotherKindAFolderIntoItselfAndWhatIsGone) {
    const TemporaryFolder other;
    const std::wstring file = other.MakeFile(L"a", "file");
    const std::wstring inner = other.MakeFolder(L"b");
    folder.MakeFolder(L"a");
    folder.MakeFile(L"b", "file");
    Start();
    Put(file, 1);
    ChooseCommand(IDR_FILES, ID_PASTE);
    EXPECT_EQ(CaptionAnswered(Return()), L"Warning");
    EXPECT_NE(GetFileAttributesW(In(L"a").c_str()) & FILE_ATTRIBUTE_DIRECTORY, 0u);
    Put(inner, 1);
    ChooseCommand(IDR_FILES, ID_PASTE);
    EXPECT_EQ(CaptionAnswered(Return()), L"Warning");
    EXPECT_EQ(ContentOf(In(L"b")), "file");
    Put(folder.Path(), 1);
    ChooseCommand(IDR_FILES, ID_PASTE);
    EXPECT_EQ(CaptionAnswered(Return()), L"Error");
    DeleteFileW(file.c_str());
    Put(file, 1);
    ChooseCommand(IDR_FILES, ID_PASTE);
    EXPECT_EQ(CaptionAnswered(Return()), L"Error");
    EXPECT_FALSE(Exists(In(L"a\\a")));
}

TEST_F(FilesWork, WhatIsCutHereIsMovedWhereItIsPasted) {
    const std::wstring inner = folder.MakeFolder(L"inner");
    const std::wstring file = folder.MakeFile(L"a.txt", "a");
    Start();
    HoldRow(1);
    ChooseCommand(IDR_FILES, ID_CUT);
    ASSERT_TRUE(Finger().Tap(RowPoint(0)).Play());
    ASSERT_TRUE(Shows(inner));
    ChooseCommand(IDR_FILES, ID_PASTE);
    EXPECT_TRUE(WaitFor([&] { return Exists(inner + L"\\a.txt") && !Exists(file); }));
}

TEST_F(FilesWork, ABlockThatIsNoListOfPathsIsIgnored) {
    folder.MakeFile(L"a");
    Start();
    DROPFILES outside = {};
    outside.pFiles = 0x10000;
    outside.fWide = TRUE;
    const Picture before = StillListPicture();
    PutOnClipboard(outside, sizeof outside, 1);
    ChooseCommand(IDR_FILES, ID_PASTE);
    EXPECT_TRUE(StillListPicture() == before);
    EXPECT_FALSE(FindVisible(L"#32770", true));
    // A box that came later would get the key.
    ASSERT_TRUE(Finger().Key("Down").Play());
    EXPECT_TRUE(ShowsSelected(0));
}

TEST_F(FilesWork, ACopyThatFailsIsAskedAboutByTheSystem) {
    const TemporaryFolder other;
    const std::wstring tree = other.MakeFolder(L"tree");
    const SampleProgram holder(L"polite", L"Holder", other.MakeFile(L"tree\\a.txt", "a"));
    folder.MakeFile(L"b");
    Start();
    Put(tree, 1);
    ChooseCommand(IDR_FILES, ID_PASTE);
    EXPECT_EQ(CaptionAnswered(Return()), L"Warning");
    EXPECT_FALSE(Exists(In(L"tree\\a.txt")));
}

TEST_F(FilesWork, AShortcutIsPastedAndOpensItsTarget) {
    const std::wstring inner = folder.MakeFolder(L"inner");
    Start();
    HoldRow(0);
    ChooseCommand(IDR_FILES, ID_COPY);
    ChooseCommand(IDR_FILES, ID_PASTE_SHORTCUT);
    EXPECT_TRUE(WaitFor([&] { return Exists(In(L"inner.lnk")); }));
    ASSERT_TRUE(ShowsSelected(1));
    ChooseCommand(IDR_FILES, ID_OPEN);
    EXPECT_TRUE(Shows(inner));
}

TEST_F(FilesWork, AShortcutThatCannotBeMadeIsTold) {
    folder.MakeFolder(L"inner");
    folder.MakeFolder(L"inner.lnk");
    Start();
    HoldRow(0);
    ChooseCommand(IDR_FILES, ID_COPY);
    ChooseCommand(IDR_FILES, ID_PASTE_SHORTCUT);
    EXPECT_EQ(CaptionAnswered(Return()), L"Error");
    EXPECT_NE(GetFileAttributesW(In(L"inner.lnk").c_str()) & FILE_ATTRIBUTE_DIRECTORY, 0u);
}

TEST_F(FilesWork, OpeningAFileThatIsGoneIsTold) {
    const std::wstring file = folder.MakeFile(L"a.txt");
    Start();
    HoldRow(0);
    DeleteFileW(file.c_str());
    ChooseCommand(IDR_FILES, ID_OPEN);
    EXPECT_EQ(CaptionAnswered(Return()), L"Error");
    EXPECT_TRUE(Shows(folder.Path()));
}

TEST_F(FilesWork, OpenWithOpensAFileWithAProgram) {
    folder.MakeFile(L"a.txt", "a");
    CopyFileW(SampleProgram::Path().c_str(), In(L"sample.exe").c_str(), FALSE);
    CleanSettings::SetText(L"SelectAppPath", folder.Path());
    Start();
    HoldRow(0);
    ChooseCommand(IDR_FILES, ID_OPEN_WITH);
    const HWND dialog = Dialog();
    ASSERT_TRUE(dialog);
    ASSERT_TRUE(Finger().Key("Home").Play());
    ChooseCommand(IDR_OPEN_FILE, IDOK, dialog);
    HWND opened = nullptr;
    ASSERT_TRUE(WaitFor(
        [&] { return (opened = FindVisible(L"Vantor Sample Application", true)) != nullptr; }));
    PostMessageW(opened, WM_CLOSE, 0, 0);
    EXPECT_TRUE(WaitFor([&] { return !IsWindow(opened); }));
}

TEST_F(FilesWork, OpenWithListsWhatItIsAskedFor) {
    folder.MakeFile(L"a.txt", "a");
    folder.MakeFile(L"hidden.exe");
    SetFileAttributesW(In(L"hidden.exe").c_str(), FILE_ATTRIBUTE_HIDDEN);
    folder.MakeFile(L"system.exe");
    SetFileAttributesW(In(L"system.exe").c_str(), FILE_ATTRIBUTE_SYSTEM);
    folder.MakeFile(L"shown.exe");
    CleanSettings::SetText(L"SelectAppPath", folder.Path());
    constexpr DWORD hiddenAndSystemShown = 3;
    Start(hiddenAndSystemShown);
    HoldRow(0);
    ChooseCommand(IDR_FILES, ID_OPEN_WITH);
    const HWND dialog = Dialog();
    ASSERT_TRUE(dialog);
    HWND list = nullptr;
    ASSERT_TRUE(WaitFor([&] { return (list = FindChild(dialog, L"kx::ChooserList")) != nullptr; }));
    const auto look = [&] { return Picture::OfWindow(list); };
    const auto changes = [&](UINT command) {
        const Picture before = Picture::OfWindowDrawnAnew(list);
        ChooseCommand(IDR_OPEN_FILE, command, dialog);
        EXPECT_TRUE(WaitFor([&] { return look() != before; })) << command;
    };
    changes(ID_FILTER_ALL_FILES);
    changes(ID_FILTER_APPLICATIONS);
    changes(ID_SHOW_HIDDEN);
    changes(ID_SHOW_SYSTEM);
    ASSERT_TRUE(Finger().Key("Home").Play());
    ChooseCommand(IDR_OPEN_FILE, ID_PROPERTIES, dialog);
    const HWND propertiesPage = Dialog(dialog);
    EXPECT_EQ(TextOf(propertiesPage), L"Properties");
    ChooseCommand(IDR_DONE, IDOK, propertiesPage);
    ASSERT_TRUE(WaitFor([&] { return GetForegroundWindow() == dialog; }));
    ASSERT_TRUE(Finger().Key("Escape").Play());
    EXPECT_TRUE(WaitFor([&] { return GetForegroundWindow() == Window(); }));
}
