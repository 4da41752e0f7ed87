// Component objects: starting, texts and variants of automation, and the creation of objects.
#include <cstring>

#include "call.h"
#include "com_objects.h"
#include "machine.h"
#include "stop.h"
// Behind the system's own declarations.
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

std::uint64_t ClassOfProgram(Call& call) {
    return Result(CLSIDFromProgID(call.String(0), call.Out<GUID>(1)));
}

std::uint64_t CreateObject(Call& call) {
    const GUID id = *call.In<GUID>(3);
    call.Give(4, Address{0});
    IUnknown* object = nullptr;
    const HRESULT result = CoCreateInstance(*call.In<GUID>(0), nullptr, CLSCTX_INPROC_SERVER, id,
                                            reinterpret_cast<void**>(&object));
    if (SUCCEEDED(result)) {
        call.Give(4, ShowObject(object, id));
    }
    return Result(result);
}

std::uint64_t AllocateText(Call& call) {
    if (call.Word(0) == 0) {
        return 0;
    }
    const Address length = TheMachine().memory.RequireText(call.Word(0), call.Name());
    return MakeAutomationText(PointerTo<WCHAR>(call.Word(0)), length, call.Caller());
}

std::uint64_t AllocateTextOfLength(Call& call) {
    const auto* text = static_cast<WCHAR*>(call.Bytes(0, 2 * call.Word(1), Access::Read));
    return MakeAutomationText(text, call.Word(1), call.Caller());
}

void FreeAutomationText(const Call& call, Address text) {
    if (text != 0) {
        TheMachine().heap.Free(text - 4, call.Caller(), call.Name());
    }
}

std::uint64_t FreeText(Call& call) {
    FreeAutomationText(call, call.Word(0));
    return 0;
}

std::uint64_t LengthOfText(Call& call) {
    if (call.Word(0) == 0) {
        return 0;
    }
    TheMachine().heap.SizeOf(call.Word(0) - 4, call.Name());
    return *PointerTo<Address>(call.Word(0) - 4) / 2;
}

std::uint64_t StartVariant(Call& call) {
    *call.Out<DeviceVariant>(0) = {};
    return 0;
}

std::uint64_t ClearVariant(Call& call) {
    auto* variant = call.Out<DeviceVariant>(0);
    if (variant->vt == VT_BSTR) {
        FreeAutomationText(call, variant->value);
    } else if (variant->vt == VT_DISPATCH || variant->vt == VT_UNKNOWN) {
        Stop("VariantClear: objects are not served");
    }
    *variant = {};
    return S_OK;
}

const Services services = {
    {"ole32!CoInitializeEx", StartCom},
    {"ole32!CoUninitialize", EndCom},
    {"ole32!CLSIDFromProgID", ClassOfProgram},
    {"ole32!CoCreateInstance", CreateObject},
    {"oleaut32!GetErrorInfo", NoErrorObject},
    {"oleaut32!SysAllocString", AllocateText},
    {"oleaut32!SysAllocStringLen", AllocateTextOfLength},
    {"oleaut32!SysFreeString", FreeText},
    {"oleaut32!SysStringLen", LengthOfText},
    {"oleaut32!VariantInit", StartVariant},
    {"oleaut32!VariantClear", ClearVariant},
};

}  // namespace

}  // namespace emulator
