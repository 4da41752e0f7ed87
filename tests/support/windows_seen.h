// Looking at the screen: windows, their places and the pixels that a person sees.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/windows.h"

namespace test {

std::wstring TextOf(HWND window);
std::wstring ClassOf(HWND window);
RECT ScreenRectangleOf(HWND window);
// The middle of a window, in screen coordinates.
POINT MiddleOf(HWND window);
// A client point in screen coordinates.
POINT OnScreen(HWND window, int x, int y);

// The visible top-level window of a class; of this process only unless `anyProcess`.
HWND FindVisible(const wchar_t* className, bool anyProcess = false);
// Waits for it; null after the bound.
HWND WaitForWindow(const wchar_t* className, bool anyProcess = false);
// Waits for a visible top-level window of the class, of any process, that is not this one.
HWND WaitForAnother(const wchar_t* className, HWND first);
// The first visible child (at any depth) of a class, null when there is none.
HWND FindChild(HWND parent, const wchar_t* className);

// A copy of a part of the screen.
class Picture {
 public:
    Picture() = default;
    // Row after row from the upper left corner.
    Picture(int width, int height, std::vector<COLORREF> pixels)
        : width_(width), height_(height), pixels_(std::move(pixels)) {}
    // What is on the screen now, in screen coordinates.
    static Picture OfScreen(const RECT& area);
    static Picture OfWindow(HWND window) { return OfScreen(ScreenRectangleOf(window)); }
    // The leftmost columns of it: enough to tell its rows, and looked at in a fraction of the time.
    static constexpr int edge = 4;
    static Picture OfLeftEdge(HWND window) { return OfScreen(LeftEdgeOf(window)); }
    // The whole once the window's program has done all that it was sent before and has drawn the
    // window again; nothing may lie above the window. A test fails when it is not drawn.
    static Picture OfWindowDrawnAnew(HWND window) {
        return OfWindowDrawnAnew([window] { return window; });
    }
    // Of a window that may be replaced by another meanwhile, or be missing for a moment.
    static Picture OfWindowDrawnAnew(const std::function<HWND()>& find) {
        return DrawnAnew(find, ScreenRectangleOf);
    }
    // The leftmost columns alone are drawn and looked at.
    static Picture OfLeftEdgeDrawnAnew(const std::function<HWND()>& find) {
        return DrawnAnew(find, LeftEdgeOf);
    }

    int Width() const { return width_; }
    int Height() const { return height_; }
    // Coordinates count from the picture's upper left corner.
    COLORREF At(int x, int y) const;
    bool Has(COLORREF color) const;
    // The rectangle around all of the colour, in words; nothing where there is none.
    std::string WhereIs(COLORREF color) const;
    bool operator==(const Picture& other) const = default;

 private:
    static RECT LeftEdgeOf(HWND window);
    // `areaOf` tells a window's part in screen coordinates.
    static Picture DrawnAnew(const std::function<HWND()>& find, RECT (*areaOf)(HWND));

    int width_ = 0;
    int height_ = 0;
    std::vector<COLORREF> pixels_;
};

}  // namespace test
