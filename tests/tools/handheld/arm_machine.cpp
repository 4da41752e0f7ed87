// Runs a handheld executable on an emulated ARM processor and plays the part of Windows CE that the
// sample calls.
//
// It is stricter than a device: sections keep their protections, every unaligned access ends the
// run, registers that a called function may destroy are destroyed, freed memory is poisoned, and
// after each call into the program the registers it must preserve are looked at.
#include <unicorn/unicorn.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <functional>
#include <initializer_list>
#include <iterator>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace {
using Word = std::uint32_t;

constexpr int FailureExitCode = 99;
constexpr Word PageSize = 0x1000;
constexpr Word TrapAddress = 0x7FF00000;
constexpr Word TrapSize = 0x10000;
constexpr Word ReturnTrap = TrapAddress + TrapSize - 0x100;
constexpr Word StackAddress = 0x2E000000;
constexpr Word StackSize = 0x20000;
constexpr Word HeapAddress = 0x30000000;
constexpr Word HeapSize = 0x1000000;
constexpr Word KernelPage = 0xFFFFC000;
constexpr Word CurrentThreadOffset = 0x808;
constexpr Word CurrentProcessOffset = 0x80C;
constexpr Word CurrentProcess = 0x42;
constexpr Word ThreadHandle = 0x77;
constexpr Word FirstThreadId = 0x1001;
constexpr Word ProcessId = 0x2002;
constexpr Word ThumbState = 0x20;
constexpr Word StringTable = 6;

struct Failure : std::runtime_error {
    using std::runtime_error::runtime_error;
};

struct ProcessEnd {
    Word exitCode;
};

struct Options {
    std::string executable;
    std::u16string arguments = u"one two";
    std::optional<Word> base;
    int processor = UC_CPU_ARM_926;
    bool thumbCaller = false;
};

// What a function of the system gives back; high is set for results of 64 bits.
struct Result {
    Word low = 0;
    std::optional<Word> high;
};

std::string hexadecimal(Word value) {
    char text[16];
    std::snprintf(text, sizeof text, "%#x", static_cast<unsigned>(value));
    return text;
}

std::string utf8(const std::u16string& text) {
    std::string result;
    for (const char16_t unit : text) {
        if (unit < 0x80) {
            result += static_cast<char>(unit);
        } else if (unit < 0x800) {
            result += static_cast<char>(0xC0 | unit >> 6);
            result += static_cast<char>(0x80 | (unit & 0x3F));
        } else {
            result += static_cast<char>(0xE0 | unit >> 12);
            result += static_cast<char>(0x80 | (unit >> 6 & 0x3F));
            result += static_cast<char>(0x80 | (unit & 0x3F));
        }
    }
    return result;
}

class Machine {
 public:
    explicit Machine(const Options& options) : options(options) {
        require(uc_open(UC_ARCH_ARM, UC_MODE_ARM, &engine), "open");
        require(uc_ctl_set_cpu_model(engine, options.processor), "choose the processor");
        map(TrapAddress, TrapSize, UC_PROT_READ | UC_PROT_EXEC);
        map(StackAddress, StackSize, UC_PROT_READ | UC_PROT_WRITE);
        map(HeapAddress, HeapSize, UC_PROT_READ | UC_PROT_WRITE);
        map(KernelPage, PageSize, UC_PROT_READ);
        writeWord(KernelPage + CurrentThreadOffset, FirstThreadId);
        writeWord(KernelPage + CurrentProcessOffset, ProcessId);
        load();
        uc_hook hook;
        require(uc_hook_add(engine, &hook, UC_HOOK_CODE, reinterpret_cast<void*>(&Machine::onTrap),
                            this, TrapAddress, TrapAddress + TrapSize - 1),
                "watch calls");
        require(uc_hook_add(engine, &hook, UC_HOOK_MEM_READ | UC_HOOK_MEM_WRITE,
                            reinterpret_cast<void*>(&Machine::onAccess), this, 1, 0),
                "watch memory");
        addFunctions();
    }

    ~Machine() { uc_close(engine); }
    Machine(const Machine&) = delete;
    Machine& operator=(const Machine&) = delete;

    Word run() {
        const Word arguments =
            allocate(2 * (static_cast<Word>(options.arguments.size()) + 1), true);
        write(arguments, options.arguments.data(), 2 * options.arguments.size());
        liveBlocks.erase(arguments);
        setRegister(UC_ARM_REG_SP, StackAddress + StackSize - 0x100);
        try {
            call(base + entry, {base, 0, arguments, 5});
        } catch (const ProcessEnd& end) {
            std::printf("exit code %u, blocks left %zu\n", static_cast<unsigned>(end.exitCode),
                        liveBlocks.size());
            return end.exitCode;
        }
        throw Failure("the entry point returned");
    }

 private:
    using Function = std::function<Result(Machine&)>;

    static void require(uc_err error, const char* what) {
        if (error != UC_ERR_OK) {
            throw Failure(std::string("cannot ") + what + ": " + uc_strerror(error));
        }
    }

    void map(Word address, Word size, uint32_t protection) {
        require(uc_mem_map(engine, address, size, protection), "map memory");
    }

    void read(Word address, void* target, std::size_t size) const {
        if (uc_mem_read(engine, address, target, size) != UC_ERR_OK) {
            throw Failure("the system was given an address it cannot read: " +
                          hexadecimal(address));
        }
    }

    void write(Word address, const void* source, std::size_t size) {
        if (uc_mem_write(engine, address, source, size) != UC_ERR_OK) {
            throw Failure("the system was given an address it cannot write: " +
                          hexadecimal(address));
        }
    }

    template <class Integer>
    Integer readInteger(Word address) const {
        Integer value;
        read(address, &value, sizeof value);
        return value;
    }

    Word readWord(Word address) const { return readInteger<Word>(address); }
    void writeWord(Word address, Word value) { write(address, &value, sizeof value); }

    std::u16string readText(Word address) const {
        std::u16string text;
        while (const auto unit = readInteger<char16_t>(address)) {
            text += unit;
            address += 2;
        }
        return text;
    }

    std::string readNarrowText(Word address) const {
        std::string text;
        while (const auto unit = readInteger<char>(address++)) {
            text += unit;
        }
        return text;
    }

    Word getRegister(int which) const {
        Word value = 0;
        uc_reg_read(engine, which, &value);
        return value;
    }

    void setRegister(int which, Word value) { uc_reg_write(engine, which, &value); }

    // The arguments of the system function under way: four in registers, the others on the stack.
    Word argument(int index) const {
        return index < 4 ? getRegister(UC_ARM_REG_R0 + index)
                         : readWord(getRegister(UC_ARM_REG_SP) + 4 * static_cast<Word>(index - 4));
    }

    void load() {
        std::ifstream stream(options.executable, std::ios::binary);
        const std::vector<char> file((std::istreambuf_iterator<char>(stream)), {});
        const auto half = [&](std::size_t at) {
            std::uint16_t value;
            std::memcpy(&value, &file.at(at), sizeof value);
            return value;
        };
        const auto word = [&](std::size_t at) {
            Word value;
            std::memcpy(&value, &file.at(at), sizeof value);
            return value;
        };
        const Word header = word(0x3C);
        const Word optional = header + 24;
        const Word preferred = word(optional + 28);
        const Word size = word(optional + 56);
        const Word sections = optional + half(header + 20);
        base = options.base.value_or(preferred);
        entry = word(optional + 16);
        resources = word(optional + 96 + 8 * 2);

        std::vector<char> image(size);
        for (Word i = 0; i < half(header + 6); ++i) {
            const Word section = sections + 40 * i;
            const Word stored = std::min(word(section + 16), size - word(section + 12));
            if (stored > 0) {
                std::memcpy(&image.at(word(section + 12)), &file.at(word(section + 20)), stored);
            }
        }
        map(base, (size + PageSize - 1) & ~(PageSize - 1), UC_PROT_ALL);
        write(base, image.data(), image.size());
        relocate(base - preferred, word(optional + 96 + 8 * 5), word(optional + 96 + 8 * 5 + 4));
        bind(word(optional + 96 + 8 * 1));
        require(uc_mem_protect(engine, base, PageSize, UC_PROT_READ), "protect the headers");
        for (Word i = 0; i < half(header + 6); ++i) {
            const Word section = sections + 40 * i;
            const Word flags = word(section + 36);
            const uint32_t protection = UC_PROT_READ |
                                        ((flags & 0x80000000) != 0 ? UC_PROT_WRITE : 0) |
                                        ((flags & 0x20000000) != 0 ? UC_PROT_EXEC : 0);
            const Word pages = (word(section + 8) + PageSize - 1) & ~(PageSize - 1);
            require(uc_mem_protect(engine, base + word(section + 12), pages, protection),
                    "protect a section");
        }
    }

    void relocate(Word distance, Word table, Word size) {
        for (Word at = base + table; at < base + table + size; at += readWord(at + 4)) {
            for (Word offset = 8; offset < readWord(at + 4); offset += 2) {
                const auto item = readInteger<std::uint16_t>(at + offset);
                if (item >> 12 == 3) {
                    const Word target = base + readWord(at) + (item & 0xFFF);
                    writeWord(target, readWord(target) + distance);
                }
            }
        }
    }

    void bind(Word descriptors) {
        for (Word at = base + descriptors; readWord(at + 12) != 0; at += 20) {
            const std::string library = readNarrowText(base + readWord(at + 12));
            Word slot = base + readWord(at + 16);
            for (Word lookup = base + readWord(at); readWord(lookup) != 0; lookup += 4, slot += 4) {
                const Word thunk = readWord(lookup);
                const std::string function = (thunk & 0x80000000) != 0
                                                 ? "#" + std::to_string(thunk & 0xFFFF)
                                                 : readNarrowText(base + thunk + 2);
                writeWord(slot, TrapAddress + 4 * static_cast<Word>(imports.size()));
                imports.push_back(library + " " + function);
            }
        }
    }

    static void onTrap(uc_engine* engine, uint64_t, uint32_t, void*) { uc_emu_stop(engine); }

    static void onAccess(uc_engine* engine, uc_mem_type type, uint64_t address, int size, int64_t,
                         void* self) {
        if (size > 1 && address % static_cast<unsigned>(std::min(size, 4)) != 0) {
            auto& machine = *static_cast<Machine*>(self);
            machine.problem = std::string("unaligned ") +
                              (type == UC_MEM_WRITE ? "write" : "read") + " at " +
                              hexadecimal(static_cast<Word>(address));
            uc_emu_stop(engine);
        }
    }

    // Calls a function of the program as Windows CE does, and gives back its result.
    Word call(Word function, std::initializer_list<Word> arguments) {
        static constexpr std::array Saved = {UC_ARM_REG_R4,  UC_ARM_REG_R5, UC_ARM_REG_R6,
                                             UC_ARM_REG_R7,  UC_ARM_REG_R8, UC_ARM_REG_R9,
                                             UC_ARM_REG_R10, UC_ARM_REG_R11};
        uc_context* context = nullptr;
        require(uc_context_alloc(engine, &context), "remember the registers");
        require(uc_context_save(engine, context), "remember the registers");

        // The system promises a stack aligned to four bytes, no more.
        const Word stack =
            ((getRegister(UC_ARM_REG_SP) - 64) & ~7U) | (options.thumbCaller ? 4 : 0);
        setRegister(UC_ARM_REG_SP, stack);
        int index = 0;
        for (const Word value : arguments) {
            setRegister(UC_ARM_REG_R0 + index++, value);
        }
        for (const int which : Saved) {
            setRegister(which, 0xC0DE0000 + static_cast<Word>(which));
        }
        setRegister(UC_ARM_REG_LR, ReturnTrap | (options.thumbCaller ? 1 : 0));
        setRegister(UC_ARM_REG_CPSR, getRegister(UC_ARM_REG_CPSR) & ~ThumbState);

        for (Word next = function;;) {
            next = runUntilTrap(next);
            if ((next & ~1U) == ReturnTrap) {
                break;
            }
            next = serve((next - TrapAddress) / 4);
        }
        const bool inThumb = (getRegister(UC_ARM_REG_CPSR) & ThumbState) != 0;
        if (inThumb != options.thumbCaller) {
            throw Failure("the program returned to the system in the wrong state");
        }
        for (const int which : Saved) {
            if (getRegister(which) != 0xC0DE0000 + static_cast<Word>(which)) {
                throw Failure("the program did not preserve r" +
                              std::to_string(which - UC_ARM_REG_R0));
            }
        }
        if (getRegister(UC_ARM_REG_SP) != stack) {
            throw Failure("the program did not give the stack back");
        }
        const Word result = getRegister(UC_ARM_REG_R0);
        require(uc_context_restore(engine, context), "restore the registers");
        uc_context_free(context);
        return result;
    }

    Word runUntilTrap(Word address) {
        const uc_err error = uc_emu_start(engine, address, 0, 0, 0);
        const Word at = getRegister(UC_ARM_REG_PC);
        if (!problem.empty() || error != UC_ERR_OK) {
            throw Failure((problem.empty() ? uc_strerror(error) : problem) + ", code at " +
                          hexadecimal(at - base) + " of the image");
        }
        if (at < TrapAddress || at >= TrapAddress + TrapSize) {
            throw Failure("the program stopped at " + hexadecimal(at));
        }
        return at;
    }

    // Plays one function of the system. Gives back where the program goes on.
    Word serve(Word index) {
        if (index >= imports.size()) {
            throw Failure("the program jumped into the system at an unknown place");
        }
        const auto function = functions.find(imports[index]);
        if (function == functions.end()) {
            throw Failure("no such function: " + imports[index]);
        }
        const Word back = getRegister(UC_ARM_REG_LR);
        const Result result = function->second(*this);
        setRegister(UC_ARM_REG_R0, result.low);
        setRegister(UC_ARM_REG_R1, result.high.value_or(0xDEAD0001));
        setRegister(UC_ARM_REG_R2, 0xDEAD0002);
        setRegister(UC_ARM_REG_R3, 0xDEAD0003);
        setRegister(UC_ARM_REG_R12, 0xDEAD000C);
        return back;
    }

    Word allocate(Word size, bool zeroed) {
        const Word room = (size + 15) & ~7U;
        if (room < size || room > HeapAddress + HeapSize - heapTop) {
            return 0;
        }
        const Word address = heapTop;
        heapTop += room;
        liveBlocks[address] = size;
        const std::vector<char> content(size, zeroed ? '\0' : '\xCD');
        write(address, content.data(), content.size());
        return address;
    }

    void release(Word address) {
        const auto block = liveBlocks.find(address);
        if (block == liveBlocks.end()) {
            throw Failure("freed what is not allocated: " + hexadecimal(address));
        }
        const std::vector<char> poison(block->second, '\xFD');
        write(address, poison.data(), poison.size());
        liveBlocks.erase(block);
    }

    Word reallocate(Word address, Word size) {
        const auto block = liveBlocks.find(address);
        if (block == liveBlocks.end()) {
            throw Failure("resized what is not allocated: " + hexadecimal(address));
        }
        const Word larger = allocate(size, false);
        if (larger != 0) {
            std::vector<char> content(std::min(size, block->second));
            read(address, content.data(), content.size());
            write(larger, content.data(), content.size());
            release(address);
        }
        return larger;
    }

    // The address of the entry that describes a resource, or 0.
    Word findResource(Word kind, Word name) const {
        Word directory = base + resources;
        for (const Word wanted : {kind, name}) {
            const int count = readInteger<std::uint16_t>(directory + 12) +
                              readInteger<std::uint16_t>(directory + 14);
            Word found = 0;
            for (int i = 0; i < count && found == 0; ++i) {
                const Word item = directory + 16 + 8 * static_cast<Word>(i);
                found = readWord(item) == wanted
                            ? base + resources + (readWord(item + 4) & 0x7FFFFFFF)
                            : 0;
            }
            if (found == 0) {
                return 0;
            }
            directory = found;
        }
        return base + resources + readWord(directory + 20);
    }

    Word loadString(Word identifier, Word target, Word capacity) {
        const Word described = findResource(StringTable, identifier / 16 + 1);
        if (described == 0) {
            return 0;
        }
        Word at = base + readWord(described);
        for (Word i = 0; i < identifier % 16; ++i) {
            at += 2 + 2 * readInteger<std::uint16_t>(at);
        }
        const Word length = std::min<Word>(readInteger<std::uint16_t>(at), capacity - 1);
        std::u16string text(length + 1, u'\0');
        read(at + 2, text.data(), 2 * length);
        write(target, text.data(), 2 * text.size());
        return length;
    }

    // A thread runs at once, to its end, with slots of its own.
    Word createThread(Word function, Word parameter) {
        std::map<Word, Word> own;
        std::swap(own, slots);
        call(function, {parameter});
        std::swap(own, slots);
        return ThreadHandle;
    }

    template <class Change>
    Result exchange(Change change) {
        const Word address = argument(0);
        const Word before = readWord(address);
        if (address % 4 != 0) {
            throw Failure("an interlocked function was given an unaligned address");
        }
        writeWord(address, change(before));
        return {before, {}};
    }

    Result roundDown() const {
        const auto bits = std::uint64_t(argument(1)) << 32 | argument(0);
        const auto result = std::bit_cast<std::uint64_t>(std::floor(std::bit_cast<double>(bits)));
        return {static_cast<Word>(result), static_cast<Word>(result >> 32)};
    }

    std::string readBytes(Word address, Word size) const {
        std::string bytes(size, '\0');
        read(address, bytes.data(), size);
        return bytes;
    }

    void add(const std::string& name, Function function) { functions[name] = std::move(function); }

    void addFunctions() {
        const auto core = [this](const char* name, Function function) {
            add(std::string("coredll.dll ") + name, std::move(function));
        };
        core("LocalAlloc", [](Machine& m) {
            return Result{m.allocate(m.argument(1), (m.argument(0) & 0x40) != 0), {}};
        });
        core("LocalReAlloc", [](Machine& m) {
            return Result{m.reallocate(m.argument(0), m.argument(1)), {}};
        });
        core("LocalFree", [](Machine& m) {
            m.release(m.argument(0));
            return Result{};
        });
        const Function move = [](Machine& m) {
            const std::string bytes = m.readBytes(m.argument(1), m.argument(2));
            m.write(m.argument(0), bytes.data(), bytes.size());
            return Result{m.argument(0), {}};
        };
        core("memcpy", move);
        core("memmove", move);
        core("memset", [](Machine& m) {
            const std::string bytes(m.argument(2), static_cast<char>(m.argument(1)));
            m.write(m.argument(0), bytes.data(), bytes.size());
            return Result{m.argument(0), {}};
        });
        core("memcmp", [](Machine& m) {
            const Word size = m.argument(2);
            const std::string left = m.readBytes(m.argument(0), size);
            const std::string right = m.readBytes(m.argument(1), size);
            return Result{static_cast<Word>(std::memcmp(left.data(), right.data(), size)), {}};
        });
        core("strlen", [](Machine& m) {
            return Result{static_cast<Word>(m.readNarrowText(m.argument(0)).size()), {}};
        });
        core("strcmp", [](Machine& m) {
            const std::string left = m.readNarrowText(m.argument(0));
            return Result{static_cast<Word>(left.compare(m.readNarrowText(m.argument(1)))), {}};
        });
        core("floor", [](Machine& m) { return m.roundDown(); });
        core("TlsCall", [](Machine& m) {
            if (m.argument(0) != 0) {
                throw Failure("an unexpected purpose of TlsCall");
            }
            return Result{m.nextSlot++, {}};
        });
        core("TlsGetValue", [](Machine& m) { return Result{m.slots[m.argument(0)], {}}; });
        core("TlsSetValue", [](Machine& m) {
            m.slots[m.argument(0)] = m.argument(1);
            return Result{1, {}};
        });
        core("InterlockedExchange", [](Machine& m) {
            const Word value = m.argument(1);
            return m.exchange([=](Word) { return value; });
        });
        core("InterlockedExchangeAdd", [](Machine& m) {
            const Word value = m.argument(1);
            return m.exchange([=](Word before) { return before + value; });
        });
        core("InterlockedTestExchange", [](Machine& m) {
            const Word expected = m.argument(1);
            const Word value = m.argument(2);
            return m.exchange([=](Word before) { return before == expected ? value : before; });
        });
        core("OutputDebugStringW", [](Machine& m) {
            std::string text = utf8(m.readText(m.argument(0)));
            std::erase(text, '\r');
            std::fputs(text.c_str(), stdout);
            return Result{};
        });
        core("TerminateProcess", [](Machine& m) -> Result {
            if (m.argument(0) != CurrentProcess) {
                throw Failure("TerminateProcess of another process");
            }
            throw ProcessEnd{m.argument(1)};
        });
        core("Sleep",
             [](Machine&) -> Result { throw Failure("the program waits, but nobody else runs"); });
        core("LoadStringW", [](Machine& m) {
            return Result{m.loadString(m.argument(1), m.argument(2), m.argument(3)), {}};
        });
        core("FindResourceW", [](Machine& m) {
            return Result{m.findResource(m.argument(2), m.argument(1)), {}};
        });
        core("LoadResource", [](Machine& m) {
            return Result{m.base + m.readWord(m.argument(1)), {}};
        });
        core("SizeofResource", [](Machine& m) {
            return Result{m.readWord(m.argument(1) + 4), {}};
        });
        core("CreateThread", [](Machine& m) {
            return Result{m.createThread(m.argument(2), m.argument(3)), {}};
        });
        core("WaitForSingleObject", [](Machine& m) {
            return Result{m.argument(0) == ThreadHandle ? 0U : ~0U, {}};
        });
        core("CloseHandle", [](Machine& m) { return Result{m.argument(0) == ThreadHandle, {}}; });
        core("RegisterClassW", [](Machine& m) {
            m.windowProcedure = m.readWord(m.argument(0) + 4);
            return Result{0xC001, {}};
        });
        core("CreateWindowExW", [](Machine& m) {
            return Result{m.argument(10) == m.base ? 0x10004U : 0U, {}};
        });
        core("DefWindowProcW", [](Machine&) { return Result{}; });
        core("SendMessageW", [](Machine& m) {
            return Result{m.call(m.windowProcedure,
                                 {m.argument(0), m.argument(1), m.argument(2), m.argument(3)}),
                          {}};
        });
        add("aygshell.dll #188", [](Machine& m) { return Result{m.argument(0) + 1, {}}; });
    }

    const Options options;
    uc_engine* engine = nullptr;
    Word base = 0;
    Word entry = 0;
    Word resources = 0;
    std::vector<std::string> imports;
    std::map<std::string, Function> functions;
    std::map<Word, Word> liveBlocks;
    Word heapTop = HeapAddress;
    std::map<Word, Word> slots;
    Word nextSlot = 4;
    Word windowProcedure = 0;
    std::string problem;
};

Options parseOptions(int count, char** words) {
    static const std::map<std::string, int> processors = {{"sa1110", UC_CPU_ARM_SA1110},
                                                          {"ti925t", UC_CPU_ARM_TI925T},
                                                          {"arm926", UC_CPU_ARM_926},
                                                          {"cortex-a8", UC_CPU_ARM_CORTEX_A8}};
    Options options;
    for (int i = 1; i < count; ++i) {
        const std::string word = words[i];
        const auto next = [&] {
            if (++i == count) {
                throw Failure(word + " needs a value");
            }
            return std::string(words[i]);
        };
        if (word == "--base") {
            options.base = static_cast<Word>(std::stoul(next(), nullptr, 0));
        } else if (word == "--processor") {
            options.processor = processors.at(next());
        } else if (word == "--arguments") {
            const std::string text = next();
            options.arguments.assign(text.begin(), text.end());
        } else if (word == "--thumb-caller") {
            options.thumbCaller = true;
        } else {
            options.executable = word;
        }
    }
    return options;
}
}  // namespace

int main(int count, char** words) {
    try {
        Machine machine(parseOptions(count, words));
        return static_cast<int>(machine.run());
    } catch (const std::exception& error) {
        std::fflush(stdout);
        std::fprintf(stderr, "arm_machine: %s\n", error.what());
        return FailureExitCode;
    }
}
