#include "faults/fault.h"

#include <new>

#include "platform/bstr.h"

namespace faults {

namespace {

const std::wstring& FixedMessage() {
    static const std::wstring text(noMessage);
    return text;
}

std::wstring FromCodePage(const std::string& narrow) {
    const int size = static_cast<int>(narrow.size());
    const int length = MultiByteToWideChar(CP_ACP, 0, narrow.c_str(), size, nullptr, 0);
    std::wstring wide(static_cast<size_t>(length > 0 ? length : 0), L'\0');
    const int converted =
        length > 0 ? MultiByteToWideChar(CP_ACP, 0, narrow.c_str(), size, wide.data(), length) : 0;
    wide.resize(static_cast<size_t>(converted > 0 ? converted : 0));
    return wide;
}

std::string ToCodePage(const std::wstring& wide) {
    const int size = static_cast<int>(wide.size());
    const int length =
        WideCharToMultiByte(CP_ACP, 0, wide.c_str(), size, nullptr, 0, nullptr, nullptr);
    std::string narrow(static_cast<size_t>(length > 0 ? length : 0), '\0');
    if (length > 0) {
        WideCharToMultiByte(CP_ACP, 0, wide.c_str(), size, narrow.data(), length, nullptr, nullptr);
    }
    return narrow;
}

std::wstring MessageOfCode(DWORD source, HMODULE module, HRESULT code) {
    constexpr DWORD userLanguage = 0x0400;
    wchar_t* text = nullptr;
    const DWORD length = FormatMessageW(
        FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_IGNORE_INSERTS | source, module,
        static_cast<DWORD>(code), userLanguage, reinterpret_cast<wchar_t*>(&text), 0, nullptr);
    const platform::UniqueLocalText owner(text);
    return length > 0 ? std::wstring(text, length) : std::wstring();
}

}  // namespace

const char* ErrorMessage::IFaultBase::what() const noexcept {
    return NarrowMessage();
}

HRESULT ResultFromError(DWORD error) {
    const HRESULT code = static_cast<HRESULT>(error);
    return code > 0 ? static_cast<HRESULT>((error & 0xFFFF) | 0x80070000u) : code;
}

std::wstring Fault::FindMessage() const {
    return narrow_.empty() ? std::wstring() : FromCodePage(narrow_);
}

const std::wstring& Fault::Message() const noexcept {
    try {
        if (message_.empty()) {
            message_ = FindMessage();
        }
        return message_.empty() ? FixedMessage() : message_;
    } catch (...) {
        // The fixed one was made at the start.
    }
    try {
        return FixedMessage();
    } catch (...) {
        static const std::wstring none;
        return none;
    }
}

const char* Fault::NarrowMessage() const noexcept {
    try {
        if (narrow_.empty()) {
            narrow_ = ToCodePage(Message());
        }
        return narrow_.c_str();
    } catch (...) {
        return "";
    }
}

std::wstring FaultEx::FindMessage() const {
    std::wstring text = MessageOfCode(FORMAT_MESSAGE_FROM_HMODULE, Module(), Code());
    if (text.empty()) {
        text = MessageOfCode(FORMAT_MESSAGE_FROM_SYSTEM, nullptr, Code());
    }
    return text;
}

COMFault::COMFault(HRESULT code) : W32Fault(code) {
    GetErrorInfo(0, error_.Receive());
}
COMFault::COMFault(const COMFault&) = default;
COMFault::~COMFault() = default;

std::wstring COMFault::FindMessage() const {
    if (error_) {
        platform::UniqueBstr description;
        if (SUCCEEDED(error_->GetDescription(description.Receive())) &&
            SysStringLen(description.Get()) > 0) {
            platform::UniqueBstr source;
            error_->GetSource(source.Receive());
            std::wstring message = platform::TextOfBstr(source.Get());
            if (!message.empty()) {
                message += L" : ";
            }
            message += platform::TextOfBstr(description.Get());
            return message;
        }
    }
    return W32Fault::FindMessage();
}

namespace {

std::wstring OnOneLine(const std::wstring& message) {
    std::wstring line;
    line.reserve(message.size());
    for (const wchar_t character : message) {
        if (character != L'\n') {
            line += character;
            continue;
        }
        if (!line.empty() && line.back() == L'\r') {
            line.pop_back();
        }
        line += L' ';
    }
    return line;
}

std::wstring CodeText(DWORD code) {
    const DWORD number = (code & 0x1FFF0000) == 0x00070000 ? code & 0xFFFF : code;
    std::wstring text = L"0x";
    for (int shift = 28; shift >= 0; shift -= 4) {
        text += L"0123456789abcdef"[(number >> shift) & 0xF];
    }
    return text;
}

}  // namespace

void KeepFixedMessage() {
    FixedMessage();
}

std::wstring FullText(const ErrorMessage::IFaultBase& fault) noexcept {
    const ErrorMessage::IFaultBase& shown = fault.Fault();
    const std::wstring& message = shown.Message();
    try {
        if (!message.empty() && message != noMessage) {
            return OnOneLine(message);
        }
    } catch (...) {
        // There may be memory for the code still.
    }
    try {
        return CodeText(static_cast<DWORD>(shown.Code()));
    } catch (...) {
        return std::wstring();
    }
}

}  // namespace faults
