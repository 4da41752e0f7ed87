#include "app/message_loop.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <vector>

#include "tests/support/platform_hook.h"
#include "ui/window/window.h"

using namespace test;
using app::MessageLoop;

namespace {

constexpr UINT WM_TEST = WM_APP + 1;
constexpr UINT WM_FAIL = WM_APP + 2;

class ListeningWindow final : public ui::Window {
 public:
    ListeningWindow() { Create(L"Vantor Test Listener", L"", 0, RECT{}, HWND_MESSAGE); }
    ~ListeningWindow() override { Destroy(); }
    std::vector<UINT> received;

 protected:
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override {
        received.push_back(message);
        if (message == WM_FAIL) {
            throw std::runtime_error("fault");
        }
        if (message == WM_PAINT) {
            ValidateRect(Handle(), nullptr);
        }
        return Default(message, wParam, lParam);
    }
};

using GetNext = BOOL(MSG*, HWND, UINT, UINT);
GetNext* getNext = nullptr;
int failures = 0;

BOOL WINAPI FailSometimes(MSG* message, HWND window, UINT first, UINT last) {
    if (failures > 0) {
        --failures;
        return -1;
    }
    return getNext(message, window, first, last);
}

// What to do when the loop finds nothing to do and would wait.
std::vector<std::function<void()>> steps;

BOOL WINAPI DoNextStep(MSG* message, HWND window, UINT first, UINT last) {
    MSG waiting;
    if (!PeekMessageW(&waiting, nullptr, 0, 0, PM_NOREMOVE)) {
        if (steps.empty()) {
            PostQuitMessage(0);
        } else {
            steps.front()();
            steps.erase(steps.begin());
        }
    }
    return getNext(message, window, first, last);
}

class Loop : public testing::Test {
 protected:
    Loop() {
        window.received.clear();
        steps.clear();
        MSG message;
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        }
    }
    void Post(UINT message, WPARAM wParam = 0) {
        PostMessageW(window.Handle(), message, wParam, 0);
    }

    ListeningWindow window;
    MessageLoop loop;
};

// Runs the loop step by step; each step is taken when the loop comes to rest.
class IdleLoop : public Loop {
 protected:
    IdleLoop() {
        getNext = hook.Original();
        loop.AddIdleHandler([this](int count) {
            counts.push_back(count);
            return count + 1 < wanted;
        });
    }
    // The counters that the handler sees after the loop has dispatched `message`.
    std::vector<int> CountsAfter(UINT message) {
        steps.emplace_back([this, message] {
            counts.clear();
            Post(message);
        });
        loop.Run();
        return counts;
    }

    const PlatformHook<GetNext> hook{"GetMessageW", DoNextStep};
    std::vector<int> counts;
    int wanted = 1;
};

using Counts = std::vector<int>;
using Messages = std::vector<UINT>;

}  // namespace

TEST_F(Loop, EndsWithTheResultOfWmQuit) {
    PostQuitMessage(42);
    EXPECT_EQ(loop.Run(), 42);
    PostQuitMessage(-1);
    EXPECT_EQ(loop.Run(), -1);
}

TEST_F(Loop, DispatchesWhatComesBeforeTheQuit) {
    Post(WM_TEST);
    PostQuitMessage(0);
    loop.Run();
    EXPECT_EQ(window.received, (Messages{WM_TEST}));
}

TEST_F(Loop, TranslatesKeys) {
    Post(WM_KEYDOWN, 'A');
    PostQuitMessage(0);
    loop.Run();
    EXPECT_EQ(window.received, (Messages{WM_KEYDOWN, WM_CHAR}));
}

TEST_F(Loop, OffersEachMessageToTheFiltersInTurn) {
    std::string asked;
    loop.AddFilter([&](const MSG& message) {
        asked += 'a';
        return message.message == WM_TEST;
    });
    loop.AddFilter([&](const MSG& message) {
        asked += 'b';
        return message.message == WM_KEYDOWN;
    });
    Post(WM_TEST);
    Post(WM_KEYDOWN, 'A');
    Post(WM_APP);
    PostQuitMessage(0);
    loop.Run();
    EXPECT_EQ(asked, "aabab");
    EXPECT_EQ(window.received, (Messages{WM_APP}));
}

TEST_F(Loop, DoesNotOfferTheQuit) {
    int asked = 0;
    loop.AddFilter([&](const MSG&) { return ++asked > 0; });
    PostQuitMessage(3);
    EXPECT_EQ(loop.Run(), 3);
    EXPECT_EQ(asked, 0);
}

TEST_F(Loop, IgnoresAFailureToGetAMessage) {
    const PlatformHook<GetNext> hook("GetMessageW", FailSometimes);
    getNext = hook.Original();
    failures = 3;
    Post(WM_TEST);
    PostQuitMessage(7);
    EXPECT_EQ(loop.Run(), 7);
    EXPECT_EQ(failures, 0);
    EXPECT_EQ(window.received, (Messages{WM_TEST}));
}

TEST_F(Loop, ThrowsOnWhatAWindowThrows) {
    Post(WM_FAIL);
    Post(WM_TEST);
    EXPECT_THROW(loop.Run(), std::runtime_error);
    EXPECT_EQ(window.received, (Messages{WM_FAIL}));
    PostQuitMessage(1);
    EXPECT_EQ(loop.Run(), 1);
    EXPECT_EQ(window.received, (Messages{WM_FAIL, WM_TEST}));
}

TEST_F(IdleLoop, CountsTheCallsUntilNoMoreAreWanted) {
    wanted = 4;
    loop.Run();
    EXPECT_EQ(counts, (Counts{0, 1, 2, 3}));
}

TEST_F(IdleLoop, CallsNobodyWhileMessagesWait) {
    Post(WM_TEST);
    PostQuitMessage(0);
    loop.Run();
    EXPECT_EQ(counts, (Counts{}));
}

TEST_F(IdleLoop, StartsAgainAfterAMessage) {
    wanted = 2;
    EXPECT_EQ(CountsAfter(WM_TEST), (Counts{0, 1}));
    EXPECT_EQ(CountsAfter(WM_KEYDOWN), (Counts{0, 1}));
}

TEST_F(IdleLoop, StaysAtRestAfterPaintsMovesAndSystemTimers) {
    EXPECT_EQ(CountsAfter(WM_PAINT), (Counts{}));
    EXPECT_EQ(CountsAfter(WM_MOUSEMOVE), (Counts{}));
    EXPECT_EQ(CountsAfter(0x0118), (Counts{}));
    EXPECT_EQ(CountsAfter(WM_TIMER), (Counts{0}));
    EXPECT_EQ(window.received,
              (Messages{WM_PAINT, WM_MOUSEMOVE, static_cast<UINT>(0x0118), WM_TIMER}));
}

TEST_F(IdleLoop, GoesOnCountingOverAMove) {
    wanted = 3;
    loop.AddIdleHandler([this](int count) {
        if (count == 0) {
            Post(WM_MOUSEMOVE);
        }
        return false;
    });
    loop.Run();
    EXPECT_EQ(counts, (Counts{0, 1, 2}));
}

TEST_F(IdleLoop, AsksEveryHandlerWhileOneWantsMore) {
    wanted = 3;
    Counts others;
    loop.AddIdleHandler([&](int count) {
        others.push_back(count);
        return false;
    });
    loop.Run();
    EXPECT_EQ(counts, (Counts{0, 1, 2}));
    EXPECT_EQ(others, (Counts{0, 1, 2}));
}
