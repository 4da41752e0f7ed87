#include "platform/xml.h"

#include <msxml.h>

#include "platform/bstr.h"
#include "platform/desktop/paths.h"

namespace platform {

namespace {

// A variant that borrows the text.
VARIANT TextVariant(BSTR text) {
    VARIANT variant = {};
    variant.vt = VT_BSTR;
    variant.bstrVal = text;
    return variant;
}

UniqueBstr DesktopPathText(const wchar_t* path) {
    return UniqueBstr(SysAllocString(desktop::ToDesktopPath(path).c_str()));
}

}  // namespace

HRESULT LoadXmlFile(IXMLDOMDocument* document, const wchar_t* path) {
    const UniqueBstr file = DesktopPathText(path);
    VARIANT_BOOL loaded = VARIANT_FALSE;
    return file ? document->load(TextVariant(file.Get()), &loaded) : E_OUTOFMEMORY;
}

HRESULT SaveXmlFile(IXMLDOMDocument* document, const wchar_t* path) {
    const UniqueBstr file = DesktopPathText(path);
    return file ? document->save(TextVariant(file.Get())) : E_OUTOFMEMORY;
}

}  // namespace platform
