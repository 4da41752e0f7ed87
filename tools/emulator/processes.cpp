#include "processes.h"

#include <algorithm>
#include <map>
#include <set>

#include "machine.h"
#include "paths.h"
#include "stop.h"
// Behind the system's own declarations.
#include <tlhelp32.h>

namespace emulator {

namespace {

constexpr Address slotSize = 0x2000000;
constexpr Address firstHandle = 0x0C000000;
constexpr Address firstModule = 0x8F000000;

std::map<Address, Address>& ExitCodes() {
    static std::map<Address, Address> codes;
    return codes;
}

std::vector<Text>& ModulePaths() {
    static std::vector<Text> paths;
    return paths;
}

// What belongs to Wine, not to the device.
bool IsWines(const Text& name) {
    static const std::set<Text> names = {u"services.exe", u"winedevice.exe", u"plugplay.exe",
                                         u"svchost.exe",  u"rpcss.exe",      u"explorer.exe",
                                         u"conhost.exe",  u"start.exe",      u"wineboot.exe",
                                         u"tabtip.exe",   u"cmd.exe"};
    Text lower = name;
    CharLowerBuffW(lower.data(), static_cast<DWORD>(lower.size()));
    return names.count(lower) != 0;
}

// The modules of a program that really runs: itself, and the library that every program has.
std::vector<Device::Module> ModulesOf(const Device::Process& process, const Device& device) {
    std::vector<Device::Module> modules;
    modules.push_back({process.name, process.path, process.slot + 0x10000, 0x48000, 1});
    for (const Device::Process& described : device.processes) {
        for (const Device::Module& module : described.modules) {
            if (module.name == "coredll.dll") {
                modules.push_back(module);
                return modules;
            }
        }
    }
    return modules;
}

}  // namespace

std::vector<Device::Process> RunningProcesses() {
    const Device& device = TheMachine().device;
    std::vector<Device::Process> running;
    Address slot = 0x02000000;
    for (const Device::Process& process : device.processes) {
        if (ExitCodes().count(process.id) == 0) {
            running.push_back(process);
        }
        if (process.slot < 0x40000000) {
            slot = std::max(slot, process.slot + slotSize);
        }
    }
    const HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
    PROCESSENTRY32W entry = {};
    entry.dwSize = sizeof entry;
    for (BOOL found = Process32FirstW(snapshot, &entry); found;
         found = Process32NextW(snapshot, &entry)) {
        Text path;
        if (IsWines(entry.szExeFile) || !ProcessPath(entry.th32ProcessID, &path)) {
            continue;
        }
        Device::Process process;
        process.name = Narrow(entry.szExeFile);
        process.path = Narrow(path.c_str());
        process.id = entry.th32ProcessID;
        process.threads = entry.cntThreads;
        process.slot = slot;
        process.pages = 64;
        slot += slotSize;
        process.modules = ModulesOf(process, device);
        process.heap.push_back({64, 40, false});
        running.push_back(process);
    }
    CloseHandle(snapshot);
    return running;
}

const Device::Process* FindRunning(const std::vector<Device::Process>& processes, Address id) {
    const auto found =
        std::find_if(processes.begin(), processes.end(),
                     [=](const Device::Process& process) { return process.id == id; });
    return found == processes.end() ? nullptr : &*found;
}

bool IsDescribedProgram(const Text& path) {
    const std::vector<Device::Process>& described = TheMachine().device.processes;
    return std::any_of(described.begin(), described.end(), [&](const Device::Process& process) {
        return lstrcmpiW(Widen(process.path).c_str(), path.c_str()) == 0;
    });
}

Address OpenDescribed(Address id) {
    const std::vector<Device::Process>& described = TheMachine().device.processes;
    for (size_t i = 0; i < described.size(); ++i) {
        if (described[i].id == id && ExitCodes().count(id) == 0) {
            return firstHandle + 4 * static_cast<Address>(i);
        }
    }
    return 0;
}

bool IsDescribedHandle(Address handle) {
    return (handle - firstHandle) / 4 < TheMachine().device.processes.size();
}

bool EndDescribed(Address handle, Address exitCode) {
    const Address id = TheMachine().device.processes[(handle - firstHandle) / 4].id;
    return ExitCodes().emplace(id, exitCode).second;
}

Address ExitCodeOfDescribed(Address handle) {
    const Address id = TheMachine().device.processes[(handle - firstHandle) / 4].id;
    const auto found = ExitCodes().find(id);
    return found == ExitCodes().end() ? static_cast<Address>(STILL_ACTIVE) : found->second;
}

Address ModuleNumber(const Text& path) {
    std::vector<Text>& paths = ModulePaths();
    const auto found = std::find(paths.begin(), paths.end(), path);
    const auto index = static_cast<Address>(found - paths.begin());
    if (found == paths.end()) {
        paths.push_back(path);
    }
    return firstModule + 0x100 * index;
}

bool PathOfModuleNumber(Address number, Text* path) {
    const Address index = (number - firstModule) / 0x100;
    if (number < firstModule || index >= ModulePaths().size()) {
        return false;
    }
    *path = ModulePaths()[index];
    return true;
}

}  // namespace emulator
