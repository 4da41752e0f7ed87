// The main frame's child window: it holds the windows of the views.
#pragma once

#include "ui/window/window.h"

namespace app {

// What the pane passes on.
class PaneOwner {
 public:
    // Places the windows of all views.
    virtual void ArrangeView(const RECT& area) = 0;
    virtual void TimerOfView(UINT_PTR timer) = 0;

 protected:
    ~PaneOwner() = default;
};

class ViewPane final : public ui::Window {
 public:
    explicit ViewPane(PaneOwner& owner) : owner_(owner) {}
    ~ViewPane() override { Destroy(); }

    // Creates the pane as a child of `parent`; false when the platform fails.
    bool Open(HWND parent) { return Create(L"kx::ViewPane", L"", ui::childStyle, RECT{}, parent); }

 protected:
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

 private:
    PaneOwner& owner_;
};

}  // namespace app
