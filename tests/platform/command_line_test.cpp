#include <gtest/gtest.h>

#include "platform/processes.h"
#include "tests/support/platform_hook.h"

namespace {

std::wstring commandLine;

wchar_t* WINAPI TellCommandLine() {
    return commandLine.data();
}

std::wstring ArgumentsOf(const wchar_t* line) {
    const test::PlatformHook<wchar_t*()> hook("GetCommandLineW", TellCommandLine);
    commandLine = line;
    return platform::CommandLineArguments();
}

}  // namespace

TEST(CommandLineArguments, FollowTheProgramAndOneBlank) {
    EXPECT_EQ(ArgumentsOf(L"vantor.exe -status"), L"-status");
    EXPECT_EQ(ArgumentsOf(L"C:\\tools\\vantor.exe -apps  "), L"-apps  ");
    EXPECT_EQ(ArgumentsOf(L"vantor.exe  -status"), L" -status");
}

TEST(CommandLineArguments, FollowAQuotedProgram) {
    EXPECT_EQ(ArgumentsOf(L"\"C:\\Program Files\\Vantor\\vantor.exe\" -status"), L"-status");
    EXPECT_EQ(ArgumentsOf(L"\"C:\\Program Files\\vantor.exe\"-status"), L"-status");
    EXPECT_EQ(ArgumentsOf(L"\"a b\" \"c d\" e"), L"\"c d\" e");
}

TEST(CommandLineArguments, AreEmptyWithoutAny) {
    EXPECT_EQ(ArgumentsOf(L"vantor.exe"), L"");
    EXPECT_EQ(ArgumentsOf(L"vantor.exe "), L"");
    EXPECT_EQ(ArgumentsOf(L"\"C:\\Program Files\\vantor.exe\""), L"");
    EXPECT_EQ(ArgumentsOf(L"\"never closed -status"), L"");
    EXPECT_EQ(ArgumentsOf(L""), L"");
}
