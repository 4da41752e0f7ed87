// A message box on the screen: where its parts are, and what it returns.
#pragma once

#include "res/resource.h"
#include "tests/ui/bar/sample_bar.h"
#include "ui/dialog/message_box.h"

namespace test {

class BoxTest : public testing::Test {
 protected:
    static inline const std::vector<UINT> yesNo = {IDS_BUTTON_YES, IDS_BUTTON_NO};

    void SetUp() override;
    // Shows a box beside the user's script; what it returned.
    int Show(const std::wstring& text, const std::vector<UINT>& buttons, unsigned defaultButton,
             const std::function<void()>& script, UINT title = IDS_WARNING);

    // For the user's thread. The box, null when it does not come.
    HWND WaitForBox() const;
    static HWND Bar(HWND box) { return FindChild(box, L"kx::MBButtonsBar"); }
    // The middle of button `index` of `count`, in screen coordinates.
    static POINT ButtonPoint(HWND box, unsigned index, unsigned count);
    // The fill color of a button, read beside its label.
    static COLORREF ButtonColor(HWND box, unsigned index, unsigned count);
    static bool ShowsButtonColor(HWND box, unsigned index, unsigned count, COLORREF color) {
        return WaitFor([&] { return ButtonColor(box, index, count) == color; });
    }
    // Input that does not end the box, and such that does.
    void Play(Finger& finger) { input.Play(finger); }
    static void End(Finger& finger) { finger.Play(); }
    static void End() { Finger().Key("Escape").Play(); }
    void Run(const std::function<void()>& script) { PumpWhileUser(script); }

    InputTaken input;
    SampleOwner owner;
};

}  // namespace test
