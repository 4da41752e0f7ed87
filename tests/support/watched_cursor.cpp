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

void WatchedCursor::Asked() {
    ++asked_;
    askedWaiting_ += shown_ == LoadCursorW(nullptr, IDC_WAIT);
}

HANDLE WINAPI WatchedCursor::Open(DWORD access, BOOL inherit, DWORD process) {
    current->Asked();
    return current->open_.Original()(access, inherit, process);
}

HANDLE WINAPI WatchedCursor::TakeSnapshot(DWORD flags, DWORD process) {
    current->Asked();
    return current->snapshot_.Original()(flags, process);
}

}  // namespace test
