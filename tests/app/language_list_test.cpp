#include "app/language.h"
#include "faults/fault.h"
#include "tests/app/language_fixture.h"
#include "text/resources.h"

using namespace test;

namespace {

int valuesBeforeFailure = -1;
decltype(RegEnumValueW)* enumValue = nullptr;

LSTATUS WINAPI FailToEnumerate(HKEY key, DWORD index, LPWSTR name, LPDWORD nameLength,
                               LPDWORD reserved, LPDWORD type, LPBYTE data, LPDWORD size) {
    return valuesBeforeFailure-- == 0
               ? ERROR_NOT_ENOUGH_MEMORY
               : enumValue(key, index, name, nameLength, reserved, type, data, size);
}

class LanguageList : public LanguageFixture {
 protected:
    // The numbers of the languages that can be chosen.
    static std::vector<LANGID> Languages() {
        std::vector<LANGID> found;
        for (const app::LanguageChoice& choice : app::ListLanguages()) {
            found.push_back(choice.language);
        }
        return found;
    }
    static void Register(const std::wstring& name, const std::wstring& path, DWORD type = REG_SZ) {
        SetOverride(name.c_str(), type, path.c_str(), (path.size() + 1) * sizeof(wchar_t));
    }
    using Numbers = std::vector<LANGID>;
};

}  // namespace

TEST_F(LanguageList, AlwaysHoldsTheProgramsOwnLanguage) {
    const std::vector<app::LanguageChoice> choices = app::ListLanguages();
    ASSERT_EQ(choices.size(), 1u);
    EXPECT_EQ(choices[0].language, text::programLanguage);
    EXPECT_EQ(choices[0].name, L"English (United States)");
}

TEST_F(LanguageList, HoldsThePacksBesideTheProgramInAscendingOrder) {
    folder.MakeFile(L"vantor.exe.0419.ui");
    folder.MakeFile(L"vantor.exe.0407.ui");
    folder.MakeFile(L"VANTOR.EXE.040C.UI");
    folder.MakeFile(L"vantor.exe.0409.ui");
    folder.MakeFile(L"vantor.exe.080a.ui");
    EXPECT_EQ(Languages(), (Numbers{0x0407, 0x0409, 0x040C, 0x0419, 0x080A}));
    EXPECT_EQ(app::ListLanguages()[0].name, L"German (Germany)");
}

TEST_F(LanguageList, LeavesOutWhatIsNoPack) {
    folder.MakeFile(L"vantor.exe.0407.ui.bak");
    folder.MakeFolder(L"vantor.exe.040c.ui");
    folder.MakeFile(L"vantor.exe.407.ui");
    folder.MakeFile(L"vantor.exe.00407.ui");
    folder.MakeFile(L"vantor.exe.04g7.ui");
    folder.MakeFile(L"vantor.0410.ui");
    folder.MakeFile(L"wantor.exe.0410.ui");
    folder.MakeFile(L"vantor.exe.0415xui");
    EXPECT_EQ(Languages(), (Numbers{0x0409}));
}

TEST_F(LanguageList, LeavesOutALanguageWithoutAName) {
    folder.MakeFile(L"vantor.exe.7777.ui");
    EXPECT_EQ(Languages(), (Numbers{0x0409}));
}

TEST_F(LanguageList, HoldsWhatTheRegistryNames) {
    const std::wstring pack = folder.MakeFile(L"anything.dll");
    Register(L"vantor.exe.0407.ui", pack);
    Register(L"VANTOR.EXE.0410.ui", pack);
    EXPECT_EQ(Languages(), (Numbers{0x0407, 0x0409, 0x0410}));
}

TEST_F(LanguageList, HoldsALanguageOnce) {
    Register(L"vantor.exe.0407.ui", folder.MakeFile(L"vantor.exe.0407.ui"));
    EXPECT_EQ(Languages(), (Numbers{0x0407, 0x0409}));
}

TEST_F(LanguageList, LeavesOutWhatTheRegistryNamesWrongly) {
    const std::wstring pack = folder.MakeFile(L"anything.dll");
    Register(L"vantor.exe.0407.ui", folder.Path() + L"\\missing.dll");
    Register(L"vantor.exe.040c.ui", folder.MakeFolder(L"folder.dll"));
    Register(L"vantor.exe.0410.ui", pack, REG_EXPAND_SZ);
    Register(L"vantor.exe.0000.ui", pack);
    Register(L"vantor.exe.0415.uix", pack);
    Register(L"other1.exe.0415.ui", pack);
    Register(L"vantor.exe.0415-ui", pack);
    EXPECT_EQ(Languages(), (Numbers{0x0409}));
}

TEST_F(LanguageList, ThatTheRegistryDoesNotGiveIsAFault) {
    Register(L"vantor.exe.0407.ui", folder.MakeFile(L"anything.dll"));
    const PlatformHook<decltype(FailToEnumerate)> hook("RegEnumValueW", FailToEnumerate);
    enumValue = hook.Original();
    valuesBeforeFailure = 1;
    try {
        app::ListLanguages();
        ADD_FAILURE() << "no fault";
    } catch (const faults::W32Fault& fault) {
        EXPECT_EQ(fault.Code(), static_cast<HRESULT>(0x80070008));
    }
}

// More than 260 characters of a name or its data are not looked at.
TEST_F(LanguageList, IsAFaultWhereTheRegistryTellsTooMuch) {
    const auto code = [] {
        try {
            app::ListLanguages();
        } catch (const faults::W32Fault& fault) {
            return fault.Code();
        }
        return S_OK;
    };
    Register(L"another", std::wstring(259, L'p'));
    EXPECT_EQ(code(), S_OK);
    Register(L"another", std::wstring(261, L'p'));
    EXPECT_EQ(code(), static_cast<HRESULT>(0x800700EA));
    Register(L"another", L"p");
    EXPECT_EQ(code(), S_OK);
    Register(std::wstring(261, L'n'), L"p");
    EXPECT_EQ(code(), static_cast<HRESULT>(0x800700EA));
}

TEST_F(LanguageList, OfAProgramWithoutAPathIsAFault) {
    LoseProgramPath();
    EXPECT_THROW(app::ListLanguages(), faults::W32Fault);
}
