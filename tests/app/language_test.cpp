#include "app/language.h"

#include <gtest/gtest.h>

#include "app/settings.h"
#include "faults/fault.h"
#include "platform/handles.h"
#include "tests/support/platform_hook.h"
#include "tests/support/resource_module.h"
#include "tests/support/world.h"
#include "text/resources.h"

using namespace test;
using app::ChooseLanguage;
using app::LoadLanguage;

namespace {

constexpr LANGID german = 0x0407;
constexpr LANGID french = 0x040C;
constexpr UINT okText = 131;

std::wstring programPath;

DWORD WINAPI TellProgramPath(HMODULE, wchar_t* buffer, DWORD size) {
    if (programPath.empty()) {
        SetLastError(ERROR_NOT_ENOUGH_MEMORY);
        return 0;
    }
    programPath.copy(buffer, size);
    buffer[programPath.size()] = 0;
    return static_cast<DWORD>(programPath.size());
}

std::vector<HMODULE> freed;
BOOL(WINAPI* freeLibrary)(HMODULE) = nullptr;

BOOL WINAPI NoteFreed(HMODULE module) {
    freed.push_back(module);
    return freeLibrary(module);
}

LCID WINAPI GermanUser() {
    return 0x00010407;
}

// A program in a folder of its own, whose packs stand beside it.
class LanguagePacks : public testing::Test {
 protected:
    LanguagePacks() {
        programPath = L"C:" + folder.Path() + L"\\vantor.exe";
        freed.clear();
        freeLibrary = freeHook.Original();
    }
    ~LanguagePacks() override {
        const HMODULE pack = text::ResourceModule();
        text::SetProgramModule(text::ProgramModule());
        if (pack != text::ProgramModule()) {
            FreeLibrary(pack);
        }
    }

    void MakePack(const std::wstring& name, LANGID language, const std::wstring& ok) {
        ResourceModule(language).Text(okText, ok).Write(folder.Path() + L"\\" + name);
    }
    static void SetOverride(const wchar_t* name, DWORD type, const void* data, size_t size) {
        platform::UniqueKey key;
        ASSERT_EQ(RegCreateKeyExW(HKEY_LOCAL_MACHINE, app::languagePacksKey, 0, nullptr, 0,
                                  KEY_ALL_ACCESS, nullptr, key.Receive(), nullptr),
                  ERROR_SUCCESS);
        ASSERT_EQ(RegSetValueExW(key.Get(), name, 0, type, static_cast<const BYTE*>(data),
                                 static_cast<DWORD>(size)),
                  ERROR_SUCCESS);
    }
    static void SetOverride(const std::wstring& path, DWORD type = REG_SZ) {
        SetOverride(L"vantor.exe.0407.ui", type, path.c_str(), (path.size() + 1) * 2);
    }
    static std::wstring Ok() { return std::wstring(text::LoadText(okText)); }

    const CleanSettings settings;
    const TemporaryFolder folder;
    const PlatformHook<DWORD(HMODULE, wchar_t*, DWORD)> pathHook{"GetModuleFileNameW",
                                                                 TellProgramPath};
    const PlatformHook<BOOL(HMODULE)> freeHook{"FreeLibrary", NoteFreed};
};

}  // namespace

TEST(LanguagePackName, IsTheProgramsPathAndFourLowerCaseDigits) {
    EXPECT_EQ(app::PackPath(L"\\Program Files\\Vantor\\vantor.exe", german),
              L"\\Program Files\\Vantor\\vantor.exe.0407.ui");
    EXPECT_EQ(app::PackPath(L"\\v.exe", 0x0C0A), L"\\v.exe.0c0a.ui");
    EXPECT_EQ(app::PackPath(L"\\v.exe", 0), L"\\v.exe.0000.ui");
    EXPECT_EQ(app::PackPath(L"\\v.exe", 0xFFFF), L"\\v.exe.ffff.ui");
}

TEST_F(LanguagePacks, AreNotLoadedForTheLanguageInUse) {
    MakePack(L"vantor.exe.0409.ui", 0x0409, L"Okay");
    EXPECT_TRUE(LoadLanguage(0x0409));
    EXPECT_EQ(Ok(), L"Ok");
    EXPECT_EQ(text::ResourceModule(), text::ProgramModule());
}

TEST_F(LanguagePacks, AreFoundBesideTheProgram) {
    MakePack(L"vantor.exe.0407.ui", german, L"Gut");
    EXPECT_TRUE(LoadLanguage(german));
    EXPECT_EQ(Ok(), L"Gut");
    EXPECT_EQ(text::Language(), german);
    EXPECT_TRUE(freed.empty());
}

TEST_F(LanguagePacks, ThatAreMissingChangeNothing) {
    EXPECT_FALSE(LoadLanguage(german));
    EXPECT_FALSE(LoadLanguage(0));
    EXPECT_EQ(Ok(), L"Ok");
    EXPECT_EQ(text::Language(), 0x0409);
}

TEST_F(LanguagePacks, ThatAreBrokenChangeNothing) {
    folder.MakeFile(L"vantor.exe.0407.ui", "this is no module");
    folder.MakeFolder(L"vantor.exe.040c.ui");
    EXPECT_FALSE(LoadLanguage(german));
    EXPECT_FALSE(LoadLanguage(french));
    EXPECT_EQ(Ok(), L"Ok");
    EXPECT_EQ(text::ResourceModule(), text::ProgramModule());
}

TEST_F(LanguagePacks, InUseStayWhenAnotherIsMissing) {
    MakePack(L"vantor.exe.0407.ui", german, L"Gut");
    EXPECT_TRUE(LoadLanguage(german));
    EXPECT_FALSE(LoadLanguage(french));
    EXPECT_EQ(Ok(), L"Gut");
    EXPECT_EQ(text::Language(), german);
    EXPECT_TRUE(freed.empty());
}

TEST_F(LanguagePacks, InUseAreNotLoadedAgain) {
    MakePack(L"vantor.exe.0407.ui", german, L"Gut");
    ASSERT_TRUE(LoadLanguage(german));
    const HMODULE pack = text::ResourceModule();
    EXPECT_TRUE(LoadLanguage(german));
    EXPECT_EQ(text::ResourceModule(), pack);
}

TEST_F(LanguagePacks, AreFreedWhenAnotherTakesTheirPlace) {
    MakePack(L"vantor.exe.0407.ui", german, L"Gut");
    MakePack(L"vantor.exe.040c.ui", french, L"Bien");
    ASSERT_TRUE(LoadLanguage(german));
    const HMODULE pack = text::ResourceModule();
    EXPECT_TRUE(LoadLanguage(french));
    EXPECT_EQ(Ok(), L"Bien");
    EXPECT_EQ(freed, std::vector<HMODULE>{pack});
}

TEST_F(LanguagePacks, NamedByTheRegistryGoFirst) {
    MakePack(L"vantor.exe.0407.ui", german, L"Gut");
    MakePack(L"elsewhere.dll", german, L"Anders");
    SetOverride(L"C:" + folder.Path() + L"\\elsewhere.dll");
    EXPECT_TRUE(LoadLanguage(german));
    EXPECT_EQ(Ok(), L"Anders");
}

TEST_F(LanguagePacks, NamedByTheRegistryNeedNoneBesideTheProgram) {
    MakePack(L"elsewhere.dll", german, L"Anders");
    SetOverride(folder.Path() + L"\\elsewhere.dll");
    EXPECT_TRUE(LoadLanguage(german));
    EXPECT_EQ(Ok(), L"Anders");
}

TEST_F(LanguagePacks, NamedWithoutAnEndAreFound) {
    MakePack(L"elsewhere.dll", german, L"Anders");
    const std::wstring path = folder.Path() + L"\\elsewhere.dll";
    SetOverride(L"vantor.exe.0407.ui", REG_SZ, path.c_str(), path.size() * 2);
    EXPECT_TRUE(LoadLanguage(german));
    EXPECT_EQ(Ok(), L"Anders");
}

TEST_F(LanguagePacks, NamedButMissingLeaveTheOneBesideTheProgram) {
    MakePack(L"vantor.exe.0407.ui", german, L"Gut");
    SetOverride(folder.Path() + L"\\missing.dll");
    EXPECT_TRUE(LoadLanguage(german));
    EXPECT_EQ(Ok(), L"Gut");
}

TEST_F(LanguagePacks, NamedButBrokenLeaveTheOneBesideTheProgram) {
    MakePack(L"vantor.exe.0407.ui", german, L"Gut");
    SetOverride(folder.MakeFile(L"broken.dll", "MZ"));
    EXPECT_TRUE(LoadLanguage(german));
    EXPECT_EQ(Ok(), L"Gut");
}

TEST_F(LanguagePacks, AreNamedByAPlainStringOnly) {
    MakePack(L"vantor.exe.0407.ui", german, L"Gut");
    MakePack(L"elsewhere.dll", german, L"Anders");
    SetOverride(folder.Path() + L"\\elsewhere.dll", REG_EXPAND_SZ);
    EXPECT_TRUE(LoadLanguage(german));
    EXPECT_EQ(Ok(), L"Gut");
}

TEST_F(LanguagePacks, NamedForAnotherLanguageAreNotTaken) {
    MakePack(L"elsewhere.dll", german, L"Anders");
    SetOverride(folder.Path() + L"\\elsewhere.dll");
    EXPECT_FALSE(LoadLanguage(french));
    EXPECT_EQ(Ok(), L"Ok");
}

TEST_F(LanguagePacks, OfAProgramWithoutAPathAreAFault) {
    programPath.clear();
    EXPECT_THROW(LoadLanguage(german), faults::W32Fault);
    EXPECT_TRUE(LoadLanguage(0x0409));
    try {
        app::ProgramPath();
        ADD_FAILURE() << "no fault";
    } catch (const faults::W32Fault& fault) {
        EXPECT_EQ(fault.Code(), static_cast<HRESULT>(0x80070008));
    }
}

TEST(ChosenLanguage, IsTheStoredOnesLowHalf) {
    const CleanSettings settings;
    CleanSettings::SetNumber(L"langid", 0x0407);
    EXPECT_EQ(ChooseLanguage(), german);
    CleanSettings::SetNumber(L"langid", 0xABCD0407);
    EXPECT_EQ(ChooseLanguage(), german);
    CleanSettings::SetNumber(L"langid", 0);
    EXPECT_EQ(ChooseLanguage(), 0);
}

TEST(ChosenLanguage, IsTheUsersWithoutAStoredOne) {
    const CleanSettings settings;
    const PlatformHook<LCID()> hook("GetUserDefaultLCID", GermanUser);
    EXPECT_EQ(ChooseLanguage(), german);
    CleanSettings::SetText(L"langid", L"1036");
    EXPECT_EQ(ChooseLanguage(), german);
}
