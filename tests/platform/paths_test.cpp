#include "platform/desktop/paths.h"

#include <gtest/gtest.h>

#include "platform/processes.h"
#include "tests/support/platform_hook.h"
#include "tests/support/world.h"

using namespace test;
using platform::desktop::FromDesktopPath;
using platform::desktop::ToDesktopPath;

namespace {

// A device whose current folder has no letter.
DWORD WINAPI NoLetter(DWORD size, wchar_t* buffer) {
    const std::wstring folder = L"\\\\server\\share";
    if (size > folder.size()) {
        folder.copy(buffer, folder.size());
        buffer[folder.size()] = 0;
    }
    return static_cast<DWORD>(folder.size());
}

using CurrentFolder = DWORD(DWORD, wchar_t*);

std::wstring modulePath;

DWORD WINAPI TellModulePath(HMODULE, wchar_t* buffer, DWORD size) {
    const size_t length = modulePath.copy(buffer, size);
    if (length < size) {
        buffer[length] = 0;
    }
    return static_cast<DWORD>(length);
}

DWORD WINAPI TellNoModulePath(HMODULE, wchar_t*, DWORD) {
    SetLastError(ERROR_INVALID_HANDLE);
    return 0;
}

// An expanded path that needs more room than paths usually have.
const std::wstring roomyPath = L"C:\\" + std::wstring(300, L'r');

DWORD WINAPI ExpandToRoomyPath(const wchar_t*, wchar_t* buffer, DWORD size) {
    if (size <= roomyPath.size()) {
        return static_cast<DWORD>(roomyPath.size() + 1);
    }
    buffer[roomyPath.copy(buffer, size - 1)] = 0;
    return static_cast<DWORD>(roomyPath.size());
}

using LongPathName = DWORD(const wchar_t*, wchar_t*, DWORD);

using ModuleFileName = DWORD(HMODULE, wchar_t*, DWORD);

}  // namespace

TEST(PathFromAPC, LosesTheLetterOfTheCurrentDrive) {
    EXPECT_EQ(FromDesktopPath(L"C:\\My Documents\\none.txt"), L"\\My Documents\\none.txt");
    EXPECT_EQ(FromDesktopPath(L"c:\\none\\none.txt"), L"\\none\\none.txt");
    EXPECT_EQ(FromDesktopPath(L"C:\\"), L"\\");
}

TEST(PathFromAPC, OfAnyLengthLosesTheLetterOnly) {
    for (const size_t length : {size_t{259}, size_t{300}, size_t{2000}, size_t{40000}}) {
        const std::wstring path = L"\\" + std::wstring(length, L'p');
        EXPECT_EQ(FromDesktopPath(L"C:" + path), path);
    }
}

TEST(PathFromAPC, KeepsTheLetterOfAnotherDrive) {
    EXPECT_EQ(FromDesktopPath(L"X:\\none\\none.txt"), L"X:\\none\\none.txt");
}

TEST(PathFromAPC, KeepsTheNameOfAServer) {
    EXPECT_EQ(FromDesktopPath(L"\\\\server\\share\\a.txt"), L"\\\\server\\share\\a.txt");
}

TEST(PathFromAPC, IsExpandedFromShortNames) {
    const TemporaryFolder folder;
    const std::wstring path = L"C:" + folder.MakeFile(L"a rather long name.document");
    wchar_t shortPath[MAX_PATH] = {};
    ASSERT_NE(GetShortPathNameW(path.c_str(), shortPath, MAX_PATH), 0u);
    ASSERT_NE(path, shortPath);
    EXPECT_EQ(L"C:" + FromDesktopPath(shortPath), path);
}

TEST(PathFromAPC, MayBecomeLongerThanPathsUsuallyAre) {
    const PlatformHook<LongPathName> hook("GetLongPathNameW", ExpandToRoomyPath);
    EXPECT_EQ(FromDesktopPath(L"C:\\ROOMY~1"), roomyPath.substr(2));
}

TEST(PathFromAPC, OfSomethingMissingIsTakenAsItIs) {
    EXPECT_EQ(FromDesktopPath(L"C:\\LONGNA~1\\X~1.TXT"), L"\\LONGNA~1\\X~1.TXT");
    EXPECT_EQ(FromDesktopPath(L""), L"");
}

TEST(PathFromAPC, KeepsEveryLetterWhereTheCurrentFolderHasNone) {
    const PlatformHook<CurrentFolder> hook("GetCurrentDirectoryW", NoLetter);
    EXPECT_EQ(FromDesktopPath(L"C:\\none\\a.txt"), L"C:\\none\\a.txt");
    EXPECT_EQ(ToDesktopPath(L"\\a.txt"), L"\\a.txt");
}

TEST(PathToAPC, GetsTheLetterOfTheCurrentDrive) {
    EXPECT_EQ(ToDesktopPath(L"\\My Documents\\a.txt"), L"C:\\My Documents\\a.txt");
    EXPECT_EQ(ToDesktopPath(L"\\"), L"C:\\");
    EXPECT_EQ(ToDesktopPath(L""), L"C:\\");
}

TEST(PathToAPC, OfAnotherDriveOrServerStaysAsItIs) {
    EXPECT_EQ(ToDesktopPath(L"X:\\a.txt"), L"X:\\a.txt");
    EXPECT_EQ(ToDesktopPath(L"\\\\server\\share\\a.txt"), L"\\\\server\\share\\a.txt");
}

TEST(PathToAPC, FollowsTheCurrentDrive) {
    ASSERT_TRUE(SetCurrentDirectoryW(L"Z:\\"));
    EXPECT_EQ(ToDesktopPath(L"\\tmp"), L"Z:\\tmp");
    EXPECT_EQ(FromDesktopPath(L"Z:\\none"), L"\\none");
    EXPECT_EQ(FromDesktopPath(L"C:\\none"), L"C:\\none");
    ASSERT_TRUE(SetCurrentDirectoryW(L"C:\\"));
}

TEST(ModulePath, IsAHandheldsPath) {
    const PlatformHook<ModuleFileName> hook("GetModuleFileNameW", TellModulePath);
    modulePath = L"C:\\none\\vantor.exe";
    EXPECT_EQ(platform::ModulePath(nullptr), L"\\none\\vantor.exe");
}

TEST(ModulePath, ThatDoesNotFitFails) {
    const PlatformHook<ModuleFileName> hook("GetModuleFileNameW", TellModulePath);
    modulePath = L"C:\\" + std::wstring(300, L'x');
    SetLastError(ERROR_SUCCESS);
    EXPECT_EQ(platform::ModulePath(nullptr), L"");
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INSUFFICIENT_BUFFER));
}

TEST(ModulePath, ThatIsUnknownFailsWithTheLastError) {
    const PlatformHook<ModuleFileName> hook("GetModuleFileNameW", TellNoModulePath);
    EXPECT_EQ(platform::ModulePath(nullptr), L"");
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INVALID_HANDLE));
}

TEST(ImagePaths, AreExpandedWhereTheyHaveShortNames) {
    const test::TemporaryFolder folder;
    const std::wstring file = folder.MakeFile(L"a program with a long name.exe");
    const std::wstring full = L"C:" + file;
    EXPECT_EQ(platform::desktop::FromImagePath(full), file);
    wchar_t shortPath[MAX_PATH] = {};
    ASSERT_NE(GetShortPathNameW(full.c_str(), shortPath, MAX_PATH), 0u);
    EXPECT_EQ(platform::desktop::FromImagePath(shortPath), file);
    EXPECT_EQ(platform::desktop::FromImagePath(L"D:\\a.exe"), L"D:\\a.exe");
}
