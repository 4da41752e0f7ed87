// The registry.
#include "call.h"
#include "machine.h"
#include "stop.h"

namespace emulator {

namespace {

std::uint64_t OpenKey(Call& call) {
    auto* shown = call.Out<Address>(4);
    HKEY key = nullptr;
    const LSTATUS result =
        RegOpenKeyExW(call.HandleAt<HKEY>(0), call.String(1), 0, call.Word(3), &key);
    if (result == ERROR_SUCCESS) {
        *shown = static_cast<Address>(Result(key));
    }
    return Result(result);
}

std::uint64_t MakeKey(Call& call) {
    auto* shown = call.Out<Address>(7);
    HKEY key = nullptr;
    // Windows CE wants no access rights but takes them; the desktop wants them.
    const REGSAM access = call.Word(5) ? call.Word(5) : KEY_ALL_ACCESS;
    const LSTATUS result = RegCreateKeyExW(call.HandleAt<HKEY>(0), call.String(1), 0, nullptr,
                                           call.Word(4), access, nullptr, &key, call.Out<DWORD>(8));
    if (result == ERROR_SUCCESS) {
        *shown = static_cast<Address>(Result(key));
    }
    return Result(result);
}

std::uint64_t ReadValue(Call& call) {
    auto* size = call.Out<DWORD>(5);
    auto* bytes = size ? static_cast<BYTE*>(call.Bytes(4, *size, Access::Write)) : nullptr;
    return Result(RegQueryValueExW(call.HandleAt<HKEY>(0), call.String(1), nullptr,
                                   call.Out<DWORD>(3), bytes, size));
}

std::uint64_t WriteValue(Call& call) {
    return Result(RegSetValueExW(call.HandleAt<HKEY>(0), call.String(1), 0, call.Word(3),
                                 static_cast<BYTE*>(call.Bytes(4, call.Word(5), Access::Read)),
                                 call.Word(5)));
}

std::uint64_t ListKeys(Call& call) {
    auto* size = call.Out<DWORD>(3);
    return Result(RegEnumKeyExW(call.HandleAt<HKEY>(0), call.Word(1), call.Room(2, *size), size,
                                nullptr, nullptr, nullptr, call.Out<FILETIME>(7)));
}

std::uint64_t ListValues(Call& call) {
    auto* size = call.Out<DWORD>(3);
    auto* bytes = call.Out<DWORD>(7);
    return Result(RegEnumValueW(
        call.HandleAt<HKEY>(0), call.Word(1), call.Room(2, *size), size, nullptr,
        call.Out<DWORD>(5),
        bytes ? static_cast<BYTE*>(call.Bytes(6, *bytes, Access::Write)) : nullptr, bytes));
}

const Services services = {
    {"RegOpenKeyExW", OpenKey},
    {"RegCreateKeyExW", MakeKey},
    {"RegCloseKey", Direct<RegCloseKey>},
    {"RegFlushKey", Direct<RegFlushKey>},
    {"RegQueryValueExW", ReadValue},
    {"RegSetValueExW", WriteValue},
    {"RegDeleteKeyW", Direct<RegDeleteKeyW>},
    {"RegDeleteValueW", Direct<RegDeleteValueW>},
    {"RegEnumKeyExW", ListKeys},
    {"RegEnumValueW", ListValues},
};

}  // namespace

}  // namespace emulator
