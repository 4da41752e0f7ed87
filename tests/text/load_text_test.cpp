#include <gtest/gtest.h>

#include "res/resource.h"
#include "tests/support/resource_module.h"
#include "tests/support/world.h"
#include "text/resources.h"

using namespace test;
using text::LoadText;

namespace {

constexpr UINT nobodysText = 9;

// A language pack with a few texts in use; the program's own resources come back at the end.
class LoadedPack : public testing::Test {
 protected:
    LoadedPack() {
        ResourceModule(0x0407)
            .Text(IDS_BUTTON_OK, L"Gut")
            .Text(2000, L"Nur hier")
            .Text(2001, L"100% \u00E9")
            .Write(path);
        pack = LoadLibraryExW(path.c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE);
        EXPECT_TRUE(pack) << "error " << GetLastError();
        previous = text::SetResourceModule(pack, 0x0407);
    }
    ~LoadedPack() override {
        text::SetProgramModule(text::ProgramModule());
        FreeLibrary(pack);
    }

    const TemporaryFolder folder;
    const std::wstring path = folder.Path() + L"\\pack.ui";
    HMODULE pack = nullptr;
    HMODULE previous = nullptr;
};

}  // namespace

TEST(LoadTextWithoutAPack, FindsTheProgramsTexts) {
    EXPECT_EQ(LoadText(IDS_PROGRAM), L"Vantor");
    EXPECT_EQ(LoadText(IDS_BUTTON_OK), L"Ok");
}

TEST(LoadTextWithoutAPack, SaysSoWhenThereIsNoText) {
    EXPECT_EQ(LoadText(nobodysText), L"<resource not found>");
    EXPECT_EQ(LoadText(0), L"<resource not found>");
    EXPECT_EQ(LoadText(65535), L"<resource not found>");
}

TEST(LoadTextWithoutAPack, GivesTheModulesOwnText) {
    MEMORY_BASIC_INFORMATION memory = {};
    ASSERT_TRUE(VirtualQuery(LoadText(IDS_PROGRAM).data(), &memory, sizeof memory));
    EXPECT_EQ(memory.AllocationBase, text::ProgramModule());
}

TEST(LoadTextWithoutAPack, UsesTheProgramsLanguage) {
    EXPECT_EQ(text::Language(), 0x0409);
    EXPECT_EQ(text::ResourceModule(), text::ProgramModule());
}

TEST_F(LoadedPack, GoesBeforeTheProgram) {
    EXPECT_EQ(LoadText(IDS_BUTTON_OK), L"Gut");
    EXPECT_EQ(LoadText(2000), L"Nur hier");
    EXPECT_EQ(LoadText(2001), L"100% \u00E9");
}

TEST_F(LoadedPack, LeavesToTheProgramWhatItDoesNotHave) {
    EXPECT_EQ(LoadText(IDS_PROGRAM), L"Vantor");
    EXPECT_EQ(LoadText(IDS_BUTTON_EXIT), L"Exit");
}

TEST_F(LoadedPack, LeavesATextThatNeitherHasMissing) {
    EXPECT_EQ(LoadText(nobodysText), L"<resource not found>");
    EXPECT_EQ(LoadText(2002), L"<resource not found>");
}

TEST_F(LoadedPack, HandsBackTheModuleThatWasInUse) {
    EXPECT_EQ(previous, text::ProgramModule());
    EXPECT_EQ(text::SetResourceModule(text::ProgramModule(), 0x0409), pack);
    EXPECT_EQ(LoadText(IDS_BUTTON_OK), L"Ok");
}

TEST_F(LoadedPack, SetsTheLanguage) {
    EXPECT_EQ(text::Language(), 0x0407);
}

TEST_F(LoadedPack, LeavesMenusThatItDoesNotHaveToTheProgram) {
    const HMENU menu = text::LoadMenuResource(IDR_FILES);
    EXPECT_TRUE(menu);
    DestroyMenu(menu);
    EXPECT_FALSE(text::LoadMenuResource(499));
}

TEST(LoadedMenu, OfAPackGoesBeforeTheProgramsMenu) {
    const TemporaryFolder folder;
    const std::wstring path = folder.Path() + L"\\menus.ui";
    // One item "Da" with the identifier 77.
    const std::vector<BYTE> menu = {0, 0, 0, 0, 0x80, 0, 77, 0, 'D', 0, 'a', 0, 0, 0};
    ResourceModule(0x0407).Raw(4, IDR_FILES, menu).Write(path);
    const HMODULE pack = LoadLibraryExW(path.c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE);
    text::SetResourceModule(pack, 0x0407);
    const HMENU loaded = text::LoadMenuResource(IDR_FILES);
    EXPECT_EQ(GetMenuItemCount(loaded), 1);
    EXPECT_EQ(GetMenuItemID(loaded, 0), 77u);
    DestroyMenu(loaded);
    text::SetProgramModule(text::ProgramModule());
    FreeLibrary(pack);
}
