// The strip above the Files list that shows the folder; a leftward drag on it and the mouse's back
// button go up.
#pragma once

#include <functional>
#include <string>

#include "ui/paint/spacing.h"
#include "ui/window/window.h"

namespace views {

class PathBar final : public ui::Window {
 public:
    PathBar() = default;
    ~PathBar() override { Destroy(); }

    // `onUp` is called to go up. False when the platform fails.
    bool Open(HWND parent, std::function<void()> onUp);
    // Takes a folder as TextOfFolder writes it. Nothing is thrown.
    void SetText(std::wstring text);
    // The height that the strip wants, in pixels.
    static int PreferredHeight(int textHeight) { return ui::FormRowHeight(textHeight); }

 protected:
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

 private:
    void OnPress(POINT point);
    void Paint(HDC dc, const RECT& client);

    std::wstring path_;
    bool backPressed_ = false;
    std::function<void()> onUp_;
};

}  // namespace views
