// Runs a program for Windows CE on ARM: started in the program's place, it loads the program that
// the environment names and gives it a device.
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "call.h"
#include "host.h"
#include "machine.h"
#include "shell_strip.h"
#include "stop.h"
#include "threads.h"

namespace emulator {

namespace {

constexpr Address heapBase = 0x30000000;
constexpr Address stackBase = 0x2E000000;

struct Options {
    std::string executable;
    std::string device;
    std::string exports;
    Address base = 0;
    Processor processor = Processor::Ti925t;
    CallerState callerState = CallerState::Arm;
    bool coveredCalls = false;
    bool missingCalls = false;
    unsigned functions = 0;
};

Options options;

std::string FromEnvironment(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

// A program of the device may set it, so that this process's own environment need not have it.
std::string DeviceDescription() {
    WCHAR path[MAX_PATH];
    const DWORD length = GetEnvironmentVariableW(u"VANTOR_HANDHELD_DEVICE", path, MAX_PATH);
    return length < MAX_PATH ? Narrow(path, static_cast<int>(length)) : std::string();
}

// The settings come by the environment, because the command line is the program's own.
Options ReadOptions() {
    Options read;
    read.executable = FromEnvironment("VANTOR_HANDHELD_PROGRAM");
    read.device = DeviceDescription();
    read.exports = FromEnvironment("VANTOR_HANDHELD_EXPORTS");
    read.base = static_cast<Address>(
        std::strtoul(FromEnvironment("VANTOR_HANDHELD_BASE").c_str(), nullptr, 0));
    const std::string processor = FromEnvironment("VANTOR_HANDHELD_PROCESSOR");
    if (processor == "sa1110") {
        read.processor = Processor::Sa1110;
    } else if (processor == "arm926") {
        read.processor = Processor::Arm926;
    } else if (processor == "cortex-a8") {
        read.processor = Processor::CortexA8;
    } else if (!processor.empty() && processor != "ti925t") {
        Stop("there is no processor %s", processor.c_str());
    }
    const std::string caller = FromEnvironment("VANTOR_HANDHELD_CALLER");
    if (caller == "thumb") {
        read.callerState = CallerState::Thumb;
    } else if (!caller.empty() && caller != "arm") {
        Stop("the system has no state %s to call from", caller.c_str());
    }
    TheMachine().counts.tellsSteps = !FromEnvironment("VANTOR_HANDHELD_STEPS").empty();
    read.coveredCalls = !FromEnvironment("VANTOR_HANDHELD_CALLS").empty();
    read.missingCalls = !FromEnvironment("VANTOR_HANDHELD_CHECK").empty();
    read.functions =
        static_cast<unsigned>(std::atoi(FromEnvironment("VANTOR_HANDHELD_FUNCTIONS").c_str()));
    return read;
}

// The arguments as they stand behind this process's own name.
const WCHAR* Arguments() {
    const WCHAR* rest = GetCommandLineW();
    const WCHAR end = *rest == u'"' ? u'"' : u' ';
    if (*rest == u'"') {
        ++rest;
    }
    while (*rest && *rest != end) {
        ++rest;
    }
    if (*rest == u'"') {
        ++rest;
    }
    while (*rest == u' ') {
        ++rest;
    }
    return rest;
}

void ReadSymbols(const std::string& executable) {
    Symbols& symbols = TheMachine().symbols;
    const size_t slash = executable.find_last_of('/');
    const std::string folder = executable.substr(0, slash + 1);
    const std::string name = executable.substr(slash + 1, executable.find_last_of('.') - slash - 1);
    symbols.Read(executable.substr(0, executable.find_last_of('.')) + ".elf") ||
        symbols.Read(folder + "handheld/" + name + "_link.elf");
}

unsigned RunProgram() {
    options = ReadOptions();
    Machine& machine = TheMachine();
    machine.engine.Create(options.processor, options.callerState);
    if (!options.device.empty()) {
        machine.device.Read(options.device);
    }
    ReadExports(options.exports);
    machine.image.LoadProgram(options.executable, options.base);
    if (options.missingCalls) {
        return PrintMissingCalls() ? 0 : 1;
    }
    machine.symbols.Place(machine.image.PreferredBase(), machine.image.Base(),
                          machine.image.Size());
    ReadSymbols(options.executable);
    machine.heap.Create(heapBase, machine.device.memory);
    const Address stack = Memory::Reserve(stackBase, machine.device.stackSize);
    machine.memory.Add({stack, machine.device.stackSize, true, false, "the stack"});
    machine.engine.SetStack(stack, machine.device.stackSize);
    machine.engine.CountCode(machine.image.CodeStart(), machine.image.CodeSize());
    MakeKernelPage(machine.engine);
    for (const Device::Card& card : machine.device.cards) {
        CreateDirectoryW((u"\\" + Widen(card.folder)).c_str(), nullptr);
    }
    MakeShellStrip();
    const Text arguments = Arguments();
    machine.commandLine =
        machine.heap.Allocate(2 * static_cast<Address>(arguments.size() + 1), true, 0);
    std::memcpy(PointerTo(machine.commandLine), arguments.data(), 2 * arguments.size());
    machine.engine.Call(machine.image.Entry(),
                        {machine.image.Base(), 0, machine.commandLine, SW_SHOWNORMAL},
                        "the system, which started it");
    Stop("the program's entry returned instead of ending the process");
}

}  // namespace

Machine& TheMachine() {
    static Machine machine;
    return machine;
}

void EndRun(unsigned exitCode) {
    if (options.functions != 0) {
        const Heap& heap = TheMachine().heap;
        TheMachine().counts.PrintFunctions(options.functions);
        std::printf("%12u bytes of the heap are still taken, in %zu blocks; at most it was %u\n",
                    heap.LiveBytes(), heap.LiveBlocks(), heap.MostBytes());
    }
    if (options.coveredCalls) {
        PrintCoveredCalls();
    }
    std::fflush(stdout);
    TerminateProcess(GetCurrentProcess(), exitCode);
    std::abort();
}

namespace {

void WriteStop(std::FILE* file, const char* format, va_list arguments) {
    const Machine& machine = TheMachine();
    const Symbols& symbols = machine.symbols;
    std::fputs("the handheld program: ", file);
    std::vfprintf(file, format, arguments);
    std::fprintf(file, "\n  at %s\n  called from %s\n",
                 symbols.Name(machine.engine.ProgramCounter()).c_str(),
                 symbols.Name(machine.engine.Caller()).c_str());
    for (const Address caller : machine.engine.CallersOnStack(12)) {
        std::fprintf(file, "  below %s\n", symbols.Name(caller).c_str());
    }
    std::fflush(file);
}

}  // namespace

void Stop(const char* format, ...) {
    static bool stopping = false;
    va_list arguments;
    va_start(arguments, format);
    if (stopping) {
        std::vfprintf(stderr, format, arguments);
        std::abort();
    }
    stopping = true;
    std::fflush(stdout);
    // Who starts the program from within the device does not see its standard error.
    if (const char* log = std::getenv("VANTOR_HANDHELD_LOG")) {
        if (std::FILE* file = std::fopen(log, "a")) {
            va_list again;
            va_copy(again, arguments);
            WriteStop(file, format, again);
            va_end(again);
            std::fclose(file);
        }
    }
    WriteStop(stderr, format, arguments);
    va_end(arguments);
    TerminateProcess(GetCurrentProcess(), stoppedExitCode);
    std::abort();
}

}  // namespace emulator

int main() {
    emulator::EndRun(emulator::RunProgram());
}
