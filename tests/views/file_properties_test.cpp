#include "views/files/file_properties.h"

#include <gtest/gtest.h>

#include "platform/shortcuts.h"
#include "tests/support/platform_hook.h"
#include "tests/support/world.h"

using namespace test;
using namespace views;

namespace {

DWORD_PTR WINAPI NoFileInfo(LPCWSTR, DWORD, SHFILEINFOW*, UINT, UINT) {
    return 0;
}

BOOL WINAPI NoSpecialFolder(HWND, LPWSTR, int, BOOL) {
    return FALSE;
}

std::vector<UINT> flagsAsked;
DWORD_PTR(WINAPI* realFileInfo)(LPCWSTR, DWORD, SHFILEINFOW*, UINT, UINT) = nullptr;
DWORD_PTR WINAPI NotingFileInfo(LPCWSTR path, DWORD attributes, SHFILEINFOW* info, UINT size,
                                UINT flags) {
    flagsAsked.push_back(flags);
    return realFileInfo(path, attributes, info, size, flags);
}

FileProperties Read(const std::wstring& path) {
    return ReadFileProperties(nullptr, path);
}

}  // namespace

class PropertiesOfAShortcut : public testing::Test {
 protected:
    // What is told of a shortcut with this command; "(none)" when it is not known.
    std::wstring TargetOf(const std::wstring& command) {
        const std::wstring path = folder.Path() + L"\\a.lnk";
        DeleteFileW(path.c_str());
        EXPECT_TRUE(platform::CreateShortcut(path.c_str(), command.c_str())) << GetLastError();
        const FileProperties properties = Read(path);
        typeName = properties.shortcut ? properties.shortcut->typeName : L"";
        return properties.shortcut ? properties.shortcut->target : L"(none)";
    }
    const TemporaryFolder folder;
    std::wstring typeName;
};

TEST_F(PropertiesOfAShortcut, TellTheQuotedPathWithoutItsArguments) {
    const std::wstring document = folder.MakeFile(L"a b.txt");
    EXPECT_EQ(TargetOf(L'"' + document + L"\" -x \"y z\""), document);
    EXPECT_EQ(typeName, L"Text Document");
}

TEST_F(PropertiesOfAShortcut, TellThePathUpToTheFirstBlank) {
    const std::wstring document = folder.MakeFile(L"a.csv");
    EXPECT_EQ(TargetOf(document + L" b c"), document);
    EXPECT_EQ(typeName, L"Table");
    EXPECT_EQ(TargetOf(L"  " + document), document);
}

TEST_F(PropertiesOfAShortcut, TellABareNameInTheWindowsFolder) {
    EXPECT_EQ(TargetOf(L"notepad.exe"), L"\\windows\\notepad.exe");
    EXPECT_EQ(TargetOf(L"\"some tool.exe\" -x"), L"\\windows\\some tool.exe");
}

TEST_F(PropertiesOfAShortcut, TellABareNameAloneWhereThereIsNoWindowsFolder) {
    const PlatformHook<decltype(NoSpecialFolder)> hook("SHGetSpecialFolderPathW", NoSpecialFolder);
    EXPECT_EQ(TargetOf(L"notepad.exe"), L"notepad.exe");
}

TEST_F(PropertiesOfAShortcut, TellATargetThatIsNotThere) {
    EXPECT_EQ(TargetOf(L"\"\\none\\none.txt\""), L"\\none\\none.txt");
    EXPECT_EQ(TargetOf(L"\"X:\\none.txt\""), L"X:\\none.txt");
}

TEST_F(PropertiesOfAShortcut, TellNothingOfAnEmptyCommand) {
    EXPECT_EQ(TargetOf(L""), L"(none)");
}

TEST_F(PropertiesOfAShortcut, TellNothingOfACommandThatIsTooLong) {
    EXPECT_EQ(TargetOf(L"\\a " + std::wstring(776, L'x')), L"\\a");
    EXPECT_EQ(TargetOf(L"\\a " + std::wstring(777, L'x')), L"(none)");
}

TEST_F(PropertiesOfAShortcut, TellNothingOfAFileThatIsNone) {
    EXPECT_FALSE(Read(folder.MakeFile(L"text.lnk", "10#\\a.txt")).shortcut);
    EXPECT_FALSE(Read(folder.MakeFolder(L"folder.lnk")).shortcut);
    EXPECT_FALSE(Read(folder.Path() + L"\\none.lnk").shortcut);
}

TEST_F(PropertiesOfAShortcut, AreLookedForUnderItsNameOnly) {
    const std::wstring path = folder.Path() + L"\\a.txt";
    ASSERT_TRUE(platform::CreateShortcut(path.c_str(), L"\"\\Temp\""));
    EXPECT_FALSE(Read(path).shortcut);
    const std::wstring upper = folder.Path() + L"\\B.LNK";
    ASSERT_TRUE(platform::CreateShortcut(upper.c_str(), L"\"\\Temp\""));
    EXPECT_TRUE(Read(upper).shortcut);
    EXPECT_EQ(Read(upper).shortcut->typeName, L"Folder");
}

TEST(ShortcutName, EndsInThreeLettersBehindTheLastPoint) {
    for (const wchar_t* path : {L"\\a.lnk", L"\\a.LNK", L"\\a.b.Lnk", L".lnk", L"\\x y\\.lnk"}) {
        EXPECT_TRUE(IsShortcutName(path)) << path;
    }
    for (const wchar_t* path : {L"", L"\\a", L"lnk", L"\\lnk", L"\\a.lnk2", L"\\a.ln", L"\\a.lnk.",
                                L"\\a.lnk.txt", L"\\a.lnk\\b", L"\\a.txt"}) {
        EXPECT_FALSE(IsShortcutName(path)) << path;
    }
}

TEST(FullTarget, IsTakenAsItIsWhenItBeginsWithABackslash) {
    EXPECT_EQ(FullTarget(L"\\Temp\\a.exe", L"\\Windows"), L"\\Temp\\a.exe");
    EXPECT_EQ(FullTarget(L"\\", L"\\Windows"), L"\\");
}

TEST(FullTarget, LiesInTheWindowsFolderOtherwise) {
    EXPECT_EQ(FullTarget(L"a.exe", L"\\Windows"), L"\\Windows\\a.exe");
    EXPECT_EQ(FullTarget(L"sub\\a.exe", L"\\Windows"), L"\\Windows\\sub\\a.exe");
}

TEST(FullTarget, StaysBareWhereThePathWouldBeTooLong) {
    const std::wstring folder(8, L'w');
    const std::wstring fits(260 - 2 - 8, L'x');
    EXPECT_EQ(FullTarget(fits, folder), folder + L"\\" + fits);
    EXPECT_EQ(FullTarget(fits + L"x", folder), fits + L"x");
}

TEST(FileProperties, AreThoseOfTheFile) {
    const TemporaryFolder folder;
    const std::wstring path = folder.MakeFile(L"a b.txt", std::string(1500, 'x'));
    SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_READONLY);
    const FileProperties properties = Read(path);
    SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
    EXPECT_EQ(properties.Name(), L"a b.txt");
    EXPECT_EQ(properties.Location(), folder.Path());
    EXPECT_EQ(properties.Size(), 1500u);
    EXPECT_TRUE(properties.HasSize());
    EXPECT_EQ(properties.typeName, L"Text Document");
    EXPECT_EQ(properties.data.dwFileAttributes & 7u, 3u);
    EXPECT_NE(properties.data.ftLastWriteTime.dwHighDateTime, 0u);
    EXPECT_FALSE(properties.shortcut);
    ASSERT_TRUE(properties.icons);
    EXPECT_GE(properties.iconIndex, 0);
}

TEST(FileProperties, ShowTheLargeIcon) {
    const TemporaryFolder folder;
    const FileProperties properties = Read(folder.MakeFile(L"a.txt"));
    SHFILEINFOW info = {};
    const auto small = reinterpret_cast<HIMAGELIST>(
        SHGetFileInfoW(L"C:\\", 0, &info, sizeof info, SHGFI_SYSICONINDEX | SHGFI_SMALLICON));
    int largeWidth = 0;
    int smallWidth = 0;
    int height = 0;
    ASSERT_TRUE(ImageList_GetIconSize(properties.icons, &largeWidth, &height));
    ASSERT_TRUE(ImageList_GetIconSize(small, &smallWidth, &height));
    EXPECT_GT(largeWidth, smallWidth);
}

TEST(FileProperties, AskTheShellForTheIconAndTheTypesTogether) {
    const TemporaryFolder folder;
    const std::wstring path = folder.Path() + L"\\a.lnk";
    ASSERT_TRUE(platform::CreateShortcut(path.c_str(), L"\"\\Temp\""));
    flagsAsked.clear();
    const PlatformHook<decltype(NotingFileInfo)> hook("SHGetFileInfoW", NotingFileInfo);
    realFileInfo = hook.Original();
    Read(path);
    EXPECT_EQ(flagsAsked, (std::vector<UINT>{0x4400, 0x400}));
}

TEST(FileProperties, OfAnEntryOfTheRootLieInTheRoot) {
    const FileProperties properties = Read(L"\\Temp");
    EXPECT_EQ(properties.Name(), L"Temp");
    EXPECT_EQ(properties.Location(), L"\\");
    EXPECT_FALSE(properties.HasSize());
    EXPECT_EQ(properties.typeName, L"Folder");
}

TEST(FileProperties, OfABareNameHaveNoLocation) {
    FileProperties properties;
    properties.path = L"coredll.dll";
    EXPECT_EQ(properties.Name(), L"coredll.dll");
    EXPECT_EQ(properties.Location(), L"");
}

TEST(FileProperties, OfSomethingMissingHaveEveryAttributeAndNothingElse) {
    const FileProperties properties = Read(L"\\none\\none.txt");
    EXPECT_EQ(properties.data.dwFileAttributes, 0xFFFFFFFFu);
    EXPECT_EQ(properties.Size(), 0u);
    EXPECT_TRUE(properties.HasSize());
    EXPECT_EQ(properties.data.ftCreationTime.dwLowDateTime, 0u);
    EXPECT_EQ(properties.data.ftLastWriteTime.dwHighDateTime, 0u);
}

TEST(FileProperties, WithoutTheShellHaveNoIconAndNoType) {
    const TemporaryFolder folder;
    const std::wstring path = folder.Path() + L"\\a.lnk";
    ASSERT_TRUE(platform::CreateShortcut(path.c_str(), L"\"\\Temp\""));
    const PlatformHook<decltype(NoFileInfo)> hook("SHGetFileInfoW", NoFileInfo);
    const FileProperties properties = Read(path);
    EXPECT_FALSE(properties.icons);
    EXPECT_EQ(properties.typeName, L"");
    ASSERT_TRUE(properties.shortcut);
    EXPECT_EQ(properties.shortcut->target, L"\\Temp");
    EXPECT_EQ(properties.shortcut->typeName, L"");
}
