#include "platform/xml.h"

#include <msxml.h>

#include "platform/bstr.h"

namespace platform {

namespace {

// A variant that borrows a text, as the words that a call passes one after another. The compiler
// would begin a variant itself at an even register, which Windows CE does not.
struct TextVariant {
    uint32_t words[4];
};
static_assert(sizeof(VARIANT) == sizeof(TextVariant) && offsetof(VARIANT, bstrVal) == 8);

TextVariant MakeTextVariant(BSTR text) {
    return TextVariant{{VT_BSTR, 0, reinterpret_cast<uint32_t>(text), 0}};
}

// Where the two functions stand in the interface's table.
constexpr size_t loadSlot = 58;
constexpr size_t saveSlot = 66;
using LoadFunction = HRESULT(IXMLDOMDocument*, TextVariant, VARIANT_BOOL*);
using SaveFunction = HRESULT(IXMLDOMDocument*, TextVariant);

template <typename Function>
Function* FunctionOf(IXMLDOMDocument* document, size_t slot) {
    void** const table = *reinterpret_cast<void***>(document);
    return reinterpret_cast<Function*>(table[slot]);
}

}  // namespace

HRESULT LoadXmlFile(IXMLDOMDocument* document, const wchar_t* path) {
    const UniqueBstr file(SysAllocString(path));
    VARIANT_BOOL loaded = VARIANT_FALSE;
    return file ? FunctionOf<LoadFunction>(document, loadSlot)(document,
                                                               MakeTextVariant(file.Get()), &loaded)
                : E_OUTOFMEMORY;
}

HRESULT SaveXmlFile(IXMLDOMDocument* document, const wchar_t* path) {
    const UniqueBstr file(SysAllocString(path));
    return file
               ? FunctionOf<SaveFunction>(document, saveSlot)(document, MakeTextVariant(file.Get()))
               : E_OUTOFMEMORY;
}

}  // namespace platform
