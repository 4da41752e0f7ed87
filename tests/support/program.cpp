#include "tests/support/program.h"

#include <gtest/gtest.h>

#include "tests/support/failing_call.h"
#include "tests/support/wait.h"
#include "tests/support/windows_seen.h"

namespace test {

namespace {

constexpr wchar_t mainWindowClass[] = L"Vantor Main Window";
constexpr wchar_t failingCallVariable[] = L"VANTOR_HANDHELD_FAILING";

std::wstring InstalledProgram() {
    wchar_t path[MAX_PATH] = {};
    GetEnvironmentVariableW(L"VANTOR_EXE", path, MAX_PATH);
    return path;
}

// As the emulator reads it.
std::wstring Describe(const FailingCall& call) {
    return std::wstring(call.name.begin(), call.name.end()) + L' ' +
           std::to_wstring(static_cast<DWORD>(call.result)) + L' ' + std::to_wstring(call.error) +
           L' ' + std::to_wstring(call.times) + L' ' + std::to_wstring(call.argument) + L' ' +
           std::to_wstring(call.atLeast);
}

}  // namespace

bool RunsOnHandheld() {
    return GetEnvironmentVariableW(L"VANTOR_HANDHELD_DEVICE", nullptr, 0) != 0;
}

Program::Program(const std::wstring& arguments, const std::optional<FailingCall>& failing) {
    const std::wstring path = InstalledProgram();
    std::wstring command = L'"' + path + L'"';
    if (!arguments.empty()) {
        command += L' ' + arguments;
    }
    // The emulator lets a call fail by itself; on a PC the call's place in the program is changed.
    const bool patched = failing && !RunsOnHandheld();
    if (failing && !patched) {
        SetEnvironmentVariableW(failingCallVariable, Describe(*failing).c_str());
    }
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION information = {};
    const BOOL started = CreateProcessW(path.c_str(), command.data(), nullptr, nullptr, FALSE,
                                        patched ? DEBUG_ONLY_THIS_PROCESS : 0, nullptr, L"C:\\",
                                        &startup, &information);
    SetEnvironmentVariableW(failingCallVariable, nullptr);
    if (!started) {
        ADD_FAILURE() << "the program does not start: error " << GetLastError();
        return;
    }
    CloseHandle(information.hThread);
    process_.Reset(information.hProcess);
    processId_ = information.dwProcessId;
    if (patched) {
        EXPECT_TRUE(LetCallFail(process_.Get(), processId_, *failing))
            << failing->name << " is not called by the program";
    }
}

Program::~Program() {
    if (process_ && WaitForSingleObject(process_.Get(), 0) == WAIT_TIMEOUT && Close() == ~0u) {
        TerminateProcess(process_.Get(), 1);
        WaitForSingleObject(process_.Get(), longestWait);
    }
}

HWND Program::MainWindow() const {
    const HWND window = FindVisible(mainWindowClass, true);
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    return process == processId_ ? window : nullptr;
}

bool Program::WaitForMainWindow() const {
    return WaitFor([this] { return MainWindow() != nullptr; });
}

DWORD Program::WaitForExit() const {
    DWORD code = ~0u;
    if (process_ && WaitForSingleObject(process_.Get(), longestWait) == WAIT_OBJECT_0) {
        GetExitCodeProcess(process_.Get(), &code);
    }
    return code;
}

DWORD Program::Close() const {
    if (const HWND window = MainWindow()) {
        PostMessageW(window, WM_CLOSE, 0, 0);
    }
    return WaitForExit();
}

}  // namespace test
