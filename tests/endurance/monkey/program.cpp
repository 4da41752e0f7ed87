#include "tests/endurance/monkey/program.h"

#include <tlhelp32.h>

#include <cstdio>
#include <cstdlib>

#include "tests/support/crash.h"
#include "tests/support/loaded_library.h"
#include "tests/support/unix_command.h"
#include "tests/support/wait.h"
#include "tests/support/windows_seen.h"

namespace monkey {

const char* const counterNames[counters] = {"GDI objects", "handles", "windows", "blocks",
                                            "things held"};

namespace {

constexpr wchar_t mainWindowClass[] = L"Vantor Main Window";
// The strip at the top of a handheld's screen, which the emulator shows in the program's place.
constexpr wchar_t shellStripClass[] = L"HHTaskBar";
constexpr DWORD longest = longestPatience;

// Of a program that was ended by Kill in Processes, where it finds itself as well.
constexpr DWORD killedCode = 0x80004004;

std::wstring Variable(const wchar_t* name) {
    wchar_t value[1024] = {};
    GetEnvironmentVariableW(name, value, 1024);
    return value;
}

// As this system calls a file of the system underneath.
std::wstring UnixFile(std::wstring path) {
    for (wchar_t& letter : path) {
        letter = letter == L'/' ? L'\\' : letter;
    }
    return path.empty() ? path : L"\\\\?\\unix" + path;
}

std::string OneLine(std::string text) {
    for (char& letter : text) {
        letter = letter == '\n' || letter == '\r' || letter == '\t' ? '|' : letter;
    }
    return text;
}

struct Search {
    const Program* program;
    bool hidden;
    std::vector<HWND> found;
};

BOOL CALLBACK VisitTop(HWND window, LPARAM parameter) {
    auto& search = *reinterpret_cast<Search*>(parameter);
    if (search.program->Owns(window) && (search.hidden || IsWindowVisible(window)) &&
        test::ClassOf(window) != shellStripClass) {
        search.found.push_back(window);
    }
    return TRUE;
}

struct Tally {
    DWORD process;
    unsigned count;
};

BOOL CALLBACK CountChild(HWND, LPARAM parameter) {
    ++reinterpret_cast<Tally*>(parameter)->count;
    return TRUE;
}

BOOL CALLBACK CountTop(HWND window, LPARAM parameter) {
    auto& tally = *reinterpret_cast<Tally*>(parameter);
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    if (process == tally.process) {
        ++tally.count;
        EnumChildWindows(window, CountChild, parameter);
    }
    return TRUE;
}

platform::UniqueHandle MakeEvent(const std::wstring& name) {
    return platform::UniqueHandle(CreateEventW(nullptr, FALSE, FALSE, name.c_str()));
}

}  // namespace

std::string Narrow(const std::wstring& text) {
    std::string narrow(text.size() * 4, '\0');
    const int length =
        WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), narrow.data(),
                            static_cast<int>(narrow.size()), nullptr, nullptr);
    narrow.resize(static_cast<size_t>(length));
    return OneLine(narrow);
}

const char* NameOf(State state) {
    switch (state) {
        case State::Ready:
            return "ready";
        case State::Ended:
            return "ended";
        case State::Crashed:
            return "crashed";
        case State::Hangs:
            return "hangs";
        default:
            return "lingers";
    }
}

bool Program::OnHandheld() {
    return !Variable(L"VANTOR_HANDHELD_DEVICE").empty();
}

Program::Program(const std::wstring& tools) : tools_(tools) {
    const std::wstring name = L"vantor-monkey-" + std::to_wstring(GetCurrentProcessId());
    mapping_.Reset(CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0,
                                      sizeof(WatchChannel), name.c_str()));
    channel_ = static_cast<WatchChannel*>(
        MapViewOfFile(mapping_.Get(), FILE_MAP_ALL_ACCESS, 0, 0, sizeof(WatchChannel)));
    ask_ = MakeEvent(name + askSuffix);
    answer_ = MakeEvent(name + answerSuffix);
    marked_ = MakeEvent(name + markSuffix);
    markMessage_ = RegisterWindowMessageW(markMessage);
    SetEnvironmentVariableW(channelVariable, name.c_str());
    if (OnHandheld()) {
        const std::wstring other = name + L"-emulator";
        emulatorMapping_.Reset(CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0,
                                                  sizeof(sweep::Channel), other.c_str()));
        emulator_ = static_cast<sweep::Channel*>(MapViewOfFile(
            emulatorMapping_.Get(), FILE_MAP_ALL_ACCESS, 0, 0, sizeof(sweep::Channel)));
        emulator_->version = sweep::channelVersion;
        SetEnvironmentVariableA(sweep::variable, Narrow(other).c_str());
        complaints_ = UnixFile(Variable(L"VANTOR_HANDHELD_LOG"));
    }
    crashes_ = test::UnixFileName();
    SetEnvironmentVariableW(test::crashesVariable, crashes_.c_str());
}

Program::~Program() {
    Kill();
    DeleteFileW(crashes_.c_str());
}

bool Program::Owns(HWND window) const {
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    return process == id_ && id_ != 0;
}

HWND Program::Window() const {
    HWND window = nullptr;
    while ((window = FindWindowExW(nullptr, window, mainWindowClass, nullptr)) != nullptr) {
        if (Owns(window)) {
            return window;
        }
    }
    return nullptr;
}

std::wstring Program::Title() const {
    wchar_t text[600] = {};
    InternalGetWindowText(Window(), text, 600);
    return text;
}

std::vector<HWND> Program::TopWindows(bool hidden) const {
    // Its windows are all of one thread, and to ask each window of the screen takes long.
    Search search = {this, hidden, {}};
    EnumThreadWindows(channel_->thread, VisitTop, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

HWND Program::Front() const {
    for (const HWND window : TopWindows()) {
        if (IsWindowEnabled(window)) {
            return window;
        }
    }
    return nullptr;
}

HWND Program::Focus() const {
    const HWND front = Front();
    GUITHREADINFO thread = {};
    thread.cbSize = sizeof thread;
    if (front && GetGUIThreadInfo(GetWindowThreadProcessId(front, nullptr), &thread) &&
        thread.hwndFocus) {
        return thread.hwndFocus;
    }
    return front;
}

HWND Program::At(POINT point) const {
    HWND window = nullptr;
    for (const HWND top : TopWindows()) {
        RECT area = {};
        GetWindowRect(top, &area);
        if (PtInRect(&area, point)) {
            window = IsWindowEnabled(top) ? top : nullptr;
            break;
        }
    }
    if (!window) {
        return nullptr;
    }
    GUITHREADINFO thread = {};
    thread.cbSize = sizeof thread;
    if (GetGUIThreadInfo(GetWindowThreadProcessId(window, nullptr), &thread) &&
        thread.hwndCapture) {
        return thread.hwndCapture;
    }
    for (;;) {
        POINT inside = point;
        ScreenToClient(window, &inside);
        const HWND child =
            ChildWindowFromPointEx(window, inside, CWP_SKIPINVISIBLE | CWP_SKIPDISABLED);
        if (!child || child == window) {
            return window;
        }
        window = child;
    }
}

std::wstring Program::TextsOf(HWND box) const {
    wchar_t text[300] = {};
    InternalGetWindowText(box, text, 300);
    std::wstring all = text;
    for (HWND part = nullptr; (part = FindWindowExW(box, part, L"Static", nullptr)) != nullptr;) {
        InternalGetWindowText(part, text, 300);
        all += std::wstring(L" / ") + text;
    }
    return all;
}

bool Program::Await(HANDLE event, DWORD milliseconds) {
    const HANDLE both[] = {event, process_.Get()};
    return WaitForMultipleObjects(2, both, FALSE, milliseconds) == WAIT_OBJECT_0;
}

// The window comes before its thread looks for messages.
bool Program::Watch() {
    if (!test::WaitFor([this] { return !Runs() || (Window() && IsWindowVisible(Window())); },
                       longest) ||
        !Runs()) {
        return false;
    }
    ResetEvent(answer_.Get());
    if (!test::LoadInto(process_.Get(), (tools_ + L"\\monkey_watch.dll").c_str())) {
        return false;
    }
    channel_->thread = GetWindowThreadProcessId(Window(), nullptr);
    SetEvent(ask_.Get());
    if (!Await(answer_.Get(), longest)) {
        return false;
    }
    state_ = State::Ready;
    return Settle() == State::Ready;
}

bool Program::Start(const std::wstring& arguments) {
    Kill();
    DeleteFileW(crashes_.c_str());
    DeleteFileW(complaints_.c_str());
    const std::wstring path = Variable(L"VANTOR_EXE");
    std::wstring command = L'"' + path + L"\" " + arguments;
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process = {};
    if (!CreateProcessW(path.c_str(), command.data(), nullptr, nullptr, FALSE, 0, nullptr, L"C:\\",
                        &startup, &process)) {
        std::printf("the program does not start: error %lu\n", GetLastError());
        std::exit(2);
    }
    CloseHandle(process.hThread);
    process_.Reset(process.hProcess);
    id_ = process.dwProcessId;
    // The emulator tells of what goes wrong on it by itself.
    if (!OnHandheld() && !test::LoadInto(process_.Get(), (tools_ + L"\\crash_watch.dll").c_str())) {
        return false;
    }
    return Watch();
}

bool Program::GoOnWithNext() {
    const std::wstring path = Variable(L"VANTOR_EXE");
    const std::wstring name = path.substr(path.rfind(L'\\') + 1);
    const platform::UniqueHandle snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
    PROCESSENTRY32W entry = {};
    entry.dwSize = sizeof entry;
    for (BOOL more = Process32FirstW(snapshot.Get(), &entry); more;
         more = Process32NextW(snapshot.Get(), &entry)) {
        if (entry.th32ParentProcessID == id_ && lstrcmpiW(entry.szExeFile, name.c_str()) == 0) {
            process_.Reset(OpenProcess(PROCESS_ALL_ACCESS, FALSE, entry.th32ProcessID));
            id_ = entry.th32ProcessID;
            return process_ && Watch();
        }
    }
    return false;
}

void Program::Kill() {
    if (process_) {
        TerminateProcess(process_.Get(), 1);
        WaitForSingleObject(process_.Get(), longest);
        process_.Reset();
        id_ = 0;
    }
}

State Program::Settle() {
    const DWORD start = GetTickCount();
    const auto ended = [this] {
        DWORD code = 0;
        GetExitCodeProcess(process_.Get(), &code);
        return (code == 0 || code == killedCode) && test::ReadUnixFile(crashes_).empty()
                   ? State::Ended
                   : State::Crashed;
    };
    ++mark_;
    bool posted = false;
    while (GetTickCount() - start < patience_) {
        if (!Runs()) {
            return state_ = ended();
        }
        if (!posted) {
            posted = PostMessageW(Window(), markMessage_, static_cast<WPARAM>(mark_), 0);
        }
        if (Await(marked_.Get(), 50) && channel_->mark == mark_) {
            return state_ = State::Ready;
        }
        // One that ends takes no message any more.
        posted = posted && Window();
    }
    return state_ = Window() ? State::Hangs : State::Lingers;
}

std::string Program::Trouble() {
    std::string words = NameOf(state_);
    if (!Runs()) {
        DWORD code = 0;
        GetExitCodeProcess(process_.Get(), &code);
        words += ", exit code " + std::to_string(code);
    }
    DWORD_PTR result = 0;
    if (state_ == State::Hangs) {
        words += SendMessageTimeoutW(Window(), WM_NULL, 0, 0, SMTO_NORMAL, 5000, &result)
                     ? ", answers what is sent but takes nothing posted"
                     : ", does not answer";
    }
    if (Runs()) {
        for (const HWND window : TopWindows(true)) {
            words += " [" + Narrow(test::ClassOf(window)) + ": " + Narrow(TextsOf(window)) +
                     (IsWindowEnabled(window) ? "" : ", disabled") +
                     (IsWindowVisible(window) ? "]" : ", hidden]");
        }
        GUITHREADINFO thread = {};
        thread.cbSize = sizeof thread;
        GetGUIThreadInfo(GetWindowThreadProcessId(Window(), nullptr), &thread);
        words += " active " + Narrow(test::ClassOf(thread.hwndActive)) + ", focus " +
                 Narrow(test::ClassOf(thread.hwndFocus)) + ", capture " +
                 Narrow(test::ClassOf(thread.hwndCapture));
    }
    char text[64];
    const unsigned taken = channel_->taken;
    // Nothing is decided by it: the program is wrong already, and this tells whether it still takes
    // messages.
    Sleep(200);
    words += ", took " + std::to_string(channel_->taken - taken) + " messages meanwhile, the last:";
    for (unsigned index = 0; index < lastMessages; ++index) {
        const auto& last = channel_->last[(channel_->taken + index) % lastMessages];
        std::snprintf(text, sizeof text, " %x(%x+%x)", last.message, last.value, last.held);
        words += text + std::string("@") + Narrow(test::ClassOf(last.window));
    }
    for (const std::wstring& file : {crashes_, complaints_}) {
        const std::string told = file.empty() ? "" : OneLine(test::ReadUnixFile(file));
        words += told.empty() ? "" : ": " + told.substr(0, 3000);
    }
    return words;
}

void Program::AskEmulator(sweep::Request request) {
    emulator_->request = request;
    PostMessageW(Window(), WM_NULL, 0, 0);
    test::WaitFor([&] { return emulator_->request == sweep::Request::None || !Runs(); });
}

Counts Program::Count() {
    Counts counts = {};
    ResetEvent(answer_.Get());
    SetEvent(ask_.Get());
    Await(answer_.Get(), longest);
    Tally tally = {id_, 0};
    EnumWindows(CountTop, reinterpret_cast<LPARAM>(&tally));
    counts[Windows] = tally.count;
    if (emulator_) {
        // What lies beneath the emulator is its own matter.
        AskEmulator(sweep::Request::Mark);
        counts[Things] = emulator_->held;
        counts[Blocks] = emulator_->heapBlocks;
        return counts;
    }
    counts[GdiObjects] = channel_->gdiObjects;
    counts[Handles] = channel_->handles;
    counts[Blocks] = channel_->blocks;
    return counts;
}

std::string Program::NewHoldings() {
    if (!emulator_) {
        return "";
    }
    AskEmulator(sweep::Request::Tell);
    return OneLine(std::string(emulator_->told, emulator_->toldLength)).substr(0, 2000);
}

}  // namespace monkey
