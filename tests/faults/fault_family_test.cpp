#include <gtest/gtest.h>

#include <type_traits>

#include "faults/fault.h"

using namespace faults;

namespace {

template <typename Base, typename Thrown>
bool IsCaughtAs(const Thrown& fault) {
    try {
        throw fault;
    } catch (const Base& caught) {
        return caught.what() != nullptr;
    } catch (...) {
        return false;
    }
}

template <typename Thrown>
void ExpectCommonBases(const Thrown& fault) {
    EXPECT_TRUE((IsCaughtAs<Thrown>(fault)));
    EXPECT_TRUE((IsCaughtAs<Fault>(fault)));
    EXPECT_TRUE((IsCaughtAs<ErrorMessage::IFaultBase>(fault)));
    EXPECT_TRUE((IsCaughtAs<std::exception>(fault)));
}

}  // namespace

TEST(FaultFamily, EveryFaultIsCaughtAsTheFamilyAndAsAStandardException) {
    ExpectCommonBases(Fault(std::wstring(L"text")));
    ExpectCommonBases(FaultEx(E_FAIL));
    ExpectCommonBases(W32Fault(E_FAIL));
    ExpectCommonBases(COMFault(E_FAIL));
}

TEST(FaultFamily, EachFaultIsCaughtAsThoseAboveItAndNotAsThoseBelow) {
    EXPECT_FALSE((IsCaughtAs<FaultEx>(Fault())));
    EXPECT_TRUE((IsCaughtAs<FaultEx>(W32Fault(E_FAIL))));
    EXPECT_FALSE((IsCaughtAs<W32Fault>(FaultEx(E_FAIL))));
    EXPECT_TRUE((IsCaughtAs<W32Fault>(COMFault(E_FAIL))));
    EXPECT_TRUE((IsCaughtAs<FaultEx>(COMFault(E_FAIL))));
    EXPECT_FALSE((IsCaughtAs<COMFault>(W32Fault(E_FAIL))));
}

TEST(FaultFamily, TheInterfaceCannotBeMadeAlone) {
    EXPECT_TRUE(std::is_abstract_v<ErrorMessage::IFaultBase>);
}

TEST(FaultCode, OfAPlainFaultIsFixed) {
    EXPECT_EQ(Fault().Code(), static_cast<HRESULT>(0x80000008));
    EXPECT_EQ(Fault(std::wstring(L"text")).Code(), static_cast<HRESULT>(0x80000008));
}

TEST(FaultCode, IsTheOneTheFaultWasBuiltFrom) {
    EXPECT_EQ(FaultEx(E_FAIL).Code(), E_FAIL);
    EXPECT_EQ(W32Fault(E_UNEXPECTED).Code(), static_cast<HRESULT>(0x8000FFFF));
    EXPECT_EQ(COMFault(REGDB_E_CLASSNOTREG).Code(), REGDB_E_CLASSNOTREG);
}

TEST(FaultCode, OfAnErrorAboveZeroBelongsToTheWin32Facility) {
    EXPECT_EQ(ResultFromError(5), static_cast<HRESULT>(0x80070005));
    EXPECT_EQ(ResultFromError(0xFFFF), static_cast<HRESULT>(0x8007FFFF));
    EXPECT_EQ(ResultFromError(0x82345), static_cast<HRESULT>(0x80072345));
}

TEST(FaultCode, OfAnErrorOfZeroOrLessIsTheError) {
    EXPECT_EQ(ResultFromError(0), 0);
    EXPECT_EQ(ResultFromError(0x80004005), E_FAIL);
    EXPECT_EQ(ResultFromError(0xFFFFFFFF), -1);
}

TEST(FaultCode, WithoutAnArgumentComesFromTheLastError) {
    SetLastError(ERROR_ACCESS_DENIED);
    EXPECT_EQ(W32Fault().Code(), static_cast<HRESULT>(0x80070005));
    SetLastError(static_cast<DWORD>(E_FAIL));
    EXPECT_EQ(W32Fault().Code(), E_FAIL);
    SetLastError(0);
    EXPECT_EQ(W32Fault().Code(), 0);
}

TEST(FaultObject, StandsForItself) {
    const COMFault fault(E_FAIL);
    const ErrorMessage::IFaultBase& base = fault;
    EXPECT_EQ(&base.Fault(), &base);
}

TEST(FaultObject, SaysNarrowlyWhatItSaysWidely) {
    const Fault fault(std::wstring(L"It did not work"));
    EXPECT_STREQ(fault.what(), "It did not work");
    EXPECT_STREQ(fault.NarrowMessage(), "It did not work");
    EXPECT_STREQ(Fault().what(), "No error message is available.");
    EXPECT_STREQ(Fault(std::string("narrow")).what(), "narrow");
}

TEST(FaultObject, KeepsItsTextsWhenCopied) {
    const Fault fault(std::wstring(L"text"));
    const Fault copy = fault;
    EXPECT_EQ(copy.Message(), L"text");
}
