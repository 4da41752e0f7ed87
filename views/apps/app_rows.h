// How running applications look in their list.
#pragma once

#include <string>

#include "platform/windows.h"
#include "views/apps/hidden_app_list.h"
#include "views/system_icons.h"

namespace views {

// One running application.
struct AppItem {
    std::wstring title;
    // The path of the executable.
    std::wstring path;
    // Index into the system's image lists, -1 for none, unknownIcon until it is asked for.
    int32_t icon;
    // The application's top-level window.
    HWND window;
};

// By their titles, in the locale's order without regard to case.
inline bool OrdersBefore(const AppItem& first, const AppItem& second) {
    return IgnoresCase()(first.title, second.title);
}

class AppRows {
 public:
    // Measures the font and the system's large icons. Sizes are pixels.
    void Layout(HDC dc);
    int Height() const { return height_; }
    void Draw(const DRAWITEMSTRUCT& row, const AppItem& item) const;

 private:
    SystemIcons icons_;
    int textHeight_ = 0;
    int height_ = 0;
};

}  // namespace views
