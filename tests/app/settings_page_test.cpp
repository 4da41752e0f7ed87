#include "app/settings_page.h"

#include "app/language.h"
#include "faults/fault.h"
#include "tests/app/language_fixture.h"
#include "tests/support/drawn_texts.h"
#include "tests/support/finger.h"
#include "tests/support/input_taken.h"
#include "tests/support/no_box.h"
#include "tests/support/user.h"
#include "tests/support/wait.h"
#include "tests/support/windows_seen.h"
#include "text/resources.h"

using namespace test;

namespace {

constexpr wchar_t dialogClass[] = L"#32770";

class SettingsPage : public LanguageFixture {
 protected:
    SettingsPage() {
        ResourceModule(german)
            .Text(IDS_BUTTON_OK, L"Gut")
            .Raw(16, 1,
                 VersionBlock(L"040704B0",
                              {{L"Translated", L"Wir alle"}, {L"TranslatedInfo", L"Mit Dank"}}))
            .Write(folder.Path() + L"\\vantor.exe.0407.ui");
    }
    // Opens the dialog while a person presses keys; the last ends it.
    void Press(const std::vector<const char*>& keys) {
        const InputTaken input;
        WhileUser(
            [&] {
                const HWND dialog = WaitForWindow(dialogClass);
                ASSERT_TRUE(dialog);
                EXPECT_TRUE(WaitFor([&] { return GetForegroundWindow() == dialog; }));
                for (size_t index = 0; index + 1 < keys.size(); ++index) {
                    EXPECT_TRUE(input.Play(Finger().Key(keys[index])));
                }
                Finger().Key(keys.back()).Play();
                EXPECT_TRUE(WaitFor([] { return !FindVisible(dialogClass); }));
            },
            [&] { chosen = app::ShowSettings(nullptr); });
    }

    const DrawnTexts texts;
    std::optional<LANGID> chosen;
};

int enumerations = 0;
LSTATUS WINAPI FailAlways(HKEY, DWORD, LPWSTR, LPDWORD, LPDWORD, LPDWORD, LPBYTE, LPDWORD) {
    ++enumerations;
    return ERROR_NOT_ENOUGH_MEMORY;
}

LSTATUS WINAPI RefuseToSet(HKEY, LPCWSTR, DWORD, DWORD, const BYTE*, DWORD) {
    return ERROR_NOT_ENOUGH_MEMORY;
}

int CALLBACK NoName(LCID, LCTYPE, LPWSTR, int) {
    return 0;
}

}  // namespace

TEST_F(SettingsPage, ShowsTheLanguagesAndTheOneInUse) {
    Press({"Escape"});
    EXPECT_TRUE(texts.Shows(L"Settings"));
    EXPECT_TRUE(texts.Shows(L"Language:"));
    EXPECT_TRUE(texts.Shows(L"German (Germany)"));
    EXPECT_TRUE(texts.Shows(L"English (United States)"));
    EXPECT_TRUE(texts.Shows(L"Translated by:"));
    EXPECT_TRUE(texts.Shows(L"Kelmor")) << texts.All();
    EXPECT_FALSE(texts.Has(L"Wir alle"));
}

TEST_F(SettingsPage, LeftWithoutAnAnswerStoresNothing) {
    Press({"Down", "Down", "space", "Escape"});
    EXPECT_FALSE(chosen);
    EXPECT_FALSE(CleanSettings::Number(L"langid"));
}

TEST_F(SettingsPage, TellsTheTranslatorOfTheSelectedPack) {
    Press({"Down", "space", "Escape"});
    EXPECT_TRUE(texts.Shows(L"Wir alle")) << texts.All();
    EXPECT_TRUE(texts.Shows(L"Mit Dank")) << texts.All();
}

TEST_F(SettingsPage, ShowsALongRemarkOfTheSelectedPackWhole) {
    std::wstring remark;
    for (int word = 0; word < 40; ++word) {
        remark += L"Dank ";
    }
    ResourceModule(german)
        .Raw(16, 1, VersionBlock(L"040704B0", {{L"TranslatedInfo", remark + L"und Gruss"}}))
        .Write(folder.Path() + L"\\vantor.exe.0407.ui");
    Press({"Down", "space", "Escape"});
    EXPECT_TRUE(texts.Contains(L"Gruss")) << texts.All();
}

TEST_F(SettingsPage, StoresTheSelectedLanguage) {
    Press({"Down", "space", "F1"});
    EXPECT_EQ(chosen, german);
    EXPECT_EQ(CleanSettings::Number(L"langid"), 0x0407u);
    // The program itself goes on as it is.
    EXPECT_EQ(text::Language(), text::programLanguage);
}

TEST_F(SettingsPage, WithTheLanguageInUseEndsAsIfCancelled) {
    CleanSettings::SetNumber(L"langid", 0x0407);
    Press({"F1"});
    EXPECT_FALSE(chosen);
    EXPECT_EQ(CleanSettings::Number(L"langid"), 0x0409u);
}

TEST_F(SettingsPage, WithNothingSelectedStoresZero) {
    const PlatformHook<int(LCID, LCTYPE, LPWSTR, int)> hook("GetLocaleInfoW", NoName);
    Press({"F1"});
    EXPECT_EQ(chosen, LANGID{0});
    EXPECT_EQ(CleanSettings::Number(L"langid"), 0u);
}

TEST_F(SettingsPage, WithoutAListOfLanguagesIsAFault) {
    SetOverride(folder.MakeFile(L"anything.dll"));
    const PlatformHook<decltype(FailAlways)> hook("RegEnumValueW", FailAlways);
    const NoBox boxes;
    enumerations = 0;
    EXPECT_ANY_THROW(app::ShowSettings(nullptr));
    EXPECT_EQ(enumerations, 1);
}

TEST_F(SettingsPage, WithAListThatIsCutOffIsAFault) {
    SetOverride(std::wstring(261, L'p'));
    const NoBox boxes;
    try {
        app::ShowSettings(nullptr);
        ADD_FAILURE() << "no fault";
    } catch (const faults::W32Fault& fault) {
        EXPECT_EQ(fault.Code(), static_cast<HRESULT>(0x800700EA));
    }
}

TEST_F(SettingsPage, StaysOpenWhenTheLanguageCannotBeStored) {
    const PlatformHook<decltype(RefuseToSet)> hook("RegSetValueExW", RefuseToSet);
    bool stayed = false;
    WhileUser(
        [&] {
            const HWND dialog = WaitForWindow(dialogClass);
            ASSERT_TRUE(dialog);
            EXPECT_TRUE(WaitFor([&] { return GetForegroundWindow() == dialog; }));
            Finger().Key("F1").Play();
            EXPECT_TRUE(texts.Shows(L"Error"));
            EXPECT_TRUE(WaitFor([&] { return GetForegroundWindow() != dialog; }));
            Finger().Key("Return").Play();
            EXPECT_TRUE(WaitFor([&] { return GetForegroundWindow() == dialog; }));
            stayed = IsWindowVisible(dialog) != FALSE;
            Finger().Key("Escape").Play();
            EXPECT_TRUE(WaitFor([] { return !FindVisible(dialogClass); }));
        },
        [&] { chosen = app::ShowSettings(nullptr); });
    EXPECT_TRUE(stayed);
    EXPECT_FALSE(chosen);
    EXPECT_FALSE(CleanSettings::Number(L"langid"));
}
