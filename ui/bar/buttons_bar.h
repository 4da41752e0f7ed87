// The row of buttons of a message box.
#pragma once

#include <string>
#include <vector>

#include "ui/window/window.h"

namespace ui {

// How the buttons share a row, in pixels.
struct ButtonsLayout {
    int left = 0;
    int top = 0;
    int width = 0;
    int height = 0;
    int gap = 0;

    RECT Bounds(unsigned index) const;
};

// `count` buttons of equal width in a client area; `rowHeight` is a button's measured height.
ButtonsLayout LayOutButtons(int clientWidth, int clientHeight, unsigned count, int rowHeight);

// Which button has the keyboard after a step forward or back, and whether it went round an end.
struct ButtonStep {
    unsigned index;
    bool wrapped;
};
ButtonStep StepButton(unsigned focused, unsigned count, bool forward);

class ButtonsBar final : public Window {
 public:
    enum class State { Normal = 0, Hot = 1, Pressed = 2 };

    ButtonsBar() = default;
    ~ButtonsBar() override;

    // Creates the bar as an empty child of `parent`; false when the platform fails.
    bool Open(HWND parent);
    // Adds a button whose label and command identifier are a string resource.
    void AddButton(UINT id);
    // Gives the keyboard to a button, to none (~0u), or leaves it where there is no such button.
    void FocusButton(unsigned index);
    unsigned FocusedButton() const { return focused_; }

    // Part n is button n - 1.
    bool Describe(unsigned part, platform::AccessiblePart* description) override;
    unsigned PartCount() const override { return static_cast<unsigned>(buttons_.size()); }
    unsigned FocusedPart() const override { return focused_ + 1; }

    // The height of a button and the width that all labels need, in pixels.
    int RowHeight() const { return rowHeight_; }
    int NaturalWidth() const { return naturalWidth_; }

 protected:
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

 private:
    struct Button {
        UINT id;
        std::wstring label;
    };

    ButtonsLayout CurrentLayout() const;
    unsigned ButtonAt(POINT point) const;
    void Measure();
    void Paint(HDC dc, const RECT& client);
    void DrawButton(HDC dc, const RECT& bounds, unsigned index);
    State StateOf(unsigned index) const;
    void SetHot(unsigned index);
    void UpdateHotFromCursor();
    void TrackPress(unsigned index);
    // True when the finger was lifted over the button that it pressed.
    bool FollowPress(unsigned index);
    // False when the key is not handled.
    bool OnKey(WPARAM key);
    void SendCommand(UINT id);

    std::vector<Button> buttons_;
    unsigned focused_ = 0;
    unsigned hot_ = ~0u;
    unsigned pressed_ = ~0u;
    int rowHeight_ = 0;
    int naturalWidth_ = 0;
};

}  // namespace ui
