#include "com_objects.h"

#include <cstring>
#include <map>
#include <optional>

#include "call.h"
#include "machine.h"
#include "paths.h"
#include "stop.h"
// Behind the system's own declarations.
#include <msxml.h>
#include <objbase.h>
#include <oleauto.h>

namespace emulator {

namespace {

// The interfaces that are served, each with the number of its functions.
enum class Kind { Node, Document, Element, List };
struct Interface {
    Kind kind;
    const char* name;
    const IID* id;
    unsigned functions;
};
const Interface interfaces[] = {
    {Kind::Node, "IXMLDOMNode", &IID_IXMLDOMNode, 43},
    {Kind::Document, "IXMLDOMDocument", &IID_IXMLDOMDocument, 76},
    {Kind::Element, "IXMLDOMElement", &IID_IXMLDOMElement, 51},
    {Kind::List, "IXMLDOMNodeList", &IID_IXMLDOMNodeList, 12},
};

// An object's memory in the program is one word, the address of its table.
struct Shown {
    IUnknown* object;
    unsigned references;
};
std::map<Address, Shown>& Objects() {
    static std::map<Address, Shown> objects;
    return objects;
}

const Interface* InterfaceOf(const GUID& id) {
    for (const Interface& candidate : interfaces) {
        if (*candidate.id == id) {
            return &candidate;
        }
    }
    return nullptr;
}

Address TableOf(const Interface& served) {
    static std::map<const Interface*, Address> tables;
    Address& table = tables[&served];
    if (table == 0) {
        table = TheMachine().heap.Allocate(4 * served.functions, true, 0);
        for (unsigned slot = 0; slot < served.functions; ++slot) {
            PointerTo<Address>(table)[slot] =
                TrapForMethod(std::string(served.name) + "#" + std::to_string(slot));
        }
    }
    return table;
}

Shown& ShownAt(const Call& call, unsigned index) {
    const auto found = Objects().find(call.Word(index));
    if (found == Objects().end()) {
        Stop("%s: %08x is no object", call.Name(), call.Word(index));
    }
    return found->second;
}

template <class Type>
Type* This(const Call& call) {
    return static_cast<Type*>(ShownAt(call, 0).object);
}

// Shows the object that a call has given.
template <class Type>
std::uint64_t Give(Call& call, unsigned index, HRESULT result, Type* object) {
    call.Give(index, object ? ShowObject(object, __uuidof(Type)) : Address{0});
    return Result(result);
}

// A text of the program as one of this process.
class HostText {
 public:
    explicit HostText(Address text)
        : text_(text ? SysAllocString(PointerTo<WCHAR>(text)) : nullptr) {}
    ~HostText() { SysFreeString(text_); }
    HostText(const HostText&) = delete;
    HostText& operator=(const HostText&) = delete;
    operator BSTR() const { return text_; }

 private:
    BSTR text_;
};

HostText TextAt(const Call& call, unsigned index) {
    if (call.Word(index) != 0) {
        TheMachine().memory.RequireText(call.Word(index), call.Name());
    }
    return HostText(call.Word(index));
}

// A variant that was passed as four words from an argument on: only texts are served.
Address TextOfVariant(const Call& call, unsigned index) {
    if ((call.Word(index) & 0xFFFF) != VT_BSTR) {
        Stop("%s: a variant of type %u is not served", call.Name(), call.Word(index) & 0xFFFF);
    }
    TheMachine().memory.RequireText(call.Word(index + 2), call.Name());
    return call.Word(index + 2);
}

std::uint64_t Query(Call& call) {
    const GUID id = *call.In<GUID>(1);
    call.Give(2, Address{0});
    IUnknown* found = nullptr;
    const HRESULT result =
        This<IUnknown>(call)->QueryInterface(id, reinterpret_cast<void**>(&found));
    if (SUCCEEDED(result)) {
        call.Give(2, ShowObject(found, id));
    }
    return Result(result);
}

std::uint64_t AddReference(Call& call) {
    return ++ShownAt(call, 0).references;
}

std::uint64_t Release(Call& call) {
    Shown& shown = ShownAt(call, 0);
    if (--shown.references != 0) {
        return shown.references;
    }
    shown.object->Release();
    Objects().erase(call.Word(0));
    TheMachine().heap.Free(call.Word(0), call.Caller(), call.Name());
    return 0;
}

std::uint64_t AppendChild(Call& call) {
    auto* child = static_cast<IXMLDOMNode*>(ShownAt(call, 1).object);
    IXMLDOMNode* appended = nullptr;
    const HRESULT result = This<IXMLDOMNode>(call)->appendChild(child, &appended);
    if (call.Word(2) == 0) {
        return Result(result);
    }
    return Give(call, 2, result, appended);
}

std::uint64_t SelectNodes(Call& call) {
    IXMLDOMNodeList* list = nullptr;
    const HRESULT result = This<IXMLDOMNode>(call)->selectNodes(TextAt(call, 1), &list);
    return Give(call, 2, result, list);
}

std::uint64_t SelectSingleNode(Call& call) {
    IXMLDOMNode* node = nullptr;
    const HRESULT result = This<IXMLDOMNode>(call)->selectSingleNode(TextAt(call, 1), &node);
    return Give(call, 2, result, node);
}

std::uint64_t GetDocumentElement(Call& call) {
    IXMLDOMElement* element = nullptr;
    const HRESULT result = This<IXMLDOMDocument>(call)->get_documentElement(&element);
    return Give(call, 1, result, element);
}

std::uint64_t CreateElement(Call& call) {
    IXMLDOMElement* element = nullptr;
    const HRESULT result = This<IXMLDOMDocument>(call)->createElement(TextAt(call, 1), &element);
    return Give(call, 2, result, element);
}

std::uint64_t Load(Call& call) {
    const HostText path(TextOfVariant(call, 1));
    const Text full = DrivePath(static_cast<const WCHAR*>(static_cast<BSTR>(path)));
    VARIANT file = {};
    V_VT(&file) = VT_BSTR;
    V_BSTR(&file) = SysAllocString(full.c_str());
    VARIANT_BOOL loaded = VARIANT_FALSE;
    const HRESULT result = This<IXMLDOMDocument>(call)->load(file, &loaded);
    VariantClear(&file);
    call.Give(5, loaded);
    return Result(result);
}

std::uint64_t Save(Call& call) {
    const HostText path(TextOfVariant(call, 1));
    const Text full = DrivePath(static_cast<const WCHAR*>(static_cast<BSTR>(path)));
    VARIANT file = {};
    V_VT(&file) = VT_BSTR;
    V_BSTR(&file) = SysAllocString(full.c_str());
    const HRESULT result = This<IXMLDOMDocument>(call)->save(file);
    VariantClear(&file);
    return Result(result);
}

std::uint64_t PutAsync(Call& call) {
    return Result(This<IXMLDOMDocument>(call)->put_async(static_cast<VARIANT_BOOL>(call.Word(1))));
}

std::uint64_t GetAttribute(Call& call) {
    VARIANT value = {};
    const HRESULT result = This<IXMLDOMElement>(call)->getAttribute(TextAt(call, 1), &value);
    DeviceVariant shown = {};
    shown.vt = V_VT(&value);
    if (V_VT(&value) == VT_BSTR) {
        shown.value =
            MakeAutomationText(V_BSTR(&value), SysStringLen(V_BSTR(&value)), call.Caller());
    }
    call.Give(2, shown);
    VariantClear(&value);
    return Result(result);
}

std::uint64_t SetAttribute(Call& call) {
    const HostText text(TextOfVariant(call, 2));
    VARIANT value = {};
    V_VT(&value) = VT_BSTR;
    V_BSTR(&value) = text;
    return Result(This<IXMLDOMElement>(call)->setAttribute(TextAt(call, 1), value));
}

std::uint64_t NextNode(Call& call) {
    IXMLDOMNode* node = nullptr;
    const HRESULT result = This<IXMLDOMNodeList>(call)->nextNode(&node);
    return Give(call, 1, result, node);
}

// The first 43 functions are the same for nodes, documents and elements.
const Services services = {
    {"IXMLDOMNode#0", Query},
    {"IXMLDOMNode#1", AddReference},
    {"IXMLDOMNode#2", Release},
    {"IXMLDOMNode#21", AppendChild},
    {"IXMLDOMNode#36", SelectNodes},
    {"IXMLDOMNode#37", SelectSingleNode},
    {"IXMLDOMDocument#0", Query},
    {"IXMLDOMDocument#1", AddReference},
    {"IXMLDOMDocument#2", Release},
    {"IXMLDOMDocument#21", AppendChild},
    {"IXMLDOMDocument#36", SelectNodes},
    {"IXMLDOMDocument#37", SelectSingleNode},
    {"IXMLDOMDocument#45", GetDocumentElement},
    {"IXMLDOMDocument#47", CreateElement},
    {"IXMLDOMDocument#58", Load},
    {"IXMLDOMDocument#63", PutAsync},
    {"IXMLDOMDocument#66", Save},
    {"IXMLDOMElement#0", Query},
    {"IXMLDOMElement#1", AddReference},
    {"IXMLDOMElement#2", Release},
    {"IXMLDOMElement#21", AppendChild},
    {"IXMLDOMElement#44", GetAttribute},
    {"IXMLDOMElement#45", SetAttribute},
    {"IXMLDOMNodeList#0", Query},
    {"IXMLDOMNodeList#1", AddReference},
    {"IXMLDOMNodeList#2", Release},
    {"IXMLDOMNodeList#9", NextNode},
};

}  // namespace

Address MakeAutomationText(const WCHAR* text, Address length, Address owner) {
    const Address block = TheMachine().heap.Allocate(2 * length + 6, true, owner);
    if (block == 0) {
        return 0;
    }
    *PointerTo<Address>(block) = 2 * length;
    if (text) {
        std::memcpy(PointerTo(block + 4), text, 2 * length);
    }
    return block + 4;
}

Address ShowObject(IUnknown* object, const GUID& id) {
    const Interface* served = InterfaceOf(id);
    if (!served) {
        Stop("the interface {%08x-...} is not served", static_cast<unsigned>(id.Data1));
    }
    const Address shown = TheMachine().heap.Allocate(4, true, 0);
    *PointerTo<Address>(shown) = TableOf(*served);
    Objects()[shown] = {object, 1};
    return shown;
}

}  // namespace emulator
