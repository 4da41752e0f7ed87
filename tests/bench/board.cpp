// Measures what a person waits for, from outside: starts this program, others that the device has
// and one that is nothing but an empty window, each in the same way and in turn, and watches their
// windows until nothing changes there any more, and until those that show a folder have as many
// rows as it has files: a program may take what it is given for another folder, or for none. Prints
// a table for docs/performance.md; judges nothing.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/desktop/paths.h"
#include "platform/handles.h"
#include "tests/support/host_files.h"
#include "tests/support/unix_command.h"
#include "tests/support/windows_seen.h"
#include "tests/support/world.h"
#include "ui/window/window.h"
// Behind the platform's own declarations.
#include <commctrl.h>
#include <psapi.h>

namespace {

// A window that has looked the same and answered for so long is done.
constexpr double quietMilliseconds = 400;
// So long nobody waits.
constexpr double longestStart = 60000;

double Now() {
    LARGE_INTEGER frequency;
    LARGE_INTEGER count;
    QueryPerformanceFrequency(&frequency);
    QueryPerformanceCounter(&count);
    return static_cast<double>(count.QuadPart) * 1000.0 / static_cast<double>(frequency.QuadPart);
}

struct TooSlow {};

// What one start took, in milliseconds from the call that starts the program.
struct Start {
    // Until its window was on the screen.
    double window = 0;
    // Until the last change of what the window shows.
    double painted = 0;
    // Kilobytes of memory that are the process's own.
    double memory = 0;
};

struct WindowSearch {
    DWORD process;
    HWND found;
};

BOOL CALLBACK VisitWindow(HWND window, LPARAM parameter) {
    const auto search = reinterpret_cast<WindowSearch*>(parameter);
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    RECT area = {};
    if (process != search->process || !IsWindowVisible(window) || !GetWindowRect(window, &area) ||
        ui::Width(area) < 100 || ui::Height(area) < 100) {
        return TRUE;
    }
    search->found = window;
    return FALSE;
}

HWND WindowOf(DWORD process) {
    WindowSearch search = {process, nullptr};
    EnumWindows(VisitWindow, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

// Whether the thread of a window has nothing else to do. The processor time of another process is
// not told by every system.
bool Answers(HWND window) {
    DWORD_PTR result = 0;
    return SendMessageTimeoutW(window, WM_NULL, 0, 0, SMTO_NORMAL, 20, &result) != 0;
}

// The rows that a window's lists say they have, of the list with the most. A program that does not
// answer has none yet.
BOOL CALLBACK CountRows(HWND window, LPARAM parameter) {
    wchar_t name[32] = {};
    GetClassNameW(window, name, 32);
    const UINT question = _wcsicmp(name, WC_LISTVIEWW) == 0  ? LVM_GETITEMCOUNT
                          : _wcsicmp(name, WC_LISTBOXW) == 0 ? LB_GETCOUNT
                                                             : 0;
    DWORD_PTR rows = 0;
    if (question && SendMessageTimeoutW(window, question, 0, 0, SMTO_NORMAL, 20, &rows)) {
        int& most = *reinterpret_cast<int*>(parameter);
        most = std::max(most, static_cast<int>(rows));
    }
    return TRUE;
}

int RowsOf(HWND window) {
    int rows = 0;
    EnumChildWindows(window, CountRows, reinterpret_cast<LPARAM>(&rows));
    return rows;
}

double OwnKilobytes(HANDLE process) {
    PROCESS_MEMORY_COUNTERS counters = {};
    counters.cb = sizeof counters;
    GetProcessMemoryInfo(process, &counters, sizeof counters);
    return static_cast<double>(counters.PagefileUsage) / 1024.0;
}

// Watches a program that was started at `begin` until it is done and shows so many rows, for which
// it may be waiting for a key once it has any; throws when it is not in time.
Start Watch(const PROCESS_INFORMATION& program, double begin, int rows, WPARAM key) {
    Start start;
    HWND window = nullptr;
    test::Picture picture;
    double changed = begin;
    for (;;) {
        const double now = Now();
        if (now - begin > longestStart) {
            throw TooSlow();
        }
        if (!window) {
            window = WindowOf(program.dwProcessId);
            if (!window) {
                Sleep(1);
                continue;
            }
            start.window = now - begin;
        }
        const int shown = rows > 0 ? RowsOf(window) : 0;
        if (key && shown > 0) {
            PostMessageW(window, WM_KEYDOWN, key, 0);
            key = 0;
        }
        test::Picture next = test::Picture::OfWindow(window);
        if (next != picture || !Answers(window) || shown < rows) {
            picture = std::move(next);
            changed = Now();
        } else if (now - changed > quietMilliseconds) {
            start.painted = changed - begin;
            start.memory = OwnKilobytes(program.hProcess);
            return start;
        }
        Sleep(5);
    }
}

Start Run(const std::wstring& command, int rows, WPARAM key) {
    std::wstring line = command;
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION program = {};
    const double begin = Now();
    if (!CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                        &startup, &program)) {
        throw std::runtime_error("does not start");
    }
    const platform::UniqueHandle process(program.hProcess);
    const platform::UniqueHandle thread(program.hThread);
    Start start;
    try {
        start = Watch(program, begin, rows, key);
    } catch (...) {
        TerminateProcess(program.hProcess, 1);
        throw;
    }
    TerminateProcess(program.hProcess, 0);
    WaitForSingleObject(program.hProcess, INFINITE);
    return start;
}

struct Peer {
    const char* name;
    std::wstring command;
    bool showsFolder;
    // Whether the system's own lists hold its rows, where they can be counted.
    bool hasLists = false;
    // What it waits for until it shows the folder.
    WPARAM key = 0;
    std::vector<Start> starts = {};
    // Not started again.
    bool tooSlow = false;
};

double Middle(const std::vector<Start>& starts, double Start::*value, double* least, double* most) {
    std::vector<double> values;
    for (const Start& start : starts) {
        values.push_back(start.*value);
    }
    std::sort(values.begin(), values.end());
    *least = values.front();
    *most = values.back();
    return values[values.size() / 2];
}

void Print(const Peer& peer) {
    std::printf("| %s |", peer.name);
    for (double Start::*const value : {&Start::window, &Start::painted}) {
        double least = 0;
        double most = 0;
        const double middle = Middle(peer.starts, value, &least, &most);
        std::printf(" %.0f (%.0f-%.0f) |", middle, least, most);
    }
    double least = 0;
    double most = 0;
    std::printf(" %.0f |\n", Middle(peer.starts, &Start::memory, &least, &most));
    std::fflush(stdout);
}

void FillFolder(const test::TemporaryFolder& folder, int files) {
    if (files > 0) {
        // The names are not made in their order: the stride shares no factor with the count.
        const std::string count = std::to_string(files);
        test::RunUnixCommand(
            "cd " + test::HostPath(folder.Path()) + " && seq 0 " + std::to_string(files - 1) +
            " | awk '{ printf \"file %d.txt%c\", $1 * 7919 % " + count + ", 0 }' | xargs -0 touch");
    }
}

// Starts each peer `rounds` times in a folder of so many files, in turn, so that a machine that
// slows down slows all.
void Measure(int files, int rounds) {
    const test::TemporaryFolder folder;
    FillFolder(folder, files);
    const test::CleanSettings settings;
    const std::wstring path = platform::desktop::ToDesktopPath(folder.Path());
    wchar_t self[MAX_PATH];
    wchar_t program[MAX_PATH];
    GetModuleFileNameW(nullptr, self, MAX_PATH);
    GetEnvironmentVariableW(L"VANTOR_EXE", program, MAX_PATH);
    std::vector<Peer> peers = {
        {"Vantor", L"\"" + std::wstring(program) + L"\" -explorer", true},
        // It takes all that follows its name for the path, and at first shows what is around it.
        {"winefile", L"winefile.exe " + path, true, true, VK_F5},
        {"explorer", L"explorer.exe \"" + path + L"\"", true, true},
        {"taskmgr", L"taskmgr.exe", false},
        {"an empty window", L"\"" + std::wstring(self) + L"\" --empty", false},
    };
    for (int round = 0; round < rounds; ++round) {
        for (Peer& peer : peers) {
            if (files > 0 && !peer.showsFolder) {
                continue;
            }
            test::CleanSettings::SetText(L"path", folder.Path());
            try {
                if (!peer.tooSlow) {
                    peer.starts.push_back(Run(peer.command, peer.hasLists ? files : 0, peer.key));
                }
            } catch (const TooSlow&) {
                peer.tooSlow = true;
            }
        }
    }
    std::printf(
        "\nA folder of %d files:\n\n"
        "| program | window (ms) | done (ms) | memory (KB) |\n"
        "| --- | --- | --- | --- |\n",
        files);
    for (const Peer& peer : peers) {
        if (peer.tooSlow) {
            std::printf("| %s | not done in %.0f s | | |\n", peer.name, longestStart / 1000);
        } else if (!peer.starts.empty()) {
            Print(peer);
        }
    }
    test::RunUnixCommand("rm -r " + test::HostPath(folder.Path()));
}

// The empty window.
LRESULT CALLBACK Plain(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_DESTROY) {
        PostQuitMessage(0);
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

int ShowEmptyWindow() {
    WNDCLASSW description = {};
    description.lpfnWndProc = Plain;
    description.lpszClassName = L"Empty";
    description.hbrBackground = GetSysColorBrush(COLOR_WINDOW);
    description.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    RegisterClassW(&description);
    const HWND window = CreateWindowExW(
        0, L"Empty", L"Empty", WS_OVERLAPPEDWINDOW, 0, 0, GetSystemMetrics(SM_CXSCREEN),
        GetSystemMetrics(SM_CYSCREEN), nullptr, nullptr, nullptr, nullptr);
    ShowWindow(window, SW_SHOW);
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        DispatchMessageW(&message);
    }
    return 0;
}

}  // namespace

// board ROUNDS FILES...
int main(int count, char** arguments) {
    if (count == 2 && std::string(arguments[1]) == "--empty") {
        return ShowEmptyWindow();
    }
    const int rounds = count > 1 ? std::atoi(arguments[1]) : 5;
    for (int argument = 2; argument < count; ++argument) {
        Measure(std::atoi(arguments[argument]), rounds);
    }
    return 0;
}
