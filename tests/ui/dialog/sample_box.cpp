#include "tests/ui/dialog/sample_box.h"

#include "tests/support/box.h"
#include "tests/support/keyboard.h"
#include "ui/paint/drawing_resources.h"
#include "ui/paint/theme.h"

namespace test {

void BoxTest::SetUp() {
    ASSERT_TRUE(owner.Open());
    ASSERT_TRUE(PumpUntil([&] { return GetForegroundWindow() == owner.Handle(); }));
}

int BoxTest::Show(const std::wstring& text, const std::vector<UINT>& buttons,
                  unsigned defaultButton, const std::function<void()>& script, UINT title) {
    int result = 0;
    WhileUser(script, [&] {
        result = ui::ShowMessage(owner.Handle(), text, title, static_cast<unsigned>(buttons.size()),
                                 buttons.data(), defaultButton);
    });
    return result;
}

HWND BoxTest::WaitForBox() const {
    const HWND box = test::WaitForBox();
    EXPECT_TRUE(box && Bar(box));
    EXPECT_TRUE(WaitFor([&] {
        return LookAtKeyboard().focus == Bar(box) && Has(Picture::OfWindow(box), ui::barColor);
    }));
    return box;
}

POINT BoxTest::ButtonPoint(HWND box, unsigned index, unsigned count) {
    const RECT bar = ScreenRectangleOf(Bar(box));
    const auto middle = static_cast<LONG>(2 * index + 1);
    return POINT{bar.left + ui::Width(bar) * middle / static_cast<LONG>(2 * count),
                 (bar.top + bar.bottom) / 2};
}

COLORREF BoxTest::ButtonColor(HWND box, unsigned index, unsigned count) {
    // Near the upper edge no label stands.
    const RECT bar = ScreenRectangleOf(Bar(box));
    const LONG x = ButtonPoint(box, index, count).x;
    const LONG y = bar.top + 4;
    return Picture::OfScreen(RECT{x, y, x + 1, y + 1}).At(0, 0);
}

}  // namespace test
