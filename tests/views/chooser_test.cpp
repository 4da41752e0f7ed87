#include "res/resource.h"
#include "tests/support/resource_module.h"
#include "tests/support/wait.h"
#include "tests/support/windows_seen.h"
#include "tests/views/chooser_fixture.h"
#include "text/resources.h"

using namespace test;
using namespace views;

namespace {

BOOL WINAPI NoSpecialFolder(HWND, LPWSTR, int, BOOL) {
    return FALSE;
}

}  // namespace

TEST(ChooserFlags, AreTheFramesWithTheFilterAtFirst) {
    EXPECT_EQ(ChooserFlags(3, 0), 0xC00003u);
    EXPECT_EQ(ChooserFlags(0, 0), 0xC00000u);
    EXPECT_TRUE(ListsApplications(ChooserFlags(0, 0)));
}

TEST(ChooserFlags, CanOnlyBeClearedBySavedOnes) {
    EXPECT_EQ(ChooserFlags(3, 0x800001), 0x800001u);
    EXPECT_EQ(ChooserFlags(0, 0xC00003), 0xC00000u);
    EXPECT_EQ(ChooserFlags(2, 0xFFFFFFFF), 0xC00002u);
    EXPECT_FALSE(ListsApplications(ChooserFlags(0, 0x800000)));
}

TEST(ChooserFlags, AreNotTouchedByWhatWasNeverSaved) {
    EXPECT_EQ(ChooserFlags(3, 0x400000), 0xC00003u);
    EXPECT_EQ(ChooserFlags(1, 0x7FFFFFFF & ~0x800000u), 0xC00001u);
}

TEST(ChooserFlags, ListProgramsOnlyWithBothBits) {
    EXPECT_TRUE(ListsApplications(0xC00000));
    EXPECT_FALSE(ListsApplications(0x400000));
    EXPECT_FALSE(ListsApplications(0x800003));
}

class ChooserStart : public ChooserFixture {};

TEST_F(ChooserStart, ShowsTheProgramFilesFolder) {
    Look([&] {
        EXPECT_EQ(ShownFolder(), L"\\Program Files");
        EXPECT_NE(ChooserRow(L"Vantor"), ui::noRow);
        EXPECT_EQ(Chosen(), L"");
        EXPECT_EQ(TextOf(Dialog()), L"Open File");
    });
    EXPECT_FALSE(CleanSettings::Number(L"SelectAppFlags"));
    EXPECT_FALSE(CleanSettings::Text(L"SelectAppPath"));
}

TEST_F(ChooserStart, HasItsCaptionInTheLanguageInUse) {
    const std::wstring path = folder.Path() + L"\\pack.ui";
    ResourceModule(0x0407).Text(IDS_OPEN_FILE, L"Datei \u00F6ffnen").Write(path);
    const platform::UniqueModule pack(
        LoadLibraryExW(path.c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE));
    ASSERT_TRUE(pack);
    text::SetResourceModule(pack.Get(), 0x0407);
    Look([&] { EXPECT_EQ(TextOf(Dialog()), L"Datei \u00F6ffnen"); });
    text::SetResourceModule(text::ProgramModule(), text::programLanguage);
}

TEST_F(ChooserStart, ShowsTheSavedFolder) {
    folder.MakeFolder(L"inner");
    folder.MakeFile(L"b.exe");
    CleanSettings::SetText(L"SelectAppPath", folder.Path());
    Look([&] {
        EXPECT_EQ(ShownFolder(), folder.Path());
        EXPECT_EQ(ShownRows(), (Names{L"inner", L"b.exe"}));
    });
}

TEST_F(ChooserStart, ShowsTheRootWhereThatWasSaved) {
    CleanSettings::SetText(L"SelectAppPath", L"");
    Look([&] { EXPECT_EQ(ShownFolder(), L"\\"); });
}

TEST_F(ChooserStart, ShowsTheProgramFilesFolderWhereTheSavedOneIsOfNoUse) {
    for (const std::wstring& saved :
         {std::wstring(L"\\none\\none"), folder.Path() + L"\\a b.txt", std::wstring(2000, L'x')}) {
        CleanSettings::SetText(L"SelectAppPath", saved);
        Look([&] { EXPECT_EQ(ShownFolder(), L"\\Program Files"); });
    }
}

TEST_F(ChooserStart, ShowsTheRootWhereThereIsNoProgramFilesFolder) {
    const PlatformHook<decltype(NoSpecialFolder)> hook("SHGetSpecialFolderPathW", NoSpecialFolder);
    Look([&] { EXPECT_EQ(ShownFolder(), L"\\"); });
}

TEST_F(ChooserStart, TakesNoSettingOfAWrongTypeOrLength) {
    folder.MakeFile(L"b.exe");
    const DWORD number = 5;
    const BYTE bytes[6] = {0, 0, 0x80, 0, 0, 0};
    CleanSettings::SetRaw(L"SelectAppPath", REG_DWORD, &number, sizeof number);
    CleanSettings::SetRaw(L"SelectAppFlags", REG_BINARY, bytes, sizeof bytes);
    Look([&] {
        EXPECT_EQ(ShownFolder(), L"\\Program Files");
        EXPECT_TRUE(Checked(ID_FILTER_APPLICATIONS));
        EXPECT_FALSE(Checked(ID_FILTER_ALL_FILES));
    });
    CleanSettings::SetRaw(L"SelectAppFlags", REG_DWORD, bytes, 3);
    Look([&] { EXPECT_TRUE(Checked(ID_FILTER_APPLICATIONS)); });
}

TEST_F(ChooserStart, ListsWhatTheFrameShows) {
    CleanSettings::SetText(L"SelectAppPath", folder.Path());
    SetFileAttributesW(folder.MakeFile(L"hidden.exe").c_str(), FILE_ATTRIBUTE_HIDDEN);
    SetFileAttributesW(folder.MakeFile(L"system.exe").c_str(), FILE_ATTRIBUTE_SYSTEM);
    Look([&] { EXPECT_EQ(ShownRows(), Names{}); });
    frame.flags = 1;
    Look([&] { EXPECT_EQ(ShownRows(), Names{L"hidden.exe"}); });
    frame.flags = 3;
    Look([&] { EXPECT_EQ(ShownRows(), (Names{L"hidden.exe", L"system.exe"})); });
    CleanSettings::SetNumber(L"SelectAppFlags", 0xC00002);
    Look([&] { EXPECT_EQ(ShownRows(), Names{L"system.exe"}); });
}

class ChooserFilter : public ChooserFixture {
 protected:
    ChooserFilter() {
        folder.MakeFile(L"B.EXE");
        folder.MakeFile(L"c.exe.txt");
        folder.MakeFolder(L"z");
        CleanSettings::SetText(L"SelectAppPath", folder.Path());
    }
    const Names programs = {L"z", L"B.EXE"};
    const Names all = {L"z", L"a b.txt", L"B.EXE", L"c.exe.txt"};
};

TEST_F(ChooserFilter, ListsFoldersAndPrograms) {
    Look([&] {
        EXPECT_EQ(ShownRows(), programs);
        EXPECT_TRUE(Checked(ID_FILTER_APPLICATIONS));
        EXPECT_FALSE(Checked(ID_FILTER_ALL_FILES));
    });
}

TEST_F(ChooserFilter, ListsAllFilesWhereThatWasSaved) {
    CleanSettings::SetNumber(L"SelectAppFlags", 0x800000);
    Look([&] {
        EXPECT_EQ(ShownRows(), all);
        EXPECT_FALSE(Checked(ID_FILTER_APPLICATIONS));
        EXPECT_TRUE(Checked(ID_FILTER_ALL_FILES));
    });
}

TEST_F(ChooserFilter, IsChangedByTheMenuAndKeepsTheSelection) {
    Look([&] {
        HoldOn(L"B.EXE");
        ChooseFromMenu(2);
        EXPECT_TRUE(WaitForRows(all));
        EXPECT_EQ(Chosen(), L"B.EXE");
        EXPECT_TRUE(Checked(ID_FILTER_ALL_FILES));
        HoldOn(L"c.exe.txt");
        ChooseFromMenu(1);
        EXPECT_TRUE(WaitForRows(programs));
        EXPECT_EQ(Chosen(), L"");
        EXPECT_TRUE(Checked(ID_FILTER_APPLICATIONS));
    });
    EXPECT_FALSE(CleanSettings::Number(L"SelectAppFlags"));
}

TEST_F(ChooserFilter, HiddenAndSystemFilesAreShownByTheDialogsOwnOptions) {
    SetFileAttributesW(folder.MakeFile(L"h.exe").c_str(), FILE_ATTRIBUTE_HIDDEN);
    SetFileAttributesW(folder.MakeFile(L"s.exe").c_str(), FILE_ATTRIBUTE_SYSTEM);
    Look([&] {
        ChooseFromMenu(3);
        EXPECT_TRUE(WaitForRows({L"z", L"B.EXE", L"h.exe"}));
        EXPECT_TRUE(Checked(ID_SHOW_HIDDEN));
        ChooseFromMenu(4);
        EXPECT_TRUE(WaitForRows({L"z", L"B.EXE", L"h.exe", L"s.exe"}));
        EXPECT_TRUE(Checked(ID_SHOW_SYSTEM));
        ChooseFromMenu(3);
        EXPECT_TRUE(WaitForRows({L"z", L"B.EXE", L"s.exe"}));
        EXPECT_FALSE(Checked(ID_SHOW_HIDDEN));
    });
    EXPECT_EQ(frame.flags, 0u);
}
