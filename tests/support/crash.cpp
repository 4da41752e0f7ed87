#include "tests/support/crash.h"

#include <cstdio>
#include <cstring>

#include "tests/support/symbols.h"

namespace test {

namespace {

// Tests replace functions that the executable imports; these are the system's own.
template <typename Function>
Function* SystemsOwn(const char* name, Function*) {
    return reinterpret_cast<Function*>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"kernel32.dll"), name)));
}

struct System {
    decltype(&SetEvent) setEvent = SystemsOwn("SetEvent", SetEvent);
    decltype(&WaitForSingleObject) wait = SystemsOwn("WaitForSingleObject", WaitForSingleObject);
    decltype(&TerminateProcess) terminate = SystemsOwn("TerminateProcess", TerminateProcess);
    decltype(&WriteFile) write = SystemsOwn("WriteFile", WriteFile);
    decltype(&GetModuleHandleExW) findModule = SystemsOwn("GetModuleHandleExW", GetModuleHandleExW);
    decltype(&GetModuleFileNameA) nameOfModule =
        SystemsOwn("GetModuleFileNameA", GetModuleFileNameA);
};

// What the teller needs, ready before anything goes wrong. It has a stack of its own, since that of
// the thread that crashed may be used up.
struct Teller {
    System system;
    Symbols symbols;
    HANDLE output = nullptr;
    HANDLE begin = nullptr;
    HANDLE done = nullptr;
    DWORD thread = 0;
    void (*describe)(char* text, size_t size) = nullptr;
    HMODULE program = nullptr;
    EXCEPTION_RECORD exception = {};
    CONTEXT context = {};
};

Teller* teller = nullptr;
volatile LONG crashed = 0;
// How many guards let the system answer for its own faults.
volatile LONG leftToTheSystem = 0;

void Say(const char* text) {
    DWORD written = 0;
    teller->system.write(teller->output, text, static_cast<DWORD>(std::strlen(text)), &written,
                         nullptr);
}

void SayPlace(const char* word, DWORD64 address) {
    char line[640];
    HMODULE module = nullptr;
    // The system takes the address 0 for a question after the program.
    if (address) {
        teller->system.findModule(
            GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
            reinterpret_cast<const wchar_t*>(address), &module);
    }
    const size_t offset = address - reinterpret_cast<size_t>(module);
    char name[512] = "no function";
    if (module) {
        char path[MAX_PATH] = "";
        teller->system.nameOfModule(module, path, MAX_PATH);
        const char* const last = std::strrchr(path, '\\');
        std::snprintf(name, sizeof name, "%s+0x%zx", last ? last + 1 : path, offset);
    }
    if (module && module == teller->program) {
        teller->symbols.Describe(offset, name, sizeof name);
    }
    std::snprintf(line, sizeof line, "  %s %016llx %s\n", word, address, name);
    Say(line);
}

// The callers, nearest first.
void SayCallers(CONTEXT* context) {
    constexpr int mostCallers = 16;
    for (int caller = 0; caller < mostCallers && context->Rsp; ++caller) {
        DWORD64 base = 0;
        RUNTIME_FUNCTION* const function = RtlLookupFunctionEntry(context->Rip, &base, nullptr);
        if (function) {
            void* handlerData = nullptr;
            DWORD64 frame = 0;
            RtlVirtualUnwind(UNW_FLAG_NHANDLER, base, context->Rip, function, context, &handlerData,
                             &frame, nullptr);
        } else {
            // Neither code without a frame nor an address that is no code has moved the stack.
            context->Rip = *reinterpret_cast<const DWORD64*>(context->Rsp);
            context->Rsp += sizeof(DWORD64);
        }
        if (!context->Rip) {
            return;
        }
        SayPlace("from", context->Rip);
    }
}

DWORD WINAPI Tell(void*) {
    teller->system.wait(teller->begin, INFINITE);
    char text[faultTextSize] = "";
    DescribeFault(teller->exception, text);
    Say("CRASH: ");
    Say(text);
    Say("\n");
    SayPlace("in", teller->context.Rip);
    if (teller->describe) {
        char about[512] = "";
        teller->describe(about, sizeof about);
        Say(about);
    }
    SayCallers(&teller->context);
    teller->system.setEvent(teller->done);
    return 0;
}

bool IsLeftToTheSystem(const EXCEPTION_RECORD& exception) {
    HMODULE module = nullptr;
    return leftToTheSystem > 0 &&
           teller->system.findModule(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS |
                                         GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                                     static_cast<const wchar_t*>(exception.ExceptionAddress),
                                     &module) &&
           module != teller->program;
}

LONG CALLBACK OnException(EXCEPTION_POINTERS* pointers) {
    char text[faultTextSize];
    if (!DescribeFault(*pointers->ExceptionRecord, text) ||
        IsLeftToTheSystem(*pointers->ExceptionRecord)) {
        return EXCEPTION_CONTINUE_SEARCH;
    }
    // A second thread that crashes waits for the end; the teller itself, which has met something
    // unreadable, has said what it could.
    constexpr DWORD longestTale = 5000;
    if (GetCurrentThreadId() != teller->thread) {
        if (InterlockedExchange(&crashed, 1) == 0) {
            teller->exception = *pointers->ExceptionRecord;
            teller->context = *pointers->ContextRecord;
            teller->system.setEvent(teller->begin);
        }
        teller->system.wait(teller->done, longestTale);
    }
    teller->system.terminate(GetCurrentProcess(), crashedCode);
    return EXCEPTION_CONTINUE_SEARCH;
}

}  // namespace

FaultsLeftToTheSystem::FaultsLeftToTheSystem() {
    InterlockedIncrement(&leftToTheSystem);
}

FaultsLeftToTheSystem::~FaultsLeftToTheSystem() {
    InterlockedDecrement(&leftToTheSystem);
}

bool DescribeFault(const EXCEPTION_RECORD& exception, char* text) {
    const char* name = nullptr;
    switch (exception.ExceptionCode) {
        case EXCEPTION_ACCESS_VIOLATION:
        case EXCEPTION_IN_PAGE_ERROR: {
            constexpr ULONG_PTR writing = 1;
            constexpr ULONG_PTR running = 8;
            const ULONG_PTR kind = exception.ExceptionInformation[0];
            std::snprintf(text, faultTextSize, "%s at %016llx",
                          kind == writing   ? "a write"
                          : kind == running ? "a run of code"
                                            : "a read",
                          exception.ExceptionInformation[1]);
            return true;
        }
        case EXCEPTION_STACK_OVERFLOW:
            name = "the stack is used up";
            break;
        case EXCEPTION_ILLEGAL_INSTRUCTION:
            name = "an illegal instruction";
            break;
        case EXCEPTION_PRIV_INSTRUCTION:
            name = "a privileged instruction";
            break;
        case EXCEPTION_INT_DIVIDE_BY_ZERO:
            name = "a division by zero";
            break;
        case EXCEPTION_INT_OVERFLOW:
            name = "a quotient that is too large";
            break;
        case EXCEPTION_DATATYPE_MISALIGNMENT:
            name = "an unaligned access";
            break;
        case EXCEPTION_ARRAY_BOUNDS_EXCEEDED:
            name = "an index out of bounds";
            break;
        case EXCEPTION_FLT_DIVIDE_BY_ZERO:
        case EXCEPTION_FLT_INVALID_OPERATION:
        case EXCEPTION_FLT_OVERFLOW:
        case EXCEPTION_FLT_UNDERFLOW:
        case EXCEPTION_FLT_INEXACT_RESULT:
        case EXCEPTION_FLT_DENORMAL_OPERAND:
        case EXCEPTION_FLT_STACK_CHECK:
            name = "a calculation with fractions";
            break;
        case EXCEPTION_BREAKPOINT:
        case EXCEPTION_SINGLE_STEP:
            name = "a breakpoint";
            break;
        default:
            return false;
    }
    std::snprintf(text, faultTextSize, "%s", name);
    return true;
}

void EndWhenCrashed(void (*describe)(char* text, size_t size), HANDLE output) {
    static Teller only;
    wchar_t path[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    only.symbols.Open(path);
    only.output = output ? output : GetStdHandle(STD_OUTPUT_HANDLE);
    only.begin = CreateEventW(nullptr, FALSE, FALSE, nullptr);
    only.done = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    only.describe = describe;
    only.program = GetModuleHandleW(nullptr);
    teller = &only;
    CloseHandle(CreateThread(nullptr, 0, Tell, nullptr, 0, &only.thread));
    AddVectoredExceptionHandler(1, OnException);
}

bool EndWhenCrashedAndTellWhoStarted() {
    wchar_t path[MAX_PATH] = {};
    GetEnvironmentVariableW(crashesVariable, path, MAX_PATH);
    const HANDLE file =
        CreateFileW(path, FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                    nullptr, OPEN_ALWAYS, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        return false;
    }
    EndWhenCrashed(nullptr, file);
    return true;
}

}  // namespace test
