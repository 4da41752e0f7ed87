// Windows CE's own declarations, which stand before those for a PC.
#pragma once

#include <windows.h>

inline constexpr DWORD TH32CS_SNAPHEAPLIST = 1;
inline constexpr DWORD TH32CS_SNAPPROCESS = 2;
inline constexpr DWORD TH32CS_SNAPTHREAD = 4;
inline constexpr DWORD TH32CS_SNAPMODULE = 8;
inline constexpr DWORD TH32CS_SNAPNOHEAPS = 0x40000000;

struct THREADENTRY32 {
    DWORD dwSize;
    DWORD cntUsage;
    DWORD th32ThreadID;
    DWORD th32OwnerProcessID;
    LONG tpBasePri;
    LONG tpDeltaPri;
    DWORD dwFlags;
    DWORD th32AccessKey;
    DWORD th32CurrentProcessID;
};
static_assert(sizeof(THREADENTRY32) == 36);

struct PROCESSENTRY32 {
    DWORD dwSize;
    DWORD cntUsage;
    DWORD th32ProcessID;
    DWORD th32DefaultHeapID;
    DWORD th32ModuleID;
    DWORD cntThreads;
    DWORD th32ParentProcessID;
    LONG pcPriClassBase;
    DWORD dwFlags;
    WCHAR szExeFile[MAX_PATH];
    DWORD th32MemoryBase;
    DWORD th32AccessKey;
};
static_assert(sizeof(PROCESSENTRY32) == 564);

struct MODULEENTRY32 {
    DWORD dwSize;
    DWORD th32ModuleID;
    DWORD th32ProcessID;
    DWORD GlblcntUsage;
    DWORD ProccntUsage;
    BYTE* modBaseAddr;
    DWORD modBaseSize;
    HMODULE hModule;
    WCHAR szModule[MAX_PATH];
    WCHAR szExePath[MAX_PATH];
    DWORD dwFlags;
};
static_assert(sizeof(MODULEENTRY32) == 1076);

struct HEAPLIST32 {
    DWORD dwSize;
    DWORD th32ProcessID;
    DWORD th32HeapID;
    DWORD dwFlags;
};
static_assert(sizeof(HEAPLIST32) == 16);

struct HEAPENTRY32 {
    DWORD dwSize;
    HANDLE hHandle;
    DWORD dwAddress;
    DWORD dwBlockSize;
    DWORD dwFlags;
    DWORD dwLockCount;
    DWORD dwResvd;
    DWORD th32ProcessID;
    DWORD th32HeapID;
};
static_assert(sizeof(HEAPENTRY32) == 36);

extern "C" {
HANDLE CreateToolhelp32Snapshot(DWORD flags, DWORD process);
BOOL CloseToolhelp32Snapshot(HANDLE snapshot);
BOOL Thread32First(HANDLE snapshot, THREADENTRY32* entry);
BOOL Thread32Next(HANDLE snapshot, THREADENTRY32* entry);
BOOL Process32First(HANDLE snapshot, PROCESSENTRY32* entry);
BOOL Process32Next(HANDLE snapshot, PROCESSENTRY32* entry);
BOOL Module32First(HANDLE snapshot, MODULEENTRY32* entry);
BOOL Module32Next(HANDLE snapshot, MODULEENTRY32* entry);
BOOL Heap32ListFirst(HANDLE snapshot, HEAPLIST32* list);
BOOL Heap32ListNext(HANDLE snapshot, HEAPLIST32* list);
BOOL Heap32First(HANDLE snapshot, HEAPENTRY32* entry, DWORD process, DWORD heap);
BOOL Heap32Next(HANDLE snapshot, HEAPENTRY32* entry);
}
