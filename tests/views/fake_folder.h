// A folder that this machine does not have: what the find calls give back is the test's.
#pragma once

#include <string>
#include <vector>

#include "tests/support/platform_hook.h"

namespace test {

// Answers every search through a folder with its entries for as long as it lives. One at a time.
class FakeFolder {
 public:
    FakeFolder();
    ~FakeFolder();
    FakeFolder(const FakeFolder&) = delete;
    FakeFolder& operator=(const FakeFolder&) = delete;

    // Adds an entry; what it returns may be changed before the folder is read.
    WIN32_FIND_DATAW& Add(const std::wstring& name, DWORD attributes = FILE_ATTRIBUTE_ARCHIVE);

    // The entry after which reading fails, and how: with a fault, or with an error.
    size_t throwAfter = ~size_t{0};
    size_t failAfter = ~size_t{0};

    // What was asked for.
    std::vector<std::wstring> patterns;
    size_t nextCalls = 0;
    size_t closed = 0;

 private:
    static HANDLE WINAPI First(LPCWSTR pattern, WIN32_FIND_DATAW* data);
    static BOOL WINAPI Next(HANDLE search, WIN32_FIND_DATAW* data);
    static BOOL WINAPI Close(HANDLE search);
    BOOL Give(WIN32_FIND_DATAW* data);

    std::vector<WIN32_FIND_DATAW> entries_;
    size_t position_ = 0;
    PlatformHook<HANDLE WINAPI(LPCWSTR, WIN32_FIND_DATAW*)> first_{"FindFirstFileW", First};
    PlatformHook<BOOL WINAPI(HANDLE, WIN32_FIND_DATAW*)> next_{"FindNextFileW", Next};
    PlatformHook<BOOL WINAPI(HANDLE)> close_{"FindClose", Close};
};

}  // namespace test
