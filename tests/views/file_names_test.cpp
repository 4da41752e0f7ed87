#include "views/files/file_names.h"

#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>

#include "faults/fault.h"
#include "tests/support/world.h"

using namespace test;
using namespace views;

namespace {

HRESULT CodeOf(const std::function<void()>& action) {
    try {
        action();
    } catch (const faults::W32Fault& fault) {
        return fault.Code();
    }
    return S_OK;
}

constexpr HRESULT invalidName = static_cast<HRESULT>(0x8007007B);

}  // namespace

TEST(NameRules, ANameStandsBehindTheLastBackslash) {
    EXPECT_EQ(NameOfPath(L"\\Temp\\a.txt"), L"a.txt");
    EXPECT_EQ(NameOfPath(L"\\a.txt"), L"a.txt");
    EXPECT_EQ(NameOfPath(L"a.txt"), L"a.txt");
    EXPECT_EQ(NameOfPath(L"\\Temp\\"), L"");
    EXPECT_EQ(FolderOfPath(L"\\Temp\\a.txt"), L"\\Temp");
    EXPECT_EQ(FolderOfPath(L"\\a.txt"), L"");
    EXPECT_EQ(FolderOfPath(L"a.txt"), L"");
}

TEST(NameRules, TheCaseOfLettersMakesNoOtherName) {
    EXPECT_TRUE(SameName(L"a.txt", L"A.TXT"));
    EXPECT_TRUE(SameName(L"\x00E4", L"\x00C4"));
    EXPECT_FALSE(SameName(L"a.txt", L"a.tx"));
    EXPECT_FALSE(SameName(L"a", L""));
    EXPECT_TRUE(SameName(L"", L""));
}

TEST(NameRules, AFolderLiesWithinEveryPathThatItsOwnBeginsWith) {
    EXPECT_TRUE(BeginsWithPath(L"\\Data\\Sub", L"\\Data"));
    EXPECT_TRUE(BeginsWithPath(L"\\Data", L"\\Data"));
    EXPECT_TRUE(BeginsWithPath(L"\\DATA\\sub", L"\\data"));
    EXPECT_TRUE(BeginsWithPath(L"\\AB", L"\\A"));
    EXPECT_FALSE(BeginsWithPath(L"\\Data", L"\\Data\\Sub"));
    EXPECT_FALSE(BeginsWithPath(L"\\Other\\Data", L"\\Data"));
    EXPECT_FALSE(BeginsWithPath(L"", L"\\Data"));
}

TEST(NameRules, ACopyGetsItsExtensionBack) {
    const NameParts photo = SplitForCopy(L"photo.jpg", false);
    EXPECT_EQ(photo.base, L"photo");
    EXPECT_EQ(photo.extension, L".jpg");
    const NameParts packed = SplitForCopy(L"a.tar.gz", false);
    EXPECT_EQ(packed.base, L"a.tar");
    EXPECT_EQ(packed.extension, L".gz");
    const NameParts hidden = SplitForCopy(L".profile", false);
    EXPECT_EQ(hidden.base, L"");
    EXPECT_EQ(hidden.extension, L".profile");
    const NameParts ending = SplitForCopy(L"name.", false);
    EXPECT_EQ(ending.base, L"name");
    EXPECT_EQ(ending.extension, L".");
}

TEST(NameRules, AnExtensionThatBeginsWithZeroBelongsToTheName) {
    const NameParts first = SplitForCopy(L"disk.001", false);
    EXPECT_EQ(first.base, L"disk.001");
    EXPECT_EQ(first.extension, L"");
    EXPECT_EQ(SplitForCopy(L"disk.101", false).extension, L".101");
    // Without a dot the first character is looked at.
    EXPECT_EQ(SplitForCopy(L"0name", false).base, L"0name");
}

TEST(NameRules, AFoldersNameHasNoExtension) {
    EXPECT_EQ(SplitForCopy(L"Docs.old", true).base, L"Docs.old");
    EXPECT_EQ(SplitForCopy(L"Docs.old", true).extension, L"");
    EXPECT_EQ(SplitForCopy(L"Docs", true).base, L"Docs");
}

TEST(NameRules, AFilesNameWithoutADotIsOutOfRange) {
    EXPECT_THROW(SplitForCopy(L"plain", false), std::out_of_range);
}

TEST(NewNames, OfFoldersAreCounted) {
    const TemporaryFolder folder;
    EXPECT_EQ(UniqueFolderName(folder.Path()), L"New Folder");
    folder.MakeFolder(L"New Folder");
    EXPECT_EQ(UniqueFolderName(folder.Path()), L"New Folder 1");
    folder.MakeFile(L"New Folder 1");
    folder.MakeFolder(L"New Folder 3");
    EXPECT_EQ(UniqueFolderName(folder.Path()), L"New Folder 2");
}

TEST(NewNames, OfFoldersEndAt255) {
    const TemporaryFolder folder;
    folder.MakeFolder(L"New Folder");
    for (int number = 1; number < 255; ++number) {
        folder.MakeFolder(L"New Folder " + std::to_wstring(number));
    }
    EXPECT_EQ(UniqueFolderName(folder.Path()), L"New Folder 255");
    folder.MakeFolder(L"New Folder 255");
    EXPECT_EQ(CodeOf([&] { UniqueFolderName(folder.Path()); }), invalidName);
}

TEST(NewNames, OfCopiesAreCountedBehindTheWholeName) {
    const TemporaryFolder folder;
    const auto next = [&](const std::wstring& name, bool isFolder) {
        const std::wstring path = UniqueCopyPath(folder.Path(), name, isFolder);
        EXPECT_EQ(FolderOfPath(path), folder.Path());
        const std::wstring copy(NameOfPath(path));
        folder.MakeFile(copy);
        return copy;
    };
    EXPECT_EQ(next(L"report.txt", false), L"report - Copy.txt");
    EXPECT_EQ(next(L"report.txt", false), L"report.txt - Copy (1).txt");
    EXPECT_EQ(next(L"report.txt", false), L"report.txt - Copy (2).txt");
    EXPECT_EQ(next(L"Docs", true), L"Docs - Copy");
    EXPECT_EQ(next(L"Docs", true), L"Docs - Copy (1)");
    EXPECT_EQ(next(L"disk.001", false), L"disk.001 - Copy");
}

TEST(NewNames, OfCopiesEndAt255) {
    const TemporaryFolder folder;
    folder.MakeFile(L"a - Copy.b");
    for (int number = 1; number < 255; ++number) {
        folder.MakeFile(L"a.b - Copy (" + std::to_wstring(number) + L").b");
    }
    EXPECT_EQ(NameOfPath(UniqueCopyPath(folder.Path(), L"a.b", false)), L"a.b - Copy (255).b");
    folder.MakeFile(L"a.b - Copy (255).b");
    EXPECT_EQ(CodeOf([&] { UniqueCopyPath(folder.Path(), L"a.b", false); }), invalidName);
}

TEST(NewNames, MayHoldWhatTheFormatterTakesForInserts) {
    const TemporaryFolder folder;
    EXPECT_EQ(NameOfPath(UniqueCopyPath(folder.Path(), L"100%1 %n!.txt", false)),
              L"100%1 %n! - Copy.txt");
}
