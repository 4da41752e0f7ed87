#include <gtest/gtest.h>

#include <set>

#include "platform/files.h"
#include "tests/support/platform_hook.h"
#include "tests/support/world.h"

using namespace test;
using platform::FindFirst;
using platform::FindNext;

namespace {

using Names = std::set<std::wstring>;

Names EntriesOf(const std::wstring& folder) {
    Names names;
    platform::FindData data;
    const HANDLE search = FindFirst((folder + L"\\*").c_str(), &data);
    if (search != INVALID_HANDLE_VALUE) {
        do {
            EXPECT_TRUE(names.insert(data.cFileName).second);
        } while (FindNext(search, &data));
        EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_NO_MORE_FILES));
        FindClose(search);
    }
    return names;
}

BOOL WINAPI FailToGoOn(HANDLE, WIN32_FIND_DATAW*) {
    SetLastError(ERROR_NOT_READY);
    return FALSE;
}

using Next = BOOL(HANDLE, WIN32_FIND_DATAW*);

// A volume whose folder holds names that no file can be given.
std::vector<std::wstring> namesOnVolume;
size_t nextName = 0;

BOOL WINAPI GiveNextName(HANDLE, WIN32_FIND_DATAW* data) {
    if (nextName >= namesOnVolume.size()) {
        SetLastError(ERROR_NO_MORE_FILES);
        return FALSE;
    }
    const std::wstring& name = namesOnVolume[nextName++];
    std::fill(std::begin(data->cFileName), std::end(data->cFileName), L'x');
    std::copy_n(name.c_str(), std::min<size_t>(name.size() + 1, MAX_PATH), data->cFileName);
    return TRUE;
}

HANDLE(WINAPI* beginSearch)(const wchar_t*, WIN32_FIND_DATAW*) = nullptr;

HANDLE WINAPI GiveFirstName(const wchar_t*, WIN32_FIND_DATAW* data) {
    // A real one, so that it must be closed as one.
    const HANDLE search = beginSearch(L"C:\\*", data);
    nextName = 0;
    GiveNextName(search, data);
    return search;
}

}  // namespace

TEST(Find, LeavesOutNamesThatLeadOutOfTheFolderOrHaveNoEnd) {
    const PlatformHook<HANDLE(const wchar_t*, WIN32_FIND_DATAW*)> first("FindFirstFileW",
                                                                        GiveFirstName);
    const PlatformHook<Next> next("FindNextFileW", GiveNextName);
    beginSearch = first.Original();
    namesOnVolume = {L"..\\Windows",
                     L"a.txt",
                     L"",
                     L"Sub/b.txt",
                     L"\\Windows",
                     L"..c",
                     std::wstring(MAX_PATH, L'n'),
                     L"..",
                     L"last"};
    EXPECT_EQ(EntriesOf(L""), (Names{L"a.txt", L"..c", L"last"}));
    namesOnVolume = {L"..\\Windows", L".."};
    EXPECT_EQ(EntriesOf(L""), Names());
}

TEST(Find, GivesTheEntriesOfAFolderWithoutTheDots) {
    const TemporaryFolder folder;
    folder.MakeFile(L"a.txt");
    folder.MakeFile(L".b");
    folder.MakeFile(L"..c");
    folder.MakeFolder(L"Sub");
    EXPECT_EQ(EntriesOf(folder.Path()), (Names{L"a.txt", L".b", L"..c", L"Sub"}));
}

TEST(Find, GivesTheEntriesOfTheRoot) {
    const Names names = EntriesOf(L"");
    EXPECT_TRUE(names.count(L"My Documents"));
    EXPECT_FALSE(names.count(L"."));
    EXPECT_FALSE(names.count(L".."));
}

TEST(Find, SaysThatAnEmptyFolderHasNoFiles) {
    const TemporaryFolder folder;
    platform::FindData data;
    EXPECT_EQ(FindFirst((folder.Path() + L"\\*").c_str(), &data), INVALID_HANDLE_VALUE);
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_NO_MORE_FILES));
}

TEST(Find, ClosesTheSearchOfAnEmptyFolder) {
    const TemporaryFolder folder;
    platform::FindData data;
    FindFirst((folder.Path() + L"\\*").c_str(), &data);
    const Held before = CountHeld();
    for (int round = 0; round < 20; ++round) {
        FindFirst((folder.Path() + L"\\*").c_str(), &data);
    }
    EXPECT_EQ(CountHeld(), before);
    EXPECT_TRUE(RemoveDirectoryW(folder.Path().c_str()));
}

TEST(Find, FailsAsThePlatformDoes) {
    platform::FindData data;
    EXPECT_EQ(FindFirst(L"\\no such folder\\*", &data), INVALID_HANDLE_VALUE);
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_PATH_NOT_FOUND));
    const TemporaryFolder folder;
    EXPECT_EQ(FindFirst((folder.Path() + L"\\*.txt").c_str(), &data), INVALID_HANDLE_VALUE);
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_FILE_NOT_FOUND));
}

TEST(Find, FailsWhenItCannotGetPastTheDots) {
    const TemporaryFolder folder;
    folder.MakeFile(L"a.txt");
    const PlatformHook<Next> hook("FindNextFileW", FailToGoOn);
    platform::FindData data;
    EXPECT_EQ(FindFirst((folder.Path() + L"\\*").c_str(), &data), INVALID_HANDLE_VALUE);
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_NOT_READY));
}

TEST(Find, EndsWithTheFailureInItsMiddle) {
    const TemporaryFolder folder;
    folder.MakeFile(L"a.txt");
    folder.MakeFile(L"b.txt");
    platform::FindData data;
    const HANDLE search = FindFirst((folder.Path() + L"\\*").c_str(), &data);
    ASSERT_NE(search, INVALID_HANDLE_VALUE);
    {
        const PlatformHook<Next> hook("FindNextFileW", FailToGoOn);
        EXPECT_FALSE(FindNext(search, &data));
        EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_NOT_READY));
    }
    FindClose(search);
}

TEST(Find, TellsWhatItFinds) {
    const TemporaryFolder folder;
    const std::wstring path = folder.MakeFile(L"a.txt", "12345");
    SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_HIDDEN);
    platform::FindData data;
    const HANDLE search = FindFirst(path.c_str(), &data);
    ASSERT_NE(search, INVALID_HANDLE_VALUE);
    EXPECT_STREQ(data.cFileName, L"a.txt");
    EXPECT_EQ(data.nFileSizeLow, 5u);
    EXPECT_TRUE(data.dwFileAttributes & FILE_ATTRIBUTE_HIDDEN);
    EXPECT_FALSE(FindNext(search, &data));
    FindClose(search);
}
