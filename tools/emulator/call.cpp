#include "call.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <vector>

#include "ending.h"
#include "engine.h"
#include "failing_call.h"
#include "machine.h"
#include "messages.h"
#include "natural_failures.h"
#include "reach.h"
#include "stop.h"
#include "sweep.h"

namespace emulator {

namespace {

std::map<std::string, Server>& Table() {
    static std::map<std::string, Server> table;
    return table;
}

std::set<std::string>& Exports() {
    static std::set<std::string> exports;
    return exports;
}

// The functions that are looked up, and the libraries in which they are, whether this device has
// them or not.
std::set<std::string>& LateFunctions() {
    static std::set<std::string> functions;
    return functions;
}
std::set<std::string>& LateLibraries() {
    static std::set<std::string> libraries;
    return libraries;
}

// What stands behind a trap: a function that the program imports, or a procedure of this process.
struct Trap {
    std::string name;
    Server server = nullptr;
    WNDPROC procedure = nullptr;
    // A function of an object, which no library exports.
    bool method = false;
    unsigned long calls = 0;
};

std::vector<Trap>& Traps() {
    static std::vector<Trap> traps;
    return traps;
}

DWORD lastError = 0;

std::string KeyOf(const std::string& library, const std::string& name) {
    const bool number = name[0] == '#';
    return library == "coredll" && !number ? name : library + (number ? name : "!" + name);
}

void FillTraps() {
    std::vector<Trap>& traps = Traps();
    for (const Import& import : TheMachine().image.Imports()) {
        Trap trap;
        trap.name = KeyOf(import.library, import.name);
        const auto found = Table().find(trap.name);
        trap.server = found == Table().end() ? nullptr : found->second;
        traps.push_back(trap);
    }
}

std::uint64_t RunProcedure(const Call& call, WNDPROC procedure) {
    return Result(CallWindowProcW(procedure, call.HandleAt<HWND>(0), call.Word(1), call.Word(2),
                                  OutgoingParameter(call.Word(1), call.Word(3))));
}

// The program's last error is this process's while a call is served.
template <class Function>
std::uint64_t WithLastError(Function serve) {
    SetLastError(lastError);
    const std::uint64_t result = serve();
    lastError = GetLastError();
    return result;
}

// Some system calls are no library's: programs know their addresses.
std::uint64_t ServeAddress(Engine& engine, unsigned index) {
    char name[20];
    std::snprintf(name, sizeof name, "call at %08x", Engine::TrapAddress(index));
    const auto found = Table().find(name);
    if (found == Table().end()) {
        Stop("the program made the %s, which the device does not have", name);
    }
    Call call(engine, name);
    return WithLastError([&] { return found->second(call); });
}

}  // namespace

Services::Services(std::initializer_list<Service> services) {
    for (const Service& service : services) {
        Table()[service.name] = service.server;
    }
}

namespace {

// The rest of a line of a library: a name, a number, and from which version on it is there.
void ReadLateFunction(const std::string& library, std::istream& words) {
    std::vector<std::string> keys;
    bool exported = true;
    LateLibraries().insert(library);
    for (std::string word; words >> word && word != "#";) {
        if (word.back() == '+') {
            exported = TheMachine().device.versionMajor >= std::stoul(word);
        } else {
            keys.push_back(KeyOf(library, word));
        }
    }
    LateFunctions().insert(keys.begin(), keys.end());
    if (exported) {
        Exports().insert(keys.begin(), keys.end());
    }
}

}  // namespace

void ReadExports(const std::string& path) {
    std::ifstream file(path);
    if (!file) {
        Stop("the list of the device's exports %s cannot be read", path.c_str());
    }
    for (std::string line; std::getline(file, line);) {
        // Numbers are written with the same sign as remarks, but directly before a digit.
        std::istringstream words(line);
        std::string library;
        std::string function;
        std::string exported;
        if (!(words >> library >> function) || library[0] == '#') {
            continue;
        }
        if (library == "late") {
            ReadLateFunction(function, words);
            continue;
        }
        words >> exported;
        const bool other = !exported.empty() && exported != "#";
        Exports().insert(KeyOf(library, other ? exported : function));
    }
}

std::uint64_t ServeCall(Engine& engine, unsigned index) {
    std::vector<Trap>& traps = Traps();
    if (traps.empty()) {
        FillTraps();
    }
    if (index >= traps.size()) {
        return ServeAddress(engine, index);
    }
    const std::string name = traps[index].name;
    const Server server = traps[index].server;
    const WNDPROC procedure = traps[index].procedure;
    const bool method = traps[index].method;
    TheMachine().counts.Called(index, name);
    if (++traps[index].calls == 1 && !procedure && !method) {
        Reached("call", name);
    }
    Call call(engine, name.c_str());
    if (procedure) {
        return WithLastError([&] { return RunProcedure(call, procedure); });
    }
    TellCall(call);
    if (const std::optional<Failure> failure = FailureOf(call)) {
        lastError = failure->error;
        SetLastError(lastError);
        return failure->result;
    }
    if (!method && Exports().count(name) == 0) {
        Stop("the program called %s, which the device does not export", name.c_str());
    }
    if (!server) {
        Stop("the program called %s, which this emulator does not serve", name.c_str());
    }
    const std::uint64_t result = WithLastError([&] { return server(call); });
    TellResult(call, result);
    EndIfDue(call, result);
    return result;
}

Address TrapForMethod(const std::string& name) {
    Trap trap;
    trap.name = name;
    const auto found = Table().find(name);
    trap.server = found == Table().end() ? nullptr : found->second;
    trap.method = true;
    Traps().push_back(trap);
    return Engine::TrapAddress(static_cast<unsigned>(Traps().size() - 1));
}

bool HasLateExports(const std::string& library) {
    return LateLibraries().count(library) != 0;
}

Address TrapForExport(const std::string& library, const std::string& name) {
    const std::string key = KeyOf(library, name);
    if (LateFunctions().count(key) == 0) {
        Stop("the program looks for %s, which is no function that it may look up", key.c_str());
    }
    const Device::Library described = TheMachine().device.LibraryCalled(library);
    if (Exports().count(key) == 0 || !(name[0] == '#' ? described.numbers : described.names)) {
        return 0;
    }
    std::vector<Trap>& traps = Traps();
    for (size_t i = 0; i < traps.size(); ++i) {
        if (traps[i].name == key) {
            return Engine::TrapAddress(static_cast<unsigned>(i));
        }
    }
    Trap trap;
    trap.name = key;
    const auto found = Table().find(key);
    trap.server = found == Table().end() ? nullptr : found->second;
    traps.push_back(trap);
    return Engine::TrapAddress(static_cast<unsigned>(traps.size() - 1));
}

Address TrapForProcedure(WNDPROC procedure) {
    std::vector<Trap>& traps = Traps();
    for (size_t i = 0; i < traps.size(); ++i) {
        if (traps[i].procedure == procedure) {
            return Engine::TrapAddress(static_cast<unsigned>(i));
        }
    }
    Trap trap;
    trap.name = "a window procedure of the system";
    trap.procedure = procedure;
    traps.push_back(trap);
    return Engine::TrapAddress(static_cast<unsigned>(traps.size() - 1));
}

WNDPROC ProcedureOfTrap(Address address) {
    std::vector<Trap>& traps = Traps();
    const Address first = Engine::TrapAddress(0);
    const Address index = (address - first) / 8;
    return address >= first && index < traps.size() ? traps[index].procedure : nullptr;
}

bool PrintMissingCalls() {
    FillTraps();
    bool complete = true;
    for (const std::string& name : LateFunctions()) {
        if (Table().count(name) == 0) {
            std::printf("%s is not served\n", name.c_str());
            complete = false;
        }
    }
    for (const Trap& trap : Traps()) {
        if (!trap.server || Exports().count(trap.name) == 0) {
            std::printf("%s is not %s\n", trap.name.c_str(), trap.server ? "exported" : "served");
            complete = false;
        }
        if (!KnowsHowItFails(trap.name)) {
            std::printf("nobody says how %s fails\n", trap.name.c_str());
            complete = false;
        }
    }
    return complete;
}

void PrintCoveredCalls() {
    std::vector<const Trap*> covered;
    for (const Trap& trap : Traps()) {
        if (!trap.procedure && !trap.method) {
            covered.push_back(&trap);
        }
    }
    std::sort(covered.begin(), covered.end(),
              [](const Trap* left, const Trap* right) { return left->name < right->name; });
    size_t called = 0;
    for (const Trap* trap : covered) {
        std::printf("%10lu %s\n", trap->calls, trap->name.c_str());
        called += trap->calls != 0;
    }
    std::printf("%zu of the %zu system calls that the program imports were made\n", called,
                covered.size());
}

// Four arguments are in registers, the others on the stack; at its upper end there are fewer words
// than an argument could have.
Call::Call(const Engine& engine, const char* name)
    : name_(name), caller_(engine.Caller()), count_(4) {
    for (int i = 0; i < 4; ++i) {
        words_[i] = engine.Register(UC_ARM_REG_R0 + i);
    }
    const Address stack = engine.StackPointer();
    if (const Region* region = TheMachine().memory.Find(stack)) {
        const Address words = (region->start + region->size - stack) / sizeof(Address);
        count_ += std::min<Address>(words, mostArguments - 4);
        std::memcpy(words_ + 4, PointerTo(stack), (count_ - 4) * sizeof(Address));
    }
}

Address Call::Word(unsigned index) const {
    if (index >= count_) {
        Stop("%s: the stack has no argument %u", name_, index);
    }
    return words_[index];
}

void* Call::Bytes(unsigned index, Address size, Access access) const {
    const Address address = Word(index);
    if (address == 0) {
        return nullptr;
    }
    TheMachine().memory.Require(address, size, access, name_);
    return PointerTo(address);
}

const WCHAR* Call::String(unsigned index) const {
    const Address address = Word(index);
    if (address >= 0x10000) {
        TheMachine().memory.RequireText(address, name_);
    }
    return PointerTo<WCHAR>(address);
}

HANDLE Call::KernelHandle(unsigned index) const {
    constexpr Address currentThread = 0x41;
    constexpr Address currentProcess = 0x42;
    switch (Word(index)) {
        case currentThread:
            return GetCurrentThread();
        case currentProcess:
            return GetCurrentProcess();
        default:
            return HandleAt(index);
    }
}

}  // namespace emulator
