#include "tests/support/windows_seen.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "platform/handles.h"
#include "tests/support/keyboard.h"
#include "tests/support/wait.h"
#include "ui/window/window.h"

namespace test {

namespace {

struct Search {
    const wchar_t* className;
    bool anyProcess;
    // Not this one.
    HWND other;
    HWND found;
};

BOOL CALLBACK Visit(HWND window, LPARAM parameter) {
    auto& search = *reinterpret_cast<Search*>(parameter);
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    if (window != search.other && IsWindowVisible(window) && ClassOf(window) == search.className &&
        (search.anyProcess || process == GetCurrentProcessId())) {
        search.found = window;
        return FALSE;
    }
    return TRUE;
}

}  // namespace

std::wstring TextOf(HWND window) {
    wchar_t text[1024] = {};
    DWORD_PTR length = 0;
    SendMessageTimeoutW(window, WM_GETTEXT, 1024, reinterpret_cast<LPARAM>(text), SMTO_ABORTIFHUNG,
                        5000, &length);
    return text;
}

std::wstring ClassOf(HWND window) {
    wchar_t name[256] = {};
    GetClassNameW(window, name, 256);
    return name;
}

RECT ScreenRectangleOf(HWND window) {
    RECT rectangle = {};
    GetWindowRect(window, &rectangle);
    return rectangle;
}

POINT MiddleOf(HWND window) {
    const RECT rectangle = ScreenRectangleOf(window);
    return POINT{(rectangle.left + rectangle.right) / 2, (rectangle.top + rectangle.bottom) / 2};
}

POINT OnScreen(HWND window, int x, int y) {
    POINT point = {x, y};
    ClientToScreen(window, &point);
    return point;
}

HWND FindVisible(const wchar_t* className, bool anyProcess) {
    Search search = {className, anyProcess, nullptr, nullptr};
    EnumWindows(Visit, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

HWND WaitForWindow(const wchar_t* className, bool anyProcess) {
    HWND found = nullptr;
    WaitFor([&] { return (found = FindVisible(className, anyProcess)) != nullptr; });
    return found;
}

HWND WaitForAnother(const wchar_t* className, HWND first) {
    Search search = {className, true, first, nullptr};
    WaitFor([&] {
        EnumWindows(Visit, reinterpret_cast<LPARAM>(&search));
        return search.found != nullptr;
    });
    return search.found;
}

HWND FindChild(HWND parent, const wchar_t* className) {
    Search search = {className, true, nullptr, nullptr};
    EnumChildWindows(parent, Visit, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

Picture Picture::OfScreen(const RECT& area) {
    Picture picture;
    picture.width_ = ui::Width(area);
    picture.height_ = ui::Height(area);
    BITMAPINFO info = {};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = picture.width_;
    info.bmiHeader.biHeight = -picture.height_;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    void* bits = nullptr;
    const platform::UniqueBitmap bitmap(
        CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0));
    const platform::WindowDC screen(nullptr);
    const platform::UniqueMemoryDC memory(CreateCompatibleDC(screen));
    const platform::Selected selected(memory.Get(), bitmap.Get());
    BitBlt(memory.Get(), 0, 0, picture.width_, picture.height_, screen, area.left, area.top,
           SRCCOPY);
    GdiFlush();
    const auto words = static_cast<const uint32_t*>(bits);
    picture.pixels_.resize(static_cast<size_t>(picture.width_) *
                           static_cast<size_t>(picture.height_));
    std::transform(
        words, words + picture.pixels_.size(), picture.pixels_.begin(),
        [](uint32_t word) { return RGB(word >> 16 & 0xFF, word >> 8 & 0xFF, word & 0xFF); });
    return picture;
}

RECT Picture::LeftEdgeOf(HWND window) {
    RECT area = ScreenRectangleOf(window);
    area.right = std::min<LONG>(area.right, area.left + edge);
    return area;
}

bool Picture::Has(COLORREF color) const {
    return std::find(pixels_.begin(), pixels_.end(), color) != pixels_.end();
}

std::string Picture::WhereIs(COLORREF color) const {
    RECT all = {width_, height_, 0, 0};
    for (LONG y = 0; y < height_; ++y) {
        for (LONG x = 0; x < width_; ++x) {
            if (At(x, y) == color) {
                all = {std::min(all.left, x), std::min(all.top, y), std::max(all.right, x + 1),
                       std::max(all.bottom, y + 1)};
            }
        }
    }
    std::ostringstream where;
    if (all.right > 0) {
        where << " within " << all.left << ',' << all.top << '-' << all.right << ',' << all.bottom;
    }
    return where.str();
}

// What the screen shows of the window is painted over, and the window is to draw itself. Where its
// own colours are back they were drawn after that, and a program draws when it has nothing else to
// do. That counts what it has taken from the screen: it takes more once it has shown what it has
// drawn. So it is asked twice.
Picture Picture::DrawnAnew(const std::function<HWND()>& find, RECT (*areaOf)(HWND)) {
    constexpr COLORREF nobodysColor = RGB(1, 254, 3);
    RECT area = {};
    Picture picture;
    bool drawn = true;
    for (int round = 0; round < 2 && drawn; ++round) {
        // The screen has done it when it answers; what the window has drawn meanwhile goes as well.
        drawn = WaitFor([&] {
            area = areaOf(find());
            const platform::WindowDC screen(nullptr);
            const platform::UniqueBrush brush(CreateSolidBrush(nobodysColor));
            FillRect(screen, &area, brush.Get());
            return GetPixel(screen, area.left, area.top) == nobodysColor;
        });
        drawn = drawn && WaitFor([&] {
                    // Without a window it would be all of them.
                    if (const HWND window = find()) {
                        RECT part = area;
                        MapWindowPoints(nullptr, window, reinterpret_cast<POINT*>(&part), 2);
                        InvalidateRect(window, &part, TRUE);
                    }
                    picture = OfScreen(area);
                    return !picture.Has(nobodysColor);
                });
    }
    EXPECT_TRUE(drawn) << "the window is not drawn" << picture.WhereIs(nobodysColor) << '\n'
                       << DescribeScreen(find());
    return picture;
}

COLORREF Picture::At(int x, int y) const {
    return pixels_.at(static_cast<size_t>(y * width_ + x));
}

}  // namespace test
