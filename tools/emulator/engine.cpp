#include "engine.h"

#include <array>
#include <cstring>

#include "call.h"
#include "machine.h"
#include "stop.h"
#include "sweep.h"

namespace emulator {

namespace {

constexpr Address trapStart = 0xF0000000;
constexpr Address trapSize = 0x10000;
constexpr Address trapStep = 8;
constexpr Address returnTrap = trapStart + trapSize - trapStep;
constexpr Address thumbState = 0x20;

constexpr std::array calleeSaved = {UC_ARM_REG_R4, UC_ARM_REG_R5, UC_ARM_REG_R6,  UC_ARM_REG_R7,
                                    UC_ARM_REG_R8, UC_ARM_REG_R9, UC_ARM_REG_R10, UC_ARM_REG_R11};
constexpr std::array callerSaved = {UC_ARM_REG_R1, UC_ARM_REG_R2, UC_ARM_REG_R3, UC_ARM_REG_R12};

void Check(uc_err result, const char* doing) {
    if (result != UC_ERR_OK) {
        Stop("the processor cannot %s: %s", doing, uc_strerror(result));
    }
}

// Unusual values, so that who relies on a register's content is found out.
Address Poison(int number) {
    return 0xBAD0000Bu | static_cast<Address>(number) << 8;
}

template <class Function>
void AddHook(uc_engine* engine, int type, Function function, void* self, std::uint64_t begin = 1,
             std::uint64_t end = 0) {
    uc_hook hook = 0;
    Check(uc_hook_add(engine, &hook, type, reinterpret_cast<void*>(function), self, begin, end),
          "be watched");
}

}  // namespace

void Engine::Create(Processor processor, CallerState callerState) {
    Check(uc_open(UC_ARCH_ARM, UC_MODE_ARM, &engine_), "be made");
    const int model = processor == Processor::Sa1110   ? UC_CPU_ARM_SA1110
                      : processor == Processor::Ti925t ? UC_CPU_ARM_TI925T
                      : processor == Processor::Arm926 ? UC_CPU_ARM_926
                                                       : UC_CPU_ARM_CORTEX_A8;
    Check(uc_ctl_set_cpu_model(engine_, model), "be of this model");
    if (processor == Processor::Sa1110 && callerState == CallerState::Thumb) {
        Stop("this processor has no Thumb state to be called from");
    }
    callerState_ = callerState;
    Check(uc_mem_map(engine_, trapStart, trapSize, UC_PROT_READ | UC_PROT_EXEC), "map its traps");
    AddHook(engine_, UC_HOOK_CODE, &Engine::OnTrap, this, trapStart, trapStart + trapSize - 1);
    AddHook(engine_, UC_HOOK_MEM_READ | UC_HOOK_MEM_WRITE, &Engine::OnAccess, this);
    AddHook(engine_, UC_HOOK_MEM_INVALID, &Engine::OnRefusedAccess, this);
}

void Engine::Map(const Region& region) {
    unsigned protection = UC_PROT_READ;
    protection |= region.writable ? static_cast<unsigned>(UC_PROT_WRITE) : 0;
    protection |= region.executable ? static_cast<unsigned>(UC_PROT_EXEC) : 0;
    Check(uc_mem_map_ptr(engine_, region.start, RoundUpToPage(region.size), protection,
                         PointerTo(region.start)),
          "map memory");
}

void Engine::Unmap(const Region& region) {
    Check(uc_mem_unmap(engine_, region.start, RoundUpToPage(region.size)), "unmap memory");
}

void Engine::MapCopy(Address page, Address offset, const void* bytes, Address size) {
    Check(uc_mem_map(engine_, page, pageSize, UC_PROT_READ), "map a page of the system");
    Check(uc_mem_write(engine_, page + offset, bytes, size), "fill a page of the system");
}

void Engine::ChangeCopy(Address address, const void* bytes, Address size) {
    Check(uc_mem_write(engine_, address, bytes, size), "change a page of the system");
}

void Engine::SetStack(Address start, Address size) {
    stackStart_ = start;
    stackSize_ = size;
    SetRegister(UC_ARM_REG_SP, start + size);
}

void Engine::CountCode(Address start, Address size) {
    codeStart_ = start;
    codeSize_ = size;
    blocks_.assign(size / 4, {});
    AddHook(engine_, UC_HOOK_BLOCK, &Engine::OnBlock, this, start, start + size - 1);
}

Address Engine::TrapAddress(unsigned index) {
    const Address address = trapStart + trapStep * index;
    if (address >= returnTrap) {
        Stop("there are too many system calls");
    }
    return address;
}

Address Engine::Register(int number) const {
    Address value = 0;
    uc_reg_read(engine_, number, &value);
    return value;
}

void Engine::SetRegister(int number, Address value) {
    uc_reg_write(engine_, number, &value);
}

Address Engine::Call(Address function, std::initializer_list<Address> arguments,
                     const char* caller) {
    const Address savedStack = StackPointer();
    const Address savedLink = Register(UC_ARM_REG_LR);
    const Address savedState = Register(UC_ARM_REG_CPSR);
    std::array<Address, calleeSaved.size()> saved;
    for (size_t i = 0; i < saved.size(); ++i) {
        saved[i] = Register(calleeSaved[i]);
        SetRegister(calleeSaved[i], Poison(calleeSaved[i]));
    }
    // Windows CE keeps the stack aligned to four bytes only.
    const Address stack =
        (savedStack & ~7u) - 4 - 8 * static_cast<Address>((arguments.size() + 1) / 2);
    SetRegister(UC_ARM_REG_SP, stack);
    unsigned index = 0;
    for (const Address value : arguments) {
        if (index < 4) {
            SetRegister(UC_ARM_REG_R0 + static_cast<int>(index), value);
        } else {
            PointerTo<Address>(stack)[index - 4] = value;
        }
        ++index;
    }
    // Bit 0 of a return address is the state to return to.
    const bool fromThumb = callerState_ == CallerState::Thumb;
    SetRegister(UC_ARM_REG_LR, returnTrap | (fromThumb ? 1u : 0u));
    SetRegister(UC_ARM_REG_CPSR, savedState & ~thumbState);
    ++depth_;
    {
        const InPlace place(sweep::Place::Runs);
        Run(function);
    }
    --depth_;
    if (((Register(UC_ARM_REG_CPSR) & thumbState) != 0) != fromThumb) {
        Stop("%s returned to %s in the wrong state", TheMachine().symbols.Name(function).c_str(),
             caller);
    }
    for (const int number : calleeSaved) {
        if (Register(number) != Poison(number)) {
            Stop("%s returned to %s with r%d changed to %08x",
                 TheMachine().symbols.Name(function).c_str(), caller, number - UC_ARM_REG_R0,
                 Register(number));
        }
    }
    if (StackPointer() != stack) {
        Stop("%s returned to %s with sp moved by %d bytes",
             TheMachine().symbols.Name(function).c_str(), caller,
             static_cast<int>(StackPointer() - stack));
    }
    const Address result = Register(UC_ARM_REG_R0);
    for (size_t i = 0; i < saved.size(); ++i) {
        SetRegister(calleeSaved[i], saved[i]);
    }
    SetRegister(UC_ARM_REG_SP, savedStack);
    SetRegister(UC_ARM_REG_LR, savedLink);
    SetRegister(UC_ARM_REG_CPSR, savedState);
    return result;
}

Address Engine::CallOnStack(Address start, Address size, Address function,
                            std::initializer_list<Address> arguments, const char* caller) {
    const Address savedStart = stackStart_;
    const Address savedSize = stackSize_;
    const Address savedPointer = StackPointer();
    SetStack(start, size);
    const Address result = Call(function, arguments, caller);
    SetStack(savedStart, savedSize);
    SetRegister(UC_ARM_REG_SP, savedPointer);
    return result;
}

void Engine::Run(Address function) {
    Address next = function;
    for (;;) {
        const uc_err result = uc_emu_start(engine_, next, 0, 0, 0);
        const Address reached = ProgramCounter();
        if (result != UC_ERR_OK) {
            Stop("the processor stopped: %s", uc_strerror(result));
        }
        if ((reached & ~1u) == returnTrap) {
            return;
        }
        if (reached - trapStart >= trapSize || reached % trapStep != 0) {
            Stop("the processor stopped at %08x", reached);
        }
        Serve((reached - trapStart) / trapStep);
        next = Register(UC_ARM_REG_LR);
    }
}

void Engine::Serve(unsigned index) {
    const Address link = Register(UC_ARM_REG_LR);
    const Address stack = StackPointer();
    const std::uint64_t result = ServeCall(*this, index);
    SetRegister(UC_ARM_REG_R0, static_cast<Address>(result));
    for (const int number : callerSaved) {
        SetRegister(number, Poison(number));
    }
    SetRegister(UC_ARM_REG_R1, static_cast<Address>(result >> 32));
    SetRegister(UC_ARM_REG_LR, link);
    SetRegister(UC_ARM_REG_SP, stack);
}

std::vector<Address> Engine::CallersOnStack(size_t limit) const {
    constexpr Address callMask = 0x0F000000;
    constexpr Address callCode = 0x0B000000;
    std::vector<Address> callers;
    const Memory& memory = TheMachine().memory;
    std::string why;
    const auto follows = [&](Address address) {
        return address - 4 - codeStart_ < codeSize_ && (address & 3) == 0 &&
               memory.Allows(address - 4, 4, Access::Read, &why);
    };
    for (Address at = StackPointer() & ~3u; at - stackStart_ < stackSize_ && callers.size() < limit;
         at += 4) {
        const Address value = *PointerTo<Address>(at);
        if (follows(value) && (*PointerTo<Address>(value - 4) & callMask) == callCode) {
            callers.push_back(value);
        }
    }
    return callers;
}

void Engine::OnTrap(uc_engine* engine, std::uint64_t, std::uint32_t, void*) {
    uc_emu_stop(engine);
}

void Engine::OnBlock(uc_engine*, std::uint64_t address, std::uint32_t size, void* self) {
    auto& engine = *static_cast<Engine*>(self);
    Block& block = engine.blocks_[(static_cast<Address>(address) - engine.codeStart_) / 4];
    const std::uint32_t instructions = size / 4;
    ++block.runs;
    block.instructions = instructions;
    engine.instructions_ += instructions;
}

void Engine::OnAccess(uc_engine*, uc_mem_type type, std::uint64_t address, int size, std::int64_t,
                      void* self) {
    auto& engine = *static_cast<Engine*>(self);
    const auto at = static_cast<Address>(address);
    const auto bytes = static_cast<Address>(size);
    if (bytes > 1 && (at & (bytes > 4 ? 3 : bytes - 1))) {
        engine.StopForAccess(type, at, size, "it is not aligned");
    }
    const Heap& heap = TheMachine().heap;
    if (heap.Holds(at) && !heap.Allows(at, bytes)) {
        engine.StopForAccess(type, at, size, heap.Describe(at).c_str());
    }
}

bool Engine::OnRefusedAccess(uc_engine*, uc_mem_type type, std::uint64_t address, int size,
                             std::int64_t, void* self) {
    auto& engine = *static_cast<Engine*>(self);
    const auto at = static_cast<Address>(address);
    std::string why;
    if (at < engine.stackStart_ && engine.stackStart_ - at < 0x10000 &&
        engine.StackPointer() <= engine.stackStart_ + 0x1000) {
        why = "the stack of " + std::to_string(engine.stackSize_ / 1024) + " KB is used up";
    } else if (const Region* region = TheMachine().memory.Find(at)) {
        why = region->name + (type == UC_MEM_FETCH_PROT ? " is not code" : " is write-protected");
    } else {
        why = "nothing is there";
    }
    engine.StopForAccess(type, at, size, why.c_str());
    return false;
}

void Engine::StopForAccess(uc_mem_type type, Address address, int size, const char* why) {
    const bool write =
        type == UC_MEM_WRITE || type == UC_MEM_WRITE_PROT || type == UC_MEM_WRITE_UNMAPPED;
    const bool fetch = type == UC_MEM_FETCH_PROT || type == UC_MEM_FETCH_UNMAPPED;
    if (fetch) {
        Stop("code at %08x cannot run: %s", address, why);
    }
    Stop("a %s of %d bytes at %08x: %s", write ? "write" : "read", size, address, why);
}

}  // namespace emulator
