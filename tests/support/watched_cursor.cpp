#include "tests/support/watched_cursor.h"

#include <utility>

namespace test {

namespace {

WatchedCursor* current = nullptr;

}  // namespace

WatchedCursor::WatchedCursor() : shown_(LoadCursorW(nullptr, IDC_ARROW)) {
    current = this;
}

WatchedCursor::~WatchedCursor() {
    current = nullptr;
}

bool WatchedCursor::IsBack() const {
    return shown_ == LoadCursorW(nullptr, IDC_ARROW);
}

HCURSOR WINAPI WatchedCursor::Set(HCURSOR cursor) {
    return std::exchange(current->shown_, cursor);
}

DWORD_PTR WINAPI WatchedCursor::FileInfo(const wchar_t* path, DWORD attributes, SHFILEINFOW* info,
                                         UINT size, UINT flags) {
    ++current->asked_;
    current->askedWaiting_ += current->shown_ == LoadCursorW(nullptr, IDC_WAIT);
    return current->info_.Original()(path, attributes, info, size, flags);
}

}  // namespace test
