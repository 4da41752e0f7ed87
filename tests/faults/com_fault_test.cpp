#include <gtest/gtest.h>

#include <optional>

#include "faults/fault.h"
#include "tests/support/platform_hook.h"

#include <oleauto.h>

using faults::COMFault;
using faults::FullText;

namespace {

// An error object that counts its references; a text that is not set fails to be told.
class ErrorObject final : public IErrorInfo {
 public:
    HRESULT WINAPI QueryInterface(const IID& id, void** object) override {
        if (id != IID_IUnknown && id != IID_IErrorInfo) {
            *object = nullptr;
            return E_NOINTERFACE;
        }
        *object = this;
        ++references;
        return S_OK;
    }
    ULONG WINAPI AddRef() override { return ++references; }
    ULONG WINAPI Release() override { return --references; }
    HRESULT WINAPI GetGUID(GUID*) override { return E_NOTIMPL; }
    HRESULT WINAPI GetSource(BSTR* text) override { return Tell(source, text); }
    HRESULT WINAPI GetDescription(BSTR* text) override { return Tell(description, text); }
    HRESULT WINAPI GetHelpFile(BSTR*) override { return E_NOTIMPL; }
    HRESULT WINAPI GetHelpContext(DWORD*) override { return E_NOTIMPL; }

    std::optional<std::wstring> source;
    std::optional<std::wstring> description;
    ULONG references = 0;

 private:
    static HRESULT Tell(const std::optional<std::wstring>& wanted, BSTR* text) {
        *text = wanted ? SysAllocString(wanted->c_str()) : nullptr;
        return wanted ? S_OK : E_FAIL;
    }
};

class ComFault : public testing::Test {
 protected:
    ComFault() { SetErrorInfo(0, nullptr); }
    ~ComFault() override {
        SetErrorInfo(0, nullptr);
        EXPECT_EQ(object.references, 0u);
    }
    // The fault that a failing call leaves behind which has told of its failure.
    COMFault Told() {
        SetErrorInfo(0, &object);
        return COMFault(E_ACCESSDENIED);
    }

    const std::wstring systemText = faults::W32Fault(E_ACCESSDENIED).Message();
    ErrorObject object;
};

using TextLookUp = DWORD(DWORD, const void*, DWORD, DWORD, wchar_t*, DWORD, char**);

DWORD WINAPI FindNoText(DWORD, const void*, DWORD, DWORD, wchar_t*, DWORD, char**) {
    return 0;
}

}  // namespace

TEST_F(ComFault, TellsSourceAndDescription) {
    object.source = L"Msxml2";
    object.description = L"The document is empty";
    EXPECT_EQ(Told().Message(), L"Msxml2 : The document is empty");
}

TEST_F(ComFault, TellsTheDescriptionAloneWithoutASource) {
    object.source = L"";
    object.description = L"The document is empty";
    EXPECT_EQ(Told().Message(), L"The document is empty");
    object.source.reset();
    EXPECT_EQ(Told().Message(), L"The document is empty");
}

TEST_F(ComFault, FallsBackToTheCodeWithoutADescription) {
    object.source = L"Msxml2";
    object.description = L"";
    EXPECT_EQ(Told().Message(), systemText);
    object.description.reset();
    EXPECT_EQ(Told().Message(), systemText);
}

TEST_F(ComFault, FallsBackToTheCodeWithoutAnErrorObject) {
    EXPECT_EQ(COMFault(E_ACCESSDENIED).Message(), systemText);
}

TEST_F(ComFault, ShowsTheWholeCodeWhenNothingIsKnown) {
    const test::PlatformHook<TextLookUp> hook("FormatMessageW", FindNoText);
    EXPECT_EQ(FullText(COMFault(E_NOINTERFACE)), L"0x80004002");
}

TEST_F(ComFault, TakesTheErrorObjectAwayFromTheThread) {
    object.description = L"once";
    const COMFault first = Told();
    EXPECT_EQ(COMFault(E_ACCESSDENIED).Message(), systemText);
    EXPECT_EQ(first.Message(), L"once");
}

TEST_F(ComFault, KeepsItsTextOverLaterChangesOfTheObject) {
    object.description = L"at first";
    const COMFault fault = Told();
    EXPECT_EQ(fault.Message(), L"at first");
    object.description = L"later";
    EXPECT_EQ(fault.Message(), L"at first");
}

TEST_F(ComFault, SharesTheErrorObjectWithItsCopies) {
    object.source = L"a";
    object.description = L"b\r\nc";
    try {
        throw Told();
    } catch (const faults::Fault& caught) {
        EXPECT_EQ(FullText(caught), L"a : b c");
        EXPECT_EQ(caught.Code(), E_ACCESSDENIED);
        EXPECT_GT(object.references, 0u);
    }
}
