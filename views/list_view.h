// What all views have in common: one list that fills the pane, text heights, and the ways of a
// list with the frame.
#pragma once

#include "views/display_flags.h"
#include "views/view_list.h"

namespace views {

// The height of a row of one text line that a thumb can hit, in pixels.
int ThumbRowHeight(int textHeight);

class ListView : public View {
 public:
    void Layout(HDC dc) override;
    bool Activate(const ViewArgument& argument) override;
    bool Deactivate(HDC dc) override;
    void Resume() override {}
    void Suspend() override {}
    bool Key(WPARAM key) override;
    bool Command(WORD command) override;
    void Arrange(const RECT& area) override;
    bool Back() override { return false; }
    void MarksChanged() override {}
    void Close() override {}
    void Focus() override { SetFocus(list_.Handle()); }
    LRESULT Notify(const NMHDR& notification) override;
    int RowHeight(ULONG_PTR) const override { return oneLineHeight_; }

 protected:
    // `menu` is the resource of the view's bar.
    ListView(Frame& frame, UINT menu) : frame_(frame), list_(*this), menu_(menu) {}

    Frame& GetFrame() const { return frame_; }
    ViewList& List() { return list_; }
    const ViewList& List() const { return list_; }
    bool HasSelection() const { return list_.GetSelection() != ui::noRow; }

    // The heights of a text line in the base and the small font, and of the smallest row that a
    // thumb can hit, in pixels.
    int textHeight_ = 0;
    int smallTextHeight_ = 0;
    int oneLineHeight_ = 0;

 private:
    Frame& frame_;
    ViewList list_;
    UINT menu_;
};

}  // namespace views
