#include "tests/support/fake_processes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cwchar>

namespace test {

namespace {

FakeProcesses* device = nullptr;

}  // namespace

FakeProcesses::FakeProcesses() {
    device = this;
}

FakeProcesses::~FakeProcesses() {
    device = nullptr;
}

HANDLE WINAPI FakeProcesses::CreateSnapshot(DWORD flags, DWORD process) {
    device->snapshotFlags.push_back(flags);
    device->snapshotProcess = process;
    if (device->snapshotError && device->snapshotFailures > 0) {
        --device->snapshotFailures;
        SetLastError(device->snapshotError);
        return INVALID_HANDLE_VALUE;
    }
    // A real one, so that it must be closed as one.
    return device->snapshot_.Original()(TH32CS_SNAPTHREAD, 0);
}

void FakeProcesses::Step(DWORD* kept) {
    if (at_ > 0) {
        EXPECT_EQ(*kept, at_) << "not the entry of the step before";
    }
    *kept = static_cast<DWORD>(++at_);
}

BOOL FakeProcesses::Fill(PROCESSENTRY32W* entry) {
    if (at_ >= processes.size()) {
        SetLastError(endError);
        return FALSE;
    }
    const FakeProcess& process = processes[at_];
    Step(&entry->dwFlags);
    entry->th32ProcessID = process.id;
    entry->cntThreads = process.threads;
    std::wcsncpy(entry->szExeFile, process.name.c_str(), MAX_PATH - 1);
    return TRUE;
}

BOOL FakeProcesses::Fill(MODULEENTRY32W* entry) {
    if (at_ >= modules.size()) {
        SetLastError(endError);
        return FALSE;
    }
    const FakeModule& module = modules[at_];
    Step(&entry->GlblcntUsage);
    entry->hModule = reinterpret_cast<HMODULE>(module.base);
    entry->modBaseAddr = reinterpret_cast<BYTE*>(module.base);
    entry->modBaseSize = module.size;
    std::wcsncpy(entry->szModule, module.name.c_str(), MAX_MODULE_NAME32);
    std::wcsncpy(entry->szExePath, module.path.c_str(), MAX_PATH - 1);
    return TRUE;
}

BOOL WINAPI FakeProcesses::FirstProcess(HANDLE, PROCESSENTRY32W* entry) {
    device->at_ = 0;
    return device->Fill(entry);
}

BOOL WINAPI FakeProcesses::NextProcess(HANDLE, PROCESSENTRY32W* entry) {
    return device->Fill(entry);
}

BOOL WINAPI FakeProcesses::FirstModule(HANDLE, MODULEENTRY32W* entry) {
    device->at_ = 0;
    return device->Fill(entry);
}

BOOL WINAPI FakeProcesses::NextModule(HANDLE, MODULEENTRY32W* entry) {
    return device->Fill(entry);
}

HANDLE WINAPI FakeProcesses::Open(DWORD, BOOL, DWORD process) {
    if (device->openError) {
        SetLastError(device->openError);
        return nullptr;
    }
    const HANDLE handle = device->open_.Original()(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ,
                                                   FALSE, GetCurrentProcessId());
    device->handles_[handle] = process;
    return handle;
}

const FakeProcess* FakeProcesses::ProcessOf(HANDLE handle) const {
    const auto id = handles_.find(handle);
    if (id == handles_.end()) {
        return nullptr;
    }
    const auto found =
        std::find_if(processes.begin(), processes.end(),
                     [&](const FakeProcess& process) { return process.id == id->second; });
    return found == processes.end() ? nullptr : &*found;
}

BOOL WINAPI FakeProcesses::ImageName(HANDLE handle, DWORD, wchar_t* name, DWORD* size) {
    const FakeProcess* process = device->ProcessOf(handle);
    if (!process || process->path.empty() || process->path.size() >= *size) {
        SetLastError(ERROR_ACCESS_DENIED);
        return FALSE;
    }
    std::wcscpy(name, process->path.c_str());
    *size = static_cast<DWORD>(process->path.size());
    return TRUE;
}

BOOL WINAPI FakeProcesses::Modules(HANDLE handle, HMODULE* modules, DWORD, DWORD* needed) {
    const FakeProcess* process = device->ProcessOf(handle);
    if (!process) {
        return FALSE;
    }
    *modules = reinterpret_cast<HMODULE>(process->base);
    *needed = sizeof *modules;
    return TRUE;
}

SIZE_T WINAPI FakeProcesses::Query(HANDLE handle, const void* address,
                                   MEMORY_BASIC_INFORMATION* information, SIZE_T) {
    const FakeProcess* process = device->ProcessOf(handle);
    const auto wanted = reinterpret_cast<ULONG_PTR>(address);
    ULONG_PTR begin = 0;
    for (const FakeRegion& region : process ? process->regions : std::vector<FakeRegion>()) {
        if (wanted < begin + region.size) {
            device->memoryWalks += begin == 0;
            *information = {};
            information->BaseAddress = reinterpret_cast<void*>(begin);
            information->State = region.state;
            information->Type = region.type;
            information->RegionSize = region.size;
            return sizeof *information;
        }
        begin += region.size;
    }
    SetLastError(ERROR_INVALID_PARAMETER);
    return 0;
}

BOOL WINAPI FakeProcesses::Terminate(HANDLE handle, UINT code) {
    const auto id = device->handles_.find(handle);
    if (id == device->handles_.end()) {
        return device->terminate_.Original()(handle, code);
    }
    device->terminated = id->second;
    device->exitCode = code;
    return FALSE;
}

DWORD WINAPI FakeProcesses::Wait(HANDLE handle, DWORD milliseconds) {
    if (milliseconds != 3000) {
        return device->wait_.Original()(handle, milliseconds);
    }
    SetLastError(ERROR_INVALID_HANDLE);
    return device->waitResult;
}

}  // namespace test
