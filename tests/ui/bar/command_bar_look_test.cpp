#include "tests/support/platform_hook.h"
#include "tests/support/world.h"
#include "tests/ui/bar/sample_bar.h"
#include "tests/ui/canvas.h"
#include "ui/paint/drawing_resources.h"
#include "ui/paint/theme.h"

using namespace test;

namespace {

constexpr COLORREF key = RGB(255, 0, 255);
constexpr COLORREF iconColor = RGB(250, 120, 3);

// Two icons of 20 x 20: a frame of two pixels, and nothing.
ui::ImageStrip SampleStrip() {
    const platform::WindowDC screen(nullptr);
    platform::UniqueBitmap bitmap(CreateCompatibleBitmap(screen, 40, 20));
    const platform::UniqueMemoryDC dc(CreateCompatibleDC(screen));
    {
        const platform::Selected selected(dc.Get(), bitmap.Get());
        ui::FillWithColor(dc.Get(), RECT{0, 0, 40, 20}, key);
        ui::DrawFrame(dc.Get(), RECT{0, 0, 20, 20}, 2, iconColor);
    }
    return ui::ImageStrip(std::move(bitmap), key);
}

class CommandBarLook : public BarTest {
 protected:
    ~CommandBarLook() override {
        if (replaced_) {
            ui::Resources().Load();
        }
    }
    void UseSampleStrip() {
        replaced_ = true;
        ui::Resources().MainStrip() = SampleStrip();
    }
    // A bar of two items with the images 0 and `second`.
    void OpenWithImages(ULONG_PTR second, UINT flags = MF_STRING) {
        const HMENU menu = MakeMenu({{10, L"One", flags}, {11, L"Two"}}, false);
        const ULONG_PTR images[] = {0, second};
        for (UINT position = 0; position < 2; ++position) {
            MENUITEMINFOW info = {};
            info.cbSize = sizeof info;
            info.fMask = MIIM_DATA;
            info.dwItemData = images[position];
            SetMenuItemInfoW(menu, position, TRUE, &info);
        }
        OpenWith(menu);
    }

 private:
    bool replaced_ = false;
};

}  // namespace

TEST_F(CommandBarLook, ALabelIsWhiteInTheMiddleOfItsButton) {
    Open({{10, L"HHHH"}, {11, L"Two"}});
    const Picture picture = PictureOfButton(0);
    int left = picture.Width();
    int right = 0;
    int top = picture.Height();
    int bottom = 0;
    for (int y = 0; y < picture.Height(); ++y) {
        for (int x = 0; x < picture.Width(); ++x) {
            if (picture.At(x, y) == RGB(255, 255, 255)) {
                left = std::min(left, x);
                right = std::max(right, x);
                top = std::min(top, y);
                bottom = std::max(bottom, y);
            }
        }
    }
    ASSERT_LT(left, right);
    EXPECT_NEAR((left + right) / 2, picture.Width() / 2, 3);
    EXPECT_NEAR((top + bottom) / 2, picture.Height() / 2, 4);
}

TEST_F(CommandBarLook, ARuleAcrossTheTopPartsItFromWhatIsAbove) {
    Open({{10, L"One"}, {11, L"Two"}});
    const Picture picture = Picture::OfWindow(bar.Handle());
    for (int x = 0; x < picture.Width(); ++x) {
        EXPECT_EQ(picture.At(x, 0), ui::barRuleColor) << x;
    }
    EXPECT_EQ(picture.At(1, GetSystemMetrics(SM_CYBORDER)), ui::barColor);
}

TEST_F(CommandBarLook, ADisabledLabelHasTheSystemsGray) {
    Open({{10, L"HHHH", MF_STRING | MF_GRAYED}, {11, L"Two"}});
    EXPECT_FALSE(Has(PictureOfButton(0), RGB(255, 255, 255)));
    EXPECT_TRUE(Has(PictureOfButton(0), GetSysColor(COLOR_GRAYTEXT)));
    EXPECT_FALSE(Has(PictureOfButton(1), GetSysColor(COLOR_GRAYTEXT)));
}

TEST_F(CommandBarLook, IsDarkEnoughForWhiteText) {
    Open({{10, L"One"}});
    const COLORREF background = PictureOfButton(1).At(10, 20);
    EXPECT_LT(GetRValue(background) + GetGValue(background) + GetBValue(background), 3 * 64);
}

TEST_F(CommandBarLook, AnImageStandsInTheMiddleOfItsButton) {
    UseSampleStrip();
    OpenWithImages(0);
    const Picture picture = PictureOfButton(0);
    const int x = (picture.Width() - 20) / 2;
    EXPECT_EQ(picture.At(x, 10), iconColor);
    EXPECT_EQ(picture.At(x + 19, 29), iconColor);
    EXPECT_EQ(picture.At(x + 20, 29), ui::barColor);
    EXPECT_EQ(picture.At(x - 1, 10), ui::barColor);
    EXPECT_EQ(picture.At(x + 10, 20), ui::barColor);
    // Transparent all over: no text stands beside an image.
    EXPECT_FALSE(Has(picture, RGB(255, 255, 255)));
    EXPECT_FALSE(Has(picture, key));
}

TEST_F(CommandBarLook, ADisabledImageHasTheSystemsGray) {
    UseSampleStrip();
    OpenWithImages(0, MF_STRING | MF_GRAYED);
    const Picture picture = PictureOfButton(0);
    const int x = (picture.Width() - 20) / 2;
    EXPECT_EQ(picture.At(x, 10), GetSysColor(COLOR_GRAYTEXT));
    EXPECT_EQ(picture.At(x + 10, 20), ui::barColor);
    EXPECT_FALSE(Has(picture, iconColor));
    EXPECT_EQ(PictureOfButton(1).At(x, 10), iconColor);
}

TEST_F(CommandBarLook, AnImageThatIsNotThereLeavesTheText) {
    UseSampleStrip();
    OpenWithImages(2);
    EXPECT_TRUE(Has(PictureOfButton(1), RGB(255, 255, 255)));
    ui::Resources().MainStrip() = ui::ImageStrip();
    InvalidateRect(bar.Handle(), nullptr, FALSE);
    UpdateWindow(bar.Handle());
    EXPECT_TRUE(PumpUntil([&] { return Has(PictureOfButton(0), RGB(255, 255, 255)); }));
}

TEST_F(CommandBarLook, PaintingGivesBackEveryObject) {
    UseSampleStrip();
    OpenWithImages(2, MF_STRING | MF_GRAYED);
    const auto paint = [&] {
        InvalidateRect(bar.Handle(), nullptr, FALSE);
        UpdateWindow(bar.Handle());
    };
    paint();
    const Held before = CountHeld();
    for (int round = 0; round < 1000; ++round) {
        paint();
    }
    EXPECT_EQ(CountHeld(), before);
}

TEST_F(CommandBarLook, AskingToEraseIsAnsweredWithoutDrawing) {
    Open({{10, L"One"}});
    EXPECT_EQ(SendMessageW(bar.Handle(), WM_ERASEBKGND, 0, 0), 1);
}

TEST_F(CommandBarLook, ToolkitWindowsShareTheirClassStyle) {
    Open({{10, L"One"}});
    WNDCLASSW description = {};
    ASSERT_TRUE(GetClassInfoW(GetModuleHandleW(nullptr), L"kx::CmdBar", &description));
    EXPECT_EQ(description.style, 0xBu);
    EXPECT_EQ(description.hCursor, nullptr);
    EXPECT_EQ(description.hbrBackground, reinterpret_cast<HBRUSH>(COLOR_WINDOW + 1));
    EXPECT_EQ(GetWindowLongW(bar.Handle(), GWL_STYLE) & 0x56000000, 0x56000000);
}
