#include <gtest/gtest.h>

#include "app/run.h"
#include "ui/window/window.h"

using app::FrontmostOwned;

namespace {

class OwnedWindow {
 public:
    explicit OwnedWindow(HWND owner, DWORD style = WS_VISIBLE)
        : handle_(CreateWindowExW(0, L"STATIC", L"", WS_POPUP | style, 0, 0, 50, 50, owner, nullptr,
                                  nullptr, nullptr)) {}
    ~OwnedWindow() { DestroyWindow(handle_); }
    OwnedWindow(const OwnedWindow&) = delete;
    OwnedWindow& operator=(const OwnedWindow&) = delete;
    HWND Get() const { return handle_; }
    operator HWND() const { return handle_; }

 private:
    HWND handle_;
};

}  // namespace

TEST(FrontmostWindow, IsTheMainWindowWhenItOwnsNone) {
    const OwnedWindow main(nullptr);
    const OwnedWindow stranger(nullptr);
    EXPECT_EQ(FrontmostOwned(main), main);
}

TEST(FrontmostWindow, IsTheEndOfTheChainOfOwners) {
    const OwnedWindow main(nullptr);
    const OwnedWindow dialog(main.Get());
    EXPECT_EQ(FrontmostOwned(main), dialog);
    const OwnedWindow question(dialog.Get());
    EXPECT_EQ(FrontmostOwned(main), question);
    const OwnedWindow popup(question.Get());
    EXPECT_EQ(FrontmostOwned(main), popup);
    EXPECT_EQ(FrontmostOwned(question), popup);
}

TEST(FrontmostWindow, IsNeverHidden) {
    const OwnedWindow main(nullptr);
    const OwnedWindow hidden(main.Get(), 0);
    EXPECT_EQ(FrontmostOwned(main), main);
    const OwnedWindow behindHidden(hidden.Get());
    EXPECT_EQ(FrontmostOwned(main), main);
}

TEST(FrontmostWindow, IsTheTopmostOfSeveral) {
    const OwnedWindow main(nullptr);
    const OwnedWindow first(main.Get());
    const OwnedWindow second(main.Get());
    SetWindowPos(first, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    EXPECT_EQ(FrontmostOwned(main), first);
    SetWindowPos(second, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    EXPECT_EQ(FrontmostOwned(main), second);
}
