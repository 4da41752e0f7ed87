// What two paths have to do with each other.
#include "platform/files.h"

#include <gtest/gtest.h>

#include "tests/support/host_files.h"
#include "tests/support/user_locale.h"
#include "tests/support/world.h"

using namespace test;
using platform::CanonicalPath;
using platform::CompareFiles;
using platform::Links;
using platform::NamesItself;
using platform::SameSpelling;

namespace {

bool Same(const std::wstring& first, const std::wstring& second, Links links = Links::Kept) {
    bool same = false;
    EXPECT_TRUE(CompareFiles(first, second, links, &same));
    return same;
}

}  // namespace

TEST(CanonicalPaths, HaveOneSpelling) {
    for (const wchar_t* path :
         {L"\\none\\a.txt", L"C:\\none\\a.txt", L"c:\\none\\.\\a.txt", L"\\none\\x\\..\\a.txt",
          L"\\none\\\\a.txt", L"/none/a.txt", L"\\none\\a.txt\\", L"\\none\\a.txt. .",
          L"none\\a.txt", L"\\..\\none\\a.txt"}) {
        EXPECT_EQ(CanonicalPath(path), L"\\none\\a.txt") << testing::PrintToString(path);
    }
    for (const wchar_t* root : {L"", L"\\", L"C:\\", L"\\none\\..", L"\\."}) {
        EXPECT_EQ(CanonicalPath(root), L"") << testing::PrintToString(root);
    }
    EXPECT_EQ(CanonicalPath(L"X:\\none\\..\\a"), L"X:\\a");
    EXPECT_EQ(CanonicalPath(L"\\\\server\\share\\a"), L"\\\\server\\share\\a");
    const std::wstring tooLong = L"\\" + std::wstring(40000, L'p');
    EXPECT_EQ(CanonicalPath(tooLong), tooLong);
}

// Whoever reads "I" as the capital of a letter without a dot has the same files as everybody.
TEST(Spellings, AreComparedByTheSystemsRulesWhateverTheLanguage) {
    EXPECT_TRUE(SameSpelling(L"\\Program Files\\a.TXT", L"\\PROGRAM FILES\\A.txt"));
    EXPECT_TRUE(SameSpelling(L"\x00C4pfel", L"\x00E4PFEL"));
    EXPECT_TRUE(SameSpelling(L"", L""));
    EXPECT_FALSE(
        SameSpelling(L"Stra\x00DF"
                     L"e",
                     L"Strasse"));
    EXPECT_FALSE(SameSpelling(L"a\x00AD", L"a"));
    EXPECT_FALSE(SameSpelling(L"a\x00AD", L"a\x200B"));
    EXPECT_FALSE(SameSpelling(L"a", L"ab"));
    EXPECT_FALSE(SameSpelling(L"\x0131", L"I"));
}

TEST(OwnNames, AreWhatTheSystemTakesAsItStands) {
    for (const wchar_t* path : {L"\\T\\a", L"\\T\\.hidden", L"\\T\\a.b.c", L"\\T\\ a", L"X:\\a"}) {
        EXPECT_TRUE(NamesItself(path)) << testing::PrintToString(path);
    }
    for (const wchar_t* path : {L"\\T\\a.", L"\\T\\a ", L"\\T\\a. ", L"\\T\\com1", L"\\T\\NUL"}) {
        EXPECT_FALSE(NamesItself(path)) << testing::PrintToString(path);
    }
    const std::wstring folder = L"\\" + std::wstring(300, L'd') + L"\\";
    EXPECT_TRUE(NamesItself(folder + L"a"));
    EXPECT_FALSE(NamesItself(folder + L"a."));
    EXPECT_FALSE(NamesItself(folder + L"a "));
}

TEST(Identities, TellOneFileUnderEverySpelling) {
    const TemporaryFolder folder;
    const std::wstring file = folder.MakeFile(L"a.txt", "a");
    const std::wstring other = folder.MakeFile(L"b.txt", "a");
    EXPECT_TRUE(Same(file, L"C:" + file));
    EXPECT_TRUE(Same(file, L"\\\\?\\C:" + file));
    EXPECT_TRUE(Same(file, folder.Path() + L"\\.\\A.TXT"));
    EXPECT_FALSE(Same(file, other));
    EXPECT_TRUE(Same(folder.Path(), folder.Path() + L"\\"));
    EXPECT_FALSE(Same(folder.Path(), file));
    bool same = true;
    EXPECT_FALSE(CompareFiles(file, folder.Path() + L"\\none", Links::Kept, &same));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_FILE_NOT_FOUND});
}

TEST(Identities, SeeThroughALinkThatIsFollowed) {
    const TemporaryFolder folder;
    const std::wstring target = folder.MakeFolder(L"target");
    const std::wstring link = folder.Path() + L"\\link";
    ASSERT_TRUE(LinkFolder(link, target));
    EXPECT_TRUE(Same(link, target, Links::Followed));
}
