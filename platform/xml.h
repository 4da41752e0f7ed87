// XML documents in files, by the platform's document object.
#pragma once

#include "platform/handles.h"
#include "platform/windows.h"
// Behind the platform's own declarations.
#include <oleauto.h>

struct IXMLDOMDocument;

namespace platform {

// A text of COM (SysAllocString, SysFreeString).
inline void FreeText(BSTR text) {
    SysFreeString(text);
}
using UniqueText = Unique<BSTR, FreeText>;

// Reads a file into a document (IXMLDOMDocument::load). S_FALSE, or a failure, leaves an empty
// document.
HRESULT LoadXmlFile(IXMLDOMDocument* document, const wchar_t* path);

// Writes a document into a file, replacing what it held (IXMLDOMDocument::save).
HRESULT SaveXmlFile(IXMLDOMDocument* document, const wchar_t* path);

}  // namespace platform
