#include "app/language.h"

#include <gtest/gtest.h>

#include "faults/fault.h"
#include "tests/app/language_fixture.h"
#include "text/resources.h"

using namespace test;
using app::ChooseLanguage;
using app::LoadLanguage;

namespace {

LCID WINAPI GermanUser() {
    return 0x00010407;
}

std::vector<DWORD> loadFlags;
decltype(LoadLibraryExW)* loadLibrary = nullptr;
HMODULE WINAPI NoteLoad(LPCWSTR path, HANDLE file, DWORD flags) {
    EXPECT_FALSE(file);
    loadFlags.push_back(flags);
    return loadLibrary(path, file, flags);
}

class LanguagePacks : public LanguageFixture {};

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
    EXPECT_TRUE(Freed().empty());
}

// Nothing in a pack is ever run.
TEST_F(LanguagePacks, AreLoadedAsData) {
    MakePack(L"vantor.exe.0407.ui", german, L"Gut");
    const PlatformHook<decltype(NoteLoad)> hook("LoadLibraryExW", NoteLoad);
    loadLibrary = hook.Original();
    loadFlags.clear();
    EXPECT_TRUE(LoadLanguage(german));
    EXPECT_EQ(loadFlags, std::vector<DWORD>{LOAD_LIBRARY_AS_DATAFILE});
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
    EXPECT_TRUE(Freed().empty());
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
    EXPECT_EQ(Freed(), std::vector<HMODULE>{pack});
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
    LoseProgramPath();
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
