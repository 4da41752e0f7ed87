// How controls come to the screen: composed elsewhere, then shown by one copy.
#include "res/resource.h"
#include "tests/support/platform_hook.h"
#include "tests/ui/bar/sample_bar.h"
#include "ui/bar/page_slider.h"
#include "ui/bar/slide_bar.h"
#include "ui/dialog/form_rows.h"

using namespace test;

namespace {

int copiesToWindows = 0;
BOOL(WINAPI* blit)(HDC, int, int, int, int, HDC, int, int, DWORD) = nullptr;
BOOL WINAPI NoteCopy(HDC dc, int x, int y, int width, int height, HDC source, int fromX, int fromY,
                     DWORD operation) {
    copiesToWindows += GetObjectType(dc) == OBJ_DC;
    return blit(dc, x, y, width, height, source, fromX, fromY, operation);
}

int singlePixels = 0;
COLORREF(WINAPI* getPixel)(HDC, int, int) = nullptr;
COLORREF WINAPI NoteRead(HDC dc, int x, int y) {
    ++singlePixels;
    return getPixel(dc, x, y);
}
COLORREF(WINAPI* setPixel)(HDC, int, int, COLORREF) = nullptr;
COLORREF WINAPI NoteWritten(HDC dc, int x, int y, COLORREF color) {
    ++singlePixels;
    return setPixel(dc, x, y, color);
}

class ControlPainting : public BarTest {
 protected:
    void ExpectOneCopy(HWND control) {
        // The first drawing loads what it draws from.
        RedrawWindow(control, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
        const PlatformHook<decltype(NoteCopy)> copies("BitBlt", NoteCopy);
        blit = copies.Original();
        const PlatformHook<decltype(NoteRead)> reads("GetPixel", NoteRead);
        getPixel = reads.Original();
        const PlatformHook<decltype(NoteWritten)> writes("SetPixel", NoteWritten);
        setPixel = writes.Original();
        copiesToWindows = singlePixels = 0;
        RedrawWindow(control, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
        EXPECT_EQ(copiesToWindows, 1);
        EXPECT_EQ(singlePixels, 0);
    }
};

}  // namespace

TEST_F(ControlPainting, OfABarIsOneCopy) {
    Open({{1, L"Left"}, {2, L"Gray", MF_STRING | MF_GRAYED}});
    ExpectOneCopy(bar.Handle());
}

TEST_F(ControlPainting, OfASlideBarIsOneCopy) {
    Open({{1, L"Left"}});
    ui::SlideBar slideBar;
    ASSERT_TRUE(slideBar.Open(owner.Handle()));
    ASSERT_TRUE(slideBar.LoadBar(IDR_SLIDE_BAR));
    MoveWindow(slideBar.Handle(), 0, 60, 300, 90, TRUE);
    ExpectOneCopy(slideBar.Handle());
}

TEST_F(ControlPainting, OfAPageSliderIsOneCopy) {
    Open({{1, L"Left"}});
    ui::PageSlider slider;
    ASSERT_TRUE(slider.Open(owner.Handle(), RECT{0, 0, 300, 40}, owner.Handle()));
    slider.SetEntries({{L"One", 10}, {L"Two", 11}});
    ExpectOneCopy(slider.Handle());
}

TEST_F(ControlPainting, OfALongFormIsOneCopy) {
    Open({{1, L"Left"}});
    ui::FormList list;
    ASSERT_TRUE(list.Open(owner.Handle(), RECT{0, 0, 200, 150}, 5));
    list.AddRow(std::make_unique<ui::HeadingRow>(L"Heading", nullptr, -1));
    list.AddRow(std::make_unique<ui::CheckRow>(L"Check", true));
    for (int row = 0; row < 40; ++row) {
        list.AddRow(std::make_unique<ui::ValueRow>(L"Label", L"value"));
    }
    list.Layout();
    list.SetSelection(1);
    ExpectOneCopy(list.Handle());
}
