// Threads and what each of them has for itself. A thread runs to its end before the call that makes
// it returns: nothing here runs beside anything else.
#include "threads.h"

#include <array>
#include <utility>

#include "call.h"
#include "machine.h"
#include "stop.h"

namespace emulator {

namespace {

constexpr Address kernelPage = 0xFFFFC000;
constexpr Address currentThreadOffset = 0x808;
constexpr Address threadStackBase = 0x2F000000;
constexpr unsigned slotCount = 64;

bool slotTaken[slotCount];
// Those of the running thread.
std::array<Address, slotCount> slots;
Address runningThread = 0;

void ShowRunningThread() {
    TheMachine().engine.ChangeCopy(kernelPage + currentThreadOffset, &runningThread,
                                   sizeof runningThread);
}

std::uint64_t TakeOrReturnSlot(Call& call) {
    if (call.Word(0) == 0) {
        for (unsigned slot = 0; slot < slotCount; ++slot) {
            if (!slotTaken[slot]) {
                slotTaken[slot] = true;
                slots[slot] = 0;
                return slot;
            }
        }
        return 0xFFFFFFFF;
    }
    if (call.Word(1) >= slotCount || !slotTaken[call.Word(1)]) {
        return FALSE;
    }
    slotTaken[call.Word(1)] = false;
    return TRUE;
}

unsigned SlotOf(const Call& call) {
    if (call.Word(0) >= slotCount || !slotTaken[call.Word(0)]) {
        Stop("%s: nobody has taken slot %u", call.Name(), call.Word(0));
    }
    return call.Word(0);
}

std::uint64_t GetSlot(Call& call) {
    SetLastError(ERROR_SUCCESS);
    return slots[SlotOf(call)];
}

std::uint64_t SetSlot(Call& call) {
    slots[SlotOf(call)] = call.Word(1);
    return TRUE;
}

// The thread's handle is that of an event which is set: the thread has ended.
std::uint64_t MakeThread(Call& call) {
    static Address identifier = 0x2A000000;
    if (call.Word(4) != 0) {
        Stop("CreateThread: flags %x are not served", call.Word(4));
    }
    Machine& machine = TheMachine();
    const Address stackSize = machine.device.stackSize;
    const Address stack = Memory::Reserve(threadStackBase, stackSize);
    machine.memory.Add({stack, stackSize, true, false, "a thread's stack"});
    std::array<Address, slotCount> own = {};
    std::swap(slots, own);
    const Address creator = std::exchange(runningThread, identifier += 4);
    const Address created = runningThread;
    ShowRunningThread();
    machine.engine.CallOnStack(stack, stackSize, call.Word(2), {call.Word(3)}, call.Name());
    runningThread = creator;
    ShowRunningThread();
    std::swap(slots, own);
    machine.memory.Remove(stack);
    Memory::Release(stack);
    call.Give(5, created);
    return Result(CreateEventW(nullptr, TRUE, TRUE, nullptr));
}

const Services services = {
    {"TlsCall", TakeOrReturnSlot},
    {"TlsGetValue", GetSlot},
    {"TlsSetValue", SetSlot},
    {"CreateThread", MakeThread},
};

}  // namespace

void MakeKernelPage(Engine& engine) {
    runningThread = GetCurrentThreadId();
    const Address words[2] = {runningThread, GetCurrentProcessId()};
    engine.MapCopy(kernelPage, currentThreadOffset, words, sizeof words);
}

}  // namespace emulator
