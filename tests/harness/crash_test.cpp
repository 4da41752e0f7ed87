// What becomes of a test that crashes. Every crash happens in a process of its own: this executable
// once more, with the same test alone.
#include "tests/support/crash.h"

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <thread>

#include "platform/handles.h"
#include "tests/support/platform_hook.h"
#include "tests/support/sample_program.h"
#include "tests/support/wait.h"

using namespace test;

namespace {

constexpr wchar_t childVariable[] = L"VANTOR_CRASHING_TEST";

// What a crashed process leaves.
struct Remains {
    DWORD code = ~0u;
    std::string told;
};

std::wstring CurrentTest() {
    const testing::TestInfo& test = *testing::UnitTest::GetInstance()->current_test_info();
    const std::string name = std::string(test.test_suite_name()) + '.' + test.name();
    return std::wstring(name.begin(), name.end());
}

std::string ReadAll(HANDLE pipe) {
    std::string text;
    char part[4096];
    DWORD size = 0;
    while (ReadFile(pipe, part, sizeof part, &size, nullptr) && size > 0) {
        text.append(part, size);
    }
    return text;
}

Remains RunAgain() {
    SECURITY_ATTRIBUTES inherited = {sizeof inherited, nullptr, TRUE};
    platform::UniqueHandle output;
    platform::UniqueHandle input;
    CreatePipe(output.Receive(), input.Receive(), &inherited, 0);
    wchar_t path[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    std::wstring command = L'"' + std::wstring(path) + L"\" --gtest_filter=" + CurrentTest();
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdOutput = input.Get();
    startup.hStdError = input.Get();
    PROCESS_INFORMATION information = {};
    SetEnvironmentVariableW(childVariable, L"1");
    const BOOL started = CreateProcessW(path, command.data(), nullptr, nullptr, TRUE, 0, nullptr,
                                        nullptr, &startup, &information);
    SetEnvironmentVariableW(childVariable, nullptr);
    Remains remains;
    EXPECT_TRUE(started);
    if (started) {
        CloseHandle(information.hThread);
        const platform::UniqueHandle process(information.hProcess);
        input.Reset();
        remains.told = ReadAll(output.Get());
        WaitForSingleObject(process.Get(), longestWait);
        GetExitCodeProcess(process.Get(), &remains.code);
    }
    return remains;
}

// The process that crashes here does not come back from this function, nor does one that should
// have and has not.
Remains CrashIn(const std::function<void()>& crash) {
    if (GetEnvironmentVariableW(childVariable, nullptr, 0) == 0) {
        return RunAgain();
    }
    crash();
    std::fflush(stdout);
    ExitProcess(0);
}

void ExpectCrash(const Remains& remains, const std::string& fault, const std::string& function) {
    EXPECT_EQ(remains.code, crashedCode);
    EXPECT_NE(remains.told.find("CRASH: " + fault), std::string::npos) << remains.told;
    EXPECT_NE(remains.told.find(function + '('), std::string::npos) << remains.told;
    const std::wstring test = CurrentTest();
    EXPECT_NE(remains.told.find("in the test " + std::string(test.begin(), test.end())),
              std::string::npos)
        << remains.told;
}

__attribute__((noinline)) int ReadFrom(const volatile int* place) {
    return *place;
}

LRESULT CALLBACK ReadAddressZero(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_APP) {
        return ReadFrom(nullptr);
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

HWND Open(WNDPROC procedure) {
    const HWND window = CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 10, 10, nullptr, nullptr,
                                        nullptr, nullptr);
    SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(procedure));
    return window;
}

__attribute__((noinline)) int Divide(int number, int by) {
    volatile int divisor = by;
    return number / divisor;
}

__attribute__((noinline)) int Deeper(int level) {
    volatile char room[1024];
    room[0] = static_cast<char>(level);
    return level < 0 ? 0 : Deeper(level + 1) + room[0];
}

__attribute__((noinline)) void CallNothing() {
    void (*volatile nothing)() = nullptr;
    nothing();
}

DWORD WINAPI FailToWait(HANDLE, DWORD) {
    return WAIT_FAILED;
}

BOOL WINAPI FailToSignal(HANDLE) {
    return FALSE;
}

__attribute__((noinline)) void RunIllegal() {
    __asm__ volatile("ud2");
}

}  // namespace

TEST(Crash, InAWindowProcedureIsNotPassedOver) {
    const Remains remains = CrashIn([] { SendMessageW(Open(ReadAddressZero), WM_APP, 0, 0); });
    ExpectCrash(remains, "a read at 0000000000000000", "ReadFrom");
    EXPECT_NE(remains.told.find("ReadAddressZero("), std::string::npos) << "the caller";
}

TEST(Crash, InAnotherThreadIsNotPassedOver) {
    ExpectCrash(CrashIn([] { std::thread([] { Divide(1, 0); }).join(); }), "a division by zero",
                "Divide");
}

TEST(Crash, OfTheStackIsTold) {
    ExpectCrash(CrashIn([] { Deeper(0); }), "the stack is used up", "Deeper");
}

TEST(Crash, AtAnAddressThatIsNoCodeTellsTheCaller) {
    ExpectCrash(CrashIn([] { CallNothing(); }), "a ", "CallNothing");
}

TEST(Crash, OfAnInstructionIsTold) {
    ExpectCrash(CrashIn([] { RunIllegal(); }), "an illegal instruction", "RunIllegal");
}

// Tests replace what the executable imports; whoever tells of the crash must not depend on it.
TEST(Crash, WhileTheSystemsFunctionsAreReplacedIsTold) {
    const Remains remains = CrashIn([] {
        const PlatformHook<DWORD(HANDLE, DWORD)> wait("WaitForSingleObject", FailToWait);
        const PlatformHook<BOOL(HANDLE)> signal("SetEvent", FailToSignal);
        Divide(1, 0);
    });
    ExpectCrash(remains, "a division by zero", "Divide");
}

TEST(Crash, IsNoneWhenAnExceptionIsCaught) {
    const Remains remains = CrashIn([] {
        try {
            throw 1;
        } catch (int) {
        }
    });
    EXPECT_EQ(remains.code, 0u);
    EXPECT_EQ(remains.told.find("CRASH"), std::string::npos) << remains.told;
}

// A test's own application that crashed would be seen as one that is gone.
TEST(Crash, OfTheSampleProgramFailsTheTest) {
    const auto crash = [] {
        const SampleProgram sample(L"faulty", L"Faulty");
        PostMessageW(sample.Window(), WM_CLOSE, 0, 0);
        EXPECT_TRUE(WaitFor([&] { return !sample.Runs(); }));
    };
    EXPECT_NONFATAL_FAILURE(crash(), "CRASH: a read at 0000000000000000");
    EXPECT_NONFATAL_FAILURE(crash(), "Procedure(");
}
