// How running applications look in their list.
#pragma once

#include <string>

#include "platform/windows.h"
#include "text/comparison.h"
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
    // Whether the window answers.
    bool answers = true;
};

// By their titles, in the locale's order without regard to case.
inline bool OrdersBefore(const AppItem& first, const AppItem& second) {
    return text::LessIgnoringCase(first.title, second.title);
}

class AppRows {
 public:
    // Measures the font and the system's large icons. Sizes are pixels.
    void Layout(HDC dc);
    int Height() const { return height_; }
    void Draw(const DRAWITEMSTRUCT& row, const AppItem& item) const;

 private:
    // The row's one line, or two where the window does not answer and the row is high enough.
    void DrawLines(HDC dc, const RECT& area, const AppItem& item) const;

    SystemIcons icons_;
    int textHeight_ = 0;
    int smallTextHeight_ = 0;
    int height_ = 0;
};

}  // namespace views
