#include "tests/support/program.h"

#include <gtest/gtest.h>
#include <tlhelp32.h>

#include <vector>

#include "tests/support/failing_call.h"
#include "tests/support/keyboard.h"
#include "tests/support/loaded_library.h"
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

bool Runs(HANDLE process) {
    return WaitForSingleObject(process, 0) == WAIT_TIMEOUT;
}

// The processes of the program that another one has started, in its place, and that still run.
std::vector<DWORD> StartedBy(DWORD process) {
    std::vector<DWORD> found;
    const std::wstring path = InstalledProgram();
    const std::wstring name = path.substr(path.rfind(L'\\') + 1);
    const HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
    PROCESSENTRY32W entry = {};
    entry.dwSize = sizeof entry;
    for (BOOL more = Process32FirstW(snapshot, &entry); more;
         more = Process32NextW(snapshot, &entry)) {
        if (entry.th32ParentProcessID == process && lstrcmpiW(entry.szExeFile, name.c_str()) == 0) {
            found.push_back(entry.th32ProcessID);
        }
    }
    CloseHandle(snapshot);
    return found;
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
    const CrashFile::Given given(crashes_);
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
    void* const call = patched ? ReplaceCall(process_.Get(), processId_, *failing) : nullptr;
    EXPECT_TRUE(call || !patched) << failing->name << " is not called by the program";
    // The emulator notices by itself what a handheld's program does wrong, and ends it.
    EXPECT_TRUE(RunsOnHandheld() ||
                LoadInto(process_.Get(), LibraryBeside(L"crash_watch.dll").c_str()))
        << "the program is not watched";
    // A program that throws while a library is being loaded into it has ended as if nobody caught
    // what it threw, now and then.
    EXPECT_TRUE(!call || LetCallFail(process_.Get(), call));
}

Program::~Program() {
    if (!process_) {
        return;
    }
    std::string wrong = End(process_.Get(), processId_);
    for (const DWORD id : StartedBy(processId_)) {
        const platform::UniqueHandle other(
            OpenProcess(SYNCHRONIZE | PROCESS_TERMINATE | PROCESS_QUERY_INFORMATION, FALSE, id));
        wrong += End(other.Get(), id);
    }
    wrong += crashes_.Told();
    EXPECT_TRUE(wrong.empty()) << wrong;
}

std::string Program::End(HANDLE process, DWORD id) const {
    const HWND window = Runs(process) ? MainWindowOf(id) : nullptr;
    if (window) {
        PostMessageW(window, WM_CLOSE, 0, 0);
    }
    DWORD code = 0;
    if (WaitForSingleObject(process, longestWait) != WAIT_OBJECT_0) {
        const std::string screen = DescribeScreen();
        TerminateProcess(process, 1);
        WaitForSingleObject(process, longestWait);
        return "the program does not end when it is closed\n" + screen;
    }
    if (GetExitCodeProcess(process, &code) && code != expectedCode_) {
        return "the program ended with the code " + std::to_string(code) + ", not " +
               std::to_string(expectedCode_) + '\n';
    }
    return "";
}

HWND Program::MainWindowOf(DWORD process) {
    HWND window = nullptr;
    DWORD owner = 0;
    while ((window = FindWindowExW(nullptr, window, mainWindowClass, nullptr)) != nullptr) {
        GetWindowThreadProcessId(window, &owner);
        if (owner == process && IsWindowVisible(window)) {
            return window;
        }
    }
    return nullptr;
}

bool Program::WaitForMainWindow() const {
    // It is seen before it shows anything, and answers when it does.
    return WaitFor([this] {
        DWORD_PTR answer = 0;
        return MainWindow() && SendMessageTimeoutW(MainWindow(), WM_NULL, 0, 0, SMTO_NORMAL,
                                                   longestWait, &answer) != 0;
    });
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
