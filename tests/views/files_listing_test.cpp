#include <gtest/gtest.h>

#include <algorithm>

#include "res/resource.h"
#include "tests/support/platform_hook.h"
#include "tests/support/wait.h"
#include "tests/views/fake_folder.h"
#include "tests/views/files_fixture.h"
#include "views/display_flags.h"

using namespace test;
using namespace views;

class FilesOrder : public FilesFixture {};

TEST_F(FilesOrder, FoldersComeFirstAndCaseIsIgnored) {
    for (const wchar_t* name : {L"b", L"A", L"c"}) {
        folder.MakeFile(name);
    }
    folder.MakeFolder(L"Z");
    folder.MakeFolder(L"a folder");
    OpenFolder();
    EXPECT_EQ(Rows(), (Names{L"a folder", L"Z", L"A", L"b", L"c"}));
}

TEST_F(FilesOrder, NeitherTheCaseNorTheKindOfAnEntryMisleads) {
    FakeFolder fake;
    fake.Add(L"b");
    fake.Add(L"A");
    fake.Add(L"c");
    fake.Add(L"Z", FILE_ATTRIBUTE_DIRECTORY);
    fake.Add(L"a", FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_READONLY);
    Open();
    EXPECT_EQ(Rows(), (Names{L"a", L"Z", L"A", L"b", L"c"}));
}

TEST_F(FilesOrder, LettersWithMarksStandWhereTheLanguagePutsThem) {
    FakeFolder fake;
    for (const wchar_t* name :
         {L"Zebra",
          L"\x00E9"
          L"clair",
          L"Banana", L"\x00C4pfel", L"eagle", L"\x00F6l", L"file", L"a-b", L"ab"}) {
        fake.Add(name);
    }
    Open();
    const Names rows = Rows();
    ASSERT_EQ(rows.size(), 9u);
    for (size_t row = 1; row < rows.size(); ++row) {
        EXPECT_EQ(CompareStringW(0x0400, 1, rows[row - 1].c_str(), -1, rows[row].c_str(), -1), 1)
            << row;
    }
    EXPECT_EQ(rows.back(), L"Zebra");
    EXPECT_LT(RowOf(L"\x00C4pfel"), RowOf(L"Banana"));
    EXPECT_LT(RowOf(L"\x00E9"
                    L"clair"),
              RowOf(L"file"));
}

TEST_F(FilesOrder, ANameThatComparesEqualGoesBeforeTheOnesAlreadyListed) {
    FakeFolder fake;
    fake.Add(L"m");
    fake.Add(L"README").nFileSizeLow = 1;
    fake.Add(L"readme").nFileSizeLow = 2;
    fake.Add(L"Readme").nFileSizeLow = 3;
    fake.Add(L"z");
    Open();
    EXPECT_EQ(Rows(), (Names{L"m", L"Readme", L"readme", L"README", L"z"}));
}

TEST_F(FilesOrder, HoldsForEveryOrderInWhichTheEntriesArrive) {
    Names names = {L"a", L"B", L"c", L"D"};
    do {
        FakeFolder fake;
        for (const std::wstring& name : names) {
            fake.Add(name);
        }
        Open();
        EXPECT_EQ(Rows(), (Names{L"a", L"B", L"c", L"D"}));
    } while (std::next_permutation(names.begin(), names.end()));
}

class FilesMask : public FilesFixture {
 protected:
    FilesMask() {
        MakeWith(L"plain.txt", FILE_ATTRIBUTE_NORMAL);
        MakeWith(L"readonly.txt", FILE_ATTRIBUTE_READONLY);
        MakeWith(L"hidden.txt", FILE_ATTRIBUTE_HIDDEN);
        MakeWith(L"system.txt", FILE_ATTRIBUTE_SYSTEM);
        MakeWith(L"both.txt", FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM);
        const std::wstring path = folder.MakeFolder(L"both");
        SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM);
    }

    void MakeWith(const wchar_t* name, DWORD attributes) {
        const std::wstring path = folder.MakeFile(name);
        EXPECT_TRUE(SetFileAttributesW(path.c_str(), attributes));
    }
};

TEST_F(FilesMask, HiddenAndSystemEntriesAreMissingAtFirst) {
    OpenFolder();
    EXPECT_EQ(Rows(), (Names{L"plain.txt", L"readonly.txt"}));
}

TEST_F(FilesMask, ShowHiddenAddsWhatIsOnlyHidden) {
    frame.flags = flagShowHidden;
    OpenFolder();
    EXPECT_EQ(Rows(), (Names{L"hidden.txt", L"plain.txt", L"readonly.txt"}));
}

TEST_F(FilesMask, ShowSystemAddsWhatIsOnlySystem) {
    frame.flags = flagShowSystem;
    OpenFolder();
    EXPECT_EQ(Rows(), (Names{L"plain.txt", L"readonly.txt", L"system.txt"}));
}

TEST_F(FilesMask, BothOptionsTogetherShowEverything) {
    frame.flags = flagShowHidden | flagShowSystem;
    OpenFolder();
    EXPECT_EQ(Rows(), (Names{L"both", L"both.txt", L"hidden.txt", L"plain.txt", L"readonly.txt",
                             L"system.txt"}));
}

TEST_F(FilesMask, FollowsTheOptionsWhenTheyChange) {
    OpenFolder();
    frame.flags = flagShowHidden;
    View().FlagsChanged(flagShowHidden, flagShowHidden);
    EXPECT_NE(RowOf(L"hidden.txt"), ui::noRow);
    frame.flags = 0;
    View().FlagsChanged(flagShowHidden, 0);
    EXPECT_EQ(Rows(), (Names{L"plain.txt", L"readonly.txt"}));
}

TEST_F(FilesMask, OtherOptionsHideNothing) {
    frame.flags = ~static_cast<DWORD>(flagShowHidden | flagShowSystem);
    OpenFolder();
    EXPECT_EQ(Rows(), (Names{L"plain.txt", L"readonly.txt"}));
}

class FilesItems : public FilesFixture {};

TEST_F(FilesItems, KeepTheNameAttributesAndSizeOfARealFile) {
    const std::wstring path = folder.MakeFile(L"Notes.TXT", "12345");
    SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_READONLY);
    OpenFolder();
    ASSERT_EQ(Rows(), (Names{L"Notes.TXT"}));
    EXPECT_EQ(Item(0).size, 5u);
    EXPECT_EQ(Item(0).attributes, GetFileAttributesW(path.c_str()));
    EXPECT_FALSE(Item(0).IsFolder());
}

TEST_F(FilesItems, KeepTheTimeOfCreationAndNotOfTheLastWrite) {
    FakeFolder fake;
    WIN32_FIND_DATAW& entry = fake.Add(L"a");
    entry.ftCreationTime = FILETIME{1, 2};
    entry.ftLastAccessTime = FILETIME{3, 4};
    entry.ftLastWriteTime = FILETIME{5, 6};
    Open();
    EXPECT_EQ(Item(0).created.dwLowDateTime, 1u);
    EXPECT_EQ(Item(0).created.dwHighDateTime, 2u);
}

TEST_F(FilesItems, KeepSizesBeyondFourGigabytes) {
    FakeFolder fake;
    WIN32_FIND_DATAW& entry = fake.Add(L"film");
    entry.nFileSizeHigh = 3;
    entry.nFileSizeLow = 0xFFFFFFFE;
    Open();
    EXPECT_EQ(Item(0).size, 0x3FFFFFFFEu);
}

namespace {

struct InfoAsked {
    std::wstring path;
    DWORD attributes;
    UINT size;
    UINT flags;
};
std::vector<InfoAsked> infosAsked;

DWORD_PTR WINAPI NumberingFileInfo(LPCWSTR path, DWORD attributes, SHFILEINFOW* info, UINT size,
                                   UINT flags) {
    infosAsked.push_back(InfoAsked{path, attributes, size, flags});
    info->iIcon = 42;
    return 1;
}

DWORD_PTR WINAPI FailingFileInfo(LPCWSTR, DWORD, SHFILEINFOW* info, UINT, UINT) {
    info->iIcon = 42;
    return 0;
}

using FileInfoHook = PlatformHook<decltype(NumberingFileInfo)>;

}  // namespace

TEST_F(FilesItems, TakeTheIconThatTheShellNamesForTheFullPath) {
    const std::wstring path = folder.MakeFile(L"a.txt");
    Open();
    const FileInfoHook hook("SHGetFileInfoW", NumberingFileInfo);
    infosAsked.clear();
    View().Navigate(folder.Path().c_str());
    Draw();
    EXPECT_EQ(ItemOf(L"a.txt").iconIndex, 42);
    ASSERT_EQ(infosAsked.size(), 1u);
    EXPECT_EQ(infosAsked[0].path, L"C:" + path);
    EXPECT_EQ(infosAsked[0].attributes, ItemOf(L"a.txt").attributes);
    EXPECT_EQ(infosAsked[0].size, sizeof(SHFILEINFOW));
    EXPECT_EQ(infosAsked[0].flags, 0x4001u);
}

TEST_F(FilesItems, HaveNoIconWhenTheShellFails) {
    folder.MakeFile(L"a.txt");
    Open();
    const FileInfoHook hook("SHGetFileInfoW", FailingFileInfo);
    View().Navigate(folder.Path().c_str());
    Draw();
    EXPECT_EQ(ItemOf(L"a.txt").iconIndex, -1);
}

TEST_F(FilesItems, HaveTheIconsOfTheSystemsOwnList) {
    folder.MakeFolder(L"folder");
    OpenFolder();
    Draw();
    SHFILEINFOW info = {};
    ASSERT_TRUE(SHGetFileInfoW((L"C:" + folder.Path() + L"\\folder").c_str(), 0, &info, sizeof info,
                               0x4001));
    EXPECT_EQ(ItemOf(L"folder").iconIndex, info.iIcon);
}

class FilesReading : public FilesFixture {};

TEST_F(FilesReading, AFolderIsReadInOnePass) {
    FakeFolder fake;
    for (int count = 0; count < 20; ++count) {
        fake.Add(L"entry " + std::to_wstring(count));
    }
    Open();
    fake.patterns.clear();
    fake.nextCalls = fake.closed = 0;
    View().Refresh();
    EXPECT_EQ(fake.patterns, (Names{L"\\*"}));
    EXPECT_EQ(fake.nextCalls, 20u);
    EXPECT_EQ(fake.closed, 1u);
    EXPECT_EQ(List().GetCount(), 20u);
}

TEST_F(FilesReading, TheEntriesReadBeforeAFailureAreShown) {
    FakeFolder fake;
    fake.Add(L"a");
    fake.Add(L"b");
    fake.Add(L"c");
    fake.failAfter = 2;
    Open();
    EXPECT_EQ(Rows(), (Names{L"a", L"b"}));
    EXPECT_EQ(fake.closed, 1u);
}

TEST_F(FilesReading, AFolderThatCannotBeOpenedIsAnEmptyListWithoutAMessage) {
    FakeFolder fake;
    fake.Add(L"a");
    Open();
    fake.failAfter = 0;
    fake.closed = 0;
    View().Command(ID_REFRESH);
    EXPECT_EQ(List().GetCount(), 0u);
    EXPECT_EQ(fake.closed, 0u);
}

TEST_F(FilesReading, AnEmptyFolderIsAnEmptyList) {
    folder.MakeFile(L"a");
    const std::wstring empty = folder.MakeFolder(L"empty");
    OpenFolder();
    View().Navigate(empty.c_str());
    EXPECT_EQ(List().GetCount(), 0u);
    EXPECT_EQ(View().Title(), empty);
}

TEST_F(FilesReading, AFolderInWhichEverythingIsHiddenIsAnEmptyList) {
    SetFileAttributesW(folder.MakeFile(L"a").c_str(), FILE_ATTRIBUTE_HIDDEN);
    OpenFolder();
    EXPECT_EQ(List().GetCount(), 0u);
    EXPECT_EQ(Selected(), L"");
}

TEST_F(FilesReading, TheFolderItselfAndItsParentAreNoRows) {
    const std::wstring child = folder.MakeFolder(L"child");
    OpenAt(child);
    EXPECT_EQ(Rows(), Names{});
    View().Navigate(folder.Path().c_str());
    EXPECT_EQ(Rows(), Names{L"child"});
}
