// What all views have in common: one list that fills the pane, text heights, and the ways of a
// list with the frame.
#pragma once

#include "ui/list/row_list.h"
#include "views/command_table.h"
#include "views/display_flags.h"
#include "views/key_table.h"
#include "views/view.h"

namespace views {

// The height of a row of one text line that a thumb can hit, in pixels.
int ThumbRowHeight(int textHeight);

class ListView : public View, protected ui::RowListOwner {
 public:
    static constexpr wchar_t listClass[] = L"kx::TouchList";

    void Layout(HDC dc) override;
    void Rescale(HDC dc) override;
    bool Activate(const ViewArgument& argument) override;
    bool Deactivate(HDC dc) override;
    void Resume() override {}
    void Suspend() override {}
    bool Key(WPARAM key) override;
    bool Command(WORD command) override;
    void Arrange(const RECT& area) override;
    bool Back() override { return false; }
    void Close() override {}
    void Focus() override { SetFocus(list_->Handle()); }
    bool Idle() override { return list_->CompleteNearby(); }

    // Whether there is what a command needs.
    bool Meets(Needs needs) const;

    // The keys of the view, and those of every view.
    virtual std::span<const KeyEntry> Keys() const { return {}; }
    static std::span<const KeyEntry> CommonKeys();

 protected:
    // `menu` is the resource of the view's bar.
    ListView(Frame& frame, UINT menu) : frame_(frame), menu_(menu) {}
    // The list, a member of the view; to be called by its constructor.
    void SetList(ui::RowListWindow& list) { list_ = &list; }

    // Whether a command may be given now.
    virtual bool Allows(WORD /*command*/) const { return true; }
    // Gives the command of a key.
    virtual void Give(WORD command) { PostMessageW(frame_.MainWindow(), WM_COMMAND, command, 0); }

    Frame& GetFrame() const { return frame_; }
    bool HasSelection() const { return list_->HasSelection(); }
    void OnSelected() override { frame_.MenuStateChanged(); }
    bool OnKey(WPARAM key) override { return Key(key) || frame_.FrameKey(key); }
    void OnMenu(const RECT& anchor) override;

    // The heights of a text line in the base and the small font, and of the smallest row that a
    // thumb can hit, in pixels.
    int textHeight_ = 0;
    int smallTextHeight_ = 0;
    int oneLineHeight_ = 0;

 private:
    Frame& frame_;
    ui::RowListWindow* list_ = nullptr;
    UINT menu_;
};

}  // namespace views
