// A window of the program: an object that answers its window's messages.
#pragma once

#include "platform/accessibility.h"
#include "platform/windows.h"

namespace ui {

inline constexpr DWORD childStyle = WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS | WS_CLIPCHILDREN;

class Window : public platform::AccessibleWindow {
 public:
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;

    HWND Handle() const { return handle_; }
    RECT ClientRectangle() const;
    void Destroy();

    // A window of which only what the system knows can be told.
    bool Describe(unsigned, platform::AccessiblePart*) override { return false; }
    unsigned PartCount() const override { return 0; }
    // Goes through the parts.
    unsigned PartAt(POINT point) override;
    unsigned FocusedPart() const override { return 0; }

 protected:
    Window() = default;
    // Destroys the window if it still exists.
    virtual ~Window();

    // Registers the class on first use and creates the window (RegisterClassW, CreateWindowExW).
    // False when that fails, with the last error; an exception thrown by the window's own
    // creation is thrown on. `bounds` may hold CW_USEDEFAULT; its right and bottom are edges.
    bool Create(const wchar_t* className, const wchar_t* title, DWORD style, const RECT& bounds,
                HWND parent, UINT_PTR id = 0);

    // Answers a message. Exceptions are held for the innermost loop and answer the message
    // with 0 (a creation with -1).
    virtual LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam);

    // DefWindowProcW.
    LRESULT Default(UINT message, WPARAM wParam, LPARAM lParam) {
        return DefWindowProcW(handle_, message, wParam, lParam);
    }

 private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

    HWND handle_ = nullptr;
};

inline int Width(const RECT& rectangle) {
    return rectangle.right - rectangle.left;
}
inline int Height(const RECT& rectangle) {
    return rectangle.bottom - rectangle.top;
}
inline void OffsetRectangle(RECT* rectangle, int x, int y) {
    rectangle->left += x;
    rectangle->right += x;
    rectangle->top += y;
    rectangle->bottom += y;
}
inline POINT PointOf(LPARAM position) {
    return POINT{static_cast<SHORT>(LOWORD(position)), static_cast<SHORT>(HIWORD(position))};
}
inline LPARAM PositionOf(POINT point) {
    return MAKELPARAM(point.x, point.y);
}

}  // namespace ui
