#include "platform/top_windows.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <vector>

using namespace platform;

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

TEST(TopWindows, AreVisitedUntilOneIsEnough) {
    const OwnedWindow first(nullptr);
    const OwnedWindow second(nullptr);
    std::vector<HWND> visited;
    EXPECT_TRUE(ForEachWindow([&](HWND window) {
        if (window == first || window == second) {
            visited.push_back(window);
        }
        return true;
    }));
    EXPECT_EQ(visited.size(), 2u);
    unsigned visits = 0;
    EXPECT_FALSE(ForEachWindow([&](HWND) { return ++visits < 2; }));
    EXPECT_EQ(visits, 2u);
}

TEST(TopWindows, PassOnWhatAVisitThrows) {
    const OwnedWindow first(nullptr);
    const OwnedWindow second(nullptr);
    unsigned visits = 0;
    EXPECT_THROW(ForEachWindow([&](HWND) -> bool {
                     ++visits;
                     throw std::runtime_error("fault");
                 }),
                 std::runtime_error);
    EXPECT_EQ(visits, 1u);
}

TEST(InnermostOwned, IsTheWindowItselfWhenItOwnsNone) {
    const OwnedWindow main(nullptr);
    const OwnedWindow stranger(nullptr);
    EXPECT_EQ(InnermostOwnedWindow(main), main);
}

TEST(InnermostOwned, IsTheEndOfTheChainOfOwners) {
    const OwnedWindow main(nullptr);
    const OwnedWindow dialog(main.Get());
    EXPECT_EQ(InnermostOwnedWindow(main), dialog);
    const OwnedWindow question(dialog.Get());
    EXPECT_EQ(InnermostOwnedWindow(main), question);
    const OwnedWindow popup(question.Get());
    EXPECT_EQ(InnermostOwnedWindow(main), popup);
    EXPECT_EQ(InnermostOwnedWindow(question), popup);
}

TEST(InnermostOwned, IsNeverHidden) {
    const OwnedWindow main(nullptr);
    const OwnedWindow hidden(main.Get(), 0);
    EXPECT_EQ(InnermostOwnedWindow(main), main);
    const OwnedWindow behindHidden(hidden.Get());
    EXPECT_EQ(InnermostOwnedWindow(main), main);
}

TEST(InnermostOwned, IsTheTopmostOfSeveral) {
    const OwnedWindow main(nullptr);
    const OwnedWindow first(main.Get());
    const OwnedWindow second(main.Get());
    SetWindowPos(first, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    EXPECT_EQ(InnermostOwnedWindow(main), first);
    SetWindowPos(second, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    EXPECT_EQ(InnermostOwnedWindow(main), second);
}
