// A full-screen dialog: a form list above a bar of soft keys.
#pragma once

#include "ui/command_bar.h"
#include "ui/dialog.h"
#include "ui/form_list.h"

namespace ui {

// The bars of pages.
inline constexpr UINT barDoneCancel = 120;
inline constexpr UINT barDone = 121;
inline constexpr UINT barCancel = 122;

class Page : public Dialog {
 protected:
    // `caption` is a string resource, `bar` a menu resource.
    Page(UINT caption, UINT bar) : caption_(caption), barMenu_(bar) {}

    // Adds the rows; called once, when the list is open.
    virtual void Fill(FormList& list) = 0;
    // A command of the bar; those not taken here end the dialog when they are 1 or 2.
    virtual bool OnCommand(WORD /*command*/) { return false; }
    // A message of the list.
    virtual LRESULT OnNotify(const NMHDR& /*notification*/) { return 0; }

    FormList& List() { return list_; }
    CommandBar& Bar() { return bar_; }

    bool OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

 private:
    bool SetUp();
    void Arrange();
    void Paint(HDC dc, const RECT& client);
    void MoveFocus(bool forward);
    void FollowVisibleArea();

    UINT caption_;
    UINT barMenu_;
    FormList list_;
    CommandBar bar_;
    int bandHeight_ = 0;
};

// Which of `count` stops has the focus after a step from `current`.
unsigned NextStop(unsigned current, unsigned count, bool forward);

}  // namespace ui
