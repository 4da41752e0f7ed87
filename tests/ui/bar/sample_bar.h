// A window with a command bar and popup menus, and where their buttons and rows are on the screen.
#pragma once

#include <atomic>
#include <mutex>
#include <vector>

#include "tests/ui/list/sample_list.h"
#include "ui/bar/command_bar.h"

namespace test {

// The visible popup menus of this process, the topmost first.
std::vector<HWND> Popups();
// Waits until there are so many of them; the topmost one, null when it does not come to that.
HWND WaitForPopups(size_t count);
// The middle of a row of a menu whose rows all fit, in screen coordinates.
POINT RowPoint(HWND popup, unsigned row);
unsigned RowCount(HWND popup);
// The color of each system color and of mixtures is looked for: whether a picture has a color.
bool Has(const Picture& picture, COLORREF color);
// The same, inside a part of the picture.
bool Has(const Picture& picture, const RECT& area, COLORREF color);

// An item of a menu under construction.
struct Item {
    UINT id;
    const wchar_t* text;
    UINT flags = MF_STRING;
    std::vector<Item> submenu = {};
};
// A menu of these items, none with an image; the caller owns it.
HMENU MakeMenu(const std::vector<Item>& items, bool popup = true);

struct Command {
    WPARAM wParam;
    LPARAM lParam;
    bool operator==(const Command&) const = default;
};

// A test with a window over the whole screen and a bar of 40 pixels at its bottom.
class BarTest : public testing::Test {
 protected:
    BarTest();
    // Opens the window with a bar of these items and waits until it is seen.
    void Open(const std::vector<Item>& items);
    void OpenWith(HMENU menu);

    RECT ButtonArea(unsigned button) const;
    POINT ButtonPoint(unsigned button) const;
    Picture PictureOfButton(unsigned button) const { return Picture::OfScreen(ButtonArea(button)); }
    // Whether a button is drawn in its pressed look; for the user's thread.
    bool ShowsPressed(unsigned button, bool pressed = true) const;
    bool BarHasCapture() const;

    std::vector<Command> Commands() const;
    void Run(const std::function<void()>& script) { PumpWhileUser(script); }
    // Waits until there is no popup menu any more; for the user's thread.
    static bool AllPopupsClosed();
    Command CommandOf(UINT id) const { return Command{id, reinterpret_cast<LPARAM>(bar.Handle())}; }
    // Runs a popup of these items beside the user's script; what it returned.
    int Track(HMENU menu, const RECT& anchor, const std::function<void()>& script);
    int Track(const std::vector<Item>& items, const std::function<void()>& script);

    InputTaken input;
    SampleOwner owner;
    ui::CommandBar bar;
    // What the parent does more with a message; true when it has answered it.
    std::function<bool(UINT, WPARAM, LPARAM, LRESULT*)> more;
    MSG lastMessage = {};

 private:
    mutable std::mutex mutex_;
    std::vector<Command> commands_;
};

}  // namespace test
