// Loaded into the executable of a PC: lets its calls fail as a program beside it asks for, and says
// what it draws and holds, as the emulator does for a handheld's (tools/emulator/sweep_channel.h).
// Its calls are those that it imports; the functions of objects are not among them.
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <map>
#include <optional>
#include <string>

#include "tests/endurance/sweep/watch/gate.h"
#include "tests/support/crash.h"
#include "tests/support/platform_hook.h"
#include "tests/support/world.h"
#include "tools/emulator/failure_plan.h"
#include "tools/emulator/natural_failures.h"

namespace {

using emulator::NaturalFailure;

constexpr emulator::Address invalid = 0xFFFFFFFF;
constexpr emulator::Address noMemory = ERROR_NOT_ENOUGH_MEMORY;

// What a handheld does not have, or calls by another name.
const std::map<std::string, NaturalFailure> failuresOnPC = {
    {"DeviceIoControl", {0, ERROR_ACCESS_DENIED, sweep::systemCalls}},
    {"GetClipboardData", {0, noMemory, sweep::systemCalls}},
    {"GetFinalPathNameByHandleW", {0, noMemory, sweep::systemCalls}},
    {"GetFullPathNameW", {0, noMemory, sweep::systemCalls}},
    {"GetLogicalDrives", {0, ERROR_NOT_READY, sweep::systemCalls}},
    {"GetLongPathNameW", {0, ERROR_NOT_READY, sweep::systemCalls}},
    {"GetMonitorInfoW", {0, noMemory, sweep::systemCalls}},
    {"GlobalAlloc", {0, noMemory, sweep::heapCalls}},
    {"GlobalLock", {0, noMemory, sweep::systemCalls}},
    {"MoveFileExW", {0, ERROR_ACCESS_DENIED, sweep::systemCalls}},
    {"SendMessageTimeoutW", {0, ERROR_TIMEOUT, sweep::systemCalls}},
    {"SHGetFileInfoW", {0, noMemory, sweep::systemCalls}},
    {"SHGetSpecialFolderPathW", {0, noMemory, sweep::systemCalls}},
    {"ShellExecuteExW", {0, noMemory, sweep::systemCalls}},
    {"SystemParametersInfoW", {0, noMemory, sweep::systemCalls}},
    {"calloc", {0, noMemory, sweep::heapCalls}},
    {"malloc", {0, noMemory, sweep::heapCalls}},
    {"realloc", {0, noMemory, sweep::heapCalls}},
};

// They cannot fail, but tell that the program does something.
bool IsCounted(const std::string& name) {
    return name == "DefWindowProcW" || name == "DispatchMessageW" || name == "MessageBeep" ||
           name == "SetFocus" || name == "ShowWindow" || name == "EndDialog";
}

const NaturalFailure* FailureOf(const std::string& name) {
    if (const auto found = failuresOnPC.find(name); found != failuresOnPC.end()) {
        return &found->second;
    }
    for (const char* const library : {"", "toolhelp!", "ole32!", "oleaut32!"}) {
        if (const NaturalFailure* const natural = emulator::NaturalFailureOf(library + name)) {
            return natural;
        }
    }
    return nullptr;
}

struct Guarded {
    std::string name;
    const NaturalFailure* failure;
};

sweep::Channel* channel = nullptr;
sweep::PlannedFailures* planned = nullptr;
Guarded* guarded = nullptr;
unsigned guardedCount = 0;
// Blocks of the heap that the program has got and not given back.
LONG blocks = 0;

// What is asked for about the calls of the program changes no error that it may look at.
class ErrorKept {
 public:
    ErrorKept() : error_(GetLastError()) {}
    ~ErrorKept() { SetLastError(error_); }
    ErrorKept(const ErrorKept&) = delete;
    ErrorKept& operator=(const ErrorKept&) = delete;

 private:
    DWORD error_;
};

class InPlace {
 public:
    explicit InPlace(sweep::Place place) : before_(channel->place) { channel->place = place; }
    ~InPlace() { channel->place = before_; }
    InPlace(const InPlace&) = delete;
    InPlace& operator=(const InPlace&) = delete;

 private:
    sweep::Place before_;
};

void Obey() {
    if (channel->request == sweep::Request::None) {
        return;
    }
    const ErrorKept kept;
    const test::Held held = test::CountHeld();
    channel->heapBlocks = static_cast<std::uint32_t>(blocks);
    channel->held = held.gdiObjects + held.handles;
    channel->toldLength = static_cast<std::uint32_t>(
        std::max(0, std::snprintf(channel->told, sizeof channel->told, "%u GDI objects, %u handles",
                                  held.gdiObjects, held.handles)));
    channel->request = sweep::Request::None;
}

void TellDrawn(ULONG_PTR text, int length) {
    const std::uint32_t end = channel->drawnLength;
    if (text == 0 || length < 0 ||
        end + static_cast<std::uint32_t>(length) + 1 > std::size(channel->drawn)) {
        return;
    }
    std::memcpy(channel->drawn + end, reinterpret_cast<const void*>(text),
                static_cast<size_t>(length) * sizeof *channel->drawn);
    channel->drawn[end + static_cast<std::uint32_t>(length)] = u'\0';
    channel->drawnLength = end + static_cast<std::uint32_t>(length) + 1;
}

// The places in the executable that the call came from, as its map has them.
void TellFirstFailure(const std::string& name) {
    std::snprintf(channel->failedName, sizeof channel->failedName, "%s", name.c_str());
    void* callers[32];
    const USHORT count = CaptureStackBackTrace(0, 32, callers, nullptr);
    const auto base = reinterpret_cast<ULONG_PTR>(GetModuleHandleW(nullptr));
    constexpr ULONG_PTR largest = 0x1000000;
    std::string at;
    for (USHORT index = 0; index < count; ++index) {
        const ULONG_PTR place = reinterpret_cast<ULONG_PTR>(callers[index]) - base;
        if (place < largest) {
            char text[32];
            std::snprintf(text, sizeof text, "%s+0x%llx", at.empty() ? "" : " < ", place);
            at += text;
        }
    }
    std::snprintf(channel->failedAt, sizeof channel->failedAt, "%s", at.c_str());
}

// How a call fails, if it has to.
const NaturalFailure* FailureNow(const std::string& name, const NaturalFailure* natural) {
    const ErrorKept kept;
    // What has been called is no longer seen here: no call can be the last after it, or amid it.
    const sweep::Ending ending = channel->plan.ending;
    const bool canBe = ending == sweep::Ending::None || ending == sweep::Ending::Before;
    if (!planned->Meet(channel, name, natural && canBe ? natural->kind : 0)) {
        return nullptr;
    }
    if (planned->Failures() == 1) {
        TellFirstFailure(name);
    }
    if (ending == sweep::Ending::Before) {
        TerminateProcess(GetCurrentProcess(), sweep::endedExitCode);
    }
    return natural;
}

bool Fails(const NaturalFailure* failure, ULONG_PTR* result) {
    if (!failure) {
        return false;
    }
    // A handle that is none is none in all its bits.
    *result = static_cast<ULONG_PTR>(static_cast<LONG_PTR>(static_cast<int>(failure->result)));
    SetLastError(failure->error);
    return true;
}

bool MeetCall(unsigned number, const ULONG_PTR* arguments, ULONG_PTR* result) {
    const Guarded& call = guarded[number];
    channel->calls = channel->calls + 1;
    Obey();
    if (call.name == "DrawTextW" && (arguments[4] & DT_CALCRECT) == 0) {
        TellDrawn(arguments[1], static_cast<int>(arguments[2]));
    } else if (call.name == "ExtTextOutW") {
        TellDrawn(arguments[5], static_cast<int>(arguments[6]));
    } else if (call.name == "MessageBeep") {
        channel->beeps = channel->beeps + 1;
    }
    // A process can always end itself.
    const bool endsItself = call.name == "TerminateProcess" &&
                            reinterpret_cast<HANDLE>(arguments[0]) == GetCurrentProcess();
    return Fails(FailureNow(call.name, endsItself ? nullptr : call.failure), result);
}

// What takes its time, or gives what is counted, is called from here.
template <class Function>
struct Replaced {
    const char* name;
    Function* original = nullptr;
    const NaturalFailure* failure = nullptr;

    bool FailsNow() const {
        channel->calls = channel->calls + 1;
        Obey();
        ULONG_PTR result = 0;
        return Fails(FailureNow(name, failure), &result);
    }
};

Replaced<decltype(GetMessageW)> getMessage = {"GetMessageW"};
Replaced<decltype(MsgWaitForMultipleObjectsEx)> waitForMessage = {"MsgWaitForMultipleObjectsEx"};
Replaced<decltype(DialogBoxIndirectParamW)> dialogBox = {"DialogBoxIndirectParamW"};
Replaced<decltype(MessageBoxW)> messageBox = {"MessageBoxW"};
Replaced<void*(size_t)> allocate = {"malloc"};
Replaced<void*(size_t, size_t)> allocateCleared = {"calloc"};
Replaced<void*(void*, size_t)> reallocate = {"realloc"};
Replaced<void(void*)> release = {"free"};

BOOL WINAPI GetMessageSeen(MSG* message, HWND window, UINT first, UINT last) {
    getMessage.FailsNow();
    MSG next;
    const bool nothing = !PeekMessageW(&next, window, first, last, PM_NOREMOVE);
    const InPlace place(nothing ? sweep::Place::Waits : sweep::Place::Runs);
    return getMessage.original(message, window, first, last);
}

DWORD WINAPI WaitForMessageSeen(DWORD count, const HANDLE* handles, DWORD milliseconds, DWORD wake,
                                DWORD flags) {
    if (waitForMessage.FailsNow()) {
        return WAIT_FAILED;
    }
    const InPlace place(sweep::Place::Waits);
    return waitForMessage.original(count, handles, milliseconds, wake, flags);
}

INT_PTR WINAPI DialogBoxSeen(HINSTANCE module, const DLGTEMPLATE* dialog, HWND owner,
                             DLGPROC procedure, LPARAM parameter) {
    if (dialogBox.FailsNow()) {
        return -1;
    }
    const InPlace place(sweep::Place::Lends);
    return dialogBox.original(module, dialog, owner, procedure, parameter);
}

int WINAPI MessageBoxSeen(HWND owner, const wchar_t* text, const wchar_t* caption, UINT type) {
    if (messageBox.FailsNow()) {
        return 0;
    }
    const InPlace place(sweep::Place::Lends);
    return messageBox.original(owner, text, caption, type);
}

void* Counted(void* block) {
    blocks += block != nullptr;
    return block;
}

void* AllocateSeen(size_t size) {
    return allocate.FailsNow() ? nullptr : Counted(allocate.original(size));
}

void* AllocateClearedSeen(size_t count, size_t size) {
    return allocateCleared.FailsNow() ? nullptr : Counted(allocateCleared.original(count, size));
}

void* ReallocateSeen(void* block, size_t size) {
    if (reallocate.FailsNow()) {
        return nullptr;
    }
    void* const moved = reallocate.original(block, size);
    return block ? moved : Counted(moved);
}

void ReleaseSeen(void* block) {
    blocks -= block != nullptr;
    release.original(block);
}

template <class Function>
void Replace(Replaced<Function>* replaced, Function* seen) {
    if (void** const slot = test::FindImport(replaced->name)) {
        replaced->original = reinterpret_cast<Function*>(*slot);
        replaced->failure = FailureOf(replaced->name);
        test::SetImport(slot, reinterpret_cast<void*>(seen));
    }
}

bool IsReplaced(const std::string& name) {
    for (const char* const replaced :
         {getMessage.name, waitForMessage.name, dialogBox.name, messageBox.name, allocate.name,
          allocateCleared.name, reallocate.name}) {
        if (name == replaced) {
            return true;
        }
    }
    return false;
}

bool GuardAll() {
    planned = new sweep::PlannedFailures;
    guarded = new Guarded[sweep::mostGuarded];
    for (const test::Import& import : test::Imports()) {
        const NaturalFailure* const failure = FailureOf(import.name);
        if (IsReplaced(import.name) || (!failure && !IsCounted(import.name))) {
            continue;
        }
        guarded[guardedCount] = {import.name, failure};
        if (!sweep::Guard(import.slot, guardedCount, MeetCall)) {
            return false;
        }
        ++guardedCount;
    }
    Replace(&getMessage, GetMessageSeen);
    Replace(&waitForMessage, WaitForMessageSeen);
    Replace(&dialogBox, DialogBoxSeen);
    Replace(&messageBox, MessageBoxSeen);
    Replace(&allocate, AllocateSeen);
    Replace(&allocateCleared, AllocateClearedSeen);
    Replace(&reallocate, ReallocateSeen);
    Replace(&release, ReleaseSeen);
    return true;
}

}  // namespace

BOOL WINAPI DllMain(HINSTANCE, DWORD reason, void*) {
    if (reason != DLL_PROCESS_ATTACH) {
        return TRUE;
    }
    if (!test::EndWhenCrashedAndTellWhoStarted()) {
        return FALSE;
    }
    char name[256] = {};
    GetEnvironmentVariableA(sweep::variable, name, sizeof name);
    const HANDLE mapping = OpenFileMappingA(FILE_MAP_ALL_ACCESS, FALSE, name);
    channel = mapping ? static_cast<sweep::Channel*>(MapViewOfFile(mapping, FILE_MAP_ALL_ACCESS, 0,
                                                                   0, sizeof(sweep::Channel)))
                      : nullptr;
    return channel && channel->version == sweep::channelVersion && GuardAll();
}
