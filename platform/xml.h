// XML documents in files, by the platform's document object.
#pragma once

#include "platform/windows.h"

struct IXMLDOMDocument;

namespace platform {

// Reads a file into a document (IXMLDOMDocument::load). S_FALSE, or a failure, leaves an empty
// document.
HRESULT LoadXmlFile(IXMLDOMDocument* document, const wchar_t* path);

// Writes a document into a file, replacing what it held (IXMLDOMDocument::save).
HRESULT SaveXmlFile(IXMLDOMDocument* document, const wchar_t* path);

}  // namespace platform
