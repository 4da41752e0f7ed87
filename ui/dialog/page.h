// A full-screen dialog that is a form list.
#pragma once

#include <string>
#include <vector>

#include "ui/dialog/form_list.h"
#include "ui/dialog/full_screen_dialog.h"

namespace ui {

// The bars of pages.

// A line of a page: what it is about, and what there is to say.
struct LabelledValue {
    std::wstring label;
    std::wstring value;
};

class Page : public FullScreenDialog {
 protected:
    // `caption` is a string resource, `bar` a menu resource.
    Page(UINT caption, UINT bar);

    // Adds the rows; called once, when the list is open.
    virtual void Fill(FormList& list) = 0;

    FormList& List() { return list_; }
    // Adds a row for each line; the values stand in a column behind the widest label.
    void AddValues(const std::vector<LabelledValue>& lines);

    bool OpenContents() override;
    void ArrangeContents(const RECT& area) override;
    void ContentsReady() override { list_.Layout(); }
    HWND Contents() const override { return list_.Handle(); }
    bool OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

 private:
    FormList list_;
};

}  // namespace ui
