// The bar of soft keys at the bottom of a window: a menu's top-level items as buttons of equal
// width, whose popups and commands reach the bar's parent as a platform menu's would.
#pragma once

#include <vector>

#include "platform/handles.h"
#include "ui/paint/images.h"
#include "ui/window/window.h"

namespace ui {

// The bounds of button `index` of `count` in a bar; there are never fewer than two slots.
RECT BarButtonBounds(const RECT& bar, unsigned count, unsigned index);

class CommandBar final : public Window {
 public:
    static constexpr wchar_t className[] = L"kx::CmdBar";

    CommandBar() = default;
    ~CommandBar() override;

    // Creates the bar as a child of `parent`; false when the platform fails.
    bool Open(HWND parent, const RECT& bounds);

    // Shows the top-level items of a menu, which the bar then owns.
    void SetMenu(HMENU menu);
    // Loads a menu resource, from the language pack first; false, and the bar as it was, when
    // neither module has it or it cannot be read.
    bool LoadBar(UINT resourceId);
    // The same for a while: the buttons that were there are kept, and come back without anything
    // that could fail. Another menu for the bar drops them.
    bool Cover(UINT resourceId);
    void Uncover();
    // The menu whose items are the buttons; owned by the bar.
    HMENU Menu() const { return buttons_.menu.Get(); }

    // Does what a press of the button does: opens its popup, or sends its command.
    void ActivateButton(unsigned index);
    // Opens the popup of a button elsewhere, next to `anchor` (screen coordinates). Nothing happens
    // for a button without one.
    void OpenPopupAt(unsigned index, const RECT& anchor);
    // Whether a button gives a command itself instead of opening a popup.
    bool HasCommands() const { return buttons_.haveCommands; }
    // Part n is button n - 1.
    bool Describe(unsigned part, platform::AccessiblePart* description) override;
    unsigned PartCount() const override { return ButtonCount(); }
    unsigned FocusedPart() const override { return focused_ + 1; }

    unsigned ButtonCount() const { return static_cast<unsigned>(buttons_.positions.size()); }

 protected:
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

 private:
    // A menu with the position of each button's item.
    struct Buttons {
        platform::UniqueMenu menu;
        std::vector<UINT> positions;
        bool haveCommands = false;
    };

    static bool Load(UINT resourceId, Buttons* buttons);
    static Buttons ButtonsOf(platform::UniqueMenu menu);
    void Show(Buttons buttons);
    unsigned ButtonAt(POINT point) const;
    void OnPress(POINT point);
    // Waits for a short tap's end; true when the finger was lifted in that time.
    bool WaitForQuickTap();
    // Follows a longer press; returns the button to activate.
    unsigned TrackPress(unsigned button);
    void SetPressed(unsigned button);
    // The keys of a bar that has the keyboard, as a dialog's may; false for any other key.
    bool OnKey(WPARAM key);
    // At the button, or next to `elsewhere` on the screen.
    void OpenPopup(unsigned button, HMENU submenu, const RECT* elsewhere = nullptr);
    void Paint(HDC dc, const RECT& client);
    void DrawButton(HDC dc, const RECT& bounds, unsigned button);
    bool DrawImage(HDC dc, const RECT& bounds, int image, bool disabled);

    Buttons buttons_;
    Buttons covered_;
    unsigned pressed_ = ~0u;
    // The button that the keyboard acts on while the bar has the focus.
    unsigned focused_ = 0;
    // Whether Enter is held down on the focused button, which acts when it is released.
    bool enterDown_ = false;
    ImageStrip disabledImages_;
    // The strip that they were made from, to notice another one.
    HBITMAP disabledFrom_ = nullptr;
};

}  // namespace ui
