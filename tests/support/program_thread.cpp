#include "tests/support/program_thread.h"

#include <gtest/gtest.h>

namespace test {

namespace {

constexpr UINT WM_CALL = WM_APP + 2;

}  // namespace

ProgramThread::ProgramThread()
    : window_(CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 0, 0, nullptr, nullptr, nullptr,
                              nullptr)) {
    EXPECT_TRUE(window_);
    SetWindowLongPtrW(window_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(Procedure));
}

ProgramThread::~ProgramThread() {
    DestroyWindow(window_);
}

void ProgramThread::Call(const std::function<void()>& function) const {
    SendMessageW(window_, WM_CALL, 0, reinterpret_cast<LPARAM>(&function));
}

LRESULT CALLBACK ProgramThread::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_CALL) {
        (*reinterpret_cast<const std::function<void()>*>(lParam))();
        return 0;
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

}  // namespace test
