#include "ui/paint/images.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>

#include "platform/handles.h"
#include "tests/support/platform_hook.h"
#include "tests/support/resource_module.h"
#include "tests/support/world.h"
#include "tests/ui/canvas.h"
#include "tests/ui/failing_drawing.h"
#include "text/resources.h"
#include "ui/paint/drawing_resources.h"
#include "ui/paint/screen_metrics.h"

using namespace ui;

namespace {

constexpr COLORREF green = RGB(0, 200, 0);
constexpr COLORREF key = RGB(255, 0, 255);

HINSTANCE Own() {
    return text::ProgramModule();
}

// Pictures that the module lacks.
std::set<ULONG_PTR> missing;
HRSRC(WINAPI* findResource)(HMODULE, const wchar_t*, const wchar_t*) = nullptr;
HRSRC WINAPI FindWithGaps(HMODULE module, const wchar_t* name, const wchar_t* type) {
    return missing.count(reinterpret_cast<ULONG_PTR>(name)) ? nullptr
                                                            : findResource(module, name, type);
}
// How often a picture was looked up.
std::map<ULONG_PTR, int> lookups;
HRSRC WINAPI CountingFind(HMODULE module, const wchar_t* name, const wchar_t* type) {
    ++lookups[reinterpret_cast<ULONG_PTR>(name)];
    return findResource(module, name, type);
}
HGLOBAL WINAPI NotLoaded(HMODULE, HRSRC) {
    return nullptr;
}
DWORD WINAPI TooSmall(HMODULE, HRSRC) {
    return 23;
}

DWORD(WINAPI* systemColor)(int) = nullptr;
constexpr COLORREF themeWindow = RGB(0x12, 0x34, 0x56);
DWORD WINAPI DarkTheme(int index) {
    return index == COLOR_WINDOW ? themeWindow : systemColor(index);
}

// What comes from a bitmap of 16 bits a pixel: 5, 6 and 5 bits, the highest of which fill the rest.
BOOL(WINAPI* blit)(HDC, int, int, int, int, HDC, int, int, DWORD) = nullptr;
BOOL WINAPI BlitFrom16Bits(HDC dc, int x, int y, int width, int height, HDC source, int fromX,
                           int fromY, DWORD operation) {
    const BOOL done = blit(dc, x, y, width, height, source, fromX, fromY, operation);
    DIBSECTION target = {};
    GetObjectW(GetCurrentObject(dc, OBJ_BITMAP), sizeof target, &target);
    const auto pixels = static_cast<BYTE*>(target.dsBm.bmBits);
    for (int row = 0; pixels && row < target.dsBm.bmHeight; ++row) {
        for (int at = 0; at < 3 * target.dsBm.bmWidth; ++at) {
            BYTE& part = pixels[row * target.dsBm.bmWidthBytes + at];
            const int kept = at % 3 == 1 ? 6 : 5;
            part = static_cast<BYTE>((part & 0xFF << (8 - kept)) | part >> kept);
        }
    }
    return done;
}

// Three icons of 4 x 4: full red, a blue upper left pixel, nothing.
ImageStrip SampleStrip() {
    BITMAPINFO info = {};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = 13;
    info.bmiHeader.biHeight = -4;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 24;
    void* bits = nullptr;
    platform::UniqueBitmap bitmap(
        CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0));
    const platform::UniqueMemoryDC dc(CreateCompatibleDC(nullptr));
    {
        const platform::Selected selected(dc.Get(), bitmap.Get());
        for (int y = 0; y < 4; ++y) {
            for (int x = 0; x < 13; ++x) {
                SetPixel(dc.Get(), x, y, x < 4 ? RGB(255, 0, 0) : key);
            }
        }
        SetPixel(dc.Get(), 4, 0, RGB(0, 0, 255));
    }
    return ImageStrip(std::move(bitmap), key);
}

SIZE SizeOf(HBITMAP bitmap) {
    BITMAP description = {};
    EXPECT_NE(GetObjectW(bitmap, sizeof description, &description), 0);
    return SIZE{description.bmWidth, description.bmHeight};
}

}  // namespace

TEST(StripHeight, IsReadFromThePicturesHeader) {
    EXPECT_EQ(StripHeight(Own(), 1000), 38u);
    EXPECT_EQ(StripHeight(Own(), 1001), 76u);
    EXPECT_EQ(StripHeight(Own(), 1002), 152u);
    EXPECT_EQ(StripHeight(Own(), 1005), 38u);
    EXPECT_EQ(StripHeight(Own(), 1006), 76u);
}

TEST(StripHeight, IsNoneWithoutAPicture) {
    EXPECT_FALSE(StripHeight(Own(), 1003));
    {
        const test::PlatformHook load("LoadResource", NotLoaded);
        EXPECT_FALSE(StripHeight(Own(), 1000));
    }
    const test::PlatformHook size("SizeofResource", TooSmall);
    EXPECT_FALSE(StripHeight(Own(), 1000));
}

TEST(StripChoice, IsTheLargestThatIsNotLargerThanTheIcons) {
    const struct {
        unsigned shortSide;
        UINT mainStrip;
        UINT statusStrip;
    } screens[] = {{0, 1000, 1005},    {120, 1000, 1005},  {240, 1000, 1005}, {455, 1000, 1005},
                   {456, 1001, 1006},  {480, 1001, 1006},  {911, 1001, 1006}, {912, 1002, 1006},
                   {1080, 1002, 1006}, {10000, 1002, 1006}};
    for (const auto& screen : screens) {
        const unsigned icon = MetricsForShortSide(screen.shortSide).iconSize;
        EXPECT_EQ(ChooseStrip(Own(), mainStrips, icon), screen.mainStrip) << screen.shortSide;
        EXPECT_EQ(ChooseStrip(Own(), statusStrips, icon), screen.statusStrip) << screen.shortSide;
    }
}

TEST(StripChoice, PassesOverMissingPictures) {
    const test::PlatformHook find("FindResourceW", FindWithGaps);
    findResource = find.Original();
    missing = {1002};
    EXPECT_EQ(ChooseStrip(Own(), mainStrips, 200), 1001u);
    missing = {1001, 1002};
    EXPECT_EQ(ChooseStrip(Own(), mainStrips, 200), 1000u);
    missing = {1000, 1001, 1002, 1006};
    EXPECT_EQ(ChooseStrip(Own(), mainStrips, 200), 1000u);
    EXPECT_EQ(ChooseStrip(Own(), statusStrips, 200), 1005u);
}

TEST(StripPictures, HaveTheirSizesAndSquareIcons) {
    const struct {
        UINT id;
        LONG width;
        LONG height;
    } pictures[] = {
        {1000, 684, 38}, {1001, 1368, 76}, {1002, 4104, 152}, {1005, 228, 38}, {1006, 456, 76}};
    for (const auto& picture : pictures) {
        const ImageStrip strip = LoadStrip(text::ResourceModule(), picture.id);
        ASSERT_TRUE(strip) << picture.id;
        EXPECT_EQ(SizeOf(strip.Bitmap()).cx, picture.width);
        EXPECT_EQ(SizeOf(strip.Bitmap()).cy, picture.height);
        EXPECT_EQ(strip.IconSize(), picture.height);
        EXPECT_EQ(strip.Count(), picture.width / picture.height);
    }
    EXPECT_FALSE(LoadStrip(text::ResourceModule(), 1003));
}

// The program's strip of 76 pixels as the pack's smallest.
TEST(StripPictures, AreThePacksWhereItHasThem) {
    const HRSRC resource = FindResourceW(Own(), MAKEINTRESOURCEW(1001), L"GIF");
    const auto bytes = static_cast<const BYTE*>(LockResource(LoadResource(Own(), resource)));
    const test::TemporaryFolder folder;
    const std::wstring path = folder.Path() + L"\\pack.dll";
    test::ResourceModule(0x0407)
        .Picture(1000, std::vector<BYTE>(bytes, bytes + SizeofResource(Own(), resource)))
        .Write(path);
    const platform::UniqueModule pack(
        LoadLibraryExW(path.c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE));
    ASSERT_TRUE(pack);
    text::SetResourceModule(pack.Get(), 0x0407);
    const ImageStrip own = LoadStrip(text::ResourceModule(), 1000);
    const ImageStrip missingThere = LoadStrip(text::ResourceModule(), 1005);
    text::SetProgramModule(Own());
    EXPECT_EQ(own.IconSize(), 76);
    EXPECT_EQ(missingThere.IconSize(), 38);
    EXPECT_EQ(LoadStrip(text::ResourceModule(), 1000).IconSize(), 38);
}

// A picture that is too large for the screen, in the place of one that fits it.
TEST(DrawingResources, AreNotLargerThanTheIconsWhateverThePackHas) {
    const unsigned icon = GetScreenMetrics().iconSize;
    ASSERT_LT(icon, 152u);
    const HRSRC resource = FindResourceW(Own(), MAKEINTRESOURCEW(1002), L"GIF");
    const auto bytes = static_cast<const BYTE*>(LockResource(LoadResource(Own(), resource)));
    const std::vector<BYTE> large(bytes, bytes + SizeofResource(Own(), resource));
    const test::TemporaryFolder folder;
    const std::wstring path = folder.Path() + L"\\pack.dll";
    test::ResourceModule(0x0407).Picture(1001, large).Picture(1006, large).Write(path);
    const platform::UniqueModule pack(
        LoadLibraryExW(path.c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE));
    ASSERT_TRUE(pack);
    text::SetResourceModule(pack.Get(), 0x0407);
    DrawingResources resources;
    resources.Load();
    const int reserved = resources.StatusIconSize();
    EXPECT_LE(resources.MainStrip().IconSize(), static_cast<int>(icon));
    EXPECT_LE(resources.StatusStrip().IconSize(), static_cast<int>(icon));
    EXPECT_EQ(resources.StatusStrip().IconSize(), reserved);
    text::SetProgramModule(Own());
}

// One that fits, although the pack has none for other screens.
TEST(DrawingResources, AreThePacksWhereItHasThemForThisScreen) {
    const HRSRC resource = FindResourceW(Own(), MAKEINTRESOURCEW(1005), L"GIF");
    const auto bytes = static_cast<const BYTE*>(LockResource(LoadResource(Own(), resource)));
    const std::vector<BYTE> small(bytes, bytes + SizeofResource(Own(), resource));
    const test::TemporaryFolder folder;
    const std::wstring path = folder.Path() + L"\\pack.dll";
    test::ResourceModule(0x0407).Picture(1002, small).Write(path);
    const platform::UniqueModule pack(
        LoadLibraryExW(path.c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE));
    ASSERT_TRUE(pack);
    text::SetResourceModule(pack.Get(), 0x0407);
    DrawingResources resources;
    resources.Load();
    // The program's strips of this height are wider.
    EXPECT_EQ(resources.MainStrip().IconSize(), 38);
    EXPECT_EQ(resources.MainStrip().Count(), 6);
    text::SetProgramModule(Own());
}

TEST(DrawingResources, HoldTheStripForThisScreenAndTheNextLarger) {
    DrawingResources resources;
    resources.Load();
    const unsigned icon = GetScreenMetrics().iconSize;
    const UINT chosen = icon >= 152 ? 1002 : icon >= 76 ? 1001 : 1000;
    EXPECT_EQ(static_cast<UINT>(resources.MainStrip().IconSize()), 38u << (chosen - 1000));
    ASSERT_EQ(static_cast<bool>(resources.SecondStrip()), chosen < 1002);
    if (chosen < 1002) {
        EXPECT_EQ(resources.SecondStrip().IconSize(), 2 * resources.MainStrip().IconSize());
    }
    EXPECT_EQ(resources.StatusStrip().IconSize(), icon >= 76 ? 76 : 38);
    EXPECT_NE(resources.fonts.Large(), resources.fonts.Base());
    resources.Free();
    EXPECT_FALSE(resources.MainStrip() || resources.SecondStrip() || resources.StatusStrip());
    EXPECT_EQ(resources.fonts.Large(), resources.fonts.Base());
}

TEST(DrawingResources, LoadTheStatusIconsOnceAndNotBeforeTheyAreNeeded) {
    const test::PlatformHook find("FindResourceW", CountingFind);
    findResource = find.Original();
    lookups.clear();
    DrawingResources resources;
    resources.Load();
    EXPECT_EQ(lookups[1005], 0);
    EXPECT_EQ(lookups[1006], 0);
    const int size = resources.StatusIconSize();
    EXPECT_TRUE(resources.StatusStrip());
    EXPECT_EQ(resources.StatusStrip().IconSize(), size);
    EXPECT_EQ(resources.StatusIconSize(), size);
    const std::map<ULONG_PTR, int> once = lookups;
    EXPECT_TRUE(resources.StatusStrip());
    EXPECT_EQ(lookups, once);
}

TEST(DrawingResources, WithoutTheLargerPicturesUseTheSmallest) {
    const test::PlatformHook find("FindResourceW", FindWithGaps);
    findResource = find.Original();
    missing = {1001, 1002, 1006};
    DrawingResources resources;
    resources.Load();
    EXPECT_EQ(resources.MainStrip().IconSize(), 38);
    EXPECT_FALSE(resources.SecondStrip());
    EXPECT_EQ(resources.StatusStrip().IconSize(), 38);
}

TEST(DrawingResources, WithoutAnyPictureAreEmptyButWhole) {
    const test::PlatformHook find("FindResourceW", FindWithGaps);
    findResource = find.Original();
    missing = {1000, 1001, 1002, 1005, 1006};
    DrawingResources resources;
    resources.Load();
    EXPECT_FALSE(resources.MainStrip() || resources.SecondStrip() || resources.StatusStrip());
    const test::Canvas canvas(8, 8);
    EXPECT_FALSE(resources.MainStrip().Draw(canvas.DC(), 0, 0, 0));
}

TEST(DrawingResources, ReloadingGivesTheOldOnesBack) {
    DrawingResources resources;
    const auto load = [&resources] {
        resources.Load();
        EXPECT_TRUE(resources.MainStrip() && resources.StatusStrip());
        EXPECT_EQ(static_cast<bool>(resources.SecondStrip()),
                  resources.MainStrip().IconSize() < 152);
    };
    load();
    const unsigned before = test::CountHeld().gdiObjects;
    for (int round = 0; round < 20; ++round) {
        load();
    }
    EXPECT_EQ(test::CountHeld().gdiObjects, before);
}

TEST(DrawingResources, ReloadingLooksForEveryPictureAgain) {
    DrawingResources resources;
    resources.Load();
    ASSERT_TRUE(resources.SecondStrip());
    ASSERT_TRUE(resources.StatusStrip());
    const test::PlatformHook find("FindResourceW", FindWithGaps);
    findResource = find.Original();
    missing = {1001, 1002, 1005, 1006};
    resources.Load();
    EXPECT_EQ(resources.MainStrip().IconSize(), 38);
    EXPECT_FALSE(resources.SecondStrip());
    EXPECT_FALSE(resources.StatusStrip());
}

TEST(StatusStrip, FindsItsKeyOnAScreenOf16Bits) {
    const test::PlatformHook color("GetSysColor", DarkTheme);
    systemColor = color.Original();
    const test::PlatformHook from16Bits("BitBlt", BlitFrom16Bits);
    blit = from16Bits.Original();
    const ImageStrip strip = LoadStatusStrip(40);
    const ImageStrip decoded = LoadStrip(text::ResourceModule(), 1005);
    ASSERT_TRUE(strip && decoded);
    const platform::UniqueMemoryDC before(CreateCompatibleDC(nullptr));
    const platform::UniqueMemoryDC after(CreateCompatibleDC(nullptr));
    const platform::Selected decodedIn(before.Get(), decoded.Bitmap());
    const platform::Selected stripIn(after.Get(), strip.Bitmap());
    for (int y = 0; y < decoded.IconSize(); ++y) {
        for (int x = 0; x < decoded.IconSize() * decoded.Count(); ++x) {
            const bool isKey = GetPixel(before.Get(), x, y) == RGB(200, 200, 200);
            ASSERT_EQ(GetPixel(after.Get(), x, y) == themeWindow, isKey) << x << ',' << y;
        }
    }
}

TEST(StatusStrip, ShowsTheWindowsColorInPlaceOfItsKey) {
    const test::PlatformHook color("GetSysColor", DarkTheme);
    systemColor = color.Original();
    for (const unsigned icon : {40u, 80u}) {
        const ImageStrip strip = LoadStatusStrip(icon);
        const ImageStrip decoded = LoadStrip(text::ResourceModule(), icon == 80 ? 1006 : 1005);
        ASSERT_TRUE(strip && decoded);
        EXPECT_EQ(strip.Transparent(), themeWindow);
        EXPECT_EQ(strip.IconSize(), decoded.IconSize());
        const platform::UniqueMemoryDC before(CreateCompatibleDC(nullptr));
        const platform::UniqueMemoryDC after(CreateCompatibleDC(nullptr));
        const platform::Selected decodedIn(before.Get(), decoded.Bitmap());
        const platform::Selected stripIn(after.Get(), strip.Bitmap());
        int replaced = 0;
        int kept = 0;
        for (int y = 0; y < decoded.IconSize(); ++y) {
            for (int x = 0; x < decoded.IconSize() * decoded.Count(); ++x) {
                const COLORREF was = GetPixel(before.Get(), x, y);
                const bool isKey = was == RGB(200, 200, 200);
                ASSERT_EQ(GetPixel(after.Get(), x, y), isKey ? themeWindow : was) << x << ',' << y;
                ++(isKey ? replaced : kept);
            }
        }
        EXPECT_GT(replaced, 0);
        EXPECT_GT(kept, 0);
    }
}

TEST(ImageStrip, DrawsOneIconAndLeavesTheRest) {
    const ImageStrip strip = SampleStrip();
    EXPECT_EQ(strip.Count(), 3);
    const test::Canvas canvas(10, 10, green);
    EXPECT_TRUE(strip.Draw(canvas.DC(), 2, 3, 0));
    EXPECT_EQ(canvas.At(1, 3), green);
    EXPECT_EQ(canvas.At(2, 3), RGB(255, 0, 0));
    EXPECT_EQ(canvas.At(5, 6), RGB(255, 0, 0));
    EXPECT_EQ(canvas.At(6, 6), green);
    EXPECT_EQ(canvas.At(5, 7), green);
}

TEST(ImageStrip, ItsTransparentColorLetsTheBackgroundThrough) {
    const ImageStrip strip = SampleStrip();
    const test::Canvas canvas(10, 10, green);
    EXPECT_TRUE(strip.Draw(canvas.DC(), 0, 0, 1));
    EXPECT_EQ(canvas.At(0, 0), RGB(0, 0, 255));
    EXPECT_EQ(canvas.At(1, 0), green);
    EXPECT_EQ(canvas.At(3, 3), green);
}

TEST(ImageStrip, HasNoIconOutsideIt) {
    const ImageStrip strip = SampleStrip();
    const test::Canvas canvas(10, 10, green);
    EXPECT_FALSE(strip.Draw(canvas.DC(), 0, 0, 3));
    EXPECT_FALSE(strip.Draw(canvas.DC(), 0, 0, -1));
    EXPECT_FALSE(ImageStrip().Draw(canvas.DC(), 0, 0, 0));
    const test::PlatformHook dc("CreateCompatibleDC", test::NoDC);
    EXPECT_FALSE(strip.Draw(canvas.DC(), 0, 0, 0));
}

TEST(ImageStrip, ACopyInOneColorKeepsTheShape) {
    const ImageStrip grey = SampleStrip().Recolored(nullptr, RGB(90, 91, 92));
    ASSERT_TRUE(grey);
    const test::Canvas canvas(10, 10, green);
    EXPECT_TRUE(grey.Draw(canvas.DC(), 0, 0, 0));
    EXPECT_TRUE(grey.Draw(canvas.DC(), 5, 5, 1));
    EXPECT_EQ(canvas.At(3, 3), RGB(90, 91, 92));
    EXPECT_EQ(canvas.At(5, 5), RGB(90, 91, 92));
    EXPECT_EQ(canvas.At(6, 5), green);
}

TEST(ImageStrip, DrawingAndCopyingGiveBackEveryObject) {
    const ImageStrip strip = SampleStrip();
    const test::Canvas canvas(10, 10, green);
    strip.Draw(canvas.DC(), 0, 0, 0);
    const unsigned before = test::CountHeld().gdiObjects;
    for (int round = 0; round < 1000; ++round) {
        strip.Draw(canvas.DC(), 0, 0, 0);
        strip.Recolored(canvas.DC(), green);
    }
    EXPECT_EQ(test::CountHeld().gdiObjects, before);
}
