// The program's own popup menus: a menu's items as the rows of a touch list, run modally.
#pragma once

#include <optional>

#include "ui/list/touch_list.h"
#include "ui/window/modal_loop.h"

namespace ui {

// No command was chosen.
inline constexpr int noCommand = -1;

// Opens `menu` next to `anchor` (screen coordinates) as a popup owned by `owner` and runs it until
// a command is chosen or the menu is closed. Returns the command's identifier or noCommand;
// `lastMessage` receives the message that ended the menu. `flags` is reserved, 0.
int TrackPopup(HWND owner, const RECT& anchor, HMENU menu, UINT flags, MSG* lastMessage);

// The same for the list of entries of a page slider, whose windows have a class of their own.
int TrackSpinnerMenu(HWND owner, const RECT& anchor, HMENU menu);

class PopupMenu final : public TouchList<PopupMenu> {
 public:
    // `windowClass` is a literal.
    PopupMenu(const wchar_t* windowClass, HMENU menu, const RECT& anchor)
        : windowClass_(windowClass), menu_(menu), anchor_(anchor) {}
    ~PopupMenu() override;

    // Creates, fills and places the window; false when the platform fails.
    bool Open(HWND owner);
    // The modal loop; returns the message that ended it.
    MSG Run();
    int ChosenCommand() const { return chosenCommand_; }

    SIZE Measure(unsigned index, int clientWidth, int clientHeight, ULONG_PTR data);
    void DrawItem(const DRAWITEMSTRUCT& row);
    void EraseBackground(HDC dc, const RECT& area);
    void OnTap(unsigned index, GestureResult gesture);
    void DeleteItem(ULONG_PTR) {}
    static constexpr platform::PartRole rowRole = platform::PartRole::MenuItem;
    bool IsDisabled(unsigned index) const;

 protected:
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

 private:
    void Fill();
    void Choose(unsigned index);
    // Opens the submenu of a row; true when this menu is to close as well.
    bool ChooseInSubmenu(HMENU submenu, const RECT& row);
    void Close();
    void OnDeactivated();
    bool OnKeyUp(WPARAM key);
    // A button other than a finger's, or a wheel, over another window.
    LoopStep OnMouseElsewhere(const MSG& message) const;

    const wchar_t* windowClass_;
    HMENU menu_;
    RECT anchor_;
    int chosenCommand_ = noCommand;
    bool running_ = false;
    bool submenuOpen_ = false;
    // The message that closes the menu came through a loop inside the menu's own.
    bool closed_ = false;
    // The tap outside that ended this menu, when it is not the message that the loop ended with.
    std::optional<MSG> closingTap_;
};

}  // namespace ui
