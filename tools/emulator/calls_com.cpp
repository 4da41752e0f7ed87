// Component objects.
#include <cstring>

#include "call.h"
#include "machine.h"

#include <objbase.h>
#include <oleauto.h>

namespace emulator {

namespace {

std::uint64_t StartCom(Call& call) {
    return Result(CoInitializeEx(nullptr, call.Word(1)));
}

std::uint64_t EndCom(Call&) {
    CoUninitialize();
    return 0;
}

std::uint64_t NoErrorObject(Call& call) {
    *call.Out<Address>(1) = 0;
    return S_FALSE;
}

// A text of automation: its length in bytes stands before its characters.
std::uint64_t MakeText(Call& call, const WCHAR* text, Address length) {
    const Address block = TheMachine().heap.Allocate(2 * length + 6, true, call.Caller());
    if (!block) {
        return 0;
    }
    *PointerTo<Address>(block) = 2 * length;
    if (text) {
        std::memcpy(PointerTo(block + 4), text, 2 * length);
    }
    return block + 4;
}

std::uint64_t AllocateText(Call& call) {
    if (call.Word(0) == 0) {
        return 0;
    }
    const Address length = TheMachine().memory.RequireText(call.Word(0), call.Name());
    return MakeText(call, PointerTo<WCHAR>(call.Word(0)), length);
}

std::uint64_t AllocateTextOfLength(Call& call) {
    return MakeText(call, static_cast<WCHAR*>(call.Bytes(0, 2 * call.Word(1), Access::Read)),
                    call.Word(1));
}

std::uint64_t FreeText(Call& call) {
    if (call.Word(0) != 0) {
        TheMachine().heap.Free(call.Word(0) - 4, call.Caller(), call.Name());
    }
    return 0;
}

std::uint64_t LengthOfText(Call& call) {
    if (call.Word(0) == 0) {
        return 0;
    }
    TheMachine().heap.SizeOf(call.Word(0) - 4, call.Name());
    return *PointerTo<Address>(call.Word(0) - 4) / 2;
}

const Services services = {
    {"ole32!CoInitializeEx", StartCom},
    {"ole32!CoUninitialize", EndCom},
    {"oleaut32!GetErrorInfo", NoErrorObject},
    {"oleaut32!SysAllocString", AllocateText},
    {"oleaut32!SysAllocStringLen", AllocateTextOfLength},
    {"oleaut32!SysFreeString", FreeText},
    {"oleaut32!SysStringLen", LengthOfText},
};

}  // namespace

}  // namespace emulator
