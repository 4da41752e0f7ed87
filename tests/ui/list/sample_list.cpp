#include "tests/ui/list/sample_list.h"

#include "tests/support/input_taken.h"
#include "tests/support/keyboard.h"
#include "ui/paint/paint.h"

namespace test {

bool SampleOwner::Open() {
    const RECT screen = {0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)};
    return Create(L"TestOwner", L"", WS_POPUP | WS_VISIBLE | WS_CLIPCHILDREN, screen, nullptr) &&
           SetForegroundWindow(Handle());
}

LRESULT SampleOwner::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    LRESULT result = 0;
    if (answer && answer(message, wParam, lParam, &result)) {
        return result;
    }
    return Default(message, wParam, lParam);
}

SampleList::~SampleList() {
    Destroy();
    Clear();
}

bool SampleList::Open(HWND parent, const RECT& bounds) {
    return Create(L"TestList", L"", ui::childStyle, bounds, parent, id);
}

void SampleList::Fill(const std::vector<int>& heights) {
    Clear();
    heights_ = heights;
    for (unsigned index = 0; index < heights.size(); ++index) {
        InsertItem(index, firstData + index);
    }
    measured.clear();
    Layout();
}

SIZE SampleList::Measure(unsigned index, int clientWidth, int clientHeight, ULONG_PTR data) {
    EXPECT_EQ(data, firstData + index);
    measured.push_back(index);
    measuredFor = SIZE{clientWidth, clientHeight};
    return SIZE{static_cast<LONG>(10 + index), heights_.at(index)};
}

void SampleList::DrawItem(const DRAWITEMSTRUCT& row) {
    ui::FillWithColor(row.hDC, row.rcItem, ColorOf(row.itemID));
    const std::lock_guard lock(mutex_);
    if (rows_.empty()) {
        frames_.back() = Frame{row.itemID, static_cast<int>(row.rcItem.top)};
    }
    rows_.push_back(row);
}

void SampleList::EraseBackground(HDC dc, const RECT& area) {
    ui::FillWithColor(dc, area, background);
    const std::lock_guard lock(mutex_);
    frames_.push_back(Frame{});
    rows_.clear();
}

void SampleList::OnTap(unsigned index, ui::GestureResult gesture) {
    taps.emplace_back(index, gesture);
    SetSelection(index);
}

std::vector<Frame> SampleList::Frames() const {
    const std::lock_guard lock(mutex_);
    return frames_;
}

Frame SampleList::LastFrame() const {
    const std::lock_guard lock(mutex_);
    return frames_.empty() ? Frame{} : frames_.back();
}

std::vector<DRAWITEMSTRUCT> SampleList::LastRows() const {
    const std::lock_guard lock(mutex_);
    return rows_;
}

void SampleList::ForgetFrames() {
    const std::lock_guard lock(mutex_);
    frames_.clear();
    rows_.clear();
}

ListTest::ListTest() {
    owner.answer = [this](UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result) {
        if (message != WM_NOTIFY) {
            return false;
        }
        const auto& header = *reinterpret_cast<const NMHDR*>(lParam);
        EXPECT_EQ(header.hwndFrom, list.Handle());
        EXPECT_EQ(header.idFrom, SampleList::id);
        EXPECT_EQ(wParam, SampleList::id);
        Notice notice = {static_cast<int>(header.code), 0, 0};
        if (notice.code == -100 || notice.code == -101) {
            const auto& change = reinterpret_cast<const ui::ListSelectionChange&>(header);
            notice.first = change.newIndex;
            notice.second = change.oldIndex;
        } else if (notice.code == -15) {
            const auto& key = reinterpret_cast<const ui::ListKeyDown&>(header);
            if (InputTaken::IsMarker(key.key)) {
                return true;
            }
            notice.first = key.key;
            notice.second = key.flags;
        }
        *result = (notice.code == -100 && veto) || (notice.code == -15 && takesKeys);
        const std::lock_guard lock(mutex_);
        notices_.push_back(notice);
        return true;
    };
}

void ListTest::Open(const std::vector<int>& heights) {
    ASSERT_TRUE(owner.Open());
    ASSERT_TRUE(list.Open(owner.Handle(), RECT{20, 10, 20 + width, 10 + height}));
    list.Fill(heights);
    SetFocus(list.Handle());
    ASSERT_TRUE(PumpUntil(
        [&] { return GetForegroundWindow() == owner.Handle() && !list.Frames().empty(); }));
    list.ForgetFrames();
}

std::vector<Notice> ListTest::Notices() const {
    const std::lock_guard lock(mutex_);
    return notices_;
}

std::vector<Notice> ListTest::SelectionNotices() const {
    std::vector<Notice> found = Notices();
    std::erase_if(found, [](const Notice& notice) { return notice.code > -100; });
    return found;
}

bool ListTest::Captured() const {
    GUITHREADINFO info = {};
    info.cbSize = sizeof info;
    GetGUIThreadInfo(GetWindowThreadProcessId(list.Handle(), nullptr), &info);
    return info.hwndCapture && info.hwndCapture == list.Handle();
}

bool ListTest::Shows(Frame frame) const {
    const bool shown = WaitFor([&] { return list.LastFrame() == frame; });
    EXPECT_TRUE(shown) << "row " << list.LastFrame().top << " at " << list.LastFrame().y
                       << " instead of row " << frame.top << " at " << frame.y << ", "
                       << (Captured() ? "captured" : "not captured") << '\n'
                       << DescribeScreen(list.Handle());
    return shown;
}

}  // namespace test
