// The ARM processor: runs functions of the program, hands its system calls out, and watches what it
// does. A system call is served between two runs of the processor, so that a callback is simply
// another run.
#pragma once

#include <unicorn/unicorn.h>

#include <cstdint>
#include <initializer_list>
#include <string>
#include <vector>

#include "address.h"
#include "memory.h"

namespace emulator {

// What the oldest of these devices lack is missing here too: SA-1110 has no BX, TI925T no ARMv5.
enum class Processor { Sa1110, Ti925t, Arm926, CortexA8 };

// The state from which the system calls the program, and in which it wants to be returned to.
enum class CallerState { Arm, Thumb };

class Engine {
 public:
    // Called once, before anything else.
    void Create(Processor processor, CallerState callerState);
    void Map(const Region& region);
    void Unmap(const Region& region);
    // Where the stack lies; sp starts at its upper end.
    void SetStack(Address start, Address size);
    // A page of the system that can only be read, with some bytes in it.
    void MapCopy(Address page, Address offset, const void* bytes, Address size);
    // Changes bytes in such a page.
    void ChangeCopy(Address address, const void* bytes, Address size);
    // What lies between is counted, instruction by instruction.
    void CountCode(Address start, Address size);

    // The address whose call is system call number `index`.
    static Address TrapAddress(unsigned index);

    // Calls a function of the program and gives its result. Stops the run when a register that it
    // has to keep comes back changed.
    Address Call(Address function, std::initializer_list<Address> arguments, const char* caller);
    // The same on another stack, that of another thread.
    Address CallOnStack(Address start, Address size, Address function,
                        std::initializer_list<Address> arguments, const char* caller);

    Address Register(int number) const;
    void SetRegister(int number, Address value);
    Address StackPointer() const { return Register(UC_ARM_REG_SP); }
    // Where the system call being served was made.
    Address Caller() const { return Register(UC_ARM_REG_LR) & ~1u; }
    // Where the processor is, or was when it stopped.
    Address ProgramCounter() const { return Register(UC_ARM_REG_PC); }
    unsigned Depth() const { return depth_; }
    // The addresses on the stack that follow a call, the innermost first.
    std::vector<Address> CallersOnStack(size_t limit) const;

    std::uint64_t Instructions() const { return instructions_; }
    // How often the block of instructions that starts at an address ran, and how long it is.
    struct Block {
        std::uint64_t runs = 0;
        std::uint32_t instructions = 0;
    };
    const std::vector<Block>& Blocks() const { return blocks_; }
    Address CodeStart() const { return codeStart_; }

 private:
    static void OnTrap(uc_engine* engine, std::uint64_t address, std::uint32_t, void* self);
    static void OnBlock(uc_engine* engine, std::uint64_t address, std::uint32_t size, void* self);
    static void OnAccess(uc_engine* engine, uc_mem_type type, std::uint64_t address, int size,
                         std::int64_t value, void* self);
    static bool OnRefusedAccess(uc_engine* engine, uc_mem_type type, std::uint64_t address,
                                int size, std::int64_t value, void* self);

    void Run(Address function);
    void Serve(unsigned index);
    void StopForAccess(uc_mem_type type, Address address, int size, const char* why);

    uc_engine* engine_ = nullptr;
    CallerState callerState_ = CallerState::Arm;
    unsigned depth_ = 0;
    Address stackStart_ = 0;
    Address stackSize_ = 0;
    Address codeStart_ = 0;
    Address codeSize_ = 0;
    std::uint64_t instructions_ = 0;
    std::vector<Block> blocks_;
};

}  // namespace emulator
