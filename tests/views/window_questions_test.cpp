// Windows of other programs that are asked and may keep silent.
#include "views/window_questions.h"

#include <gtest/gtest.h>

#include <map>
#include <vector>

#include "tests/support/platform_hook.h"
#include "tests/support/sample_program.h"

using namespace test;
using namespace views;

namespace {

// Windows that exist and never answer, each of a thread of its own unless it is said otherwise.
std::map<HWND, DWORD> silentWindows;
DWORD now = 0;
std::vector<UINT> waits;
// The messages that nobody answers.
UINT unanswered = 0;
bool textIsEmpty = false;

HWND Window(ULONG_PTR number) {
    return reinterpret_cast<HWND>(number);
}
BOOL WINAPI Exists(HWND window) {
    return silentWindows.count(window) != 0;
}
DWORD WINAPI ThreadOf(HWND window, DWORD* process) {
    *process = GetCurrentProcessId();
    const auto found = silentWindows.find(window);
    return found == silentWindows.end() ? 0 : found->second;
}
LRESULT WINAPI KeepSilent(HWND window, UINT, WPARAM, LPARAM, UINT, UINT milliseconds, DWORD_PTR*) {
    if (silentWindows.count(window)) {
        waits.push_back(milliseconds);
        now += milliseconds;
    }
    return 0;
}
DWORD WINAPI Now() {
    return now;
}

LRESULT(WINAPI* realSend)(HWND, UINT, WPARAM, LPARAM, UINT, UINT, DWORD_PTR*) = nullptr;
LRESULT WINAPI AnswerInPart(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT flags,
                            UINT milliseconds, DWORD_PTR* answer) {
    if (message == unanswered) {
        return 0;
    }
    if (message == WM_GETTEXT && textIsEmpty) {
        *answer = 0;
        return TRUE;
    }
    return realSend(window, message, wParam, lParam, flags, milliseconds, answer);
}

class SilentWindows : public testing::Test {
 protected:
    SilentWindows() {
        silentWindows.clear();
        waits.clear();
    }

    const PlatformHook<decltype(Exists)> exists_{"IsWindow", Exists};
    const PlatformHook<decltype(ThreadOf)> thread_{"GetWindowThreadProcessId", ThreadOf};
    const PlatformHook<decltype(KeepSilent)> send_{"SendMessageTimeoutW", KeepSilent};
    const PlatformHook<decltype(Now)> time_{"GetTickCount", Now};
    WindowQuestions questions_;
};

}  // namespace

TEST_F(SilentWindows, AreTogetherWaitedForNoLongerThanASecond) {
    for (ULONG_PTR number = 1; number <= 50; ++number) {
        silentWindows[Window(number)] = static_cast<DWORD>(100 + number);
    }
    for (const auto& [window, thread] : silentWindows) {
        EXPECT_FALSE(questions_.Title(window));
    }
    DWORD all = 0;
    for (const UINT wait : waits) {
        all += wait;
    }
    EXPECT_EQ(all, 1000u);
    EXPECT_GE(waits.size(), 5u) << "the first one may not use up the time of all others";
}

TEST_F(SilentWindows, OfOneThreadAreWaitedForOnce) {
    silentWindows = {{Window(1), 7}, {Window(2), 7}, {Window(3), 8}};
    for (const auto& [window, thread] : silentWindows) {
        EXPECT_FALSE(questions_.Title(window));
    }
    EXPECT_FALSE(questions_.Title(Window(1)));
    EXPECT_EQ(waits.size(), 2u);
    WindowQuestions others;
    EXPECT_FALSE(others.Title(Window(1))) << "it may answer again";
    EXPECT_EQ(waits.size(), 3u);
}

TEST_F(SilentWindows, ThatAreGoneHaveEmptyTitles) {
    const std::optional<std::wstring> title = questions_.Title(Window(1));
    ASSERT_TRUE(title);
    EXPECT_EQ(*title, L"");
}

TEST(WindowQuestions, ATextThatDoesNotArriveIsAskedForByItsOwnCall) {
    const SampleProgram sample(L"polite", L"Sample 1");
    const PlatformHook<decltype(AnswerInPart)> send("SendMessageTimeoutW", AnswerInPart);
    realSend = send.Original();
    unanswered = 0;
    textIsEmpty = true;
    const std::optional<std::wstring> title = WindowQuestions().Title(sample.Window());
    textIsEmpty = false;
    ASSERT_TRUE(title);
    EXPECT_EQ(*title, L"Sample 1");
}

TEST(WindowQuestions, AWindowMayFallSilentBehindItsTitlesLength) {
    const SampleProgram sample(L"polite", L"Sample 1");
    const PlatformHook<decltype(AnswerInPart)> send("SendMessageTimeoutW", AnswerInPart);
    realSend = send.Original();
    unanswered = WM_GETTEXT;
    WindowQuestions questions;
    EXPECT_FALSE(questions.Title(sample.Window()));
    unanswered = 0;
    DWORD_PTR length = 0;
    EXPECT_FALSE(questions.Ask(sample.Window(), WM_GETTEXTLENGTH, 0, 0, &length));
    EXPECT_TRUE(WindowQuestions().Ask(sample.Window(), WM_GETTEXTLENGTH, 0, 0, &length));
    EXPECT_EQ(length, 8u);
}
