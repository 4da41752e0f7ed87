#include "views/apps/hidden_app_list.h"

#include <msxml.h>
#include <shlobj.h>

#include <algorithm>

#include "faults/fault.h"
#include "platform/bstr.h"
#include "platform/files.h"
#include "platform/handles.h"
#include "platform/processes.h"
#include "platform/shell.h"
#include "platform/xml.h"
#include "res/resource.h"
#include "text/comparison.h"
#include "text/resources.h"

namespace views {

namespace {

constexpr wchar_t fileName[] = L"\\hiddenapps.xml";
// What is being written, until it takes the file's place.
constexpr wchar_t newSuffix[] = L".new";
// A copy of a file that could not be read and was replaced.
constexpr wchar_t backupSuffix[] = L".bak";

constexpr wchar_t documentProgram[] = L"Msxml2.FreeThreadedDOMDocument";
constexpr CLSID plainDocument = {
    0x2933BF90, 0x7B36, 0x11D2, {0xB2, 0x0E, 0x00, 0xC0, 0x4F, 0x98, 0x3E, 0x60}};
constexpr IID documentInterface = {
    0x2933BF81, 0x7B36, 0x11D2, {0xB2, 0x0E, 0x00, 0xC0, 0x4F, 0x98, 0x3E, 0x60}};
constexpr IID elementInterface = {
    0x2933BF86, 0x7B36, 0x11D2, {0xB2, 0x0E, 0x00, 0xC0, 0x4F, 0x98, 0x3E, 0x60}};

using Document = platform::ComPointer<IXMLDOMDocument>;
using Element = platform::ComPointer<IXMLDOMElement>;
using Node = platform::ComPointer<IXMLDOMNode>;

HRESULT ThrowIfFailed(HRESULT result) {
    if (FAILED(result)) {
        throw faults::COMFault(result);
    }
    return result;
}

// A text for a COM call. Throws std::bad_alloc.
platform::UniqueBstr MakeBstr(const wchar_t* text) {
    platform::UniqueBstr made(SysAllocString(text));
    if (!made) {
        throw std::bad_alloc();
    }
    return made;
}

// A variant that a COM call fills in (VariantInit, VariantClear).
class ComVariant {
 public:
    ComVariant() { VariantInit(&variant_); }
    ~ComVariant() { VariantClear(&variant_); }
    ComVariant(const ComVariant&) = delete;
    ComVariant& operator=(const ComVariant&) = delete;
    VARIANT* Receive() { return &variant_; }
    // Empty when it holds no text.
    std::wstring Text() const {
        return variant_.vt == VT_BSTR ? platform::TextOfBstr(variant_.bstrVal) : std::wstring();
    }

 private:
    VARIANT variant_;
};

Document CreateDocument() {
    Document document;
    CLSID program;
    HRESULT result = CLSIDFromProgID(documentProgram, &program);
    if (result == CO_E_CLASSSTRING) {
        program = plainDocument;
    } else {
        ThrowIfFailed(result);
    }
    ThrowIfFailed(CoCreateInstance(program, nullptr, CLSCTX_ALL, documentInterface,
                                   reinterpret_cast<void**>(document.Receive())));
    if (!document) {
        throw faults::COMFault(E_UNEXPECTED);
    }
    return document;
}

bool IsMissing(const std::wstring& path) {
    return GetFileAttributesW(path.c_str()) == INVALID_FILE_ATTRIBUTES;
}

bool Read(const Document& document, const std::wstring& path) {
    const HRESULT loaded = platform::LoadXmlFile(document.Get(), path.c_str());
    // For want of memory nobody knows what the file holds.
    if (loaded == E_OUTOFMEMORY) {
        ThrowIfFailed(loaded);
    }
    return loaded == S_OK;
}

// What a file held when it was opened: nothing that can be read leaves an empty document.
struct OpenedFile {
    Document document;
    bool readable;
};

OpenedFile OpenFile(const std::wstring& path) {
    OpenedFile file = {CreateDocument(), false};
    ThrowIfFailed(file.document->put_async(VARIANT_FALSE));
    // A save that was cut off between the old file's end and the new one's taking its place. What
    // cannot be read is the beginning of a first list, and stays where it is.
    const std::wstring next = path + newSuffix;
    if (IsMissing(path) && !IsMissing(next) && Read(file.document, next)) {
        MoveFileW(next.c_str(), path.c_str());
    }
    file.readable = Read(file.document, path);
    return file;
}

std::wstring AttributeOf(const Element& element, const wchar_t* name) {
    ComVariant value;
    ThrowIfFailed(element->getAttribute(MakeBstr(name).Get(), value.Receive()));
    return value.Text();
}

// The element that holds the entries; a document without any element gets one.
Node RootOf(const Document& document) {
    const platform::UniqueBstr name = MakeBstr(L"hide");
    Node root;
    if (ThrowIfFailed(document->selectSingleNode(name.Get(), root.Receive())) == S_OK && root) {
        return root;
    }
    Element other;
    if (document->get_documentElement(other.Receive()) == S_OK && other) {
        // Some other program's file: a document has one outermost element.
        throw faults::W32Fault(faults::ResultFromError(ERROR_INVALID_DATA));
    }
    Element element;
    ThrowIfFailed(document->createElement(name.Get(), element.Receive()));
    ThrowIfFailed(document->appendChild(element.Get(), root.Receive()));
    return root;
}

void AppendEntry(const Document& document, const std::wstring& path) {
    const Node root = RootOf(document);
    Element entry;
    ThrowIfFailed(document->createElement(MakeBstr(L"application").Get(), entry.Receive()));
    const platform::UniqueBstr text = MakeBstr(path.c_str());
    VARIANT value = {};
    value.vt = VT_BSTR;
    value.bstrVal = text.Get();
    ThrowIfFailed(entry->setAttribute(MakeBstr(L"path").Get(), value));
    Node appended;
    ThrowIfFailed(root->appendChild(entry.Get(), appended.Receive()));
}

// Replaces the file only when its new contents are on the volume as a whole.
void SaveOver(const Document& document, const std::wstring& path) {
    const std::wstring next = path + newSuffix;
    const HRESULT saved = platform::SaveXmlFile(document.Get(), next.c_str());
    if (FAILED(saved) || !platform::MoveOver(next.c_str(), path.c_str())) {
        const DWORD error = GetLastError();
        // A handheld may have lost the old file by then; a new one that is whole is taken up in its
        // place.
        if (FAILED(saved) || !IsMissing(path)) {
            DeleteFileW(next.c_str());
        }
        ThrowIfFailed(saved);
        throw faults::W32Fault(faults::ResultFromError(error));
    }
}

void WriteEntry(const std::wstring& path) {
    const HiddenAppsFile place = HiddenAppsFilePath(true);
    if (!place.ok) {
        return;
    }
    const OpenedFile file = OpenFile(place.path);
    AppendEntry(file.document, path);
    if (!file.readable && !IsMissing(place.path) &&
        !CopyFileW(place.path.c_str(), (place.path + backupSuffix).c_str(), FALSE)) {
        throw faults::W32Fault();
    }
    SaveOver(file.document, place.path);
}

struct IgnoringCase {
    bool operator()(const std::wstring& first, const std::wstring& second) const {
        return text::LessIgnoringCase(first, second);
    }
};

}  // namespace

bool TextSet::Contains(const std::wstring& text) const {
    return std::binary_search(texts_.begin(), texts_.end(), text, IgnoringCase());
}

void TextSet::Insert(std::wstring text) {
    const auto place = std::lower_bound(texts_.begin(), texts_.end(), text, IgnoringCase());
    if (place == texts_.end() || IgnoringCase()(text, *place)) {
        texts_.insert(place, std::move(text));
    }
}

void TextSet::Remove(const std::wstring& text) {
    const auto place = std::lower_bound(texts_.begin(), texts_.end(), text, IgnoringCase());
    if (place != texts_.end() && !IgnoringCase()(text, *place)) {
        texts_.erase(place);
    }
}

HiddenAppsFile HiddenAppsFilePath(bool create) {
    std::wstring folder = platform::SpecialFolder(
        nullptr, CSIDL_APPDATA,
        create ? platform::MissingFolder::Create : platform::MissingFolder::Leave);
    if (folder.empty()) {
        return HiddenAppsFile();
    }
    folder += L'\\';
    // Kept on purpose: docs/compatibility.md#folder-by-title
    folder += text::LoadText(IDS_PROGRAM);
    if (GetFileAttributesW(folder.c_str()) == INVALID_FILE_ATTRIBUTES) {
        if (!create) {
            return HiddenAppsFile();
        }
        if (!CreateDirectoryW(folder.c_str(), nullptr)) {
            throw faults::W32Fault();
        }
    }
    return HiddenAppsFile{true, folder + fileName};
}

void HiddenAppList::LoadHiddenApps() {
    const HiddenAppsFile place = HiddenAppsFilePath(false);
    if (!place.ok) {
        return;
    }
    const OpenedFile file = OpenFile(place.path);
    platform::ComPointer<IXMLDOMNodeList> entries;
    ThrowIfFailed(
        file.document->selectNodes(MakeBstr(L"hide/application").Get(), entries.Receive()));
    Node node;
    while (entries && ThrowIfFailed(entries->nextNode(node.Receive())) != S_FALSE && node) {
        Element entry;
        ThrowIfFailed(
            node->QueryInterface(elementInterface, reinterpret_cast<void**>(entry.Receive())));
        if (std::wstring path = AttributeOf(entry, L"path"); !path.empty()) {
            paths_.Insert(std::move(path));
        } else if (std::wstring name = AttributeOf(entry, L"name"); !name.empty()) {
            names_.Insert(std::move(name));
        }
    }
    empty_ = paths_.Empty() && names_.Empty();
}

bool HiddenAppList::Matches(const std::wstring& path) const {
    // Without a backslash the whole is the name.
    return paths_.Contains(path) ||
           (!names_.Empty() && names_.Contains(path.substr(path.rfind(L'\\') + 1)));
}

bool HiddenAppList::IsHidden(HWND window) const {
    if (empty_) {
        return false;
    }
    const DWORD process = AppCloser::ProcessIdOfWindow(window);
    const std::wstring path = process ? platform::ProcessPath(process) : std::wstring();
    return !path.empty() && Hides(path);
}

void HiddenAppList::HideApp(HWND window) {
    const DWORD process = AppCloser::ProcessIdOfWindow(window);
    if (process == 0) {
        return;
    }
    const std::wstring path = platform::ProcessPath(process);
    if (path.empty()) {
        throw faults::W32Fault();
    }
    if (!empty_ && Matches(path) && !unsaved_.Contains(path)) {
        return;
    }
    // Whether the list is empty stays as it was found at the start. The application is hidden until
    // the program ends also when that cannot be written down.
    // Kept on purpose: docs/compatibility.md#hide-in-empty-list
    paths_.Insert(path);
    unsaved_.Insert(path);
    WriteEntry(path);
    unsaved_.Remove(path);
}

}  // namespace views
