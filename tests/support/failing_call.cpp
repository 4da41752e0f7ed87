#include "tests/support/failing_call.h"

#include <cstring>
#include <optional>
#include <vector>

namespace test {

namespace {

using RemoteAddress = unsigned char*;

template <typename Value>
bool Read(HANDLE process, RemoteAddress address, Value* value) {
    return ReadProcessMemory(process, address, value, sizeof *value, nullptr);
}

std::string ReadName(HANDLE process, RemoteAddress address) {
    std::string name;
    for (char letter = 0; Read(process, address + name.size(), &letter) && letter;) {
        name += letter;
    }
    return name;
}

// The place in the loaded executable that holds the function's address; null when there is none.
RemoteAddress FindSlot(HANDLE process, RemoteAddress base, const std::string& function) {
    IMAGE_DOS_HEADER start;
    IMAGE_NT_HEADERS64 headers;
    if (!Read(process, base, &start) || !Read(process, base + start.e_lfanew, &headers)) {
        return nullptr;
    }
    const IMAGE_DATA_DIRECTORY& imports =
        headers.OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    RemoteAddress next = base + imports.VirtualAddress;
    IMAGE_IMPORT_DESCRIPTOR library;
    for (; Read(process, next, &library) && library.Name; next += sizeof library) {
        RemoteAddress lookup = base + library.OriginalFirstThunk;
        RemoteAddress slot = base + library.FirstThunk;
        IMAGE_THUNK_DATA64 thunk;
        for (; Read(process, lookup, &thunk) && thunk.u1.AddressOfData;
             lookup += sizeof thunk, slot += sizeof thunk) {
            constexpr size_t hint = sizeof(WORD);
            if (!IMAGE_SNAP_BY_ORDINAL64(thunk.u1.Ordinal) &&
                ReadName(process, base + thunk.u1.AddressOfData + hint) == function) {
                return slot;
            }
        }
    }
    return nullptr;
}

void Append(std::vector<unsigned char>* code, std::initializer_list<unsigned char> bytes) {
    code->insert(code->end(), bytes);
}

template <typename Value>
void AppendValue(std::vector<unsigned char>* code, Value value) {
    unsigned char bytes[sizeof value];
    std::memcpy(bytes, &value, sizeof value);
    code->insert(code->end(), bytes, bytes + sizeof value);
}

// Behind the code stands how often it still fails, and then whether it may.
constexpr size_t room = 128;
constexpr size_t mayFail = room + sizeof(unsigned);

// Machine code for the address `at`.
std::vector<unsigned char> FailingCode(RemoteAddress at, const FailingCall& call,
                                       DWORD64 original) {
    std::vector<unsigned char> code;
    // cmp rcx or rdx, atLeast; jb original
    Append(&code, {0x48, 0x81, static_cast<unsigned char>(call.argument == 0 ? 0xF9 : 0xFA)});
    AppendValue(&code, call.atLeast);
    Append(&code, {0x72, 0});
    const size_t firstJump = code.size();
    // mov rax, may fail; again: pause; cmp dword [rax], 0; je again
    Append(&code, {0x48, 0xB8});
    AppendValue(&code, reinterpret_cast<DWORD64>(at + mayFail));
    Append(&code, {0xF3, 0x90, 0x83, 0x38, 0x00, 0x74, 0xF9});
    // mov rax, counter
    Append(&code, {0x48, 0xB8});
    AppendValue(&code, reinterpret_cast<DWORD64>(at + room));
    // cmp dword [rax], 0; je original
    Append(&code, {0x83, 0x38, 0x00, 0x74, 0});
    const size_t secondJump = code.size();
    // dec dword [rax]
    Append(&code, {0xFF, 0x08});
    // mov dword gs:[0x68], error: the thread's last error
    Append(&code, {0x65, 0xC7, 0x04, 0x25, 0x68, 0x00, 0x00, 0x00});
    AppendValue(&code, call.error);
    // mov rax, result; ret
    Append(&code, {0x48, 0xB8});
    AppendValue(&code, call.result);
    Append(&code, {0xC3});
    code[firstJump - 1] = static_cast<unsigned char>(code.size() - firstJump);
    code[secondJump - 1] = static_cast<unsigned char>(code.size() - secondJump);
    // mov rax, original; jmp rax
    Append(&code, {0x48, 0xB8});
    AppendValue(&code, original);
    Append(&code, {0xFF, 0xE0});
    code.resize(room);
    AppendValue(&code, call.times);
    return code;
}

// The place of the code; null when the call cannot be replaced.
RemoteAddress Replace(HANDLE process, RemoteAddress base, const FailingCall& call) {
    const RemoteAddress slot = FindSlot(process, base, call.name);
    DWORD64 original = 0;
    if (!slot || !Read(process, slot, &original)) {
        return nullptr;
    }
    const auto code = static_cast<RemoteAddress>(
        VirtualAllocEx(process, nullptr, 4096, MEM_COMMIT | MEM_RESERVE, PAGE_EXECUTE_READWRITE));
    if (!code) {
        return nullptr;
    }
    const std::vector<unsigned char> bytes = FailingCode(code, call, original);
    const auto replacement = reinterpret_cast<DWORD64>(code);
    DWORD protection = 0;
    const bool replaced =
        WriteProcessMemory(process, code, bytes.data(), bytes.size(), nullptr) &&
        VirtualProtectEx(process, slot, sizeof replacement, PAGE_READWRITE, &protection) &&
        WriteProcessMemory(process, slot, &replacement, sizeof replacement, nullptr);
    return replaced ? code : nullptr;
}

}  // namespace

void* ReplaceCall(HANDLE process, DWORD processId, const FailingCall& call) {
    RemoteAddress base = nullptr;
    RemoteAddress code = nullptr;
    bool loaded = false;
    DebugSetProcessKillOnExit(FALSE);
    constexpr DWORD longestLoad = 10000;
    for (DEBUG_EVENT event; !loaded && WaitForDebugEvent(&event, longestLoad);) {
        switch (event.dwDebugEventCode) {
            case CREATE_PROCESS_DEBUG_EVENT:
                base = static_cast<RemoteAddress>(event.u.CreateProcessInfo.lpBaseOfImage);
                CloseHandle(event.u.CreateProcessInfo.hFile);
                break;
            case LOAD_DLL_DEBUG_EVENT:
                CloseHandle(event.u.LoadDll.hFile);
                break;
            case EXCEPTION_DEBUG_EVENT:
                // The system's own breakpoint: everything is loaded and nothing has run.
                loaded = true;
                code = Replace(process, base, call);
                break;
            default:
                break;
        }
        ContinueDebugEvent(event.dwProcessId, event.dwThreadId, DBG_CONTINUE);
    }
    return DebugActiveProcessStop(processId) && code ? code + mayFail : nullptr;
}

bool LetCallFail(HANDLE process, void* call) {
    constexpr unsigned yes = 1;
    return WriteProcessMemory(process, call, &yes, sizeof yes, nullptr) != FALSE;
}

}  // namespace test
