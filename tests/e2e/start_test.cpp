#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "platform/handles.h"
#include "res/resource.h"
#include "tests/support/finger.h"
#include "tests/support/hidden_apps_folder.h"
#include "tests/support/program.h"
#include "tests/support/wait.h"
#include "tests/support/windows_seen.h"
#include "tests/support/world.h"

using namespace test;

namespace {

using Entries = std::map<std::wstring, std::wstring>;

// The files and folders below a folder, with their sizes and the times of their last changes.
void AddFiles(const std::wstring& folder, Entries& entries) {
    WIN32_FIND_DATAW found;
    const HANDLE search = FindFirstFileW((folder + L"\\*").c_str(), &found);
    if (search == INVALID_HANDLE_VALUE) {
        return;
    }
    do {
        const std::wstring name = found.cFileName;
        if (name == L"." || name == L"..") {
            continue;
        }
        const std::wstring path = folder + L'\\' + name;
        if (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) {
            entries[path];
            AddFiles(path, entries);
        } else {
            entries[path] = std::to_wstring(found.nFileSizeLow) + L' ' +
                            std::to_wstring(found.ftLastWriteTime.dwHighDateTime) + L' ' +
                            std::to_wstring(found.ftLastWriteTime.dwLowDateTime);
        }
    } while (FindNextFileW(search, &found));
    FindClose(search);
}

// The keys and values below a key.
void AddValues(HKEY root, const std::wstring& path, Entries& entries) {
    platform::UniqueKey key;
    if (RegOpenKeyExW(root, path.c_str(), 0, KEY_READ, key.Receive()) != ERROR_SUCCESS) {
        return;
    }
    entries[path];
    wchar_t name[512];
    BYTE data[2048];
    for (DWORD index = 0;; ++index) {
        DWORD length = 512;
        DWORD size = sizeof data;
        DWORD type = 0;
        const LSTATUS error =
            RegEnumValueW(key.Get(), index, name, &length, nullptr, &type, data, &size);
        if (error == ERROR_NO_MORE_ITEMS) {
            break;
        }
        std::wstring& value = entries[path + L": " + name];
        value = std::to_wstring(type) + L' ' + std::to_wstring(size);
        for (DWORD byte = 0; error == ERROR_SUCCESS && byte < size; ++byte) {
            value += static_cast<wchar_t>(L'A' + data[byte] / 16);
            value += static_cast<wchar_t>(L'A' + data[byte] % 16);
        }
    }
    for (DWORD index = 0;; ++index) {
        DWORD length = 512;
        if (RegEnumKeyExW(key.Get(), index, name, &length, nullptr, nullptr, nullptr, nullptr) !=
            ERROR_SUCCESS) {
            return;
        }
        AddValues(root, path + L'\\' + name, entries);
    }
}

// What the device keeps that a program may leave something in. The folder of the system itself is
// left out.
Entries Kept() {
    Entries entries;
    for (const wchar_t* folder :
         {L"\\My Documents", L"\\Program Files", L"\\Temp", L"\\users", L"\\Storage Card"}) {
        AddFiles(folder, entries);
    }
    AddValues(HKEY_LOCAL_MACHINE, L"Software\\Kelmor", entries);
    AddValues(HKEY_CURRENT_USER, L"Software", entries);
    return entries;
}

}  // namespace

TEST(Start, AFreshDeviceOpensOnTheRootOfFiles) {
    const CleanSettings settings;
    Program program;
    ASSERT_TRUE(program.WaitForMainWindow());
    EXPECT_TRUE(WaitFor([&] { return TextOf(program.MainWindow()) == L"\\"; }));
    EXPECT_FALSE(CleanSettings::Number(L"view"));
    EXPECT_FALSE(CleanSettings::Number(L"flags"));
}

TEST(Start, AFingerOpensAFolder) {
    const CleanSettings settings;
    Program program;
    ASSERT_TRUE(program.WaitForMainWindow());
    const HWND list = FindChild(program.MainWindow(), L"kx::TouchList");
    ASSERT_TRUE(list);
    ASSERT_TRUE(Finger().Tap(OnScreen(list, 60, 20)).Play());
    EXPECT_TRUE(WaitFor([&] { return TextOf(program.MainWindow()) == L"\\My Documents"; }));
}

TEST(Start, QuittingKeepsViewFlagsAndFolder) {
    const CleanSettings settings;
    CleanSettings::SetNumber(L"flags", 4);
    {
        Program program(L"-status");
        ASSERT_TRUE(program.WaitForMainWindow());
        EXPECT_TRUE(WaitFor([&] { return TextOf(program.MainWindow()) == L"System Status"; }));
        PostMessageW(program.MainWindow(), WM_COMMAND, ID_EXIT, 0);
        EXPECT_EQ(program.WaitForExit(), 0u);
    }
    EXPECT_EQ(CleanSettings::Number(L"view"), 3u);
    EXPECT_EQ(CleanSettings::Number(L"flags"), 4u);
    EXPECT_EQ(CleanSettings::Text(L"path"), L"");
}

TEST(Start, ARunLeavesNothingButItsSettings) {
    const CleanSettings settings;
    const HiddenAppsFolder hiddenApps;
    const Entries before = Kept();
    ASSERT_FALSE(before.empty());
    {
        Program program;
        ASSERT_TRUE(program.WaitForMainWindow());
        for (const char* key : {"2", "3", "4", "1"}) {
            ASSERT_TRUE(Finger().Key(key).Play());
        }
        EXPECT_EQ(program.Close(), 0u);
    }
    std::vector<std::wstring> changed;
    Entries after = Kept();
    for (const auto& [name, content] : before) {
        const auto found = after.find(name);
        if (found == after.end() || found->second != content) {
            changed.push_back(name);
        }
        after.erase(name);
    }
    for (const auto& [name, content] : after) {
        changed.push_back(name);
    }
    EXPECT_EQ(changed, (std::vector<std::wstring>{L"Software\\Kelmor", L"Software\\Kelmor\\vantor",
                                                  L"Software\\Kelmor\\vantor: flags",
                                                  L"Software\\Kelmor\\vantor: path",
                                                  L"Software\\Kelmor\\vantor: view"}));
}

TEST(Start, WithoutItsFirstBlocksOfMemoryIsTold) {
    if (!RunsOnHandheld()) {
        GTEST_SKIP() << "a PC's runtime needs the first ones for itself";
    }
    const CleanSettings settings;
    // What exceptions are made of when there is no other memory comes first; it can do without.
    constexpr unsigned firstOwn = 2;
    const Program program(L"", FailingCall{"LocalAlloc", 0, ERROR_NOT_ENOUGH_MEMORY, firstOwn});
    const HWND box = WaitForWindow(L"#32770", true);
    ASSERT_TRUE(box);
    EXPECT_EQ(TextOf(box), L"Application execution failed.");
    EXPECT_TRUE(Finger().Key("Return").In(box).Play());
    EXPECT_EQ(program.WaitForExit(), 0u);
}
