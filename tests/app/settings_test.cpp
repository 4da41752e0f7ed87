#include "app/settings.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "faults/fault.h"
#include "platform/handles.h"
#include "tests/support/platform_hook.h"
#include "tests/support/world.h"

using namespace test;
using app::ReadNumber;
using app::ReadText;
using app::WriteNumber;
using app::WriteText;

namespace {

using CreateKey = LONG(HKEY, const wchar_t*, DWORD, wchar_t*, DWORD, REGSAM, SECURITY_ATTRIBUTES*,
                       HKEY*, DWORD*);
using SetValue = LONG(HKEY, const wchar_t*, DWORD, DWORD, const BYTE*, DWORD);

CreateKey* createKey = nullptr;
LONG machineKeyError = 0;

// The machine's key cannot be made; every other can.
LONG WINAPI CreateUserKeyOnly(HKEY root, const wchar_t* path, DWORD reserved, wchar_t* className,
                              DWORD options, REGSAM access, SECURITY_ATTRIBUTES* security,
                              HKEY* key, DWORD* disposition) {
    if (root == HKEY_LOCAL_MACHINE) {
        return machineKeyError;
    }
    return createKey(root, path, reserved, className, options, access, security, key, disposition);
}

LONG WINAPI FailToSet(HKEY, const wchar_t*, DWORD, DWORD, const BYTE*, DWORD) {
    return ERROR_DISK_FULL;
}

// The rights that were asked for, by the key's path.
std::vector<std::pair<std::wstring, REGSAM>> opened;
std::vector<std::pair<std::wstring, REGSAM>> created;

decltype(RegOpenKeyExW)* openKey = nullptr;
LSTATUS WINAPI NoteOpened(HKEY root, LPCWSTR path, DWORD options, REGSAM access, PHKEY key) {
    opened.emplace_back(path, access);
    return openKey(root, path, options, access, key);
}

LONG WINAPI NoteCreated(HKEY root, const wchar_t* path, DWORD reserved, wchar_t* className,
                        DWORD options, REGSAM access, SECURITY_ATTRIBUTES* security, HKEY* key,
                        DWORD* disposition) {
    created.emplace_back(path, access);
    return createKey(root, path, reserved, className, options, access, security, key, disposition);
}

HRESULT CodeOf(void (*action)()) {
    try {
        action();
    } catch (const faults::W32Fault& fault) {
        return fault.Code();
    }
    return S_OK;
}

class Settings : public testing::Test {
 protected:
    const CleanSettings settings;
};

// A PC whose user may not write the machine's key.
class SettingsOfAUser : public Settings {
 protected:
    SettingsOfAUser() {
        machineKeyError = ERROR_ACCESS_DENIED;
        createKey = hook.Original();
    }
    const PlatformHook<CreateKey> hook{"RegCreateKeyExW", CreateUserKeyOnly};
};

}  // namespace

TEST_F(Settings, AreAbsentOnAFreshDevice) {
    EXPECT_FALSE(ReadNumber(L"view"));
    EXPECT_FALSE(ReadText(L"path"));
    EXPECT_FALSE(ReadText(L"Software\\Kelmor\\vantor\\mui", L"vantor.exe.0407.ui"));
}

TEST_F(Settings, AreNotMadeByReading) {
    ReadNumber(L"view");
    ReadText(L"path");
    platform::UniqueKey key;
    EXPECT_EQ(RegOpenKeyExW(HKEY_LOCAL_MACHINE, L"Software\\Kelmor", 0, KEY_READ, key.Receive()),
              ERROR_FILE_NOT_FOUND);
}

TEST_F(Settings, AskForTheRightsOfReadingOrForAll) {
    const PlatformHook<decltype(NoteOpened)> open("RegOpenKeyExW", NoteOpened);
    const PlatformHook<CreateKey> create("RegCreateKeyExW", NoteCreated);
    openKey = open.Original();
    createKey = create.Original();
    opened.clear();
    created.clear();
    ReadNumber(L"view");
    ReadText(L"path");
    EXPECT_TRUE(created.empty());
    EXPECT_FALSE(opened.empty());
    for (const auto& [path, access] : opened) {
        EXPECT_EQ(path, L"Software\\Kelmor\\vantor");
        EXPECT_EQ(access, 0x20019u);
    }
    WriteNumber(L"view", 1);
    WriteText(L"path", L"x");
    ASSERT_EQ(created.size(), 2u);
    for (const auto& [path, access] : created) {
        EXPECT_EQ(path, L"Software\\Kelmor\\vantor");
        EXPECT_EQ(access, 0xF003Fu);
    }
}

TEST_F(Settings, AreAbsentWhenOnlyOthersAreStored) {
    CleanSettings::SetNumber(L"flags", 1);
    EXPECT_FALSE(ReadNumber(L"view"));
    EXPECT_FALSE(ReadText(L"path"));
}

TEST_F(Settings, KeepNumbersInTheDevicesKey) {
    WriteNumber(L"flags", 0x2001);
    EXPECT_EQ(CleanSettings::Number(L"flags"), 0x2001u);
    EXPECT_EQ(ReadNumber(L"flags"), 0x2001u);
    WriteNumber(L"flags", 0xFFFFFFFF);
    EXPECT_EQ(ReadNumber(L"flags"), 0xFFFFFFFFu);
}

TEST_F(Settings, KeepTexts) {
    WriteText(L"path", L"\\My Documents");
    EXPECT_EQ(CleanSettings::Text(L"path"), L"\\My Documents");
    EXPECT_EQ(ReadText(L"path"), L"\\My Documents");
    WriteText(L"path", L"");
    EXPECT_EQ(ReadText(L"path"), L"");
    const std::wstring longText(1000, L'x');
    WriteText(L"path", longText);
    EXPECT_EQ(ReadText(L"path"), longText);
}

// A byte more would be whatever lies behind the text.
TEST_F(Settings, TextsAreStoredWithOneEnd) {
    WriteText(L"path", L"\\a");
    DWORD size = 0;
    EXPECT_EQ(RegGetValueW(HKEY_LOCAL_MACHINE, L"Software\\Kelmor\\vantor", L"path", RRF_RT_REG_SZ,
                           nullptr, nullptr, &size),
              ERROR_SUCCESS);
    EXPECT_EQ(size, 3 * sizeof(wchar_t));
}

TEST_F(Settings, HaveOneTypeEach) {
    WriteText(L"text", L"12");
    EXPECT_FALSE(ReadNumber(L"text"));
    WriteNumber(L"number", 65);
    EXPECT_FALSE(ReadText(L"number"));
    CleanSettings::SetRaw(L"bytes", REG_BINARY, "abcd", 4);
    EXPECT_FALSE(ReadNumber(L"bytes"));
    EXPECT_FALSE(ReadText(L"bytes"));
    CleanSettings::SetRaw(L"expanding", REG_EXPAND_SZ, L"abc", 8);
    EXPECT_FALSE(ReadText(L"expanding"));
}

TEST_F(Settings, OfAWrongLengthAreAbsent) {
    CleanSettings::SetRaw(L"short", REG_DWORD, "ab", 2);
    EXPECT_FALSE(ReadNumber(L"short"));
    CleanSettings::SetRaw(L"long", REG_DWORD, "abcdefgh", 8);
    EXPECT_FALSE(ReadNumber(L"long"));
    CleanSettings::SetRaw(L"empty", REG_DWORD, "", 0);
    EXPECT_FALSE(ReadNumber(L"empty"));
}

TEST_F(Settings, TextsNeedNoEnd) {
    CleanSettings::SetRaw(L"path", REG_SZ, L"\\abc", 8);
    EXPECT_EQ(ReadText(L"path"), L"\\abc");
    CleanSettings::SetRaw(L"path", REG_SZ, L"", 0);
    EXPECT_EQ(ReadText(L"path"), L"");
}

TEST_F(Settings, TextsEndAtTheirFirstEnd) {
    CleanSettings::SetRaw(L"path", REG_SZ, L"ab\0cd", 12);
    EXPECT_EQ(ReadText(L"path"), L"ab");
}

TEST_F(Settings, ThatCannotBeMadeAreAFault) {
    const PlatformHook<CreateKey> hook("RegCreateKeyExW", CreateUserKeyOnly);
    createKey = hook.Original();
    machineKeyError = ERROR_DISK_FULL;
    EXPECT_EQ(CodeOf([] { WriteNumber(L"view", 1); }), static_cast<HRESULT>(0x80070070));
    EXPECT_EQ(CodeOf([] { WriteText(L"path", L"x"); }), static_cast<HRESULT>(0x80070070));
}

TEST_F(Settings, ThatCannotBeSetAreAFault) {
    const PlatformHook<SetValue> hook("RegSetValueExW", FailToSet);
    EXPECT_EQ(CodeOf([] { WriteNumber(L"view", 1); }), static_cast<HRESULT>(0x80070070));
    EXPECT_EQ(CodeOf([] { WriteText(L"path", L"x"); }), static_cast<HRESULT>(0x80070070));
}

TEST_F(Settings, GiveTheirKeysBack) {
    WriteNumber(L"view", 1);
    WriteText(L"path", L"x");
    const Held before = CountHeld();
    const PlatformHook<SetValue> hook("RegSetValueExW", FailToSet);
    for (int round = 0; round < 20; ++round) {
        ReadNumber(L"view");
        ReadText(L"path");
        ReadText(L"missing");
        CodeOf([] { WriteNumber(L"view", 2); });
    }
    EXPECT_EQ(CountHeld(), before);
}

TEST_F(SettingsOfAUser, AreKeptUnderTheUsersKey) {
    WriteNumber(L"view", 3);
    WriteText(L"path", L"\\Temp");
    EXPECT_FALSE(CleanSettings::Number(L"view"));
    DWORD value = 0;
    DWORD size = sizeof value;
    EXPECT_EQ(RegGetValueW(HKEY_CURRENT_USER, L"Software\\Kelmor\\vantor", L"view",
                           RRF_RT_REG_DWORD, nullptr, &value, &size),
              ERROR_SUCCESS);
    EXPECT_EQ(value, 3u);
    EXPECT_EQ(ReadNumber(L"view"), 3u);
    EXPECT_EQ(ReadText(L"path"), L"\\Temp");
}

TEST_F(SettingsOfAUser, BeginWithTheMachines) {
    const auto setForMachine = [](const wchar_t* name, DWORD value) {
        RegSetKeyValueW(HKEY_LOCAL_MACHINE, L"Software\\Kelmor\\vantor", name, REG_DWORD, &value,
                        sizeof value);
    };
    setForMachine(L"langid", 0x0407);
    setForMachine(L"view", 1);
    WriteNumber(L"view", 2);
    EXPECT_EQ(ReadNumber(L"view"), 2u);
    EXPECT_EQ(ReadNumber(L"langid"), 0x0407u);
    // From there on they are the user's.
    setForMachine(L"langid", 0x040C);
    EXPECT_EQ(ReadNumber(L"langid"), 0x0407u);
}

TEST_F(SettingsOfAUser, StayThereWhenTheMachinesKeyCanBeWrittenAgain) {
    WriteNumber(L"view", 3);
    machineKeyError = ERROR_DISK_FULL;
    WriteNumber(L"view", 2);
    EXPECT_EQ(ReadNumber(L"view"), 2u);
    EXPECT_FALSE(CleanSettings::Number(L"view"));
}

TEST_F(SettingsOfAUser, ThatCannotBeSetAreAFault) {
    const PlatformHook<SetValue> failing("RegSetValueExW", FailToSet);
    EXPECT_EQ(CodeOf([] { WriteNumber(L"view", 1); }), static_cast<HRESULT>(0x80070070));
}
