// Atomic operations: ARMv4 has no instructions for them, so the compiler calls these, which stand
// on coredll's Interlocked functions. Windows CE runs ARMv4 on one core, so plain aligned loads and
// stores are whole.
#include "platform/ce/runtime/coredll.h"

namespace {
// Replaces a word by operation(word) and gives back what was there.
template <class Operation>
unsigned exchangeWord(volatile void* target, Operation operation) {
    auto* word = static_cast<volatile long*>(target);
    for (;;) {
        const long before = *word;
        const auto after = static_cast<long>(operation(static_cast<unsigned>(before)));
        if (runtime::interlockedTestExchange(word, before, after) == before) {
            return static_cast<unsigned>(before);
        }
    }
}

// The same for an integer of one or two bytes, through the word around it.
template <class Integer, class Operation>
Integer exchangePart(volatile void* target, Operation operation) {
    const auto address = reinterpret_cast<unsigned long>(target);
    auto* word = reinterpret_cast<volatile void*>(address & ~3UL);
    const unsigned shift = (address & 3) * 8;
    const unsigned mask = ((1U << (8 * sizeof(Integer))) - 1) << shift;
    const unsigned before = exchangeWord(word, [=](unsigned whole) {
        const auto part = static_cast<Integer>((whole & mask) >> shift);
        return (whole & ~mask) |
               (static_cast<unsigned>(static_cast<Integer>(operation(part))) << shift);
    });
    return static_cast<Integer>((before & mask) >> shift);
}

template <class Integer, class Operation>
Integer exchange(volatile void* target, Operation operation) {
    if constexpr (sizeof(Integer) == 4) {
        return exchangeWord(target, operation);
    } else {
        return exchangePart<Integer>(target, operation);
    }
}

template <class Integer>
Integer compareExchange(volatile void* target, Integer expected, Integer desired) {
    return exchange<Integer>(target,
                             [=](Integer value) { return value == expected ? desired : value; });
}

void keepOrder() {
    asm volatile("" ::: "memory");
}
}  // namespace

// The compiler knows these names as builtins, so they are given to the linker only.
#define ATOMICS(Integer, Size)                                                                     \
    Integer load##Size(const volatile void*, int) asm("__atomic_load_" #Size);                     \
    Integer load##Size(const volatile void* target, int) {                                         \
        keepOrder();                                                                               \
        const Integer value = *static_cast<const volatile Integer*>(target);                       \
        keepOrder();                                                                               \
        return value;                                                                              \
    }                                                                                              \
    void store##Size(volatile void*, Integer, int) asm("__atomic_store_" #Size);                   \
    void store##Size(volatile void* target, Integer value, int) {                                  \
        keepOrder();                                                                               \
        *static_cast<volatile Integer*>(target) = value;                                           \
        keepOrder();                                                                               \
    }                                                                                              \
    Integer exchange##Size(volatile void*, Integer, int) asm("__atomic_exchange_" #Size);          \
    Integer exchange##Size(volatile void* target, Integer value, int) {                            \
        return exchange<Integer>(target, [=](Integer) { return value; });                          \
    }                                                                                              \
    bool compareExchange##Size(volatile void*, void*, Integer, int,                                \
                               int) asm("__atomic_compare_exchange_" #Size);                       \
    bool compareExchange##Size(volatile void* target, void* expected, Integer desired, int, int) { \
        auto* wanted = static_cast<Integer*>(expected);                                            \
        const Integer before = compareExchange<Integer>(target, *wanted, desired);                 \
        const bool stored = before == *wanted;                                                     \
        *wanted = before;                                                                          \
        return stored;                                                                             \
    }                                                                                              \
    Integer syncExchange##Size(volatile void*, Integer) asm("__sync_lock_test_and_set_" #Size);    \
    Integer syncExchange##Size(volatile void* target, Integer value) {                             \
        return exchange<Integer>(target, [=](Integer) { return value; });                          \
    }                                                                                              \
    Integer syncCompare##Size(volatile void*, Integer,                                             \
                              Integer) asm("__sync_val_compare_and_swap_" #Size);                  \
    Integer syncCompare##Size(volatile void* target, Integer expected, Integer desired) {          \
        return compareExchange<Integer>(target, expected, desired);                                \
    }                                                                                              \
    bool syncCompareFlag##Size(volatile void*, Integer,                                            \
                               Integer) asm("__sync_bool_compare_and_swap_" #Size);                \
    bool syncCompareFlag##Size(volatile void* target, Integer expected, Integer desired) {         \
        return compareExchange<Integer>(target, expected, desired) == expected;                    \
    }

#define ARITHMETIC(Name, Operator)                                                           \
    unsigned fetch##Name(volatile void*, unsigned, int) asm("__atomic_fetch_" #Name "_4");   \
    unsigned fetch##Name(volatile void* target, unsigned value, int) {                       \
        return exchangeWord(target, [=](unsigned before) { return before Operator value; }); \
    }                                                                                        \
    unsigned syncFetch##Name(volatile void*, unsigned) asm("__sync_fetch_and_" #Name "_4");  \
    unsigned syncFetch##Name(volatile void* target, unsigned value) {                        \
        return exchangeWord(target, [=](unsigned before) { return before Operator value; }); \
    }                                                                                        \
    unsigned syncResult##Name(volatile void*, unsigned) asm("__sync_" #Name "_and_fetch_4"); \
    unsigned syncResult##Name(volatile void* target, unsigned value) {                       \
        return exchangeWord(target, [=](unsigned before) { return before Operator value; })  \
            Operator value;                                                                  \
    }

extern "C" {
ATOMICS(unsigned char, 1)
ATOMICS(unsigned short, 2)
ATOMICS(unsigned, 4)
ARITHMETIC(add, +)
ARITHMETIC(sub, -)
ARITHMETIC(and, &)
ARITHMETIC(or, |)
ARITHMETIC(xor, ^)

void synchronize() asm("__sync_synchronize");
void synchronize() {
    keepOrder();
}
}
