// The few functions of coredll that the runtime stands on, declared here so that it needs no Win32
// header.
#pragma once

#include <cstddef>

namespace runtime {
using Handle = void*;

inline constexpr unsigned FixedMemory = 0x0000;
inline constexpr unsigned MovableMemory = 0x0002;
inline constexpr unsigned ZeroedMemory = 0x0040;
inline constexpr unsigned NoSlot = 0xFFFFFFFF;

// Purposes of TlsCall, behind which Windows CE hides TlsAlloc and TlsFree.
inline constexpr unsigned TakeSlot = 0;
inline constexpr unsigned GiveSlotBack = 1;

// Windows CE has no call for it: the current process is always this handle.
inline Handle currentProcess() {
    return reinterpret_cast<Handle>(0x42);
}

// The names are given to the linker only, because Win32 headers turn some of them into macros.
extern "C" {
void* localAlloc(unsigned flags, std::size_t bytes) asm("LocalAlloc");
void* localReAlloc(void* memory, std::size_t bytes, unsigned flags) asm("LocalReAlloc");
void* localFree(void* memory) asm("LocalFree");

unsigned tlsCall(unsigned purpose, unsigned slot) asm("TlsCall");
void* tlsGetValue(unsigned slot) asm("TlsGetValue");
int tlsSetValue(unsigned slot, void* value) asm("TlsSetValue");

unsigned getLastError() asm("GetLastError");
void setLastError(unsigned error) asm("SetLastError");

long interlockedExchange(volatile long* target, long value) asm("InterlockedExchange");
long interlockedExchangeAdd(volatile long* target, long value) asm("InterlockedExchangeAdd");
// Gives back what was there; stores newValue if that was oldValue.
long interlockedTestExchange(volatile long* target, long oldValue,
                             long newValue) asm("InterlockedTestExchange");

int terminateProcess(Handle process, unsigned exitCode) asm("TerminateProcess");
void sleep(unsigned milliseconds) asm("Sleep");
void outputDebugString(const wchar_t* text) asm("OutputDebugStringW");
}
}  // namespace runtime
