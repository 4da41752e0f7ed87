// Errors, time, processes, threads, events and critical sections.
#include <map>
#include <vector>

#include "call.h"
#include "machine.h"
#include "modules.h"
#include "processes.h"
#include "searches.h"
#include "stop.h"
#include "sweep.h"

namespace emulator {

namespace {

enum EventChange : Address { pulse = 1, reset = 2, set = 3 };

std::uint64_t ChangeEvent(Call& call) {
    switch (call.Word(1)) {
        case pulse:
            return Result(PulseEvent(call.HandleAt(0)));
        case reset:
            return Result(ResetEvent(call.HandleAt(0)));
        case set:
            return Result(SetEvent(call.HandleAt(0)));
        default:
            Stop("EventModify has no change %u", call.Word(1));
    }
}

std::uint64_t MakeEvent(Call& call) {
    return Result(CreateEventW(nullptr, call.Signed(1), call.Signed(2), call.String(3)));
}

std::uint64_t MakeMutex(Call& call) {
    return Result(CreateMutexW(nullptr, call.Signed(1), call.String(2)));
}

std::uint64_t WaitForOne(Call& call) {
    TheMachine().counts.Idle();
    if (IsDescribedHandle(call.Word(0))) {
        const bool ended = ExitCodeOfDescribed(call.Word(0)) != STILL_ACTIVE;
        return ended ? WAIT_OBJECT_0 : static_cast<Address>(WAIT_TIMEOUT);
    }
    const InPlace place(sweep::Place::Waits);
    return Result(WaitForSingleObject(call.KernelHandle(0), call.Word(1)));
}

// Windows CE looks at no rights: every process may do everything to every other.
std::uint64_t OpenAProcess(Call& call) {
    const Address described = OpenDescribed(call.Word(2));
    return described ? described : Result(OpenProcess(PROCESS_ALL_ACCESS, FALSE, call.Word(2)));
}

std::uint64_t ExitCode(Call& call) {
    if (IsDescribedHandle(call.Word(0))) {
        *call.Out<Address>(1) = ExitCodeOfDescribed(call.Word(0));
        return TRUE;
    }
    return Result(GetExitCodeProcess(call.KernelHandle(0), call.Out<DWORD>(1)));
}

std::uint64_t End(Call& call) {
    if (IsDescribedHandle(call.Word(0))) {
        return EndDescribed(call.Word(0), call.Word(1));
    }
    if (call.KernelHandle(0) == GetCurrentProcess()) {
        // A program that ends as it should has given everything back; not so one that aborts.
        constexpr Address aborted = 3;
        const size_t searches = OpenSearches() + OpenStorageSearches();
        if (call.Word(1) != aborted && (searches != 0 || OpenSnapshots() != 0)) {
            Stop("%zu searches and %zu snapshots were not closed", searches, OpenSnapshots());
        }
        EndRun(call.Word(1));
    }
    return Result(TerminateProcess(call.KernelHandle(0), call.Word(1)));
}

std::uint64_t SleepAWhile(Call& call) {
    TheMachine().counts.Idle();
    Sleep(call.Word(0));
    return 0;
}

std::uint64_t ShowDebugText(Call& call) {
    std::fprintf(stderr, "%s", Narrow(call.String(0)).c_str());
    return 0;
}

std::uint64_t CommandLine(Call&) {
    return TheMachine().commandLine;
}

// The program has one thread, so a critical section is only counted: entered and left in pairs, and
// neither before it is made nor after it is gone.
std::map<Address, int>& Sections() {
    static std::map<Address, int> sections;
    return sections;
}

constexpr Address sectionSize = 20;

int& SectionOf(const Call& call) {
    const auto found = Sections().find(call.Word(0));
    if (found == Sections().end()) {
        Stop("%s: there is no critical section at %08x", call.Name(), call.Word(0));
    }
    return found->second;
}

std::uint64_t MakeSection(Call& call) {
    call.Bytes(0, sectionSize, Access::Write);
    Sections()[call.Word(0)] = 0;
    return 0;
}

std::uint64_t DropSection(Call& call) {
    if (SectionOf(call) != 0) {
        Stop("%s: the critical section at %08x is in use", call.Name(), call.Word(0));
    }
    Sections().erase(call.Word(0));
    return 0;
}

std::uint64_t EnterSection(Call& call) {
    ++SectionOf(call);
    return TRUE;
}

std::uint64_t LeaveSection(Call& call) {
    if (--SectionOf(call) < 0) {
        Stop("%s: the critical section at %08x was not entered", call.Name(), call.Word(0));
    }
    return 0;
}

std::uint64_t StartProcess(Call& call) {
    struct Information {
        Address process;
        Address thread;
        Address processId;
        Address threadId;
    };
    // Windows CE knows neither a start-up description nor a current folder, and wants none.
    for (const unsigned index : {2u, 3u, 6u, 7u, 8u}) {
        if (call.Word(index) != 0) {
            Stop("CreateProcessW: argument %u must be null on Windows CE", index);
        }
    }
    auto* information = call.Out<Information>(9);
    Text command = u"\"";
    command += call.String(0);
    command += u'"';
    if (const WCHAR* arguments = call.String(1)) {
        command += u' ';
        command += arguments;
    }
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION started = {};
    if (!CreateProcessW(call.String(0), command.data(), nullptr, nullptr, FALSE, 0, nullptr,
                        nullptr, &startup, &started)) {
        return FALSE;
    }
    if (information) {
        *information = {static_cast<Address>(Result(started.hProcess)),
                        static_cast<Address>(Result(started.hThread)), started.dwProcessId,
                        started.dwThreadId};
    } else {
        CloseHandle(started.hProcess);
        CloseHandle(started.hThread);
    }
    return TRUE;
}

std::uint64_t Version(Call& call) {
    constexpr DWORD size = 276;
    constexpr DWORD windowsCe = 3;
    auto* shown = static_cast<OSVERSIONINFOW*>(call.Bytes(0, size, Access::Write));
    static_assert(sizeof *shown == size);
    if (shown->dwOSVersionInfoSize != size) {
        Stop("GetVersionExW: the description's size is %u", shown->dwOSVersionInfoSize);
    }
    const Device& device = TheMachine().device;
    *shown = {size, device.versionMajor, device.versionMinor, 0, windowsCe, {}};
    return TRUE;
}

const Services services = {
    {"GetVersionExW", Version},
    {"GetLastError", Direct<GetLastError>},
    {"SetLastError", Direct<SetLastError>},
    {"GetTickCount", Direct<GetTickCount>},
    {"Sleep", SleepAWhile},
    {"OutputDebugStringW", ShowDebugText},
    {"GetCommandLineW", CommandLine},
    {"TerminateProcess", End},
    {"CreateProcessW", StartProcess},
    {"OpenProcess", OpenAProcess},
    {"GetExitCodeProcess", ExitCode},
    {"CreateEventW", MakeEvent},
    {"OpenEventW", Direct<OpenEventW>},
    {"EventModify", ChangeEvent},
    {"CreateMutexW", MakeMutex},
    {"ReleaseMutex", Direct<ReleaseMutex>},
    {"WaitForSingleObject", WaitForOne},
    {"InitializeCriticalSection", MakeSection},
    {"DeleteCriticalSection", DropSection},
    {"EnterCriticalSection", EnterSection},
    {"TryEnterCriticalSection", EnterSection},
    {"LeaveCriticalSection", LeaveSection},
};

}  // namespace

}  // namespace emulator
