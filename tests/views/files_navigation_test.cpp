#include <gtest/gtest.h>

#include "faults/fault.h"
#include "platform/handles.h"
#include "tests/support/windows_seen.h"
#include "tests/views/files_fixture.h"
#include "views/display_flags.h"

using namespace test;
using namespace views;

class FilesNavigate : public FilesFixture {
 protected:
    FilesNavigate() {
        sub = folder.MakeFolder(L"Sub");
        for (const wchar_t* name : {L"alpha.txt", L"Beta.txt", L"gamma.txt"}) {
            folder.MakeFile(name);
        }
    }
    std::wstring sub;
};

TEST_F(FilesNavigate, ToAFolderListsItWithNothingSelected) {
    Open();
    View().Navigate(folder.Path().c_str());
    EXPECT_EQ(View().Title(), folder.Path());
    EXPECT_EQ(TextOf(PathBar()), folder.Path());
    EXPECT_EQ(Rows(), (Names{L"Sub", L"alpha.txt", L"Beta.txt", L"gamma.txt"}));
    EXPECT_EQ(Selected(), L"");
}

TEST_F(FilesNavigate, ToAFileListsItsFolderAndSelectsTheFile) {
    OpenAt(folder.Path() + L"\\Beta.txt");
    EXPECT_EQ(View().Title(), folder.Path());
    EXPECT_EQ(Rows().size(), 4u);
    EXPECT_EQ(Selected(), L"Beta.txt");
}

TEST_F(FilesNavigate, FindsTheRowWhateverTheCaseOfThePath) {
    OpenAt(folder.Path() + L"\\GAMMA.TXT");
    EXPECT_EQ(Selected(), L"gamma.txt");
}

TEST_F(FilesNavigate, ToAFileOfTheRootShowsTheRoot) {
    const std::wstring path = L"\\" + folder.Path().substr(6) + L".txt";
    CloseHandle(CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr));
    OpenAt(path);
    EXPECT_EQ(View().Title(), L"\\");
    EXPECT_EQ(L"\\" + Selected(), path);
    DeleteFileW(path.c_str());
}

TEST_F(FilesNavigate, ToAFileThatIsHiddenSelectsNothing) {
    const std::wstring path = folder.Path() + L"\\Beta.txt";
    SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_HIDDEN);
    OpenAt(path);
    EXPECT_EQ(Rows(), (Names{L"Sub", L"alpha.txt", L"gamma.txt"}));
    EXPECT_EQ(Selected(), L"");
}

TEST_F(FilesNavigate, ToAMissingPathStaysAndListsAgain) {
    OpenFolder();
    folder.MakeFile(L"delta.txt");
    View().Navigate((folder.Path() + L"\\nothing").c_str());
    EXPECT_EQ(View().Title(), folder.Path());
    EXPECT_NE(RowOf(L"delta.txt"), ui::noRow);
    EXPECT_EQ(Selected(), L"");
}

TEST_F(FilesNavigate, ToAnEmptyPathStaysAndListsAgain) {
    OpenFolder();
    folder.MakeFile(L"delta.txt");
    View().Navigate(L"");
    EXPECT_EQ(View().Title(), folder.Path());
    EXPECT_NE(RowOf(L"delta.txt"), ui::noRow);
}

TEST_F(FilesNavigate, WithoutAPathListsTheCurrentFolderWithTheOptionsOfNow) {
    SetFileAttributesW(folder.MakeFile(L"hidden").c_str(), FILE_ATTRIBUTE_HIDDEN);
    OpenFolder();
    EXPECT_EQ(RowOf(L"hidden"), ui::noRow);
    frame.flags = flagShowHidden;
    View().Navigate(nullptr);
    EXPECT_NE(RowOf(L"hidden"), ui::noRow);
    EXPECT_EQ(View().Title(), folder.Path());
}

TEST_F(FilesNavigate, ABackslashAtTheEndIsNoPartOfTheFolder) {
    Open();
    View().Navigate((folder.Path() + L"\\").c_str());
    EXPECT_EQ(View().Title(), folder.Path());
    EXPECT_EQ(Rows().size(), 4u);
    View().Navigate(L"\\");
    EXPECT_EQ(View().Title(), L"\\");
    EXPECT_FALSE(View().Up());
}

TEST_F(FilesNavigate, ToAFolderThatHasVanishedSinceThenStays) {
    OpenAt(sub);
    RemoveDirectoryW(sub.c_str());
    View().Navigate(sub.c_str());
    EXPECT_EQ(View().Title(), sub);
    EXPECT_EQ(List().GetCount(), 0u);
    EXPECT_TRUE(View().Up());
    EXPECT_EQ(Rows(), (Names{L"alpha.txt", L"Beta.txt", L"gamma.txt"}));
    EXPECT_EQ(Selected(), L"");
}

TEST_F(FilesNavigate, TellsTheFrameOfTheNewTitle) {
    Open();
    const int before = frame.titleChanges;
    View().Navigate(folder.Path().c_str());
    EXPECT_GT(frame.titleChanges, before);
}

TEST_F(FilesNavigate, IsWhatActivationWithAPathDoes) {
    Open();
    EXPECT_TRUE(View().Activate(ViewArgument{0, folder.Path() + L"\\alpha.txt"}));
    EXPECT_EQ(View().Title(), folder.Path());
    EXPECT_EQ(Selected(), L"alpha.txt");
}

TEST_F(FilesNavigate, TheFolderAndTheSelectionOutliveAnotherView) {
    OpenFolder();
    Select(L"gamma.txt");
    {
        const platform::WindowDC dc(frame.Handle());
        EXPECT_TRUE(View().Deactivate(dc));
        EXPECT_FALSE(FindChild(frame.Handle(), ListView::listClass));
        EXPECT_FALSE(PathBar());
        View().Layout(dc);
    }
    EXPECT_TRUE(View().Activate(ViewArgument()));
    EXPECT_TRUE(PathBar());
    EXPECT_EQ(View().Title(), folder.Path());
    EXPECT_EQ(Selected(), L"gamma.txt");
}

class FilesUp : public FilesFixture {};

TEST_F(FilesUp, CutsTheLastPartOfThePath) {
    OpenAt(folder.MakeFolder(L"inner"));
    EXPECT_TRUE(View().Up());
    EXPECT_EQ(View().Title(), folder.Path());
    EXPECT_EQ(TextOf(PathBar()), folder.Path());
    EXPECT_TRUE(View().Up());
    EXPECT_EQ(View().Title(), L"\\Temp");
    EXPECT_TRUE(View().Up());
    EXPECT_EQ(View().Title(), L"\\");
    EXPECT_EQ(TextOf(PathBar()), L"\\");
    EXPECT_EQ(Selected(), L"Temp");
}

TEST_F(FilesUp, DoesNothingAtTheRoot) {
    Open();
    ASSERT_EQ(View().Title(), L"\\");
    List().SetSelection(1);
    const Names rows = Rows();
    EXPECT_FALSE(View().Up());
    EXPECT_EQ(View().Title(), L"\\");
    EXPECT_EQ(Rows(), rows);
    EXPECT_EQ(List().GetSelection(), 1u);
}

TEST_F(FilesUp, SelectsTheFolderThatWasLeftAndBringsItIntoView) {
    for (int count = 100; count < 160; ++count) {
        folder.MakeFolder(L"f" + std::to_wstring(count));
    }
    OpenAt(folder.Path() + L"\\f155");
    EXPECT_TRUE(View().Up());
    EXPECT_EQ(Selected(), L"f155");
    const unsigned row = List().GetSelection();
    const int rowHeight = List().GetTotalHeight() / 60;
    EXPECT_LE(List().GetTopIndex(), row);
    EXPECT_GE(
        static_cast<int>(List().GetTopIndex()) + ui::Height(List().ClientRectangle()) / rowHeight,
        static_cast<int>(row) + 1);
    EXPECT_GT(List().GetTopIndex(), 0u);
}

TEST_F(FilesUp, SelectsNothingWhenTheFolderThatWasLeftIsHidden) {
    const std::wstring hidden = folder.MakeFolder(L"hidden");
    folder.MakeFolder(L"other");
    SetFileAttributesW(hidden.c_str(), FILE_ATTRIBUTE_HIDDEN);
    OpenAt(hidden);
    EXPECT_TRUE(View().Up());
    EXPECT_EQ(Rows(), Names{L"other"});
    EXPECT_EQ(Selected(), L"");
}

TEST_F(FilesUp, LeadsOutOfAFolderThatHasVanished) {
    const std::wstring gone = folder.MakeFolder(L"gone");
    folder.MakeFile(L"a");
    OpenAt(gone);
    RemoveDirectoryW(gone.c_str());
    EXPECT_TRUE(View().Up());
    EXPECT_EQ(Rows(), Names{L"a"});
    EXPECT_EQ(Selected(), L"");
}

class FilesRelist : public FilesFixture {};

TEST_F(FilesRelist, SelectsTheEntryThatWasMade) {
    folder.MakeFile(L"a");
    folder.MakeFile(L"c");
    OpenFolder();
    folder.MakeFile(L"b");
    View().RelistAndSelect(L"b");
    EXPECT_EQ(Rows(), (Names{L"a", L"b", L"c"}));
    EXPECT_EQ(Selected(), L"b");
    EXPECT_EQ(View().Title(), folder.Path());
}

TEST_F(FilesRelist, TellsAFileFromAFolderOfTheSameKindOfName) {
    folder.MakeFile(L"new");
    OpenFolder();
    folder.MakeFolder(L"newer");
    View().RelistAndSelect(L"newer");
    EXPECT_EQ(List().GetSelection(), 0u);
    View().RelistAndSelect(L"NEW");
    EXPECT_EQ(List().GetSelection(), 1u);
}

TEST_F(FilesRelist, SelectsNothingWhenTheEntryIsMissing) {
    folder.MakeFile(L"a");
    OpenFolder();
    Select(L"a");
    View().RelistAndSelect(L"b");
    EXPECT_EQ(Rows(), Names{L"a"});
    EXPECT_EQ(Selected(), L"");
}

TEST_F(FilesRelist, SelectsNothingWhenTheEntryIsNotListed) {
    folder.MakeFile(L"a");
    SetFileAttributesW(folder.MakeFile(L"b").c_str(), FILE_ATTRIBUTE_HIDDEN);
    OpenFolder();
    Select(L"a");
    View().RelistAndSelect(L"b");
    EXPECT_EQ(Selected(), L"");
}

TEST_F(FilesRelist, WorksInTheRoot) {
    Open();
    View().RelistAndSelect(L"temp");
    EXPECT_EQ(Selected(), L"Temp");
}

class FilesRefresh : public FilesFixture {
 protected:
    FilesRefresh() {
        for (const wchar_t* name : {L"b", L"d", L"f"}) {
            folder.MakeFile(name);
        }
        OpenFolder();
    }
};

TEST_F(FilesRefresh, KeepsTheSelectionByName) {
    Select(L"d");
    folder.MakeFile(L"a");
    folder.MakeFile(L"c");
    View().Refresh();
    EXPECT_EQ(Rows(), (Names{L"a", L"b", L"c", L"d", L"f"}));
    EXPECT_EQ(Selected(), L"d");
}

TEST_F(FilesRefresh, SelectsNothingWhenTheEntryIsGone) {
    Select(L"d");
    DeleteFileW((folder.Path() + L"\\d").c_str());
    View().Refresh();
    EXPECT_EQ(Rows(), (Names{L"b", L"f"}));
    EXPECT_EQ(Selected(), L"");
}

TEST_F(FilesRefresh, WithoutASelectionSelectsNothing) {
    View().Refresh();
    EXPECT_EQ(Selected(), L"");
}

TEST_F(FilesRefresh, ShowsTheNewSizeOfAFile) {
    folder.MakeFile(L"d", "longer");
    View().Refresh();
    EXPECT_EQ(ItemOf(L"d").size, 6u);
}

TEST_F(FilesRefresh, ChangedOptionsKeepTheSelection) {
    Select(L"f");
    SetFileAttributesW(folder.MakeFile(L"a").c_str(), FILE_ATTRIBUTE_HIDDEN);
    frame.flags = flagShowHidden;
    View().FlagsChanged(flagShowHidden, flagShowHidden);
    EXPECT_EQ(Rows().size(), 4u);
    EXPECT_EQ(Selected(), L"f");
}

TEST_F(FilesRefresh, HidingTheSelectedEntrySelectsNothing) {
    SetFileAttributesW(folder.MakeFile(L"a").c_str(), FILE_ATTRIBUTE_HIDDEN);
    frame.flags = flagShowHidden;
    View().FlagsChanged(flagShowHidden, flagShowHidden);
    Select(L"a");
    frame.flags = 0;
    View().FlagsChanged(flagShowHidden, 0);
    EXPECT_EQ(Rows(), (Names{L"b", L"d", L"f"}));
    EXPECT_EQ(Selected(), L"");
}

TEST_F(FilesRefresh, AFolderThatHasVanishedIsEmpty) {
    const std::wstring gone = folder.MakeFolder(L"gone");
    View().Navigate(gone.c_str());
    RemoveDirectoryW(gone.c_str());
    View().Refresh();
    EXPECT_EQ(View().Title(), gone);
    EXPECT_EQ(List().GetCount(), 0u);
}

class FilesTruth : public FilesFixture {};

// No operation may work in a folder that is not the one on the screen.
TEST_F(FilesTruth, AFolderWhoseTitleCannotBeShownIsNotEntered) {
    folder.MakeFolder(L"a");
    folder.MakeFile(L"a\\same.txt", "inner");
    folder.MakeFile(L"same.txt", "outer");
    OpenFolder();
    for (const bool up : {false, true}) {
        frame.titleFails = true;
        if (up) {
            EXPECT_THROW(View().Up(), faults::W32Fault);
        } else {
            EXPECT_THROW(View().Navigate((folder.Path() + L"\\a").c_str()), faults::W32Fault);
        }
        EXPECT_EQ(View().Title(), folder.Path());
        EXPECT_EQ(TextOf(PathBar()), folder.Path());
        EXPECT_EQ(Rows(), (Names{L"a", L"same.txt"}));
    }
}

TEST_F(FilesTruth, AFolderHasOneSpelling) {
    const std::wstring inner = folder.MakeFolder(L"Inner");
    folder.MakeFile(L"Inner\\a.txt");
    OpenFolder();
    for (const std::wstring& path : {folder.Path() + L"\\INNER", folder.Path() + L"\\.\\inner\\",
                                     L"C:" + inner, folder.Path() + L"\\x\\..\\Inner\\A.TXT"}) {
        View().Navigate(path.c_str());
        EXPECT_EQ(View().Title(), inner) << testing::PrintToString(path);
        EXPECT_EQ(TextOf(PathBar()), inner);
    }
    EXPECT_EQ(Selected(), L"a.txt");
}
