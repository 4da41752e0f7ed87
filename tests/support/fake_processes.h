// A device with chosen processes: what a PC's toolhelp and process calls tell of them.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "tests/support/platform_hook.h"
// Behind the platform's own declarations.
#include <psapi.h>
#include <tlhelp32.h>

namespace test {

struct FakeRegion {
    DWORD state;
    SIZE_T size;
    DWORD type = MEM_IMAGE;
};

struct FakeProcess {
    DWORD id = 0;
    std::wstring name;
    // As a PC writes it; empty when it is not told.
    std::wstring path;
    ULONG_PTR base = 0;
    DWORD threads = 1;
    // From address 0 on.
    std::vector<FakeRegion> regions = {};
};

struct FakeModule {
    std::wstring name;
    std::wstring path;
    ULONG_PTR base;
    DWORD size;
};

// Stands for the real processes for as long as it lives; one at a time.
class FakeProcesses {
 public:
    FakeProcesses();
    ~FakeProcesses();
    FakeProcesses(const FakeProcesses&) = delete;
    FakeProcesses& operator=(const FakeProcesses&) = delete;

    std::vector<FakeProcess> processes;
    std::vector<FakeModule> modules;
    // The last error at the end of a walk.
    DWORD endError = ERROR_NO_MORE_FILES;
    // An error instead of a snapshot; 0 for none.
    DWORD snapshotError = 0;
    // For so many snapshots, then they succeed.
    unsigned snapshotFailures = ~0u;
    // An error instead of a process's handle; 0 for none.
    DWORD openError = 0;
    // What was asked for and done.
    std::vector<DWORD> snapshotFlags;
    DWORD snapshotProcess = 0;
    unsigned memoryWalks = 0;
    DWORD terminated = 0;
    UINT exitCode = 0;
    DWORD waitResult = WAIT_OBJECT_0;

 private:
    static HANDLE WINAPI CreateSnapshot(DWORD flags, DWORD process);
    static BOOL WINAPI FirstProcess(HANDLE snapshot, PROCESSENTRY32W* entry);
    static BOOL WINAPI NextProcess(HANDLE snapshot, PROCESSENTRY32W* entry);
    static BOOL WINAPI FirstModule(HANDLE snapshot, MODULEENTRY32W* entry);
    static BOOL WINAPI NextModule(HANDLE snapshot, MODULEENTRY32W* entry);
    static HANDLE WINAPI Open(DWORD access, BOOL inherit, DWORD process);
    static BOOL WINAPI ImageName(HANDLE process, DWORD flags, wchar_t* name, DWORD* size);
    static BOOL WINAPI Modules(HANDLE process, HMODULE* modules, DWORD size, DWORD* needed);
    static SIZE_T WINAPI Query(HANDLE process, const void* address,
                               MEMORY_BASIC_INFORMATION* information, SIZE_T size);
    static BOOL WINAPI Terminate(HANDLE process, UINT code);
    static DWORD WINAPI Wait(HANDLE handle, DWORD milliseconds);

    const FakeProcess* ProcessOf(HANDLE handle) const;
    // A system may keep its place in the entry, which the caller hands from step to step.
    void Step(DWORD* kept);
    BOOL Fill(PROCESSENTRY32W* entry);
    BOOL Fill(MODULEENTRY32W* entry);

    size_t at_ = 0;
    // Handles that were given out, and whose they are.
    std::map<HANDLE, DWORD> handles_;

    PlatformHook<HANDLE WINAPI(DWORD, DWORD)> snapshot_{"CreateToolhelp32Snapshot", CreateSnapshot};
    PlatformHook<BOOL WINAPI(HANDLE, PROCESSENTRY32W*)> first_{"Process32FirstW", FirstProcess};
    PlatformHook<BOOL WINAPI(HANDLE, PROCESSENTRY32W*)> next_{"Process32NextW", NextProcess};
    PlatformHook<BOOL WINAPI(HANDLE, MODULEENTRY32W*)> firstModule_{"Module32FirstW", FirstModule};
    PlatformHook<BOOL WINAPI(HANDLE, MODULEENTRY32W*)> nextModule_{"Module32NextW", NextModule};
    PlatformHook<HANDLE WINAPI(DWORD, BOOL, DWORD)> open_{"OpenProcess", Open};
    PlatformHook<BOOL WINAPI(HANDLE, DWORD, wchar_t*, DWORD*)> name_{"QueryFullProcessImageNameW",
                                                                     ImageName};
    PlatformHook<BOOL WINAPI(HANDLE, HMODULE*, DWORD, DWORD*)> modules_{"K32EnumProcessModules",
                                                                        Modules};
    PlatformHook<SIZE_T WINAPI(HANDLE, const void*, MEMORY_BASIC_INFORMATION*, SIZE_T)> query_{
        "VirtualQueryEx", Query};
    PlatformHook<BOOL WINAPI(HANDLE, UINT)> terminate_{"TerminateProcess", Terminate};
    PlatformHook<DWORD WINAPI(HANDLE, DWORD)> wait_{"WaitForSingleObject", Wait};
};

}  // namespace test
