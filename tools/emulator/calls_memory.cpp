// The heap, atomic operations, and the C library's functions on memory.
#include <cmath>
#include <cstring>

#include "call.h"
#include "machine.h"
#include "stop.h"

namespace emulator {

namespace {

std::uint64_t OutOfMemory() {
    SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    return 0;
}

std::uint64_t LocalAllocate(Call& call) {
    const bool zeroed = (call.Word(0) & LMEM_ZEROINIT) != 0;
    Heap& heap = TheMachine().heap;
    const Address block = heap.Allocate(call.Word(1), zeroed, call.Caller());
    if (block && (call.Word(0) & LMEM_MOVEABLE) != 0) {
        heap.MakeMovable(block);
    }
    return block ? block : OutOfMemory();
}

std::uint64_t LocalResize(Call& call) {
    Heap& heap = TheMachine().heap;
    const bool zeroed = (call.Word(2) & LMEM_ZEROINIT) != 0;
    const Address block =
        heap.Resize(call.Word(0), call.Word(1), zeroed, call.Caller(), call.Name());
    return block ? block : OutOfMemory();
}

std::uint64_t LocalGiveBack(Call& call) {
    if (call.Word(0) != 0) {
        Heap& heap = TheMachine().heap;
        heap.SizeOf(call.Word(0), call.Name());
        if (heap.IsSystems(call.Word(0))) {
            Stop("%s: the block %08x belongs to the system", call.Name(), call.Word(0));
        }
        heap.Free(call.Word(0), call.Caller(), call.Name());
    }
    return 0;
}

std::uint64_t LocalBlockSize(Call& call) {
    return TheMachine().heap.SizeOf(call.Word(0), call.Name());
}

std::uint64_t HeapOfProcess(Call&) {
    return 0x00CE0001;
}

std::uint64_t HeapAllocate(Call& call) {
    const bool zeroed = (call.Word(1) & HEAP_ZERO_MEMORY) != 0;
    const Address block = TheMachine().heap.Allocate(call.Word(2), zeroed, call.Caller());
    return block ? block : OutOfMemory();
}

std::uint64_t HeapGiveBack(Call& call) {
    TheMachine().heap.Free(call.Word(2), call.Caller(), call.Name());
    return TRUE;
}

LONG* Target(const Call& call) {
    if (call.Word(0) & 3) {
        Stop("%s: %08x is not aligned", call.Name(), call.Word(0));
    }
    return call.Out<LONG>(0);
}

std::uint64_t Exchange(Call& call) {
    return Result(std::exchange(*Target(call), call.Signed(1)));
}

std::uint64_t ExchangeAdd(Call& call) {
    LONG* target = Target(call);
    return Result(std::exchange(*target, *target + call.Signed(1)));
}

// (target, old, new)
std::uint64_t TestExchange(Call& call) {
    LONG* target = Target(call);
    const LONG before = *target;
    if (before == call.Signed(1)) {
        *target = call.Signed(2);
    }
    return Result(before);
}

std::uint64_t Increment(Call& call) {
    return Result(++*Target(call));
}

std::uint64_t Decrement(Call& call) {
    return Result(--*Target(call));
}

std::uint64_t MoveBytes(Call& call) {
    const Address size = call.Word(2);
    if (size != 0) {
        std::memmove(call.Bytes(0, size, Access::Write), call.Bytes(1, size, Access::Read), size);
    }
    return call.Word(0);
}

std::uint64_t CopyBytes(Call& call) {
    const Address distance = call.Word(0) - call.Word(1);
    if (call.Word(2) != 0 && distance != 0 &&
        (distance < call.Word(2) || -distance < call.Word(2))) {
        Stop("memcpy: %u bytes from %08x to %08x overlap", call.Word(2), call.Word(1),
             call.Word(0));
    }
    return MoveBytes(call);
}

std::uint64_t SetBytes(Call& call) {
    if (call.Word(2) != 0) {
        std::memset(call.Bytes(0, call.Word(2), Access::Write), call.Signed(1), call.Word(2));
    }
    return call.Word(0);
}

std::uint64_t CompareBytes(Call& call) {
    const Address size = call.Word(2);
    return size == 0 ? 0
                     : Result(std::memcmp(call.Bytes(0, size, Access::Read),
                                          call.Bytes(1, size, Access::Read), size));
}

std::uint64_t FindByte(Call& call) {
    const Address size = call.Word(2);
    return size == 0 ? 0
                     : Result(std::memchr(call.Bytes(0, size, Access::Read), call.Signed(1), size));
}

// A narrow text with its end.
const char* NarrowText(const Call& call, unsigned index) {
    const Address address = call.Word(index);
    for (Address length = 0;; ++length) {
        TheMachine().memory.Require(address + length, 1, Access::Read, call.Name());
        if (PointerTo<char>(address)[length] == 0) {
            return PointerTo<char>(address);
        }
    }
}

std::uint64_t NarrowLength(Call& call) {
    return Result(std::strlen(NarrowText(call, 0)));
}

std::uint64_t NarrowCompare(Call& call) {
    return Result(std::strcmp(NarrowText(call, 0), NarrowText(call, 1)));
}

std::uint64_t NarrowComparePart(Call& call) {
    return Result(std::strncmp(NarrowText(call, 0), NarrowText(call, 1), call.Word(2)));
}

template <double (*Function)(double)>
std::uint64_t OfDouble(Call& call) {
    const std::uint64_t bits = static_cast<std::uint64_t>(call.Word(1)) << 32 | call.Word(0);
    double value;
    std::memcpy(&value, &bits, sizeof value);
    value = Function(value);
    std::uint64_t result;
    std::memcpy(&result, &value, sizeof result);
    return result;
}

const Services services = {
    {"LocalAlloc", LocalAllocate},
    {"LocalReAlloc", LocalResize},
    {"LocalFree", LocalGiveBack},
    {"LocalSize", LocalBlockSize},
    {"GetProcessHeap", HeapOfProcess},
    {"HeapAlloc", HeapAllocate},
    {"HeapFree", HeapGiveBack},
    {"InterlockedExchange", Exchange},
    {"InterlockedExchangeAdd", ExchangeAdd},
    {"InterlockedTestExchange", TestExchange},
    {"InterlockedIncrement", Increment},
    {"InterlockedDecrement", Decrement},
    {"memcpy", CopyBytes},
    {"memmove", MoveBytes},
    {"memset", SetBytes},
    {"memcmp", CompareBytes},
    {"memchr", FindByte},
    {"strlen", NarrowLength},
    {"strcmp", NarrowCompare},
    {"strncmp", NarrowComparePart},
    {"floor", OfDouble<std::floor>},
    {"ceil", OfDouble<std::ceil>},
    {"sqrt", OfDouble<std::sqrt>},
};

}  // namespace

}  // namespace emulator
