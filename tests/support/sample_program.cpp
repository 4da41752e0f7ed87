#include "tests/support/sample_program.h"

#include <gtest/gtest.h>

#include "platform/desktop/paths.h"
#include "tests/support/wait.h"
#include "tests/support/windows_seen.h"

namespace test {

namespace {

constexpr wchar_t className[] = L"Vantor Sample Application";

std::wstring SystemPath() {
    wchar_t path[MAX_PATH] = {};
    std::wstring program(path, GetModuleFileNameW(nullptr, path, MAX_PATH));
    return program.substr(0, program.rfind(L'\\')) + L"\\sample_program.exe";
}

struct Search {
    DWORD process;
    const wchar_t* title;
    HWND found;
};

BOOL CALLBACK Visit(HWND window, LPARAM parameter) {
    Search& search = *reinterpret_cast<Search*>(parameter);
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    wchar_t title[64] = {};
    GetWindowTextW(window, title, 64);
    if (process != search.process || ClassOf(window) != className ||
        (search.title ? std::wstring(title) != search.title
                      : GetWindow(window, GW_OWNER) != nullptr)) {
        return TRUE;
    }
    search.found = window;
    return FALSE;
}

HWND Find(DWORD process, const wchar_t* title) {
    Search search = {process, title, nullptr};
    EnumWindows(Visit, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

}  // namespace

SampleProgram::SampleProgram(const std::wstring& manners, const std::wstring& title,
                             const std::wstring& heldFile) {
    const std::wstring path = SystemPath();
    std::wstring command = L'"' + path + L"\" " + manners + L" \"" + title + L'"';
    if (!heldFile.empty()) {
        command += L" \"" + platform::desktop::ToDesktopPath(heldFile) + L'"';
    }
    const CrashFile::Given given(crashes_);
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION information = {};
    if (!CreateProcessW(path.c_str(), command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                        &startup, &information)) {
        ADD_FAILURE() << "the sample program does not start: error " << GetLastError();
        return;
    }
    CloseHandle(information.hThread);
    process_.Reset(information.hProcess);
    processId_ = information.dwProcessId;
    const bool all = WaitFor([&] {
        window_ = Find(processId_, nullptr);
        return window_ && IsWindowVisible(window_) &&
               (manners != L"dialogs" || WindowCalled(L"Third"));
    });
    EXPECT_TRUE(all) << "the sample program shows no window";
}

SampleProgram::~SampleProgram() {
    if (process_) {
        TerminateProcess(process_.Get(), 1);
        WaitForSingleObject(process_.Get(), longestWait);
    }
    const std::string crash = crashes_.Told();
    EXPECT_TRUE(crash.empty()) << "the sample program has crashed\n" << crash;
}

std::wstring SampleProgram::Path() {
    return platform::desktop::FromDesktopPath(SystemPath());
}

HWND SampleProgram::WindowCalled(const wchar_t* title) const {
    return Find(processId_, title);
}

}  // namespace test
