#include "app/about_box.h"

#include <map>

#include "app/language.h"
#include "platform/handles.h"
#include "res/resource.h"
#include "tests/app/language_fixture.h"
#include "tests/support/box.h"
#include "tests/support/drawn_texts.h"
#include "tests/support/finger.h"
#include "tests/support/user.h"
#include "tests/support/wait.h"
#include "tests/support/windows_seen.h"
#include "text/resources.h"

using namespace test;

namespace {

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
    COLORREF color;
};
std::vector<DrawnIcon> icons;

// The color of an icon's upper left pixel.
COLORREF ColorOf(HICON icon) {
    ICONINFO info = {};
    EXPECT_TRUE(GetIconInfo(icon, &info));
    const platform::UniqueBitmap color(info.hbmColor);
    const platform::UniqueBitmap mask(info.hbmMask);
    const platform::UniqueMemoryDC dc(CreateCompatibleDC(nullptr));
    const platform::Selected selected(dc.Get(), color.Get());
    return GetPixel(dc.Get(), 0, 0);
}

BOOL WINAPI NoteIcon(HDC, int left, int top, HICON icon, int width, int height, UINT, HBRUSH,
                     UINT) {
    EXPECT_EQ(width, height);
    icons.push_back(DrawnIcon{left, top, width, ColorOf(icon)});
    return TRUE;
}

HANDLE WINAPI NoImage(HINSTANCE, LPCWSTR, UINT, int, int, UINT) {
    return nullptr;
}

HDC WINAPI NoMemoryDC(HDC) {
    return nullptr;
}

// A theme in which nothing that is to be told apart is alike.
constexpr COLORREF themeInfoText = RGB(0x12, 0x34, 0x56);
constexpr COLORREF themeWindowText = RGB(0x21, 0x43, 0x65);
decltype(GetSysColor)* systemColor = nullptr;
DWORD WINAPI ThemeColor(int index) {
    return index == COLOR_INFOTEXT     ? themeInfoText
           : index == COLOR_WINDOWTEXT ? themeWindowText
                                       : systemColor(index);
}

// The texts that were drawn, with their colors and where they begin; for the program's thread.
struct ColoredText {
    COLORREF color;
    int y;
};
std::map<std::wstring, ColoredText> colored;
decltype(ExtTextOutW)* putText = nullptr;
BOOL WINAPI NoteColor(HDC dc, int x, int y, UINT options, const RECT* area, LPCWSTR text,
                      UINT length, const INT* distances) {
    colored[std::wstring(text, length)] = ColoredText{GetTextColor(dc), y};
    return putText(dc, x, y, options, area, text, length, distances);
}

// An icon of one color, as modules hold it.
std::vector<BYTE> PlainIcon(COLORREF color, BYTE size) {
    BITMAPINFOHEADER header = {};
    header.biSize = sizeof header;
    header.biWidth = size;
    header.biHeight = 2 * size;
    header.biPlanes = 1;
    header.biBitCount = 32;
    const auto bytes = reinterpret_cast<const BYTE*>(&header);
    std::vector<BYTE> icon(bytes, bytes + sizeof header);
    for (int pixel = 0; pixel < size * size; ++pixel) {
        icon.insert(icon.end(), {GetBValue(color), GetGValue(color), GetRValue(color), 0xFF});
    }
    icon.resize(icon.size() + static_cast<size_t>((size + 31) / 32 * 4 * size));
    return icon;
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
    // Opens the box, waits until something is there and presses a key that closes it.
    void Show(const char* key, const std::function<bool()>& isThere) {
        colored.clear();
        const PlatformHook<decltype(NoteColor)> hook("ExtTextOutW", NoteColor);
        putText = hook.Original();
        WhileUser(
            [&] {
                const HWND box = WaitForBox();
                ASSERT_TRUE(box);
                EXPECT_TRUE(WaitFor(isThere));
                client = ScreenRectangleOf(FindChild(box, L"Vantor About"));
                AnswerBox(box, Finger().Key(key));
            },
            [] { app::ShowAbout(nullptr); });
    }
    void Show(const char* key = "Escape") {
        Show(key, [] { return !icons.empty(); });
    }

    const PlatformHook<decltype(NoteBeep)> beep{"MessageBeep", NoteBeep};
    const PlatformHook<decltype(NoteIcon)> icon{"DrawIconEx", NoteIcon};
    DrawnTexts texts;
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
    Load(pack.Text(IDS_TRANSLATED_BY, L"Von:")
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
    Load(pack.Text(IDS_BUTTON_OK, L"Gut")
             .Raw(14, 100, {0, 0, 1, 0, 1, 0, 0, 0, 0, 0, 1, 0, 32, 0, 0, 0, 0, 0, 9, 0})
             .Raw(3, 9, {}));
    Show();
    ASSERT_FALSE(icons.empty());
    EXPECT_EQ(icons.front().size, 64);
}

TEST_F(AboutBox, TakesThePacksIcon) {
    ResourceModule pack(german);
    const std::vector<BYTE> icon = PlainIcon(RGB(250, 10, 20), 16);
    Load(pack.Text(IDS_BUTTON_OK, L"Gut")
             .Raw(14, 100,
                  {0,
                   0,
                   1,
                   0,
                   1,
                   0,
                   16,
                   16,
                   0,
                   0,
                   1,
                   0,
                   32,
                   0,
                   static_cast<BYTE>(icon.size() & 0xFF),
                   static_cast<BYTE>(icon.size() >> 8),
                   0,
                   0,
                   9,
                   0})
             .Raw(3, 9, icon));
    Show();
    ASSERT_FALSE(icons.empty());
    EXPECT_EQ(icons.front().color, RGB(250, 10, 20));
    EXPECT_EQ(icons.front().size, 64);
}

TEST_F(AboutBox, WithoutAProductsNameTellsNoVersion) {
    ResourceModule pack(german);
    Load(pack.Raw(16, 1,
                  VersionBlock(L"040704B0", {{L"ProductVersion", L"7.8.9"},
                                             {L"SpecialBuild", L"Nachtausgabe"},
                                             {L"LegalCopyright", L"Niemand"}})));
    Show();
    EXPECT_TRUE(texts.Shows(L"Niemand")) << texts.All();
    EXPECT_FALSE(texts.Has(L"7.8.9"));
    EXPECT_FALSE(texts.Has(L"Nachtausgabe"));
}

TEST_F(AboutBox, WithoutAnIconHasItsTextsInTheMiddle) {
    Show();
    ASSERT_FALSE(icons.empty());
    const int first = colored.at(L"Vantor").y;
    const int last = colored.at(L"Kelmor").y;
    const int above = icons.front().top;
    const int iconHeight = icons.front().size + icons.front().size / 4;
    EXPECT_NEAR(first - above, iconHeight, 1) << "a quarter of the icon stands between";
    icons.clear();
    texts.Forget();
    const PlatformHook<decltype(NoImage)> hook("LoadImageW", NoImage);
    Show("Escape", [this] { return texts.Has(L"Kelmor"); });
    EXPECT_TRUE(icons.empty());
    // The room of the icon is shared out above and below.
    EXPECT_NEAR(colored.at(L"Vantor").y, first - iconHeight / 2, 1);
    EXPECT_EQ(colored.at(L"Kelmor").y - colored.at(L"Vantor").y, last - first);
}

TEST_F(AboutBox, HasTheColorsOfTheTheme) {
    ResourceModule pack(german);
    Load(pack.Text(IDS_TRANSLATED_BY, L"Von:")
             .Raw(16, 1,
                  VersionBlock(L"040704B0", {{L"ProductName", L"Vantor"},
                                             {L"ProductVersion", L"7.8.9"},
                                             {L"SpecialBuild", L"Nachtausgabe"},
                                             {L"LegalCopyright", L"Niemand"},
                                             {L"CompanyName", L"Firma"},
                                             {L"Translated", L"Wir alle"},
                                             {L"TranslatedInfo", L"Mit Dank"}})));
    const PlatformHook<decltype(ThemeColor)> hook("GetSysColor", ThemeColor);
    systemColor = hook.Original();
    Show();
    EXPECT_EQ(colored.at(L"Vantor").color, RGB(29, 99, 161));
    EXPECT_EQ(colored.at(L"7.8.9").color, themeInfoText);
    EXPECT_EQ(colored.at(L"Nachtausgabe").color, themeInfoText);
    EXPECT_EQ(colored.at(L"Niemand").color, themeInfoText);
    EXPECT_EQ(colored.at(L"Firma").color, RGB(0, 0, 255));
    EXPECT_EQ(colored.at(L"Von:").color, themeWindowText);
    EXPECT_EQ(colored.at(L"Wir alle").color, themeInfoText);
    EXPECT_EQ(colored.at(L"Mit Dank").color, RGB(0, 0, 255));
}

TEST_F(AboutBox, ThatCannotBeDrawnStaysEmptyAndCloses) {
    const PlatformHook<decltype(NoMemoryDC)> hook("CreateCompatibleDC", NoMemoryDC);
    Show("Escape", [] {
        const HWND pane = FindChild(FindVisible(L"#32770"), L"Vantor About");
        return pane && !GetUpdateRect(pane, nullptr, FALSE);
    });
    EXPECT_TRUE(icons.empty());
    EXPECT_FALSE(texts.Has(L"Kelmor"));
}

TEST_F(AboutBox, WithoutAnyVersionBlockOnlyBeeps) {
    const PlatformHook<decltype(HideVersions)> hook("FindResourceW", HideVersions);
    findResource = hook.Original();
    app::ShowAbout(nullptr);
    EXPECT_EQ(beeps, 1);
    EXPECT_TRUE(icons.empty());
    EXPECT_FALSE(texts.Has(L"Kelmor"));
}
