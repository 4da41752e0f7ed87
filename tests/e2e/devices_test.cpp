// Handhelds that lack something of what the program uses. A PC is always the same.
#include <string>

#include "res/resource.h"
#include "tests/e2e/status_fixture.h"
#include "tests/support/sample_program.h"

using namespace test;

namespace {

// Programs start on another device of tests/devices for as long as it lives.
class OtherDevice {
 public:
    explicit OtherDevice(const std::wstring& name) {
        if (RunsOnHandheld()) {
            wchar_t path[MAX_PATH];
            usual_.assign(path, GetEnvironmentVariableW(variable, path, MAX_PATH));
            Set(usual_.substr(0, usual_.rfind(L'/') + 1) + name + L".txt");
        }
    }
    ~OtherDevice() {
        if (!usual_.empty()) {
            Set(usual_);
        }
    }
    OtherDevice(const OtherDevice&) = delete;
    OtherDevice& operator=(const OtherDevice&) = delete;

 private:
    static constexpr wchar_t variable[] = L"VANTOR_HANDHELD_DEVICE";
    static void Set(const std::wstring& path) { SetEnvironmentVariableW(variable, path.c_str()); }

    std::wstring usual_;
};

class OtherDevices : public StatusProgram {
 protected:
    OtherDevices() { folder.MakeFile(L"a"); }
    // Every view, a page and a message box come and go.
    void ExpectAllViews() {
        Start();
        ChooseCommand(IDR_FILES, ID_SETTINGS);
        const HWND page = Dialog();
        ASSERT_TRUE(page);
        const RECT place = ScreenRectangleOf(page);
        const RECT whole = ScreenRectangleOf(Window());
        EXPECT_TRUE(EqualRect(&place, &whole)) << "a page fills what a window may fill";
        Answer(Finger().Key("F2"));
        ASSERT_TRUE(Finger().Hold(RowPoint(0)).Play());
        ASSERT_TRUE(ShowsSelected(0));
        ChooseCommand(IDR_FILES, ID_DELETE);
        Answer(Finger().Key("Escape"));
        for (const auto& [key, caption] :
             {std::pair("2", L"Applications ("), std::pair("3", L"Processes ("),
              std::pair("4", L"System Status"), std::pair("1", L"\\")}) {
            ASSERT_TRUE(Finger().Key(key).Play());
            EXPECT_TRUE(ShowsCaption(caption)) << key;
        }
        EXPECT_EQ(Running().Close(), 0u);
    }
    // Both the card and its picture come from functions that are looked up.
    void ExpectCard() {
        if (RunsOnHandheld()) {
            StartWith(L"-status", L"System Status");
            EXPECT_TRUE(WaitFor([this] { return PlaceOf(storageCard) >= 0; }));
            EXPECT_EQ(PlaceOf(storage), -1);
            EXPECT_EQ(Running().Close(), 0u);
        }
    }
    // A tap on an application with a menu bar of the shell's switches to the application, or to the
    // bar where nobody knows that it is one.
    void ExpectSwitch(bool knowsBars) {
        const SampleProgram sample(L"barred", L"! first");
        HWND bar = nullptr;
        ASSERT_TRUE(WaitFor([&] {
            bar = FindWindowW(L"menu_worker", nullptr);
            return bar && IsWindowVisible(bar);
        }));
        Start();
        ASSERT_TRUE(Finger().Key("2").Play());
        ASSERT_TRUE(ShowsCaption(L"Applications (1)"));
        ASSERT_TRUE(Finger().Tap(RowPoint(0)).Play());
        const HWND expected = RunsOnHandheld() && knowsBars ? sample.Window() : bar;
        EXPECT_TRUE(WaitFor([&] { return GetForegroundWindow() == expected; }));
        ASSERT_TRUE(BringToFront(Window()));
        EXPECT_EQ(Running().Close(), 0u);
    }
};

}  // namespace

TEST_F(OtherDevices, WithoutTheShellsLibraryRunTheProgram) {
    const OtherDevice device(L"without_shell");
    ExpectAllViews();
}

TEST_F(OtherDevices, WithoutTheShellsLibraryKnowNoMenuBars) {
    const OtherDevice device(L"without_shell");
    ExpectSwitch(false);
}

TEST_F(OtherDevices, WithoutTheLibraryForCardsShowNone) {
    const OtherDevice device(L"without_shell");
    StartWith(L"-status", L"System Status");
    // The battery and the memory, without pictures; on a PC its drives stand below.
    EXPECT_TRUE(WaitFor([this] { return RowHeight(1) > 0; }));
    StillListPicture();
    if (RunsOnHandheld()) {
        EXPECT_EQ(RowHeight(2), 0);
    }
}

TEST_F(OtherDevices, WithNamesOnlyRunTheProgram) {
    const OtherDevice device(L"names_only");
    ExpectAllViews();
    ExpectCard();
    ExpectSwitch(true);
}

TEST_F(OtherDevices, WithNumbersOnlyRunTheProgram) {
    const OtherDevice device(L"numbers_only");
    ExpectAllViews();
    ExpectCard();
    ExpectSwitch(true);
}

TEST_F(OtherDevices, WhoseProgramsKeepTheirMemoryApartTellTitles) {
    const OtherDevice device(L"separate_memory");
    const SampleProgram sample(L"polite", L"! first");
    Start();
    ASSERT_TRUE(Finger().Key("2").Play());
    EXPECT_TRUE(ShowsCaption(L"Applications (1)")) << "what has no title is not listed";
}

TEST_F(OtherDevices, WithALaterSystemAskItForTheirCards) {
    const OtherDevice device(L"system_6");
    ExpectAllViews();
    ExpectCard();
}
