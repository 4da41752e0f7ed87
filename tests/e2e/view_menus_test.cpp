// What every view's menu has: the other views, the settings, the about box, the languages, the
// end.
#include "res/resource.h"
#include "tests/e2e/files_fixture.h"
#include "tests/support/sample_program.h"

using namespace test;

namespace {

struct ShownView {
    UINT menu;
    UINT command;
    const wchar_t* caption;
};
constexpr ShownView views[] = {{IDR_FILES, ID_SHOW_FILES, L"\\Temp"},
                               {IDR_APPLICATIONS, ID_SHOW_APPLICATIONS, L"Applications ("},
                               {IDR_PROCESSES, ID_SHOW_PROCESSES, L"Processes ("},
                               {IDR_SYSTEM_STATUS, ID_SHOW_SYSTEM_STATUS, L"System Status"}};

class ViewMenus : public FilesProgram {
 protected:
    // Everything of a view's menu that does not depend on the view, up to the program's end.
    void ExpectCommonCommands(UINT menu, const std::wstring& caption) {
        ChooseCommand(menu, ID_SETTINGS);
        const HWND settingsPage = Dialog();
        ASSERT_TRUE(settingsPage);
        EXPECT_EQ(TextOf(settingsPage), L"Settings");
        ChooseCommand(IDR_DONE_CANCEL, IDCANCEL, settingsPage);
        ASSERT_TRUE(WaitFor([&] { return GetForegroundWindow() == Window(); }));
        EXPECT_FALSE(CleanSettings::Number(L"langid"));

        ChooseCommand(menu, ID_ABOUT);
        const HWND aboutBox = Dialog();
        ASSERT_TRUE(aboutBox);
        EXPECT_EQ(TextOf(aboutBox), L"Vantor");
        ChooseCommand(IDR_DONE, IDOK, aboutBox);
        ASSERT_TRUE(WaitFor([&] { return GetForegroundWindow() == Window(); }));

        // The languages stand above Settings, About and Exit; English is the second of them.
        ASSERT_TRUE(Finger().Key("F2").Play());
        const HWND popup = Popup();
        ASSERT_TRUE(popup);
        Finger last;
        last.Key("End").Key("Up").Key("Up").Key("Up").Key("Return");
        ASSERT_TRUE(last.In(popup).Play());
        const HWND languages = WaitForAnother(L"kx::PopupMenu", popup);
        ASSERT_TRUE(languages);
        ASSERT_TRUE(Finger().Key("Home").Key("Down").Key("Return").In(languages).Play());
        EXPECT_TRUE(WaitFor([] { return CleanSettings::Number(L"langid").has_value(); }));
        EXPECT_FALSE(FindVisible(L"#32770", true));
        EXPECT_TRUE(ShowsCaption(caption));

        ChooseCommand(menu, ID_EXIT);
        EXPECT_EQ(Running().WaitForExit(), 0u);
    }
};

}  // namespace

TEST_F(ViewMenus, LeadFromEveryViewToEveryView) {
    StartAt(L"\\Temp");
    const auto lead = [&](const ShownView& from, const ShownView& to) {
        ChooseCommand(from.menu, to.command);
        EXPECT_TRUE(ShowsCaption(to.caption)) << from.menu << " to " << to.menu;
    };
    for (int first = 0; first < 4; ++first) {
        lead(views[first], views[first]);
        for (int other = first + 1; other < 4; ++other) {
            lead(views[first], views[other]);
            lead(views[other], views[first]);
        }
        const char next[] = {static_cast<char>('1' + (first + 1) % 4), 0};
        ASSERT_TRUE(Finger().Key(next).Play());
        ASSERT_TRUE(ShowsCaption(views[(first + 1) % 4].caption));
    }
}

TEST_F(ViewMenus, LeadFromDllsToEveryView) {
    StartAt(L"\\Temp");
    ASSERT_TRUE(Finger().Key("3").Play());
    for (const ShownView& to : views) {
        ASSERT_TRUE(ShowsCaption(L"Processes ("));
        ASSERT_TRUE(Finger().Hold(RowPoint(0)).Play());
        ASSERT_TRUE(ShowsSelected(0));
        ChooseCommand(IDR_PROCESSES, ID_SHOW_DLLS);
        ASSERT_TRUE(ShowsCaption(L"Dlls ("));
        ChooseCommand(IDR_DLLS, to.command);
        EXPECT_TRUE(ShowsCaption(to.caption)) << to.menu;
        ASSERT_TRUE(Finger().Key("3").Play());
    }
}

TEST_F(ViewMenus, OfFiles) {
    StartWith(L"-explorer ", L"\\");
    ExpectCommonCommands(IDR_FILES, L"\\");
}

TEST_F(ViewMenus, OfApplications) {
    StartWith(L"-apps  ", L"Applications (");
    int before = 0;
    ASSERT_EQ(swscanf(TextOf(Window()).c_str(), L"Applications (%d)", &before), 1);
    const SampleProgram sample(L"polite", L"! sample");
    ChooseCommand(IDR_APPLICATIONS, ID_REFRESH);
    EXPECT_TRUE(ShowsCaption(L"Applications (" + std::to_wstring(before + 1) + L")"));
    ExpectCommonCommands(IDR_APPLICATIONS, L"Applications (");
}

TEST_F(ViewMenus, OfProcesses) {
    StartWith(L"-process   ", L"Processes (");
    const std::wstring before = TextOf(Window());
    const SampleProgram sample(L"polite", L"! sample");
    ChooseCommand(IDR_PROCESSES, ID_REFRESH);
    EXPECT_TRUE(WaitFor([&] { return TextOf(Window()) != before; }));
    ExpectCommonCommands(IDR_PROCESSES, L"Processes (");
}

TEST_F(ViewMenus, OfDlls) {
    const SampleProgram sample(L"polite", L"! sample");
    StartWith(L"-apps  ", L"Applications (");
    ASSERT_TRUE(Finger().Hold(RowPoint(0)).Play());
    ASSERT_TRUE(ShowsSelected(0));
    ChooseCommand(IDR_APPLICATIONS, ID_GO_TO_PROCESS);
    ASSERT_TRUE(ShowsCaption(L"Processes ("));
    ChooseCommand(IDR_PROCESSES, ID_SHOW_DLLS);
    ASSERT_TRUE(ShowsCaption(L"Dlls ("));
    ExpectCommonCommands(IDR_DLLS, L"Dlls (");
}

TEST_F(ViewMenus, OfSystemStatus) {
    StartWith(L"-status", L"System Status");
    // Selected, so that the rows are seen to stay; what they tell is never the same for long.
    const auto background = [&] {
        const Picture picture = ListPicture();
        return picture.At(picture.Width() - 12, 12);
    };
    const auto firstIsSelected = [&] { return background() != GetSysColor(COLOR_WINDOW); };
    EXPECT_TRUE(WaitFor([&] { return !firstIsSelected(); }));
    ASSERT_TRUE(Finger().Key("Down").Play());
    ASSERT_TRUE(WaitFor(firstIsSelected));
    ChooseCommand(IDR_SYSTEM_STATUS, ID_REFRESH);
    EXPECT_TRUE(WaitFor(firstIsSelected));
    ExpectCommonCommands(IDR_SYSTEM_STATUS, L"System Status");
}
