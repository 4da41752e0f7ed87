// Entries of processes and modules as the system fills them in.
#include <gtest/gtest.h>

#include "platform/toolhelp.h"
#include "tests/support/platform_hook.h"
// Behind the platform's own declarations.
#include <tlhelp32.h>

using namespace test;

namespace {

// Arrays that are full to their ends.
BOOL WINAPI GiveFullProcess(HANDLE, PROCESSENTRY32W* entry) {
    std::fill(std::begin(entry->szExeFile), std::end(entry->szExeFile), L'p');
    return TRUE;
}
BOOL WINAPI GiveFullModule(HANDLE, MODULEENTRY32W* entry) {
    std::fill(std::begin(entry->szModule), std::end(entry->szModule), L'm');
    std::fill(std::begin(entry->szExePath), std::end(entry->szExePath), L'e');
    // What follows it in memory does not end it either.
    entry->dwSize = ~0u;
    return TRUE;
}

}  // namespace

TEST(SnapshotEntries, EndWhereTheirRoomEnds) {
    const PlatformHook<BOOL(HANDLE, PROCESSENTRY32W*)> process("Process32FirstW", GiveFullProcess);
    const PlatformHook<BOOL(HANDLE, MODULEENTRY32W*)> module("Module32FirstW", GiveFullModule);
    const platform::Snapshot processes(platform::Snapshot::Kind::Processes, 0);
    platform::ProcessEntry first;
    ASSERT_TRUE(processes.First(&first));
    EXPECT_EQ(first.name, std::wstring(MAX_PATH - 1, L'p'));
    const platform::Snapshot modules(platform::Snapshot::Kind::Modules, GetCurrentProcessId());
    platform::ModuleEntry second;
    ASSERT_TRUE(modules.First(&second));
    EXPECT_EQ(second.name, std::wstring(MAX_MODULE_NAME32 + 1, L'm'));
    // A path that is too long is none.
    EXPECT_STREQ(second.path, L"");
}
