// A dialog that fills the screen: its caption above its contents, a bar of soft keys below.
#pragma once

#include <string>

#include "ui/bar/command_bar.h"
#include "ui/dialog/dialog.h"

namespace ui {

class FullScreenDialog : public Dialog {
 protected:
    // `bar` is a menu resource.
    FullScreenDialog(std::wstring caption, UINT bar) : caption_(std::move(caption)), menu_(bar) {}

    // Creates the contents as children of the dialog; false when the platform fails.
    virtual bool OpenContents() = 0;
    // Places them in client coordinates. Also called before there are any.
    virtual void ArrangeContents(const RECT& area) = 0;
    // The contents have been arranged for the first time.
    virtual void ContentsReady() {}
    // The window of the contents that has the keyboard; null before there is one.
    virtual HWND Contents() const = 0;
    // A command of the bar; those not taken here end the dialog when they are 1 or 2.
    virtual bool OnCommand(WORD /*command*/) { return false; }
    // A message of the contents.
    virtual LRESULT OnNotify(const NMHDR& /*notification*/) { return 0; }

    CommandBar& Bar() { return bar_; }

    bool OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

 private:
    bool SetUp();
    void Arrange();
    void Paint(HDC dc, const RECT& client);
    void MoveFocus(bool forward);
    void FollowVisibleArea();

    std::wstring caption_;
    UINT menu_;
    CommandBar bar_;
    int bandHeight_ = 0;
};

// Which of `count` stops has the focus after a step from `current`.
unsigned NextStop(unsigned current, unsigned count, bool forward);

}  // namespace ui
