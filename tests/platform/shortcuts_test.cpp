#include "platform/shortcuts.h"

#include <gtest/gtest.h>
#include <objbase.h>
#include <shlobj.h>

#include <algorithm>
#include <string>
#include <utility>

#include "platform/handles.h"
#include "tests/support/platform_hook.h"
#include "tests/support/world.h"

using namespace test;
using platform::CommandPath;
using platform::CreateShortcut;
using platform::ShortcutTarget;

namespace {

constexpr size_t capacity = 780;

// The command that a shortcut holds; "(none)" when it cannot be told.
std::wstring CommandOf(const std::wstring& shortcut, size_t room = capacity) {
    return ShortcutTarget(shortcut.c_str(), room).value_or(L"(none)");
}

std::wstring Kept(const std::wstring& command) {
    const TemporaryFolder folder;
    const std::wstring shortcut = folder.Path() + L"\\a.lnk";
    EXPECT_TRUE(CreateShortcut(shortcut.c_str(), command.c_str())) << GetLastError();
    return CommandOf(shortcut);
}

// A shortcut as another program of a PC opens it.
class ForeignShortcut {
 public:
    explicit ForeignShortcut(const std::wstring& path) : path_(L"C:" + path) {
        EXPECT_HRESULT_SUCCEEDED(CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER,
                                                  IID_IShellLinkW,
                                                  reinterpret_cast<void**>(link_.Receive())));
        EXPECT_HRESULT_SUCCEEDED(
            link_->QueryInterface(IID_IPersistFile, reinterpret_cast<void**>(file_.Receive())));
    }
    IShellLinkW* operator->() const { return link_.Get(); }
    void Load() { EXPECT_HRESULT_SUCCEEDED(file_->Load(path_.c_str(), STGM_READ)); }
    void Save() { EXPECT_HRESULT_SUCCEEDED(file_->Save(path_.c_str(), TRUE)); }

 private:
    std::wstring path_;
    platform::ComPointer<IShellLinkW> link_;
    platform::ComPointer<IPersistFile> file_;
};

HRESULT WINAPI NoObject(REFCLSID, IUnknown*, DWORD, REFIID, void**) {
    return REGDB_E_CLASSNOTREG;
}

// A shell link whose GetPath notes how it was asked.
decltype(CoCreateInstance)* createObject = nullptr;
constexpr size_t methodsOfLink = 21;
constexpr size_t getPath = 3;
void* methods[methodsOfLink] = {};
void* realGetPath = nullptr;
DWORD pathKind = ~0u;
HRESULT WINAPI NoteGetPath(IShellLinkW* link, wchar_t* path, int size, WIN32_FIND_DATAW* found,
                           DWORD kind) {
    pathKind = kind;
    return reinterpret_cast<decltype(&NoteGetPath)>(realGetPath)(link, path, size, found, kind);
}
HRESULT WINAPI CreateNotedLink(REFCLSID kind, IUnknown* outer, DWORD context, REFIID face,
                               void** object) {
    const HRESULT result = createObject(kind, outer, context, face, object);
    if (SUCCEEDED(result) && face == IID_IShellLinkW) {
        void*** const table = static_cast<void***>(*object);
        std::copy_n(*table, methodsOfLink, methods);
        realGetPath = std::exchange(methods[getPath], reinterpret_cast<void*>(NoteGetPath));
        *table = methods;
    }
    return result;
}

}  // namespace

TEST(CommandPath, IsWhatStandsInQuotes) {
    EXPECT_EQ(CommandPath(L"\"\\My Documents\\a b.txt\" -x"), L"\\My Documents\\a b.txt");
    EXPECT_EQ(CommandPath(L"  \"\\a b\""), L"\\a b");
    EXPECT_EQ(CommandPath(L"\"\\a b"), L"\\a b");
    EXPECT_EQ(CommandPath(L"\"\\a\"b\""), L"\\a");
    EXPECT_EQ(CommandPath(L"\" \\a\""), L" \\a");
}

TEST(CommandPath, WithoutQuotesIsTheFirstWord) {
    EXPECT_EQ(CommandPath(L"\\Windows\\calc.exe -x \"y\""), L"\\Windows\\calc.exe");
    EXPECT_EQ(CommandPath(L"  calc.exe"), L"calc.exe");
    EXPECT_EQ(CommandPath(L"a\"b c"), L"a\"b");
}

TEST(CommandPath, OfNothingIsEmpty) {
    for (const wchar_t* command : {L"", L"   ", L"\"\"", L"\"", L"\"\" \\a", L"  \"\" "}) {
        EXPECT_TRUE(CommandPath(command).empty()) << command;
    }
}

TEST(Shortcut, KeepsItsCommandAsGiven) {
    for (const wchar_t* command :
         {L"\"\\My Documents\\a b.txt\"", L"\"\\My Documents\\a b.txt\" -x  \"y z\"",
          L"\\Windows\\calc.exe", L"\\Windows\\calc.exe -x", L"calc.exe", L"none.exe  one two",
          L"\"\\none\\none.txt\"", L"  \"\\none.txt\"", L"\"\\", L"\"X:\\a b.txt\" c",
          L"\"\\\\server\\share\\a.txt\"", L"\"\\Temp\"", L"sub\\calc.exe"}) {
        EXPECT_EQ(Kept(command), command);
    }
}

TEST(Shortcut, KeepsAnEmptyCommand) {
    EXPECT_EQ(Kept(L""), L"");
}

TEST(Shortcut, IsOneForOtherProgramsToo) {
    const TemporaryFolder folder;
    const std::wstring document = folder.MakeFile(L"a b.txt");
    const std::wstring path = folder.Path() + L"\\a.lnk";
    ASSERT_TRUE(CreateShortcut(path.c_str(), (L'"' + document + L"\" -x \"y\"").c_str()));
    ForeignShortcut shortcut(path);
    shortcut.Load();
    wchar_t text[MAX_PATH] = {};
    EXPECT_EQ(shortcut->GetPath(text, MAX_PATH, nullptr, 0), S_OK);
    EXPECT_EQ(text, L"C:" + document);
    EXPECT_EQ(shortcut->GetArguments(text, MAX_PATH), S_OK);
    EXPECT_STREQ(text, L"-x \"y\"");
}

TEST(Shortcut, ToABareNameLeadsToTheWindowsFolder) {
    const TemporaryFolder folder;
    const std::wstring path = folder.Path() + L"\\a.lnk";
    ASSERT_TRUE(CreateShortcut(path.c_str(), L"notepad.exe"));
    ForeignShortcut shortcut(path);
    shortcut.Load();
    wchar_t text[MAX_PATH] = {};
    shortcut->GetPath(text, MAX_PATH, nullptr, 0);
    EXPECT_STRCASEEQ(std::string(text, text + wcslen(text)).c_str(), "C:\\windows\\notepad.exe");
}

TEST(Shortcut, OfAnotherProgramIsReadAsACommand) {
    const TemporaryFolder folder;
    const std::wstring document = folder.MakeFile(L"a b.txt");
    const std::wstring path = folder.Path() + L"\\a.lnk";
    ForeignShortcut shortcut(path);
    shortcut->SetPath((L"C:" + document).c_str());
    shortcut->SetDescription(L"My letter");
    shortcut.Save();
    EXPECT_EQ(CommandOf(path), L'"' + document + L'"');
    shortcut->SetArguments(L"one two");
    shortcut.Save();
    EXPECT_EQ(CommandOf(path), L'"' + document + L"\" one two");
}

TEST(Shortcut, ThatAnotherProgramChangedTellsTheNewCommand) {
    const TemporaryFolder folder;
    const std::wstring document = folder.MakeFile(L"b.txt");
    const std::wstring path = folder.Path() + L"\\a.lnk";
    ASSERT_TRUE(CreateShortcut(path.c_str(), L"\"\\Temp\\a.txt\" x"));
    ForeignShortcut shortcut(path);
    shortcut.Load();
    shortcut->SetPath((L"C:" + document).c_str());
    shortcut.Save();
    EXPECT_EQ(CommandOf(path), L'"' + document + L"\" x");
}

TEST(Shortcut, DoesNotReplaceAFile) {
    const TemporaryFolder folder;
    const std::wstring path = folder.MakeFile(L"a.lnk", "kept");
    EXPECT_FALSE(CreateShortcut(path.c_str(), L"\"\\a.txt\""));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_FILE_EXISTS));
    WIN32_FILE_ATTRIBUTE_DATA data = {};
    ASSERT_TRUE(GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &data));
    EXPECT_EQ(data.nFileSizeLow, 4u);
}

TEST(Shortcut, InAFolderThatIsNotThereFails) {
    SetLastError(ERROR_SUCCESS);
    EXPECT_FALSE(CreateShortcut(L"\\none\\none\\a.lnk", L"\"\\a.txt\""));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_PATH_NOT_FOUND));
}

TEST(Shortcut, WithAnOverlongCommandFails) {
    const TemporaryFolder folder;
    const std::wstring path = folder.Path() + L"\\a.lnk";
    EXPECT_FALSE(CreateShortcut(path.c_str(), (L"\"\\" + std::wstring(300, L'x')).c_str()));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_FILENAME_EXCED_RANGE));
    // One character more than a path of a PC has, which begins with its drive.
    const std::wstring tooLong = L"\"\\" + std::wstring(MAX_PATH - 3, L'x') + L'"';
    SetLastError(ERROR_SUCCESS);
    EXPECT_FALSE(CreateShortcut(path.c_str(), tooLong.c_str()));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_FILENAME_EXCED_RANGE));
    EXPECT_FALSE(CreateShortcut(path.c_str(), (L"\\a " + std::wstring(1100, L'x')).c_str()));
    EXPECT_EQ(GetFileAttributesW(path.c_str()), INVALID_FILE_ATTRIBUTES);
}

TEST(Shortcut, TellsTheLongPathAndNotTheShortOne) {
    const PlatformHook<decltype(CreateNotedLink)> hook("CoCreateInstance", CreateNotedLink);
    createObject = hook.Original();
    EXPECT_EQ(Kept(L"\"\\Program Files\\a.exe\""), L"\"\\Program Files\\a.exe\"");
    EXPECT_EQ(pathKind, 0u);
}

TEST(Shortcut, WhoseCommandDoesNotFitIsNotRead) {
    const TemporaryFolder folder;
    const std::wstring path = folder.Path() + L"\\a.lnk";
    const std::wstring command = L"\\a " + std::wstring(777, L'x');
    ASSERT_TRUE(CreateShortcut(path.c_str(), command.c_str()));
    EXPECT_EQ(CommandOf(path, 780), L"(none)");
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INSUFFICIENT_BUFFER));
    EXPECT_EQ(CommandOf(path, 781), command);
}

TEST(Shortcut, IsNeitherAnotherFileNorAFolderNorNothing) {
    const TemporaryFolder folder;
    EXPECT_EQ(CommandOf(folder.MakeFile(L"a.txt", "Some text that is no shortcut.")), L"(none)");
    EXPECT_EQ(CommandOf(folder.MakeFile(L"empty.lnk")), L"(none)");
    EXPECT_EQ(CommandOf(folder.MakeFile(L"text.lnk", "10#\\a.txt")), L"(none)");
    EXPECT_EQ(CommandOf(folder.MakeFolder(L"folder.lnk")), L"(none)");
    EXPECT_EQ(CommandOf(folder.Path() + L"\\none.lnk"), L"(none)");
}

TEST(Shortcut, FailsWithTheLastErrorWhereTheShellHasNone) {
    const TemporaryFolder folder;
    const std::wstring path = folder.Path() + L"\\a.lnk";
    const PlatformHook<decltype(NoObject)> hook("CoCreateInstance", NoObject);
    EXPECT_FALSE(CreateShortcut(path.c_str(), L"\"\\a.txt\""));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(REGDB_E_CLASSNOTREG));
    SetLastError(ERROR_SUCCESS);
    EXPECT_EQ(CommandOf(path), L"(none)");
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(REGDB_E_CLASSNOTREG));
}
