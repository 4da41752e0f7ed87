// On a screen that is tall enough the views stand side by side at its top.
#include "tests/e2e/files_fixture.h"
#include "ui/window/window.h"

using namespace test;

namespace {

class TallScreen : public FilesProgram {
 protected:
    // Taps one of the four entries of the slide bar.
    void TapEntry(int entry) const {
        const HWND bar = FindChild(Window(), L"kx::SlideBar");
        ASSERT_TRUE(bar);
        const RECT area = ScreenRectangleOf(bar);
        ASSERT_GT(ui::Width(area), ui::Height(area));
        const int x = area.left + ui::Width(area) * (1 + 2 * entry) / 8;
        ASSERT_TRUE(Finger().Tap(x, (area.top + area.bottom) / 2).Play());
    }
};

}  // namespace

TEST_F(TallScreen, LeadsToEveryViewByOneTap) {
    StartAt(L"\\Temp");
    TapEntry(1);
    EXPECT_TRUE(ShowsCaption(L"Applications ("));
    TapEntry(2);
    EXPECT_TRUE(ShowsCaption(L"Processes ("));
    TapEntry(3);
    EXPECT_TRUE(ShowsCaption(L"System Status"));
    TapEntry(0);
    EXPECT_TRUE(ShowsCaption(L"\\Temp"));
}
