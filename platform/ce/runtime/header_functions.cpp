// Functions that Windows CE has only as macros in its headers, for callers that know them from the
// desktop's.
#include "platform/ce/runtime/coredll.h"

namespace {
// The page that the kernel shows every process, at this address on ARM; the handles of the running
// thread and process in it serve as their identifiers.
constexpr unsigned long CurrentThreadAddress = 0xFFFFC808;
constexpr unsigned long CurrentProcessAddress = 0xFFFFC80C;

enum class EventChange : unsigned {
    Pulse = 1,
    Reset = 2,
    Set = 3,
};

unsigned long readKernelPage(unsigned long address) {
    return *reinterpret_cast<const volatile unsigned long*>(address);
}
}  // namespace

extern "C" {
int eventModify(runtime::Handle event, EventChange change) asm("EventModify");

unsigned long GetCurrentThreadId() {
    return readKernelPage(CurrentThreadAddress);
}

unsigned long GetCurrentProcessId() {
    return readKernelPage(CurrentProcessAddress);
}

runtime::Handle GetCurrentThread() {
    return reinterpret_cast<runtime::Handle>(0x41);
}

runtime::Handle GetCurrentProcess() {
    return runtime::currentProcess();
}

int SetEvent(runtime::Handle event) {
    return eventModify(event, EventChange::Set);
}

int ResetEvent(runtime::Handle event) {
    return eventModify(event, EventChange::Reset);
}

int PulseEvent(runtime::Handle event) {
    return eventModify(event, EventChange::Pulse);
}

unsigned TlsAlloc() {
    return runtime::tlsCall(runtime::TakeSlot, 0);
}

int TlsFree(unsigned slot) {
    return static_cast<int>(runtime::tlsCall(runtime::GiveSlotBack, slot));
}

// Loaded resources are read where they stand in the image.
void* LockResource(void* resource) {
    return resource;
}
}
