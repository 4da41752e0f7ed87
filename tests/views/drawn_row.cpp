#include "tests/views/drawn_row.h"

#include <commctrl.h>
#include <gtest/gtest.h>

#include "platform/handles.h"
#include "tests/support/platform_hook.h"
#include "ui/paint/paint.h"

namespace test {

namespace {

// The row stands somewhere within a larger picture, as in a list.
constexpr int offset = 7;

std::vector<DrawnText>* texts = nullptr;
std::vector<int>* icons = nullptr;

using TextOut = BOOL WINAPI(HDC, int, int, UINT, const RECT*, LPCWSTR, UINT, const INT*);
using DrawIcon = BOOL WINAPI(HIMAGELIST, int, HDC, int, int, UINT);
TextOut* realTextOut = nullptr;
DrawIcon* realDrawIcon = nullptr;

BOOL WINAPI NotingTextOut(HDC dc, int x, int y, UINT options, const RECT* area, LPCWSTR text,
                          UINT length, const INT* distances) {
    DrawnText drawn = {std::wstring(text, length), x, y - offset, RECT{}, GetTextColor(dc), SIZE{}};
    if (area && (options & ETO_CLIPPED)) {
        drawn.area = *area;
    }
    GetTextExtentPoint32W(dc, text, static_cast<int>(length), &drawn.size);
    texts->push_back(drawn);
    return realTextOut(dc, x, y, options, area, text, length, distances);
}

BOOL WINAPI NotingDrawIcon(HIMAGELIST list, int index, HDC dc, int x, int y, UINT style) {
    icons->push_back(index);
    return realDrawIcon(list, index, dc, x, y, style);
}

}  // namespace

DrawnRow::DrawnRow(ui::RowListWindow& list, unsigned index, SIZE size, bool selected)
    : size_(size) {
    const platform::WindowDC screen(nullptr);
    const platform::UniqueBitmap bitmap(
        CreateCompatibleBitmap(screen, size.cx, size.cy + 2 * offset));
    const platform::UniqueMemoryDC memory(CreateCompatibleDC(screen));
    const platform::Selected chosen(memory.Get(), bitmap.Get());
    ui::FillWithSystemColor(memory.Get(), RECT{0, 0, size.cx, size.cy + 2 * offset}, COLOR_WINDOW);
    DRAWITEMSTRUCT row = {};
    row.CtlType = ODT_LISTBOX;
    row.itemAction = ODA_DRAWENTIRE;
    row.itemState = selected ? ODS_SELECTED : 0;
    row.hDC = memory.Get();
    row.rcItem = RECT{0, offset, size.cx, offset + size.cy};
    row.itemID = index;
    row.itemData = list.GetItemData(index);
    list.BeginFrame(false);
    texts = &texts_;
    icons = &icons_;
    {
        const PlatformHook<TextOut> textHook("ExtTextOutW", NotingTextOut);
        const PlatformHook<DrawIcon> iconHook("ImageList_Draw", NotingDrawIcon);
        realTextOut = textHook.Original();
        realDrawIcon = iconHook.Original();
        list.DrawItem(row);
    }
    for (int y = 0; y < size.cy; ++y) {
        for (int x = 0; x < size.cx; ++x) {
            pixels_.push_back(GetPixel(memory.Get(), x, offset + y));
        }
    }
    // Neighbouring rows stay untouched.
    for (int x = 0; x < size.cx; ++x) {
        EXPECT_EQ(GetPixel(memory.Get(), x, offset - 1), GetSysColor(COLOR_WINDOW));
        EXPECT_EQ(GetPixel(memory.Get(), x, offset + size.cy), GetSysColor(COLOR_WINDOW));
    }
}

bool DrawnRow::HasMarks(const RECT& area) const {
    for (int y = area.top; y < area.bottom; ++y) {
        for (int x = area.left; x < area.right; ++x) {
            if (At(x, y) != At(size_.cx - 1, 0)) {
                return true;
            }
        }
    }
    return false;
}

}  // namespace test
