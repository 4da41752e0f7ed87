// Makes single calls of the file system fail, and remembers what was asked of it.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "tests/support/platform_hook.h"

namespace test {

// The calls that transfers and deletes are made of. One at a time.
class FailingCalls {
 public:
    FailingCalls();
    ~FailingCalls();
    FailingCalls(const FailingCalls&) = delete;
    FailingCalls& operator=(const FailingCalls&) = delete;

    // Lets the call number `number` (from 0) of `name` fail; an empty name counts all calls that
    // change something or walk a folder.
    void Fail(std::string_view name, size_t number, DWORD error);
    void FailNothing() { armed_ = false; }
    bool HasFailed() const { return failed_; }

    // The longest path in characters; this machine may know longer ones than a handheld.
    size_t longestPath = 32000;

    // Whether a copy that may not overwrite looks for what is in its way before anything else.
    bool destinationFirst = true;
    // Whether a copy that fails leaves the beginning of its file behind.
    bool leavesHalfDone = false;

    // Called before each file is deleted.
    std::function<void()> beforeDelete;

    // The last path that was found to exist by GetFileAttributesW.
    const std::wstring& LastFound() const { return lastFound_; }
    // Walks begun and not ended.
    int OpenWalks() const { return openWalks_; }
    // The calls by name, "CopyFileW".
    std::vector<std::string_view> calls;

 private:
    static bool Fails(std::string_view name);
    static bool IsTooLong(LPCWSTR path);
    static BOOL WINAPI Copy(LPCWSTR from, LPCWSTR to, BOOL keep);
    static BOOL WINAPI Move(LPCWSTR from, LPCWSTR to);
    static BOOL WINAPI Delete(LPCWSTR path);
    static BOOL WINAPI Make(LPCWSTR path, SECURITY_ATTRIBUTES* security);
    static BOOL WINAPI Remove(LPCWSTR path);
    static DWORD WINAPI Attributes(LPCWSTR path);
    static HANDLE WINAPI First(LPCWSTR pattern, WIN32_FIND_DATAW* data);
    static BOOL WINAPI Next(HANDLE search, WIN32_FIND_DATAW* data);
    static BOOL WINAPI Close(HANDLE search);

    bool armed_ = false;
    bool failed_ = false;
    std::string_view name_;
    size_t left_ = 0;
    DWORD error_ = 0;
    std::wstring lastFound_;
    int openWalks_ = 0;
    PlatformHook<BOOL WINAPI(LPCWSTR, LPCWSTR, BOOL)> copy_{"CopyFileW", Copy};
    PlatformHook<BOOL WINAPI(LPCWSTR, LPCWSTR)> move_{"MoveFileW", Move};
    PlatformHook<BOOL WINAPI(LPCWSTR)> delete_{"DeleteFileW", Delete};
    PlatformHook<BOOL WINAPI(LPCWSTR, SECURITY_ATTRIBUTES*)> make_{"CreateDirectoryW", Make};
    PlatformHook<BOOL WINAPI(LPCWSTR)> remove_{"RemoveDirectoryW", Remove};
    PlatformHook<DWORD WINAPI(LPCWSTR)> attributes_{"GetFileAttributesW", Attributes};
    PlatformHook<HANDLE WINAPI(LPCWSTR, WIN32_FIND_DATAW*)> first_{"FindFirstFileW", First};
    PlatformHook<BOOL WINAPI(HANDLE, WIN32_FIND_DATAW*)> next_{"FindNextFileW", Next};
    PlatformHook<BOOL WINAPI(HANDLE)> close_{"FindClose", Close};
};

}  // namespace test
