#include "tests/support/program.h"

#include <gtest/gtest.h>

#include "tests/support/wait.h"
#include "tests/support/windows_seen.h"

namespace test {

namespace {

constexpr wchar_t mainWindowClass[] = L"Vantor Main Window";

std::wstring InstalledProgram() {
    wchar_t path[MAX_PATH] = {};
    GetEnvironmentVariableW(L"VANTOR_EXE", path, MAX_PATH);
    return path;
}

}  // namespace

Program::Program(const std::wstring& arguments) {
    const std::wstring path = InstalledProgram();
    std::wstring command = L'"' + path + L'"';
    if (!arguments.empty()) {
        command += L' ' + arguments;
    }
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION information = {};
    if (!CreateProcessW(path.c_str(), command.data(), nullptr, nullptr, FALSE, 0, nullptr, L"C:\\",
                        &startup, &information)) {
        ADD_FAILURE() << "the program does not start: error " << GetLastError();
        return;
    }
    CloseHandle(information.hThread);
    process_.Reset(information.hProcess);
    processId_ = information.dwProcessId;
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
