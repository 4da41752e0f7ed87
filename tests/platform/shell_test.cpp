#include "platform/shell.h"

#include <gtest/gtest.h>
#include <objbase.h>
#include <shlobj.h>

#include "platform/shortcuts.h"
#include "tests/support/platform_hook.h"
#include "tests/support/wait.h"
#include "tests/support/world.h"

using namespace test;
using platform::OpenFile;
using platform::SpecialFolder;

namespace {

std::wstring parametersAsked;
std::wstring fileAsked;
BOOL WINAPI NoteExecution(SHELLEXECUTEINFOW* info) {
    fileAsked = info->lpFile;
    parametersAsked = info->lpParameters ? info->lpParameters : L"(none)";
    return TRUE;
}

BOOL WINAPI NoFolder(HWND, LPWSTR, int, BOOL) {
    return FALSE;
}

bool EndProgramShowing(const std::wstring& title) {
    HWND window = nullptr;
    if (!WaitFor([&] { return (window = FindWindowW(nullptr, title.c_str())) != nullptr; })) {
        return false;
    }
    PostMessageW(window, WM_CLOSE, 0, 0);
    return WaitFor([&] { return !IsWindow(window); });
}

}  // namespace

TEST(OpenedFile, GetsTheLetterOfTheDriveAsDoesItsArgument) {
    const PlatformHook<decltype(NoteExecution)> hook("ShellExecuteExW", NoteExecution);
    EXPECT_TRUE(OpenFile(L"\\Program Files\\a b.exe", L"\\My Documents\\c d.txt"));
    EXPECT_EQ(fileAsked, L"C:\\Program Files\\a b.exe");
    EXPECT_EQ(parametersAsked, L"C:\\My Documents\\c d.txt");
    EXPECT_TRUE(OpenFile(L"X:\\a.txt", nullptr));
    EXPECT_EQ(fileAsked, L"X:\\a.txt");
    EXPECT_EQ(parametersAsked, L"(none)");
}

TEST(OpenedFile, ThatIsAShortcutOpensItsTargetAndLeavesCOMAsItWas) {
    const TemporaryFolder folder;
    for (const wchar_t* name : {L"first document.txt", L"second document.txt"}) {
        const std::wstring shortcut = folder.Path() + L"\\" + name + L".lnk";
        const std::wstring command = L'"' + folder.MakeFile(name) + L'"';
        ASSERT_TRUE(platform::CreateShortcut(shortcut.c_str(), command.c_str()));
        EXPECT_TRUE(OpenFile(shortcut.c_str(), nullptr)) << GetLastError();
        EXPECT_TRUE(EndProgramShowing(std::wstring(name) + L" - Notepad"));
        APTTYPE type;
        APTTYPEQUALIFIER qualifier;
        EXPECT_HRESULT_SUCCEEDED(CoGetApartmentType(&type, &qualifier));
        EXPECT_EQ(type, APTTYPE_MTA);
    }
}

TEST(OpenedFile, FailsWithTheReason) {
    const TemporaryFolder folder;
    EXPECT_FALSE(OpenFile(L"\\none.txt", nullptr));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_FILE_NOT_FOUND));
    EXPECT_FALSE(OpenFile(folder.MakeFile(L"a.zzz").c_str(), nullptr));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_NO_ASSOCIATION));
    EXPECT_FALSE(OpenFile((L"\\" + std::wstring(300, L'x')).c_str(), nullptr));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_FILENAME_EXCED_RANGE));
    EXPECT_FALSE(OpenFile(folder.MakeFile(L"empty.lnk").c_str(), nullptr));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_NO_ASSOCIATION));
}

TEST(SpecialFolder, IsAHandheldsPath) {
    EXPECT_EQ(SpecialFolder(nullptr, CSIDL_WINDOWS), L"\\windows");
    EXPECT_EQ(SpecialFolder(nullptr, CSIDL_PROGRAM_FILES), L"\\Program Files");
}

TEST(SpecialFolder, IsEmptyWhereThereIsNone) {
    const PlatformHook<decltype(NoFolder)> hook("SHGetSpecialFolderPathW", NoFolder);
    EXPECT_EQ(SpecialFolder(nullptr, CSIDL_WINDOWS), L"");
}
