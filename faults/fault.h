// The family of exceptions that the program raises: every failure is one of these, thrown from
// any depth and caught at the edge of a user's action.
#pragma once

#include <exception>
#include <string>

#include "platform/handles.h"
#include "platform/windows.h"

struct IErrorInfo;

namespace faults {

namespace ErrorMessage {

// What every fault can tell of itself. Building a text never raises.
class IFaultBase : public std::exception {
 public:
    ~IFaultBase() override = default;
    // The message in the ANSI code page. Owned by the fault.
    const char* what() const noexcept override;
    virtual const char* NarrowMessage() const noexcept = 0;
    // The message for the user. Owned by the fault.
    virtual const std::wstring& Message() const noexcept = 0;
    // The fault whose message is shown.
    virtual const IFaultBase& Fault() const noexcept { return *this; }
    virtual HRESULT Code() const noexcept = 0;
};

}  // namespace ErrorMessage

// What Message gives when nothing is known.
inline constexpr wchar_t noMessage[] = L"No error message is available.";

// Makes that text, for which there may be no memory when it is asked for (std::bad_alloc).
void KeepFixedMessage();

// The code of a fault that carries only a text.
inline constexpr HRESULT textFaultCode = static_cast<HRESULT>(0x80000008u);

// A Win32 error greater than 0 becomes an HRESULT of the Win32 facility; others stay as they are.
HRESULT ResultFromError(DWORD error);

// A failure that the program itself phrases.
class Fault : public ErrorMessage::IFaultBase {
 public:
    Fault() = default;
    explicit Fault(std::wstring text) : message_(std::move(text)) {}
    explicit Fault(std::string text) : narrow_(std::move(text)) {}

    const char* NarrowMessage() const noexcept override;
    const std::wstring& Message() const noexcept override;
    HRESULT Code() const noexcept override { return textFaultCode; }

 protected:
    // The message if it is known already or can be found now; empty otherwise. May throw.
    virtual std::wstring FindMessage() const;

 private:
    mutable std::wstring message_;
    mutable std::string narrow_;
};

// A failure with an HRESULT.
class FaultEx : public Fault {
 public:
    explicit FaultEx(HRESULT code) : code_(code) {}
    HRESULT Code() const noexcept override { return code_; }

 protected:
    // The text of the code in the message table of `Module`, else the system's (FormatMessageW).
    std::wstring FindMessage() const override;
    virtual HMODULE Module() const { return nullptr; }

 private:
    HRESULT code_;
};

// A failing platform call.
class W32Fault : public FaultEx {
 public:
    // From the thread's last error (GetLastError).
    W32Fault() : FaultEx(ResultFromError(GetLastError())) {}
    // The message table of `module` is searched before the system's; none means the program's own.
    explicit W32Fault(HRESULT code, HMODULE module = nullptr) : FaultEx(code), module_(module) {}

 protected:
    HMODULE Module() const override { return module_; }

 private:
    HMODULE module_ = nullptr;
};

// A failing COM call; takes over the thread's error object (GetErrorInfo).
class COMFault : public W32Fault {
 public:
    explicit COMFault(HRESULT code);
    COMFault(const COMFault&);
    ~COMFault() override;

 protected:
    // "source : description" of the error object, or the description alone.
    std::wstring FindMessage() const override;

 private:
    platform::ComPointer<IErrorInfo> error_;
};

// The full text that a user sees: the message on one line, or the code in hexadecimal when there
// is none ("0x00000005"). Empty when there is no memory for either.
std::wstring FullText(const ErrorMessage::IFaultBase& fault) noexcept;

}  // namespace faults
