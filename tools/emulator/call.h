// System calls: how their arguments are read, and the tables that serve them.
//
// Most calls are served by the function of the same name of this process: Direct<Function> reads as
// many arguments as it has parameters, each as its type says. Structures that look alike in 32 and
// 64 bits (they hold no pointer and no handle) are used in place, after their memory was checked.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <type_traits>
#include <utility>

#include "address.h"
#include "host.h"
#include "memory.h"

namespace emulator {

class Engine;

// Set in every number of a system color.
inline constexpr Address systemColorMark = 0x40000000;

// The call being served. Its arguments are read when it is made and never again: serving it may run
// the program once more, which changes the registers and may change the stack.
class Call {
 public:
    Call(const Engine& engine, const char* name);

    const char* Name() const { return name_; }
    Address Word(unsigned index) const;
    int Signed(unsigned index) const { return static_cast<int>(Word(index)); }
    // Where the program made it.
    Address Caller() const { return caller_; }

    // The memory at an argument, checked; null for the address 0.
    void* Bytes(unsigned index, Address size, Access access) const;
    template <class Type>
    Type* In(unsigned index) const {
        return static_cast<Type*>(Bytes(index, sizeof(Type), Access::Read));
    }
    template <class Type>
    Type* Out(unsigned index) const {
        return static_cast<Type*>(Bytes(index, sizeof(Type), Access::Write));
    }
    // Writes a result to the memory at an argument, unless that is 0. For calls that may run the
    // program: what it has freed meanwhile must not be written, so this looks at the memory now.
    template <class Type>
    void Give(unsigned index, const Type& value) const {
        if (auto* target = Out<Type>(index)) {
            *target = value;
        }
    }
    // A text with its end; null for 0, and a number below 65536 as it is.
    const WCHAR* String(unsigned index) const;
    // Room for so many characters.
    WCHAR* Room(unsigned index, Address characters) const {
        return static_cast<WCHAR*>(Bytes(index, 2 * characters, Access::Write));
    }

    // Handles of windows, the kernel and the registry have 32 significant bits and a sign.
    template <class Handle = HANDLE>
    Handle HandleAt(unsigned index) const {
        return reinterpret_cast<Handle>(static_cast<std::intptr_t>(Signed(index)));
    }
    // A handle of the kernel, with the numbers that stand for the current thread and process.
    HANDLE KernelHandle(unsigned index) const;
    // Those of drawing have none.
    template <class Handle = HGDIOBJ>
    Handle Drawing(unsigned index) const {
        return reinterpret_cast<Handle>(static_cast<std::uintptr_t>(Word(index)));
    }

 private:
    static constexpr unsigned mostArguments = 12;

    const char* name_;
    Address caller_;
    Address words_[mostArguments];
    unsigned count_;
};

using Server = std::uint64_t (*)(Call&);

struct Service {
    // "GetParent" for coredll, "toolhelp!Process32First" for the others, "aygshell#56" for numbers,
    // "call at f000e3c8" for a call that is no library's.
    const char* name;
    Server server;
};

// A file's table of calls, made known before the program starts.
class Services {
 public:
    Services(std::initializer_list<Service> services);
};

// Serves the program's import of this number. The upper word of the result is r1's.
std::uint64_t ServeCall(Engine& engine, unsigned index);
// The trap for a function of an object, "IUnknown#2".
Address TrapForMethod(const std::string& name);
// The trap for a function that the program looks up in a library, by its name or "#12"; 0 where the
// device lacks it. Stops the run for one that the list of the device's exports does not name.
Address TrapForExport(const std::string& library, const std::string& name);
// Whether functions may be looked up in a library at all.
bool HasLateExports(const std::string& library);
// Reads which functions the device's libraries export. The device must be described already.
void ReadExports(const std::string& path);
// Names the calls that the program imports and nobody serves; false when there are any.
bool PrintMissingCalls();
void PrintCoveredCalls();

// The trap whose call runs a procedure of this process, and back; both give 0 or null for others.
Address TrapForProcedure(WNDPROC procedure);
WNDPROC ProcedureOfTrap(Address address);

// The result of a call that gives a handle or a number.
template <class Type>
std::uint64_t Result(Type value) {
    if constexpr (std::is_pointer_v<Type>) {
        return static_cast<Address>(reinterpret_cast<std::uintptr_t>(value));
    } else {
        return static_cast<Address>(value);
    }
}

// Structures that are the same for the program and for this process.
template <class Type>
inline constexpr bool sameLayout = std::is_arithmetic_v<Type>;
#define EMULATOR_SAME_LAYOUT(Type, size)           \
    template <>                                    \
    inline constexpr bool sameLayout<Type> = true; \
    static_assert(sizeof(Type) == size)
EMULATOR_SAME_LAYOUT(RECT, 16);
EMULATOR_SAME_LAYOUT(POINT, 8);
EMULATOR_SAME_LAYOUT(SIZE, 8);
EMULATOR_SAME_LAYOUT(FILETIME, 8);
EMULATOR_SAME_LAYOUT(SYSTEMTIME, 16);
EMULATOR_SAME_LAYOUT(LOGFONTW, 92);
EMULATOR_SAME_LAYOUT(TEXTMETRICW, 60);
EMULATOR_SAME_LAYOUT(MONITORINFO, 40);
EMULATOR_SAME_LAYOUT(ULARGE_INTEGER, 8);
EMULATOR_SAME_LAYOUT(SCROLLINFO, 28);
EMULATOR_SAME_LAYOUT(GUID, 16);
EMULATOR_SAME_LAYOUT(WIN32_FILE_ATTRIBUTE_DATA, 36);
#undef EMULATOR_SAME_LAYOUT

namespace detail {

template <class Type>
struct IsDrawingHandle
    : std::bool_constant<std::is_same_v<Type, HDC> || std::is_same_v<Type, HBITMAP> ||
                         std::is_same_v<Type, HBRUSH> || std::is_same_v<Type, HFONT> ||
                         std::is_same_v<Type, HPEN> || std::is_same_v<Type, HRGN>> {};

// The handle types of the headers point to structures of one int.
template <class Type>
struct IsHandleStructure
    : std::bool_constant<std::is_same_v<Type, std::remove_pointer_t<HWND>> ||
                         std::is_same_v<Type, std::remove_pointer_t<HMENU>> ||
                         std::is_same_v<Type, std::remove_pointer_t<HKEY>> ||
                         std::is_same_v<Type, std::remove_pointer_t<HICON>> ||
                         std::is_same_v<Type, std::remove_pointer_t<HMONITOR>> ||
                         std::is_same_v<Type, std::remove_pointer_t<HACCEL>> ||
                         std::is_same_v<Type, void>> {};

template <class Type>
Type Argument(const Call& call, unsigned index) {
    if constexpr (IsDrawingHandle<Type>::value) {
        return call.Drawing<Type>(index);
    } else if constexpr (std::is_same_v<Type, const WCHAR*>) {
        return call.String(index);
    } else if constexpr (std::is_same_v<Type, HANDLE>) {
        return call.KernelHandle(index);
    } else if constexpr (std::is_pointer_v<Type>) {
        using Pointed = std::remove_cv_t<std::remove_pointer_t<Type>>;
        if constexpr (IsHandleStructure<Pointed>::value) {
            return call.HandleAt<Type>(index);
        } else {
            static_assert(sameLayout<Pointed>, "this structure needs a server of its own");
            return std::is_const_v<std::remove_pointer_t<Type>> ? call.In<Pointed>(index)
                                                                : call.Out<Pointed>(index);
        }
    } else if constexpr (std::is_signed_v<Type>) {
        return static_cast<Type>(call.Signed(index));
    } else {
        return static_cast<Type>(call.Word(index));
    }
}

template <class Returned, class... Parameters, size_t... Indices>
std::uint64_t Invoke(Returned(WINAPI* function)(Parameters...), Call& call,
                     std::index_sequence<Indices...>) {
    if constexpr (std::is_void_v<Returned>) {
        function(Argument<Parameters>(call, static_cast<unsigned>(Indices))...);
        return 0;
    } else {
        return Result(function(Argument<Parameters>(call, static_cast<unsigned>(Indices))...));
    }
}

template <class Returned, class... Parameters>
std::uint64_t Invoke(Returned(WINAPI* function)(Parameters...), Call& call) {
    return Invoke(function, call, std::index_sequence_for<Parameters...>());
}

}  // namespace detail

template <auto Function>
std::uint64_t Direct(Call& call) {
    return detail::Invoke(Function, call);
}

}  // namespace emulator
