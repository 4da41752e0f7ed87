#include <gtest/gtest.h>

#include <new>
#include <vector>

#include "faults/fault.h"
#include "tests/faults/no_memory.h"
#include "tests/support/platform_hook.h"
#include "tests/support/resource_module.h"
#include "tests/support/world.h"

using namespace faults;
using namespace test;

namespace {

constexpr wchar_t unknown[] = L"No error message is available.";

struct LookUp {
    DWORD flags;
    const void* module;
    DWORD code;
    DWORD language;
};
std::vector<LookUp> lookUps;

DWORD WINAPI FindNothing(DWORD flags, const void* source, DWORD code, DWORD language, wchar_t*,
                         DWORD, char**) {
    lookUps.push_back({flags, source, code, language});
    SetLastError(ERROR_MR_MID_NOT_FOUND);
    return 0;
}

DWORD WINAPI FindTooMuch(DWORD, const void*, DWORD, DWORD, wchar_t*, DWORD, char**) {
    throw std::bad_alloc();
}

// Before any other test asks for it. Texts cannot be made there, so only the answer is kept.
const bool keptFromTheStart = [] {
    KeepFixedMessage();
    const NoMemory none;
    return W32Fault(E_OUTOFMEMORY).Message() == noMessage;
}();

using Format = DWORD(DWORD, const void*, DWORD, DWORD, wchar_t*, DWORD, char**);

// The system's text of an error, with its line break.
std::wstring SystemText(DWORD error) {
    wchar_t text[512] = {};
    FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, error, 0,
                   text, 512, nullptr);
    return text;
}

int WINAPI ConvertNothing(UINT, DWORD, const char*, int, wchar_t*, int) {
    return 0;
}

// Tells the length and then fails.
int WINAPI ConvertHalf(UINT, DWORD, const char*, int length, wchar_t* buffer, int) {
    return buffer ? 0 : length;
}

using Convert = int(UINT, DWORD, const char*, int, wchar_t*, int);

// The fault that a fault may stand for.
class Shell final : public ErrorMessage::IFaultBase {
 public:
    explicit Shell(const IFaultBase& inner) : inner_(inner) {}
    const char* NarrowMessage() const noexcept override { return "shell"; }
    const std::wstring& Message() const noexcept override { return message_; }
    const IFaultBase& Fault() const noexcept override { return inner_; }
    HRESULT Code() const noexcept override { return 1; }

 private:
    const IFaultBase& inner_;
    std::wstring message_ = L"shell";
};

std::wstring OnOneLine(const std::wstring& text) {
    return FullText(Fault(text));
}

}  // namespace

TEST(FaultMessage, IsTheWideText) {
    EXPECT_EQ(Fault(std::wstring(L"A line\r\nand more")).Message(), L"A line\r\nand more");
}

TEST(FaultMessage, IsTheNarrowTextWhenThereIsNoWideOne) {
    EXPECT_EQ(Fault(std::string("caf\xE9")).Message(), L"caf\u00E9");
}

TEST(FaultMessage, MayBeOneCharacter) {
    EXPECT_EQ(Fault(std::string("!")).Message(), L"!");
}

TEST(FaultMessage, IsFixedWithoutAnyText) {
    EXPECT_EQ(Fault().Message(), unknown);
    EXPECT_EQ(Fault(std::wstring()).Message(), unknown);
    EXPECT_EQ(Fault(std::string()).Message(), unknown);
}

TEST(FaultMessage, IsFixedWhenTheNarrowTextCannotBeConverted) {
    {
        const PlatformHook<Convert> hook("MultiByteToWideChar", ConvertNothing);
        EXPECT_EQ(Fault(std::string("text")).Message(), unknown);
    }
    const PlatformHook<Convert> hook("MultiByteToWideChar", ConvertHalf);
    EXPECT_EQ(Fault(std::string("text")).Message(), unknown);
}

TEST(FaultMessage, OfACodeIsTheSystemsText) {
    EXPECT_EQ(W32Fault(ResultFromError(ERROR_ACCESS_DENIED)).Message(),
              SystemText(ERROR_ACCESS_DENIED));
    EXPECT_EQ(FaultEx(ResultFromError(ERROR_FILE_NOT_FOUND)).Message(),
              SystemText(ERROR_FILE_NOT_FOUND));
}

TEST(FaultMessage, IsSoughtInTheModuleFirstAndThenInTheSystem) {
    lookUps.clear();
    const PlatformHook<Format> hook("FormatMessageW", FindNothing);
    const HMODULE module = GetModuleHandleW(L"kernel32.dll");
    EXPECT_EQ(W32Fault(E_FAIL, module).Message(), unknown);
    ASSERT_EQ(lookUps.size(), 2u);
    EXPECT_EQ(lookUps[0].flags, 0x0900u | FORMAT_MESSAGE_IGNORE_INSERTS);
    EXPECT_EQ(lookUps[0].module, module);
    EXPECT_EQ(lookUps[1].flags, 0x1100u | FORMAT_MESSAGE_IGNORE_INSERTS);
    for (const LookUp& lookUp : lookUps) {
        EXPECT_EQ(lookUp.code, 0x80004005u);
        EXPECT_EQ(lookUp.language, 0x0400u);
    }
}

TEST(FaultMessage, IsSoughtInTheProgramItselfWhenNoModuleIsNamed) {
    lookUps.clear();
    const PlatformHook<Format> hook("FormatMessageW", FindNothing);
    W32Fault(E_FAIL).Message();
    FaultEx(E_FAIL).Message();
    ASSERT_EQ(lookUps.size(), 4u);
    EXPECT_EQ(lookUps[0].module, nullptr);
    EXPECT_EQ(lookUps[2].module, nullptr);
}

TEST(FaultMessage, OfAModulesMessageTableGoesBeforeTheSystems) {
    const TemporaryFolder folder;
    const std::wstring path = folder.Path() + L"\\messages.dll";
    constexpr DWORD code = 0x80070005;
    ResourceModule(0).Message(code, L"The module says 100% no to %1").Write(path);
    const HMODULE module = LoadLibraryExW(path.c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE);
    ASSERT_TRUE(module);
    EXPECT_EQ(W32Fault(static_cast<HRESULT>(code), module).Message(),
              L"The module says 100% no to %1");
    FreeLibrary(module);
}

TEST(FaultMessage, IsFoundOnceAndKept) {
    const W32Fault fault(ResultFromError(ERROR_ACCESS_DENIED));
    const std::wstring* const first = &fault.Message();
    const std::wstring text = *first;
    lookUps.clear();
    const PlatformHook<Format> hook("FormatMessageW", FindNothing);
    EXPECT_EQ(&fault.Message(), first);
    EXPECT_EQ(fault.Message(), text);
    EXPECT_TRUE(lookUps.empty());
}

TEST(FaultMessage, IsFixedWhenTheLookUpRaises) {
    const PlatformHook<Format> hook("FormatMessageW", FindTooMuch);
    const W32Fault fault(ResultFromError(ERROR_ACCESS_DENIED));
    EXPECT_EQ(fault.Message(), unknown);
    EXPECT_STREQ(fault.what(), "No error message is available.");
    EXPECT_EQ(FullText(fault), L"0x00000005");
}

// In a suite of its own, so that nothing has been asked for before.
TEST(FaultsWithoutMemory, StillHaveAMessageAndNeverRaise) {
    const W32Fault unasked(ResultFromError(ERROR_ACCESS_DENIED));
    const W32Fault asked(ResultFromError(ERROR_ACCESS_DENIED));
    asked.Message();
    bool fixed = false;
    bool raised = false;
    {
        const NoMemory none;
        fixed = unasked.Message() == unknown && Fault().Message() == unknown;
        try {
            FullText(unasked);
            FullText(asked);
        } catch (...) {
            raised = true;
        }
    }
    EXPECT_TRUE(fixed);
    EXPECT_FALSE(raised);
    // What could not be found then is found later.
    EXPECT_EQ(unasked.Message(), SystemText(ERROR_ACCESS_DENIED));
}

TEST(FullFaultText, PutsABlankForEachLineBreak) {
    EXPECT_EQ(OnOneLine(L"one\r\ntwo"), L"one two");
    EXPECT_EQ(OnOneLine(L"one\ntwo"), L"one two");
    EXPECT_EQ(OnOneLine(L"one\r\n\r\ntwo\n\nthree"), L"one  two  three");
    EXPECT_EQ(OnOneLine(L"\none\r\n"), L" one ");
    EXPECT_EQ(OnOneLine(L"\r\n"), L" ");
}

TEST(FullFaultText, TakesOnlyTheCarriageReturnRightBeforeALineFeed) {
    EXPECT_EQ(OnOneLine(L"one\rtwo"), L"one\rtwo");
    EXPECT_EQ(OnOneLine(L"one\r\r\ntwo"), L"one\r two");
    EXPECT_EQ(OnOneLine(L"one\n\rtwo"), L"one \rtwo");
}

TEST(FullFaultText, OfTheLastErrorIsTheSystemsTextOnOneLine) {
    SetLastError(ERROR_ACCESS_DENIED);
    const W32Fault fault;
    std::wstring expected = SystemText(ERROR_ACCESS_DENIED);
    ASSERT_GT(expected.size(), 2u);
    ASSERT_EQ(expected.substr(expected.size() - 2), L"\r\n");
    expected.replace(expected.size() - 2, 2, L" ");
    EXPECT_EQ(FullText(fault), expected);
}

TEST(FaultMessage, ThatIsFixedNeedsNoMemoryOnceItIsKept) {
    EXPECT_TRUE(keptFromTheStart);
}

TEST(FullFaultText, WithoutAMessageIsTheCode) {
    EXPECT_EQ(FullText(Fault()), L"0x80000008");
    EXPECT_EQ(FullText(Fault(std::wstring(unknown))), L"0x80000008");
    const PlatformHook<Format> hook("FormatMessageW", FindNothing);
    EXPECT_EQ(FullText(W32Fault(static_cast<HRESULT>(0x8ABCDEF0))), L"0x8abcdef0");
    EXPECT_EQ(FullText(W32Fault(0)), L"0x00000000");
}

TEST(FullFaultText, WithoutAMessageIsTheBareErrorInTheWin32Facility) {
    const PlatformHook<Format> hook("FormatMessageW", FindNothing);
    SetLastError(ERROR_ACCESS_DENIED);
    EXPECT_EQ(FullText(W32Fault()), L"0x00000005");
    EXPECT_EQ(FullText(W32Fault(static_cast<HRESULT>(0x8007ABCD))), L"0x0000abcd");
    EXPECT_EQ(FullText(W32Fault(static_cast<HRESULT>(0xE0070005))), L"0x00000005");
    EXPECT_EQ(FullText(W32Fault(static_cast<HRESULT>(0x90070005))), L"0x90070005");
    EXPECT_EQ(FullText(W32Fault(static_cast<HRESULT>(0x80170005))), L"0x80170005");
}

TEST(FullFaultText, IsThatOfTheFaultWhichAFaultStandsFor) {
    EXPECT_EQ(FullText(Shell(Fault(std::wstring(L"inner")))), L"inner");
    EXPECT_EQ(FullText(Shell(Fault())), L"0x80000008");
}
