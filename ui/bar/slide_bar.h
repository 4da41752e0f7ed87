// A strip of a menu's top-level items as icons, side by side or one above the other.
#pragma once

#include <optional>

#include "platform/handles.h"
#include "ui/window/window.h"

namespace ui {

// Which edge of its parent a slide bar stands on.
enum class SlideBarPlace { None, Top, Left };

// Where a bar `thickness` pixels wide takes nothing from the rows: at the top of a tall area that
// holds at least `enoughRows` rows without it, at the left of one that is half as wide again as it
// is high, nowhere else.
SlideBarPlace PlaceSlideBar(int width, int height, int rowHeight, int thickness);

class SlideBar final : public Window {
 public:
    SlideBar() = default;
    ~SlideBar() override { Destroy(); }

    // Creates the bar as a child of `parent`, without a size; false when the platform fails.
    bool Open(HWND parent);
    // Takes the top-level items of a menu resource as entries; false when neither module has it.
    bool LoadBar(UINT resourceId);
    // The menu whose items are the entries; owned by the bar.
    HMENU Menu() const { return menu_.Get(); }
    // The thickness that the bar wants, in pixels: its icons with a margin.
    int Thickness() const;

    // Part n is entry n - 1.
    bool Describe(unsigned part, platform::AccessiblePart* description) override;
    unsigned PartCount() const override { return count_; }

 protected:
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

 private:
    RECT EntryBounds(const RECT& client, UINT index) const;
    std::optional<UINT> EntryAt(POINT point) const;
    void OnPress(POINT point);
    void Activate(UINT index);
    void Paint(HDC dc, const RECT& client);

    platform::UniqueMenu menu_;
    UINT count_ = 0;
    std::optional<UINT> pressed_;
};

}  // namespace ui
