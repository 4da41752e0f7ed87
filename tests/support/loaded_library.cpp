#include "tests/support/loaded_library.h"

#include <cwchar>

#include "tests/support/wait.h"

namespace test {

namespace {

// The function that loads a library stands at the same address in every process.
bool LoadOnce(HANDLE process, void* path) {
    const auto load = reinterpret_cast<LPTHREAD_START_ROUTINE>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "LoadLibraryW")));
    const HANDLE thread = CreateRemoteThread(process, nullptr, 0, load, path, 0, nullptr);
    if (!thread) {
        return false;
    }
    DWORD loaded = 0;
    const bool done = WaitForSingleObject(thread, longestWait) == WAIT_OBJECT_0 &&
                      GetExitCodeThread(thread, &loaded) && loaded != 0;
    CloseHandle(thread);
    return done;
}

}  // namespace

std::wstring LibraryBeside(const wchar_t* name) {
    wchar_t path[MAX_PATH];
    const std::wstring own(path, GetModuleFileNameW(nullptr, path, MAX_PATH));
    return own.substr(0, own.rfind(L'\\') + 1) + name;
}

// A process whose own start is not far enough yet refuses.
bool LoadInto(HANDLE process, const wchar_t* path) {
    const SIZE_T size = (std::wcslen(path) + 1) * sizeof(wchar_t);
    void* place = nullptr;
    return WaitFor([&] {
        if (WaitForSingleObject(process, 0) == WAIT_OBJECT_0) {
            return true;
        }
        if (!place) {
            place =
                VirtualAllocEx(process, nullptr, size, MEM_COMMIT | MEM_RESERVE, PAGE_READWRITE);
        }
        return place && WriteProcessMemory(process, place, path, size, nullptr) &&
               LoadOnce(process, place);
    });
}

}  // namespace test
