#include "ui/paint/fonts.h"

#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "tests/support/platform_hook.h"
#include "tests/support/world.h"
#include "tests/ui/failing_drawing.h"

using ui::FontSet;

namespace {

LOGFONTW DescriptionOf(HFONT font) {
    LOGFONTW description = {};
    EXPECT_NE(GetObjectW(font, sizeof description, &description), 0);
    return description;
}

// A device whose stock font has another height.
LONG stockHeight = 0;
int(WINAPI* readObject)(HANDLE, int, void*) = nullptr;
int WINAPI ReadOtherStockFont(HANDLE object, int size, void* buffer) {
    const int result = readObject(object, size, buffer);
    if (result && size == sizeof(LOGFONTW)) {
        static_cast<LOGFONTW*>(buffer)->lfHeight = stockHeight;
    }
    return result;
}

std::vector<LONG> madeHeights;
HFONT(WINAPI* makeFont)(const LOGFONTW*) = nullptr;
HFONT WINAPI NoteFont(const LOGFONTW* description) {
    madeHeights.push_back(description->lfHeight);
    return makeFont(description);
}

std::vector<HGDIOBJ> deleted;
BOOL(WINAPI* deleteObject)(HGDIOBJ) = nullptr;
BOOL WINAPI NoteDeleted(HGDIOBJ object) {
    deleted.push_back(object);
    return deleteObject(object);
}

int WINAPI NothingRead(HANDLE, int, void*) {
    return 0;
}
BOOL WINAPI NoMetrics(HDC, TEXTMETRICW*) {
    return FALSE;
}

}  // namespace

TEST(FontSet, HoldsTheStockFontAloneBeforeTheFirstLoad) {
    const FontSet fonts;
    ASSERT_TRUE(fonts.Base());
    EXPECT_EQ(fonts.Bold(), fonts.Base());
    EXPECT_EQ(fonts.Large(), fonts.Base());
    EXPECT_EQ(fonts.Small(), fonts.Base());
    EXPECT_EQ(fonts.Title(), fonts.Base());
}

TEST(FontSet, DerivesHeightsAndWeightsFromTheStockFont) {
    FontSet fonts;
    fonts.Load();
    const LOGFONTW base = DescriptionOf(fonts.Base());
    const LONG height = base.lfHeight;
    const struct {
        HFONT font;
        LONG height;
        LONG weight;
    } expected[] = {{fonts.Bold(), height, 700},
                    {fonts.Large(), height + height / 3, 500},
                    {fonts.Small(), height - height / 5, 400}};
    for (const auto& font : expected) {
        LOGFONTW description = DescriptionOf(font.font);
        EXPECT_EQ(description.lfHeight, font.height);
        EXPECT_EQ(description.lfWeight, font.weight);
        // All the rest is the stock font's.
        description.lfHeight = base.lfHeight;
        description.lfWeight = base.lfWeight;
        EXPECT_EQ(std::memcmp(&description, &base, offsetof(LOGFONTW, lfFaceName)), 0);
        EXPECT_STREQ(description.lfFaceName, base.lfFaceName);
    }
}

TEST(FontSet, TruncatesThirdsAndFifthsTowardsZero) {
    const test::PlatformHook read("GetObjectW", ReadOtherStockFont);
    readObject = read.Original();
    const test::PlatformHook make("CreateFontIndirectW", NoteFont);
    makeFont = make.Original();
    FontSet fonts;
    for (const LONG height : {-17L, 17L, -12L, -4L}) {
        stockHeight = height;
        madeHeights.clear();
        fonts.Load();
        ASSERT_GE(madeHeights.size(), 3u);
        EXPECT_EQ(madeHeights[0], height);
        const LONG third = height < 0 ? -(-height / 3) : height / 3;
        const LONG fifth = height < 0 ? -(-height / 5) : height / 5;
        EXPECT_EQ(madeHeights[1], height + third);
        EXPECT_EQ(madeHeights[2], height - fifth);
    }
}

TEST(FontSet, DeletesSmallBoldAndLargeInThisOrder) {
    FontSet fonts;
    fonts.Load();
    const std::vector<HGDIOBJ> owned = {fonts.Small(), fonts.Bold(), fonts.Large()};
    const test::PlatformHook hook("DeleteObject", NoteDeleted);
    deleteObject = hook.Original();
    deleted.clear();
    fonts.Free();
    ASSERT_GE(deleted.size(), 3u);
    deleted.resize(3);
    EXPECT_EQ(deleted, owned);
    EXPECT_EQ(fonts.Bold(), fonts.Base());
}

TEST(FontSet, NeverDeletesTheStockFont) {
    FontSet fonts;
    const test::PlatformHook hook("DeleteObject", NoteDeleted);
    deleteObject = hook.Original();
    deleted.clear();
    fonts.Load();
    fonts.Load();
    fonts.Free();
    for (const HGDIOBJ object : deleted) {
        EXPECT_NE(object, fonts.Base());
    }
    EXPECT_EQ(deleted.size(), 8u);
}

TEST(FontSet, ReloadingDeletesTheOldSet) {
    FontSet fonts;
    fonts.Load();
    const unsigned before = test::CountHeld().gdiObjects;
    for (int round = 0; round < 1000; ++round) {
        fonts.Load();
    }
    EXPECT_EQ(test::CountHeld().gdiObjects, before);
}

TEST(FontSet, AFontThatCannotBeMadeIsTheStockFont) {
    FontSet fonts;
    {
        const test::PlatformHook make("CreateFontIndirectW", test::NoFont);
        fonts.Load();
    }
    EXPECT_EQ(fonts.Bold(), fonts.Base());
    EXPECT_EQ(fonts.Large(), fonts.Base());
    EXPECT_EQ(fonts.Small(), fonts.Base());
    EXPECT_EQ(fonts.Title(), fonts.Base());
}

TEST(FontSet, AnUnreadableStockFontLeavesTheStockFontAlone) {
    FontSet fonts;
    fonts.Load();
    const test::PlatformHook read("GetObjectW", NothingRead);
    fonts.Load();
    EXPECT_EQ(fonts.Large(), fonts.Base());
}

TEST(TextHeight, IsTheFontsLineAndFifteenWhenItCannotBeRead) {
    FontSet fonts;
    fonts.Load();
    const platform::UniqueMemoryDC dc(CreateCompatibleDC(nullptr));
    const HGDIOBJ before = GetCurrentObject(dc.Get(), OBJ_FONT);
    const int base = ui::TextHeight(dc.Get(), fonts.Base());
    const int large = ui::TextHeight(dc.Get(), fonts.Large());
    EXPECT_EQ(GetCurrentObject(dc.Get(), OBJ_FONT), before);
    const platform::Selected selected(dc.Get(), fonts.Base());
    TEXTMETRICW metrics = {};
    ASSERT_TRUE(GetTextMetricsW(dc.Get(), &metrics));
    EXPECT_EQ(base, metrics.tmHeight);
    EXPECT_GT(large, base);
    const test::PlatformHook hook("GetTextMetricsW", NoMetrics);
    EXPECT_EQ(ui::TextHeight(dc.Get(), fonts.Base()), 15);
}
