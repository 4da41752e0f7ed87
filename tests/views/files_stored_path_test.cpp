#include <gtest/gtest.h>

#include "tests/support/windows_seen.h"
#include "tests/views/files_fixture.h"

using namespace test;
using namespace views;

class FilesStoredPath : public FilesFixture {
 protected:
    std::wstring TitleWithStored(const std::wstring& path) {
        CleanSettings::SetText(L"path", path);
        return Open().Title();
    }
};

TEST_F(FilesStoredPath, AFolderIsTakenUpAgain) {
    folder.MakeFile(L"a");
    EXPECT_EQ(TitleWithStored(folder.Path()), folder.Path());
    EXPECT_EQ(Rows(), Names{L"a"});
    EXPECT_EQ(TextOf(PathBar()), folder.Path());
}

TEST_F(FilesStoredPath, NoneStartsAtTheRoot) {
    EXPECT_EQ(Open().Title(), L"\\");
    EXPECT_NE(RowOf(L"Temp"), ui::noRow);
}

TEST_F(FilesStoredPath, AnEmptyOneStartsAtTheRoot) {
    EXPECT_EQ(TitleWithStored(L""), L"\\");
}

TEST_F(FilesStoredPath, AFileStartsAtTheRoot) {
    EXPECT_EQ(TitleWithStored(folder.MakeFile(L"file")), L"\\");
}

TEST_F(FilesStoredPath, AVanishedFolderStartsAtTheRoot) {
    const std::wstring gone = folder.MakeFolder(L"gone");
    RemoveDirectoryW(gone.c_str());
    EXPECT_EQ(TitleWithStored(gone), L"\\");
}

TEST_F(FilesStoredPath, AHiddenFolderIsTakenUpAllTheSame) {
    const std::wstring hidden = folder.MakeFolder(L"hidden");
    SetFileAttributesW(hidden.c_str(), FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM);
    EXPECT_EQ(TitleWithStored(hidden), hidden);
}

TEST_F(FilesStoredPath, AValueOfAnotherTypeStartsAtTheRoot) {
    CleanSettings::SetNumber(L"path", 7);
    EXPECT_EQ(Open().Title(), L"\\");
    const std::wstring text = folder.Path();
    CleanSettings::SetRaw(L"path", REG_BINARY, text.c_str(),
                          static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
    EXPECT_EQ(Open().Title(), L"\\");
}

TEST_F(FilesStoredPath, AValueWithoutANulAtItsEndIsStillAPath) {
    const std::wstring text = folder.Path();
    CleanSettings::SetRaw(L"path", REG_SZ, text.c_str(),
                          static_cast<DWORD>(text.size() * sizeof(wchar_t)));
    EXPECT_EQ(Open().Title(), folder.Path());
}

TEST_F(FilesStoredPath, AValueOfAnOddNumberOfBytesDoesNoHarm) {
    const std::wstring text = folder.Path() + L"x";
    CleanSettings::SetRaw(L"path", REG_SZ, text.c_str(),
                          static_cast<DWORD>(text.size() * sizeof(wchar_t) - 1));
    const std::wstring title = Open().Title();
    EXPECT_TRUE(title == L"\\" || title == folder.Path()) << title.size();
}

TEST_F(FilesStoredPath, ABackslashAtTheEndIsCut) {
    EXPECT_EQ(TitleWithStored(folder.Path() + L"\\"), folder.Path());
    EXPECT_EQ(TitleWithStored(L"\\"), L"\\");
    EXPECT_FALSE(View().Up());
}

TEST_F(FilesStoredPath, AVeryLongTextStartsAtTheRoot) {
    EXPECT_EQ(TitleWithStored(L"\\" + std::wstring(30000, L'x')), L"\\");
    EXPECT_EQ(TitleWithStored(std::wstring(300, L'\\')), L"\\");
}

TEST_F(FilesStoredPath, IsWrittenWhenTheViewCloses) {
    OpenFolder();
    EXPECT_FALSE(CleanSettings::Text(L"path"));
    CloseView();
    EXPECT_EQ(CleanSettings::Text(L"path"), folder.Path());
    EXPECT_EQ(Open().Title(), folder.Path());
    View().Up();
    View().Up();
    CloseView();
    EXPECT_EQ(CleanSettings::Text(L"path"), L"");
}

TEST_F(FilesStoredPath, IsTheFolderOfNowAndNotOfTheSelection) {
    folder.MakeFolder(L"inner");
    OpenFolder();
    Select(L"inner");
    CloseView();
    EXPECT_EQ(CleanSettings::Text(L"path"), folder.Path());
}
