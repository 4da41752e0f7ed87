#include "ui/paint/paint.h"

#include <gtest/gtest.h>

#include <set>

#include "tests/support/platform_hook.h"
#include "tests/support/world.h"
#include "tests/ui/canvas.h"
#include "tests/ui/failing_drawing.h"

using namespace ui;

namespace {

constexpr COLORREF magenta = RGB(255, 0, 255);

// How far the corner keeps a line's ends from the sides, found without a decision variable: a
// point of an octant belongs to the circle when the circle passes within half a pixel of it.
int ExpectedInset(int radius, int line, int height) {
    const int fromEdge = std::min(line, height - 1 - line);
    if (fromEdge >= radius) {
        return 0;
    }
    const int wanted = radius - fromEdge;
    int reach = 0;
    for (int x = 0; x <= radius; ++x) {
        int y = radius;
        while (4 * x * x + (2 * y - 1) * (2 * y - 1) >= 4 * radius * radius && y > 0) {
            --y;
        }
        if (x > y) {
            break;
        }
        if (y == wanted) {
            reach = std::max(reach, x);
        }
        if (x == wanted) {
            reach = std::max(reach, y);
        }
    }
    return radius - reach;
}

}  // namespace

TEST(Blending, RoundsTheMixOfEveryPairAndOpacity) {
    for (uint32_t opacity = 0; opacity < 256; ++opacity) {
        for (uint32_t color = 0; color < 256; ++color) {
            for (uint32_t old = 0; old < 256; ++old) {
                // The formula is a division by 255 rounded to the nearest.
                const uint32_t sum = color * opacity + old * (255 - opacity);
                if (BlendChannel(color, old, opacity) != (2 * sum + 255) / 510) {
                    FAIL() << color << " over " << old << " with " << opacity;
                }
            }
        }
    }
    EXPECT_EQ(BlendChannel(0x80, 0xFF, 200), 155);
    EXPECT_EQ(BlendChannel(0x80, 0, 200), 100);
}

TEST(Blending, SpansStayInsideTheSurface) {
    BlendSurface surface(nullptr, 5, 3);
    ASSERT_TRUE(surface);
    PatBlt(surface.DC(), 0, 0, 5, 3, WHITENESS);
    surface.BlendSpan(-4, 2, 1, 0, 255);
    surface.BlendSpan(4, 900, 1, 0, 255);
    surface.BlendSpan(0, 5, -1, 0, 255);
    surface.BlendSpan(0, 5, 3, 0, 255);
    surface.BlendSpan(3, 3, 0, 0, 255);
    for (int y = 0; y < 3; ++y) {
        for (int x = 0; x < 5; ++x) {
            const bool black = y == 1 && (x < 2 || x == 4);
            EXPECT_EQ(GetPixel(surface.DC(), x, y), black ? 0u : 0xFFFFFFu) << x << ',' << y;
        }
    }
}

TEST(Blending, LinesCountFromTheTop) {
    BlendSurface surface(nullptr, 5, 3);
    ASSERT_TRUE(surface);
    PatBlt(surface.DC(), 0, 0, 5, 3, WHITENESS);
    surface.BlendSpan(0, 1, 0, 0, 255);
    EXPECT_EQ(GetPixel(surface.DC(), 0, 0), 0u);
    EXPECT_EQ(GetPixel(surface.DC(), 0, 1), 0xFFFFFFu);
    EXPECT_EQ(GetPixel(surface.DC(), 0, 2), 0xFFFFFFu);
}

TEST(Blending, ChannelsKeepTheirOrder) {
    BlendSurface surface(nullptr, 3, 1);
    ASSERT_TRUE(surface);
    PatBlt(surface.DC(), 0, 0, 3, 1, BLACKNESS);
    surface.BlendPixel(1, 0, RGB(10, 20, 30), 255);
    EXPECT_EQ(GetPixel(surface.DC(), 1, 0), RGB(10, 20, 30));
    EXPECT_EQ(GetPixel(surface.DC(), 0, 0), 0u);
    EXPECT_EQ(GetPixel(surface.DC(), 2, 0), 0u);
}

TEST(RoundedRectangle, CornersFollowTheCircle) {
    for (int radius = 1; radius <= 30; ++radius) {
        const int width = 2 * radius + 3;
        const int height = 2 * radius + 5;
        BlendSurface surface(nullptr, width, height);
        ASSERT_TRUE(surface);
        PatBlt(surface.DC(), 0, 0, width, height, WHITENESS);
        surface.BlendRoundedRectangle(radius, 0, 255);
        for (int y = 0; y < height; ++y) {
            const int inset = ExpectedInset(radius, y, height);
            for (int x = 0; x < width; ++x) {
                const bool inside = x >= inset && x < width - inset;
                ASSERT_EQ(GetPixel(surface.DC(), x, y), inside ? 0u : 0xFFFFFFu)
                    << "radius " << radius << " at " << x << ',' << y;
            }
        }
    }
}

TEST(RoundedRectangle, ASmallCornerIsDrawnPixelByPixel) {
    BlendSurface surface(nullptr, 6, 9);
    ASSERT_TRUE(surface);
    PatBlt(surface.DC(), 0, 0, 6, 9, WHITENESS);
    surface.BlendRoundedRectangle(3, 0, 255);
    const char* const shape[] = {"..##..", ".####.", "######", "######", "######",
                                 "######", "######", ".####.", "..##.."};
    for (int y = 0; y < 9; ++y) {
        for (int x = 0; x < 6; ++x) {
            EXPECT_EQ(GetPixel(surface.DC(), x, y), shape[y][x] == '#' ? 0u : 0xFFFFFFu)
                << x << ',' << y;
        }
    }
}

TEST(RoundedRectangle, BlendsOverWhatWasThere) {
    BlendSurface surface(nullptr, 8, 8);
    ASSERT_TRUE(surface);
    for (int x = 0; x < 8; ++x) {
        SetPixel(surface.DC(), x, 4, RGB(x * 30, 255 - x * 30, 7));
    }
    surface.BlendRoundedRectangle(2, RGB(128, 64, 200), 200);
    for (uint32_t x = 0; x < 8; ++x) {
        EXPECT_EQ(GetPixel(surface.DC(), static_cast<int>(x), 4),
                  RGB(BlendChannel(128, x * 30, 200), BlendChannel(64, 255 - x * 30, 200),
                      BlendChannel(200, 7, 200)));
    }
}

TEST(RoundedRectangle, ARadiusLargerThanTheSurfaceIsCutToIt) {
    BlendSurface surface(nullptr, 6, 100);
    ASSERT_TRUE(surface);
    PatBlt(surface.DC(), 0, 0, 6, 100, WHITENESS);
    surface.BlendRoundedRectangle(1000, 0, 255);
    EXPECT_EQ(GetPixel(surface.DC(), 1, 0), 0xFFFFFFu);
    EXPECT_EQ(GetPixel(surface.DC(), 2, 0), 0u);
    EXPECT_EQ(GetPixel(surface.DC(), 0, 50), 0u);
}

TEST(BlendSurface, WithoutMemoryIsEmptyAndDrawsNothing) {
    const test::PlatformHook section("CreateDIBSection", test::NoSection);
    BlendSurface surface(nullptr, 8, 8);
    EXPECT_FALSE(surface);
    surface.BlendRoundedRectangle(2, 0, 255);
}

TEST(OffscreenBitmap, UsesTheTargetsCoordinatesAndShowsAllAtOnce) {
    test::Canvas target(40, 30);
    const RECT area = {10, 5, 20, 15};
    const OffscreenBitmap frame(target.DC(), area);
    ASSERT_TRUE(frame);
    FillWithColor(frame.DC(), RECT{0, 0, 40, 30}, magenta);
    FillWithColor(frame.DC(), RECT{12, 7, 13, 8}, RGB(1, 2, 3));
    EXPECT_EQ(target.At(15, 10), 0xFFFFFFu);
    frame.Show();
    EXPECT_EQ(target.At(9, 5), 0xFFFFFFu);
    EXPECT_EQ(target.At(10, 4), 0xFFFFFFu);
    EXPECT_EQ(target.At(10, 5), magenta);
    EXPECT_EQ(target.At(19, 14), magenta);
    EXPECT_EQ(target.At(20, 14), 0xFFFFFFu);
    EXPECT_EQ(target.At(19, 15), 0xFFFFFFu);
    EXPECT_EQ(target.At(12, 7), RGB(1, 2, 3));
}

TEST(OffscreenBitmap, IsEmptyWithoutDeviceContextOrBitmap) {
    const test::Canvas target(40, 30);
    {
        const test::PlatformHook dc("CreateCompatibleDC", test::NoDC);
        EXPECT_FALSE(OffscreenBitmap(target.DC(), RECT{0, 0, 4, 4}));
    }
    const test::PlatformHook bitmap("CreateCompatibleBitmap", test::NoBitmap);
    EXPECT_FALSE(OffscreenBitmap(target.DC(), RECT{0, 0, 4, 4}));
}

TEST(Frame, ForWhichThereIsNoMemoryIsSkippedAndTheNextOneIsShown) {
    const test::Canvas canvas(20, 20);
    const RECT area = {0, 0, 20, 20};
    FillWithColor(canvas.DC(), area, magenta);
    bool hasMemory = false;
    const auto paint = [&](HDC dc, const RECT& frame) {
        FillWithColor(dc, frame, RGB(1, 2, 3));
        if (!hasMemory) {
            throw std::bad_alloc();
        }
    };
    EXPECT_NO_THROW(ShowFrame(canvas.DC(), area, paint));
    EXPECT_EQ(GetPixel(canvas.DC(), 10, 10), magenta);
    hasMemory = true;
    ShowFrame(canvas.DC(), area, paint);
    EXPECT_EQ(GetPixel(canvas.DC(), 10, 10), RGB(1, 2, 3));
}

TEST(PaintingHelpers, GiveBackEveryObject) {
    const test::Canvas target(40, 30);
    const auto round = [&] {
        const OffscreenBitmap frame(target.DC(), RECT{0, 0, 20, 20});
        FillWithColor(frame.DC(), RECT{0, 0, 9, 9}, magenta);
        FillWithSystemColor(frame.DC(), RECT{0, 0, 9, 9}, COLOR_WINDOW);
        BlendSurface surface(frame.DC(), 6, 20);
        surface.BlendRoundedRectangle(3, 0x808080, 200);
        const test::PlatformHook bitmap("CreateCompatibleBitmap", test::NoBitmap);
        const OffscreenBitmap failed(target.DC(), RECT{0, 0, 20, 20});
    };
    round();
    const test::Held before = test::CountHeld();
    for (int count = 0; count < 1000; ++count) {
        round();
    }
    EXPECT_EQ(test::CountHeld().gdiObjects, before.gdiObjects);
}
