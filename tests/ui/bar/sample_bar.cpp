#include "tests/ui/bar/sample_bar.h"

#include "ui/paint/drawing_resources.h"
#include "ui/paint/theme.h"
#include "ui/popup/menu_items.h"
#include "ui/popup/popup_menu.h"

namespace test {

namespace {

BOOL CALLBACK NotePopup(HWND window, LPARAM parameter) {
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    if (process == GetCurrentProcessId() && IsWindowVisible(window) &&
        ClassOf(window) == L"kx::PopupMenu") {
        reinterpret_cast<std::vector<HWND>*>(parameter)->push_back(window);
    }
    return TRUE;
}

// The height of a menu's row, from the font alone.
int RowHeight() {
    const platform::WindowDC dc(nullptr);
    const int text = ui::TextHeight(dc, ui::Fonts().Base());
    return text + 2 * ((text + 2) / 3);
}

}  // namespace

std::vector<HWND> Popups() {
    std::vector<HWND> popups;
    EnumWindows(NotePopup, reinterpret_cast<LPARAM>(&popups));
    return popups;
}

HWND WaitForPopups(size_t count) {
    std::vector<HWND> popups;
    const bool found = WaitFor([&] { return (popups = Popups()).size() == count; });
    EXPECT_TRUE(found) << popups.size() << " menus instead of " << count;
    return found && count > 0 ? popups.front() : nullptr;
}

POINT RowPoint(HWND popup, unsigned row) {
    return OnScreen(popup, 30, RowHeight() * static_cast<int>(row) + RowHeight() / 2);
}

unsigned RowCount(HWND popup) {
    return static_cast<unsigned>(ui::Height(ScreenRectangleOf(popup)) / RowHeight());
}

bool Has(const Picture& picture, COLORREF color) {
    return Has(picture, RECT{0, 0, picture.Width(), picture.Height()}, color);
}

bool Has(const Picture& picture, const RECT& area, COLORREF color) {
    for (int y = area.top; y < area.bottom; ++y) {
        for (int x = area.left; x < area.right; ++x) {
            if (picture.At(x, y) == color) {
                return true;
            }
        }
    }
    return false;
}

HMENU MakeMenu(const std::vector<Item>& items, bool popup) {
    const HMENU menu = popup ? CreatePopupMenu() : CreateMenu();
    for (const Item& item : items) {
        if (item.submenu.empty()) {
            AppendMenuW(menu, item.flags, item.id, item.text);
        } else {
            AppendMenuW(menu, item.flags | MF_POPUP,
                        reinterpret_cast<UINT_PTR>(MakeMenu(item.submenu)), item.text);
        }
    }
    for (UINT position = 0; position < items.size(); ++position) {
        MENUITEMINFOW info = {};
        info.cbSize = sizeof info;
        info.fMask = MIIM_DATA;
        info.dwItemData = ~static_cast<ULONG_PTR>(0);
        SetMenuItemInfoW(menu, position, TRUE, &info);
    }
    return menu;
}

BarTest::BarTest() {
    owner.answer = [this](UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result) {
        if (message == WM_COMMAND) {
            const std::lock_guard lock(mutex_);
            commands_.push_back(Command{wParam, lParam});
        }
        return more && more(message, wParam, lParam, result);
    };
}

void BarTest::Open(const std::vector<Item>& items) {
    OpenWith(MakeMenu(items, false));
}

void BarTest::OpenWith(HMENU menu) {
    ASSERT_TRUE(owner.Open());
    RECT area = owner.ClientRectangle();
    area.top = area.bottom - 40;
    ASSERT_TRUE(bar.Open(owner.Handle(), area));
    if (menu) {
        bar.SetMenu(menu);
    }
    SetFocus(owner.Handle());
    ASSERT_TRUE(PumpUntil([&] {
        return GetForegroundWindow() == owner.Handle() &&
               Has(Picture::OfWindow(bar.Handle()), ui::barColor);
    }));
}

RECT BarTest::ButtonArea(unsigned button) const {
    RECT area = ScreenRectangleOf(bar.Handle());
    const LONG slot = ui::Width(area) / static_cast<LONG>(std::max(2u, bar.ButtonCount()));
    area.left += static_cast<LONG>(button) * slot;
    area.right = area.left + slot;
    return area;
}

POINT BarTest::ButtonPoint(unsigned button) const {
    const RECT area = ButtonArea(button);
    return POINT{(area.left + area.right) / 2, (area.top + area.bottom) / 2};
}

bool BarTest::ShowsPressed(unsigned button, bool pressed) const {
    return WaitFor([&] { return Has(PictureOfButton(button), ui::barPressedColor) == pressed; });
}

bool BarTest::BarHasCapture() const {
    GUITHREADINFO info = {};
    info.cbSize = sizeof info;
    GetGUIThreadInfo(GetWindowThreadProcessId(owner.Handle(), nullptr), &info);
    return info.hwndCapture && info.hwndCapture == bar.Handle();
}

std::vector<Command> BarTest::Commands() const {
    const std::lock_guard lock(mutex_);
    return commands_;
}

bool BarTest::AllPopupsClosed() {
    return WaitFor([] { return Popups().empty(); });
}

int BarTest::Track(HMENU menu, const RECT& anchor, const std::function<void()>& script) {
    int result = 0;
    WhileUser(script,
              [&] { result = ui::TrackPopup(owner.Handle(), anchor, menu, 0, &lastMessage); });
    return result;
}

int BarTest::Track(const std::vector<Item>& items, const std::function<void()>& script) {
    const platform::UniqueMenu menu(MakeMenu(items));
    return Track(menu.Get(), ButtonArea(0), script);
}

}  // namespace test
