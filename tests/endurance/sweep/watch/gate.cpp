#include "tests/endurance/sweep/watch/gate.h"

#include <cstring>

#include "tests/support/platform_hook.h"

namespace sweep {

namespace {

Gate theGate = nullptr;
void* guarded[mostGuarded] = {};

// Loads the number and goes on to what all guarded calls come by.
struct Entrance {
    unsigned char loadNumber = 0xB8;  // mov eax, number
    unsigned char number[4] = {};
    unsigned char loadPassage[2] = {0x49, 0xBB};  // mov r11, passage
    unsigned char passage[8] = {};
    unsigned char go[3] = {0x41, 0xFF, 0xE3};  // jmp r11
};

Entrance* entrances = nullptr;

}  // namespace

}  // namespace sweep

// What is to be called now; null when nothing is, and `result` has been set.
extern "C" void* sweep_gate(unsigned number, const ULONG_PTR* arguments, ULONG_PTR* result) {
    return sweep::theGate(number, arguments, result) ? nullptr : sweep::guarded[number];
}

extern "C" void sweep_passage();

// The arguments in registers go to where their callee may put them, before those on the stack, and
// come back from there.
asm(R"(
    .text
    .globl sweep_passage
    .def sweep_passage
    .scl 2
    .type 32
    .endef
    .seh_proc sweep_passage
sweep_passage:
    subq $0x88, %rsp
    .seh_stackalloc 0x88
    .seh_endprologue
    movq %rcx, 0x90(%rsp)
    movq %rdx, 0x98(%rsp)
    movq %r8, 0xa0(%rsp)
    movq %r9, 0xa8(%rsp)
    movups %xmm0, 0x20(%rsp)
    movups %xmm1, 0x30(%rsp)
    movups %xmm2, 0x40(%rsp)
    movups %xmm3, 0x50(%rsp)
    movl %eax, %ecx
    leaq 0x90(%rsp), %rdx
    leaq 0x60(%rsp), %r8
    call sweep_gate
    movups 0x20(%rsp), %xmm0
    movups 0x30(%rsp), %xmm1
    movups 0x40(%rsp), %xmm2
    movups 0x50(%rsp), %xmm3
    movq 0x90(%rsp), %rcx
    movq 0x98(%rsp), %rdx
    movq 0xa0(%rsp), %r8
    movq 0xa8(%rsp), %r9
    testq %rax, %rax
    jz 1f
    addq $0x88, %rsp
    jmpq *%rax
1:
    movq 0x60(%rsp), %rax
    addq $0x88, %rsp
    ret
    .seh_endproc
)");

namespace sweep {

bool Guard(void** slot, unsigned number, Gate gate) {
    if (!entrances) {
        entrances =
            static_cast<Entrance*>(VirtualAlloc(nullptr, mostGuarded * sizeof(Entrance),
                                                MEM_COMMIT | MEM_RESERVE, PAGE_EXECUTE_READWRITE));
    }
    if (!entrances || number >= mostGuarded) {
        return false;
    }
    void (*const passage)() = sweep_passage;
    Entrance entrance;
    static_assert(sizeof entrance.passage == sizeof passage, "an address of 64 bits");
    std::memcpy(entrance.number, &number, sizeof entrance.number);
    std::memcpy(entrance.passage, &passage, sizeof entrance.passage);
    std::memcpy(&entrances[number], &entrance, sizeof entrance);
    theGate = gate;
    guarded[number] = *slot;
    test::SetImport(slot, &entrances[number]);
    return true;
}

}  // namespace sweep
