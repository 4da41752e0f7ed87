#include "tests/app/frame_fixture.h"

#include "app/message_loop.h"
#include "tests/support/user.h"
#include "tests/support/wait.h"
#include "tests/support/windows_seen.h"

namespace test {

FrameFixture::~FrameFixture() {
    frame.Destroy();
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
    }
}

void FrameFixture::Open() {
    ASSERT_TRUE(frame.Open());
    ShowWindow(frame.Handle(), SW_SHOW);
    UpdateWindow(frame.Handle());
}

void FrameFixture::RunFrame(const std::function<void()>& script) {
    const HWND window = frame.Handle();
    WhileUser(
        [&] {
            script();
            PostMessageW(window, WM_CLOSE, 0, 0);
        },
        [this] {
            app::MessageLoop loop;
            loop.AddFilter([this](const MSG& message) { return frame.PreTranslate(message); });
            loop.AddIdleHandler([this](int) { return frame.Idle(); });
            loopResult = loop.Run();
        });
}

void FrameFixture::Command(UINT command) const {
    SendMessageW(frame.Handle(), WM_COMMAND, command, 0);
}

std::wstring FrameFixture::Caption() const {
    return TextOf(frame.Handle());
}

bool FrameFixture::WaitForCaption(const std::wstring& caption) const {
    return WaitFor([&] { return Caption() == caption; });
}

UINT FrameFixture::ItemState(UINT command) {
    return GetMenuState(frame.Bar().Menu(), command, MF_BYCOMMAND);
}

}  // namespace test
