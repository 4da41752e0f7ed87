// A list with rows of any height in a window of its own, which note all that they are asked and
// told.
#pragma once

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

#include "tests/support/input_taken.h"
#include "tests/support/user.h"
#include "tests/support/wait.h"
#include "tests/support/windows_seen.h"
#include "ui/list/touch_list.h"

namespace test {

// A window over the whole screen. Every message goes to `answer` first, which may answer it.
class SampleOwner : public ui::Window {
 public:
    ~SampleOwner() override { Destroy(); }
    bool Open();

    std::function<bool(UINT, WPARAM, LPARAM, LRESULT*)> answer;

 protected:
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
};

// What the owner was told by WM_NOTIFY.
struct Notice {
    int code;
    unsigned first;
    unsigned second;
    bool operator==(const Notice&) const = default;
};

// The first row of a frame and its upper edge.
struct Frame {
    unsigned top = ui::noRow;
    int y = 0;
    bool operator==(const Frame&) const = default;
};

class SampleList final : public ui::TouchList<SampleList> {
 public:
    ~SampleList() override;
    bool Open(HWND parent, const RECT& bounds);
    // Replaces the rows by as many of these heights.
    void Fill(const std::vector<int>& heights);

    using TouchList::RowRectangle;

    SIZE Measure(unsigned index, int clientWidth, int clientHeight, ULONG_PTR data);
    void DrawItem(const DRAWITEMSTRUCT& row);
    void EraseBackground(HDC dc, const RECT& area);
    void OnTap(unsigned index, ui::GestureResult gesture);
    void DeleteItem(ULONG_PTR data) { deleted.push_back(data); }
    bool TapsOpen() const { return tapsOpen; }

    // Every frame that was drawn; safe from any thread.
    std::vector<Frame> Frames() const;
    Frame LastFrame() const;
    // The rows of the last frame.
    std::vector<DRAWITEMSTRUCT> LastRows() const;
    void ForgetFrames();

    // Each row's own color, and the background's.
    static COLORREF ColorOf(unsigned row) { return RGB(row % 251, row / 251 % 251, 60); }
    static constexpr COLORREF background = RGB(255, 250, 240);

    static constexpr ULONG_PTR firstData = 5000;
    static constexpr UINT_PTR id = 77;

    std::vector<ULONG_PTR> deleted;
    std::vector<unsigned> measured;
    SIZE measuredFor = {};
    std::vector<std::pair<unsigned, ui::GestureResult>> taps;
    int sizeMessages = 0;
    bool tapsOpen = false;

 protected:
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override {
        sizeMessages += message == WM_SIZE;
        return TouchList::OnMessage(message, wParam, lParam);
    }

 private:
    std::vector<int> heights_;
    mutable std::mutex mutex_;
    std::vector<Frame> frames_;
    std::vector<DRAWITEMSTRUCT> rows_;
};

// A test with a list of 200 x 300 pixels, which fits every device's screen.
class ListTest : public testing::Test {
 protected:
    ListTest();
    // Opens the list with rows of these heights and waits until it is seen.
    void Open(const std::vector<int>& heights);
    // A client point of the list on the screen.
    POINT At(int x, int y) const { return OnScreen(list.Handle(), x, y); }
    std::vector<Notice> Notices() const;
    // Those of the selection alone.
    std::vector<Notice> SelectionNotices() const;
    // Whether the list follows a finger. Any thread.
    bool Captured() const;
    // Waits until the list shows a frame; for the user's thread.
    bool Shows(Frame frame) const;
    // Runs the user's script beside the list.
    void Run(const std::function<void()>& script) { PumpWhileUser(script); }

    static constexpr int width = 200;
    static constexpr int height = 300;

    InputTaken input;
    SampleOwner owner;
    SampleList list;
    // How the owner answers.
    std::atomic<bool> veto = false;
    std::atomic<bool> takesKeys = false;

 private:
    mutable std::mutex mutex_;
    std::vector<Notice> notices_;
};

// `count` rows of one height.
inline std::vector<int> EqualHeights(size_t count, int height) {
    return std::vector<int>(count, height);
}

}  // namespace test
