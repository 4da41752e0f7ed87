#include "app/about_box.h"

#include "app/language.h"
#include "tests/app/language_fixture.h"
#include "tests/support/drawn_texts.h"
#include "tests/support/finger.h"
#include "tests/support/user.h"
#include "tests/support/wait.h"
#include "tests/support/windows_seen.h"
#include "text/resources.h"

using namespace test;

namespace {

constexpr wchar_t dialogClass[] = L"#32770";

int beeps = 0;
BOOL WINAPI NoteBeep(UINT) {
    ++beeps;
    return TRUE;
}

decltype(FindResourceW)* findResource = nullptr;
HRSRC WINAPI HideVersions(HMODULE module, LPCWSTR name, LPCWSTR type) {
    return type == RT_VERSION ? nullptr : findResource(module, name, type);
}

struct DrawnIcon {
    int left;
    int top;
    int size;
};
std::vector<DrawnIcon> icons;
BOOL WINAPI NoteIcon(HDC, int left, int top, HICON, int width, int height, UINT, HBRUSH, UINT) {
    EXPECT_EQ(width, height);
    icons.push_back(DrawnIcon{left, top, width});
    return TRUE;
}

class AboutBox : public LanguageFixture {
 protected:
    AboutBox() {
        beeps = 0;
        icons.clear();
    }
    void Load(ResourceModule& pack) {
        pack.Write(folder.Path() + L"\\vantor.exe.0407.ui");
        ASSERT_TRUE(app::LoadLanguage(german));
    }
    // Opens the box and presses a key that closes it.
    void Show(const char* key = "Escape") {
        WhileUser(
            [&] {
                const HWND box = WaitForWindow(dialogClass);
                ASSERT_TRUE(box);
                EXPECT_TRUE(WaitFor([&] { return GetForegroundWindow() == box; }));
                EXPECT_TRUE(WaitFor([&] { return !icons.empty(); }));
                client = ScreenRectangleOf(FindChild(box, L"Vantor About"));
                Finger().Key(key).Play();
                EXPECT_TRUE(WaitFor([] { return !FindVisible(dialogClass); }));
            },
            [] { app::ShowAbout(nullptr); });
    }

    const PlatformHook<decltype(NoteBeep)> beep{"MessageBeep", NoteBeep};
    const PlatformHook<decltype(NoteIcon)> icon{"DrawIconEx", NoteIcon};
    const DrawnTexts texts;
    RECT client = {};
};

}  // namespace

TEST_F(AboutBox, ShowsTheProgramsVersionBlock) {
    Show();
    EXPECT_TRUE(texts.Shows(L"Vantor"));
    EXPECT_TRUE(texts.Shows(L"0.1.0")) << texts.All();
    EXPECT_TRUE(texts.Shows(L"Copyright (C) 2026 Kelmor"));
    EXPECT_TRUE(texts.Shows(L"Kelmor"));
    EXPECT_FALSE(texts.Has(L"Translated by:"));
    EXPECT_TRUE(texts.Shows(L"Done"));
    EXPECT_EQ(beeps, 0);
}

TEST_F(AboutBox, ClosesByItsKeyAndByEnter) {
    Show("F1");
    Show("Return");
}

TEST_F(AboutBox, DrawsTheIconInTheMiddleAboveTheTexts) {
    Show();
    ASSERT_FALSE(icons.empty());
    const DrawnIcon& drawn = icons.front();
    EXPECT_EQ(drawn.size, 64);
    EXPECT_EQ(drawn.left, (client.right - client.left - 64) / 2);
    EXPECT_GT(drawn.top, 0);
}

TEST_F(AboutBox, TellsWhoTranslated) {
    ResourceModule pack(german);
    Load(pack.Text(996, L"Von:")
             .Raw(16, 1,
                  VersionBlock(L"040704B0", {{L"ProductName", L"Vantor"},
                                             {L"SpecialBuild", L"Nachtausgabe"},
                                             {L"Translated", L"Wir alle"},
                                             {L"TranslatedInfo", L"Mit Dank"}})));
    Show();
    EXPECT_TRUE(texts.Shows(L"Von:")) << texts.All();
    EXPECT_TRUE(texts.Shows(L"Nachtausgabe"));
    EXPECT_TRUE(texts.Shows(L"Wir alle"));
    EXPECT_TRUE(texts.Shows(L"Mit Dank"));
    // What the pack's block lacks is not taken from the program's.
    EXPECT_FALSE(texts.Has(L"Kelmor"));
}

TEST_F(AboutBox, TakesTheFirstTableOfAPackWithoutItsOwn) {
    ResourceModule pack(german);
    Load(pack.Raw(16, 1, VersionBlock(L"041504B0", {{L"ProductName", L"Vantor (pl)"}})));
    Show();
    EXPECT_TRUE(texts.Shows(L"Vantor (pl)"));
}

TEST_F(AboutBox, WithoutATranslatorTellsNothingOfThem) {
    ResourceModule pack(german);
    Load(pack.Raw(16, 1,
                  VersionBlock(L"040704B0",
                               {{L"ProductName", L"Vantor"}, {L"TranslatedInfo", L"Mit Dank"}})));
    Show();
    EXPECT_FALSE(texts.Has(L"Translated by:"));
    EXPECT_FALSE(texts.Has(L"Mit Dank"));
}

TEST_F(AboutBox, OfAPackWithABrokenBlockIsTheProgramsOwn) {
    ResourceModule pack(german);
    Load(pack.Raw(16, 1, std::vector<BYTE>(200, 0xFF)));
    Show();
    EXPECT_TRUE(texts.Shows(L"Copyright (C) 2026 Kelmor"));
}

TEST_F(AboutBox, TakesTheProgramsIconWhereThePacksHasNoSize) {
    ResourceModule pack(german);
    // A group that names one picture of no size, which is not there.
    Load(pack.Text(okText, L"Gut")
             .Raw(14, 100, {0, 0, 1, 0, 1, 0, 0, 0, 0, 0, 1, 0, 32, 0, 0, 0, 0, 0, 9, 0})
             .Raw(3, 9, {}));
    Show();
    ASSERT_FALSE(icons.empty());
    EXPECT_EQ(icons.front().size, 64);
}

TEST_F(AboutBox, WithoutAnyVersionBlockOnlyBeeps) {
    const PlatformHook<decltype(HideVersions)> hook("FindResourceW", HideVersions);
    findResource = hook.Original();
    app::ShowAbout(nullptr);
    EXPECT_EQ(beeps, 1);
    EXPECT_TRUE(icons.empty());
    EXPECT_FALSE(texts.Has(L"Kelmor"));
}
