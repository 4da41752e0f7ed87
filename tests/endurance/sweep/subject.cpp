#include "tests/endurance/sweep/subject.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "tests/support/loaded_library.h"
#include "tests/support/program.h"

namespace sweep {

namespace {

constexpr wchar_t mainWindowClass[] = L"Vantor Main Window";
// Longer than anything takes on a busy machine: only what is stuck lasts as long.
constexpr DWORD longest = 20000;
constexpr int never = 1 << 30;
// A message that was posted leads to a call, but for one that nobody takes.
constexpr DWORD longestUntaken = 500;

std::wstring Variable(const wchar_t* name) {
    wchar_t value[1024] = {};
    GetEnvironmentVariableW(name, value, 1024);
    return value;
}

// The file that the emulator writes to, which lies in the system underneath.
std::wstring ComplaintFile() {
    std::wstring path = Variable(L"VANTOR_HANDHELD_LOG");
    for (wchar_t& letter : path) {
        letter = letter == L'/' ? L'\\' : letter;
    }
    return path.empty() ? path : L"\\\\?\\unix" + path;
}

std::string OneLine(std::string text) {
    for (char& letter : text) {
        letter = letter == '\n' || letter == '\t' ? '|' : letter;
    }
    return text;
}

struct Search {
    DWORD process;
    const wchar_t* className;
    HWND found;
    size_t count;
};

BOOL CALLBACK VisitTop(HWND window, LPARAM parameter) {
    auto& search = *reinterpret_cast<Search*>(parameter);
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    wchar_t name[64] = {};
    GetClassNameW(window, name, 64);
    if (process == search.process && IsWindowVisible(window) &&
        wcscmp(name, search.className) == 0) {
        ++search.count;
        if (!search.found && IsWindowEnabled(window)) {
            search.found = window;
        }
    }
    return TRUE;
}

BOOL CALLBACK VisitChild(HWND window, LPARAM parameter) {
    auto& search = *reinterpret_cast<Search*>(parameter);
    wchar_t name[64] = {};
    GetClassNameW(window, name, 64);
    if (IsWindowVisible(window) && _wcsicmp(name, search.className) == 0) {
        search.found = window;
        return FALSE;
    }
    return TRUE;
}

}  // namespace

std::string Narrow(std::wstring_view text) {
    std::string narrow(text.size() * 4, '\0');
    const int length =
        WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), narrow.data(),
                            static_cast<int>(narrow.size()), nullptr, nullptr);
    narrow.resize(static_cast<size_t>(length));
    for (char& letter : narrow) {
        letter = letter == '\n' || letter == '\r' || letter == '\t' ? ' ' : letter;
    }
    return narrow;
}

Subject::Subject() {
    const std::string name = "vantor-sweep-" + std::to_string(GetCurrentProcessId());
    mapping_.Reset(CreateFileMappingA(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0,
                                      sizeof(Channel), name.c_str()));
    channel_ = static_cast<Channel*>(
        MapViewOfFile(mapping_.Get(), FILE_MAP_ALL_ACCESS, 0, 0, sizeof(Channel)));
    if (!channel_) {
        std::printf("there is no mapping: error %lu\n", GetLastError());
        std::exit(2);
    }
    channel_->version = channelVersion;
    SetEnvironmentVariableA(variable, name.c_str());
}

Subject::~Subject() {
    Kill();
    UnmapViewOfFile(channel_);
}

void Subject::Launch(const std::wstring& arguments) {
    Kill();
    DeleteFileW(ComplaintFile().c_str());
    channel_->place = Place::Runs;
    channel_->calls = 0;
    cameToRest_ = true;
    const std::wstring path = Variable(L"VANTOR_EXE");
    std::wstring command = L'"' + path + L"\" " + arguments;
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process = {};
    const test::CrashFile::Given given(crashes_);
    if (!CreateProcessW(path.c_str(), command.data(), nullptr, nullptr, FALSE, 0, nullptr, L"C:\\",
                        &startup, &process)) {
        std::printf("the program does not start: error %lu\n", GetLastError());
        std::exit(2);
    }
    CloseHandle(process.hThread);
    process_.Reset(process.hProcess);
    processId_ = process.dwProcessId;
    if (!test::RunsOnHandheld() &&
        !test::LoadInto(process_.Get(), test::LibraryBeside(L"sweep_watch.dll").c_str())) {
        std::printf("the program is not watched\n");
        std::exit(2);
    }
}

bool Subject::Start(const std::wstring& arguments) {
    Disarm();
    Launch(arguments);
    const DWORD start = GetTickCount();
    while (!Window()) {
        if (!Runs() || GetTickCount() - start > longest) {
            return false;
        }
        Sleep(1);
    }
    // On a PC it is seen only from its next message on.
    Post(Window(), WM_NULL);
    return ComesToRest();
}

void Subject::Kill() {
    if (process_) {
        TerminateProcess(process_.Get(), 1);
        WaitForSingleObject(process_.Get(), longest);
        process_.Reset();
        processId_ = 0;
    }
}

bool Subject::Runs() const {
    return process_ && WaitForSingleObject(process_.Get(), 0) == WAIT_TIMEOUT;
}

DWORD Subject::ExitCode() const {
    DWORD code = ~0u;
    if (WaitForSingleObject(process_.Get(), longest) == WAIT_OBJECT_0) {
        GetExitCodeProcess(process_.Get(), &code);
    }
    return code;
}

std::string Subject::Complaint() const {
    if (!test::RunsOnHandheld()) {
        return OneLine(crashes_.Told());
    }
    const HANDLE file = CreateFileW(ComplaintFile().c_str(), GENERIC_READ,
                                    FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                    OPEN_EXISTING, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        return "";
    }
    const platform::UniqueHandle owner(file);
    char text[1500];
    DWORD size = 0;
    ReadFile(file, text, sizeof text, &size, nullptr);
    return OneLine(std::string(text, size));
}

HWND Subject::Window() const {
    HWND window = nullptr;
    while ((window = FindWindowExW(nullptr, window, mainWindowClass, nullptr)) != nullptr) {
        DWORD process = 0;
        GetWindowThreadProcessId(window, &process);
        if (process == processId_ && IsWindowVisible(window)) {
            return window;
        }
    }
    return nullptr;
}

void Subject::Arm(const Plan& plan) {
    channel_->arming = Arming::Off;
    channel_->plan = plan;
    channel_->counted = 0;
    channel_->failures = 0;
    channel_->failedName[0] = '\0';
    channel_->failedAt[0] = '\0';
    if (Runs()) {
        // The emulator sees that the plan before has ended.
        Post(Window(), WM_NULL);
    }
    channel_->arming = Arming::On;
}

// What the program posts to itself is in its queue before it waits, and it is said to wait only
// with nothing there. In the system's own loops for dialogs nobody sees that: there it is to make
// no calls for longer, once its box is seen, which may take far longer still.
int Subject::RestNeeded() const {
    switch (channel_->place) {
        case Place::Waits:
            return 4;
        case Place::Lends:
            return Top(L"#32770") ? 40 : never;
        default:
            return never;
    }
}

bool Subject::ComesToRest(int milliseconds) {
    const DWORD start = GetTickCount();
    unsigned calls = channel_->calls;
    for (int quiet = 0; quiet < std::max(milliseconds, RestNeeded());) {
        if (!Runs()) {
            return true;
        }
        if (GetTickCount() - start > longest) {
            cameToRest_ = false;
            return false;
        }
        Sleep(1);
        quiet = channel_->calls == calls ? quiet + 1 : 0;
        calls = channel_->calls;
    }
    return true;
}

bool Subject::CameToRest() {
    return std::exchange(cameToRest_, true);
}

void Subject::Do(const std::function<void()>& deed) {
    const unsigned calls = channel_->calls;
    deed();
    const DWORD start = GetTickCount();
    while (channel_->calls == calls && Runs() && GetTickCount() - start < longestUntaken) {
        Sleep(0);
    }
    ComesToRest();
}

void Subject::Post(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (window) {
        Do([&] { PostMessageW(window, message, wParam, lParam); });
    }
}

void Subject::Key(HWND window, WPARAM key) {
    constexpr LPARAM released = 0xC0000001;
    Post(window, WM_KEYDOWN, key, 1);
    if (IsWindow(window)) {
        Post(window, WM_KEYUP, key, released);
    }
}

void Subject::TurnScreen(bool turned) {
    Post(Top(L"HHTaskBar"), RegisterWindowMessageA(turnMessage), turned);
}

HWND Subject::Child(HWND parent, const wchar_t* className) const {
    Search search = {processId_, className, nullptr, 0};
    if (parent) {
        EnumChildWindows(parent, VisitChild, reinterpret_cast<LPARAM>(&search));
    }
    return search.found;
}

// A box of the system is on the screen only some time after it was called; what it lies on takes
// no input meanwhile.
HWND Subject::Dialog() const {
    for (int round = 0; round < 200; ++round) {
        Search search = {processId_, L"#32770", nullptr, 0};
        EnumWindows(VisitTop, reinterpret_cast<LPARAM>(&search));
        const HWND window = Window();
        if (search.found || !Runs() || (window && IsWindowEnabled(window))) {
            return search.found;
        }
        Sleep(5);
    }
    return nullptr;
}

HWND Subject::Top(const wchar_t* className) const {
    Search search = {processId_, className, nullptr, 0};
    EnumWindows(VisitTop, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

HWND Subject::Popup() const {
    return Top(L"kx::PopupMenu");
}

size_t Subject::PopupCount() const {
    Search search = {processId_, L"kx::PopupMenu", nullptr, 0};
    EnumWindows(VisitTop, reinterpret_cast<LPARAM>(&search));
    return search.count;
}

std::wstring Subject::Title() const {
    return CaptionOf(Window());
}

std::wstring Subject::CaptionOf(HWND window) {
    wchar_t text[600] = {};
    InternalGetWindowText(window, text, 600);
    return text;
}

std::vector<std::string> Subject::DrawnBy(HWND window) {
    channel_->drawnLength = 0;
    if (!window) {
        return {};
    }
    Do([&] {
        RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
        PostMessageW(window, WM_NULL, 0, 0);
    });
    std::vector<std::string> texts;
    std::wstring text;
    for (unsigned index = 0; index < channel_->drawnLength; ++index) {
        const auto letter = static_cast<wchar_t>(channel_->drawn[index]);
        if (letter != L'\0') {
            text += letter;
        } else {
            texts.push_back(Narrow(text));
            text.clear();
        }
    }
    return texts;
}

void Subject::Ask(Request request) {
    channel_->request = request;
    Post(Window(), WM_NULL);
}

Holding Subject::Held() {
    // Any request has it told.
    MarkHoldings();
    return Holding{channel_->held, channel_->heapBlocks};
}

std::string Subject::NewHoldings() {
    Ask(Request::Tell);
    return OneLine(std::string(channel_->told, channel_->toldLength));
}

}  // namespace sweep
