// One function for each mistake that the emulator must not let pass, and some that make none.
#include <windows.h>

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/ce/late_function.h"
#include "platform/storage.h"

namespace {

volatile unsigned sink;

void Tell(const std::wstring& line) {
    OutputDebugStringW((line + L"\n").c_str());
}

void ReadUnaligned() {
    auto* bytes = static_cast<char*>(LocalAlloc(LMEM_FIXED, 16));
    sink = *reinterpret_cast<volatile unsigned*>(bytes + 2);
}

void WriteUnaligned() {
    auto* bytes = static_cast<char*>(LocalAlloc(LMEM_FIXED, 16));
    *reinterpret_cast<volatile std::uint16_t*>(bytes + 3) = 1;
}

void WriteCode() {
    *reinterpret_cast<volatile unsigned*>(&WriteUnaligned) = 0;
}

void UseFreedBlock() {
    auto* block = static_cast<volatile unsigned*>(LocalAlloc(LMEM_FIXED, 40));
    LocalFree(const_cast<unsigned*>(block));
    sink = block[1];
}

void FreeTwice() {
    void* block = LocalAlloc(LMEM_FIXED, 40);
    LocalFree(block);
    LocalFree(block);
}

void ReadBehindBlock() {
    auto* block = static_cast<volatile char*>(LocalAlloc(LMEM_FIXED, 13));
    sink = static_cast<unsigned char>(block[13]);
}

void PassShortBuffer() {
    RECT* rectangle = static_cast<RECT*>(LocalAlloc(LMEM_FIXED, 12));
    GetClientRect(GetDesktopWindow(), rectangle);
}

void PassUnendedText() {
    auto* text = static_cast<wchar_t*>(LocalAlloc(LMEM_FIXED, 8));
    for (int i = 0; i < 4; ++i) {
        text[i] = L'x';
    }
    GetFileAttributesW(text);
}

// Not a tail call, whatever the compiler thinks of it.
unsigned __attribute__((noinline)) Deeper(unsigned level) {
    volatile char filler[1024];
    filler[level % sizeof filler] = 1;
    return level == 0 ? 0 : Deeper(level - 1) + static_cast<unsigned>(filler[1]);
}

void UseSixtyKilobytes() {
    sink = Deeper(50);
}

void UseSeventyKilobytes() {
    sink = Deeper(70);
}

void DestroyRegister() {
    EnumWindows(
        [](HWND, LPARAM) -> BOOL {
            asm volatile("mov r8, #5");
            return FALSE;
        },
        0);
}

// Leaves without a change of state, whatever the caller's is.
__attribute__((naked)) BOOL CALLBACK ReturnAsItIs(HWND, LPARAM) {
    asm("mov r0, #0\n"
        "mov pc, lr\n");
}

void ReturnInWrongState() {
    EnumWindows(ReturnAsItIs, 0);
}

void MakeWindowOfNobody() {
    CreateWindowExW(0, L"EDIT", L"", WS_POPUP, 0, 0, 10, 10, nullptr, nullptr, nullptr, nullptr);
}

void RunHeap() {
    auto* code = static_cast<unsigned*>(LocalAlloc(LMEM_FIXED, 16));
    reinterpret_cast<void (*)()>(code)();
}

void CallWhatTheDeviceLacks() {
    MessageBeep(0);
}

void CallWhatIsNotServed() {
    keybd_event(0, 0, 0, 0);
}

void FreeWhatTheSystemHas() {
    LocalFree(const_cast<wchar_t*>(GetCommandLineW()));
}

void ReadNothing() {
    sink = *reinterpret_cast<volatile unsigned*>(0x20);
}

void LeaveSectionTwice() {
    CRITICAL_SECTION section;
    InitializeCriticalSection(&section);
    EnterCriticalSection(&section);
    LeaveCriticalSection(&section);
    LeaveCriticalSection(&section);
}

void CallAnAddress() {
    reinterpret_cast<void (*)()>(0xF000E3D0)();
}

void ListPartitions() {
    platform::StoreInfo store;
    const HANDLE stores = platform::FindFirstStore(&store);
    for (bool found = stores != INVALID_HANDLE_VALUE; found;
         found = platform::FindNextStore(stores, &store)) {
        const std::wstring name = store.szDeviceName;
        const HANDLE opened = platform::OpenStore((L"\\StoreMgr\\" + name).c_str());
        platform::PartitionInfo partition;
        const HANDLE partitions = platform::FindFirstPartition(opened, &partition);
        for (bool more = partitions != INVALID_HANDLE_VALUE; more;
             more = platform::FindNextPartition(partitions, &partition)) {
            OutputDebugStringW((name + L" holds " + partition.szVolumeName + L"\n").c_str());
        }
        platform::ClosePartitionSearch(partitions);
        platform::CloseStore(opened);
    }
    platform::CloseStoreSearch(stores);
}

void LookUpWhatNoListNames() {
    platform::ce::LateFunction<int()> function(L"aygshell.dll", L"SHFindMenuBars", 188);
    function.Find();
}

// What a later system has is none of an earlier one's.
void LookUpStores() {
    platform::ce::LateFunction<int()> function(L"coredll.dll", L"FindFirstStore");
    OutputDebugStringW(function.Find() ? L"it has stores\n" : L"it has no stores\n");
}

void LeaveSearchOpen() {
    platform::StoreInfo store;
    platform::FindFirstStore(&store);
}

// A window whose procedure runs while the system serves a call, and leaves the registers of the
// call's arguments changed.
constexpr UINT expectedMessage = WM_USER + 1;
constexpr UINT garbledMessage = 0x7700;
void* freedByTheWindow = nullptr;

void FreeInWindow() {
    LocalFree(freedByTheWindow);
    freedByTheWindow = nullptr;
}

extern "C" __attribute__((used)) LRESULT AnswerMessage(HWND window, UINT message, WPARAM wParam,
                                                       LPARAM lParam) {
    if (message == WM_ERASEBKGND || message == WM_GETTEXT) {
        FreeInWindow();
        return 1;
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

extern "C" __attribute__((naked)) LRESULT CALLBACK GarbleRegisters(HWND, UINT, WPARAM, LPARAM) {
    asm("push {r4, lr}\n"
        "bl AnswerMessage\n"
        "mov r1, #0\n"
        "mov r2, #0x7700\n"
        "mov r3, #0x7700\n"
        "pop {r4, lr}\n"
        "bx lr\n");
}

HWND MakeWindow() {
    WNDCLASSW description = {};
    description.lpfnWndProc = GarbleRegisters;
    description.hInstance = GetModuleHandleW(nullptr);
    description.lpszClassName = L"Garbling";
    RegisterClassW(&description);
    const HWND window = CreateWindowExW(0, L"Garbling", L"text", WS_VISIBLE, 0, 0, 50, 50, nullptr,
                                        nullptr, description.hInstance, nullptr);
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        DispatchMessageW(&message);
    }
    return window;
}

// The queue's first message is none of a handheld's: the system answers it, and has the window
// erased for it, before it looks for the next.
void FillQueue(HWND window) {
    constexpr UINT paintNow = 0x88;
    InvalidateRect(window, nullptr, TRUE);
    PostMessageW(window, paintNow, 0, 0);
    PostMessageW(window, expectedMessage, 0, 0);
    PostMessageW(window, garbledMessage, 0, 0);
}

void TakeMessages() {
    const HWND window = MakeWindow();
    MSG message = {};
    FillQueue(window);
    GetMessageW(&message, nullptr, 0, 0);
    Tell(message.message == expectedMessage ? L"got the next" : L"got another");
    GetMessageW(&message, nullptr, garbledMessage, garbledMessage);
    FillQueue(window);
    PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE);
    Tell(message.message == expectedMessage ? L"looked at the next" : L"looked at another");
    DestroyWindow(window);
}

void FreeMessageWhileWaiting() {
    const HWND window = MakeWindow();
    FillQueue(window);
    freedByTheWindow = LocalAlloc(LMEM_FIXED, sizeof(MSG));
    GetMessageW(static_cast<MSG*>(freedByTheWindow), nullptr, 0, 0);
}

void FreeTextWhileAsking() {
    const HWND window = MakeWindow();
    freedByTheWindow = LocalAlloc(LMEM_FIXED, 64);
    GetWindowTextW(window, static_cast<wchar_t*>(freedByTheWindow), 32);
}

void FreePaintWhileErasing() {
    const HWND window = MakeWindow();
    InvalidateRect(window, nullptr, TRUE);
    freedByTheWindow = LocalAlloc(LMEM_FIXED, sizeof(PAINTSTRUCT));
    BeginPaint(window, static_cast<PAINTSTRUCT*>(freedByTheWindow));
}

void FreeAnswerWhileSending() {
    const HWND window = MakeWindow();
    freedByTheWindow = LocalAlloc(LMEM_FIXED, sizeof(DWORD_PTR));
    SendMessageTimeoutW(window, WM_ERASEBKGND, 0, 0, 0, 1000,
                        static_cast<DWORD_PTR*>(freedByTheWindow));
}

// What GetFileInformationByHandle fills in: the headers lack the last word.
struct Identity {
    BY_HANDLE_FILE_INFORMATION information;
    DWORD object;
};
static_assert(sizeof(Identity) == 56);

Identity IdentityOf(const wchar_t* path) {
    Identity identity;
    FillMemory(&identity, sizeof identity, 0xCC);
    const HANDLE file = CreateFileW(path, 0, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    if (!GetFileInformationByHandle(file, &identity.information)) {
        Tell(L"the file has no information");
    }
    CloseHandle(file);
    return identity;
}

bool AreSame(const Identity& left, const Identity& right) {
    return left.object == right.object &&
           left.information.nFileIndexLow == right.information.nFileIndexLow &&
           left.information.nFileIndexHigh == right.information.nFileIndexHigh &&
           left.information.dwVolumeSerialNumber == right.information.dwVolumeSerialNumber;
}

// A module without sections that says how large it and its headers are in memory.
bool IsLoaded(DWORD imageSize, DWORD headersSize) {
    constexpr const wchar_t* name = L"\\Temp\\module.dll";
    constexpr DWORD length = 0x200;
    auto* const bytes = static_cast<BYTE*>(LocalAlloc(LMEM_ZEROINIT, length));
    auto* const dos = reinterpret_cast<IMAGE_DOS_HEADER*>(bytes);
    dos->e_magic = IMAGE_DOS_SIGNATURE;
    dos->e_lfanew = 64;
    auto* const headers = reinterpret_cast<IMAGE_NT_HEADERS*>(bytes + 64);
    headers->Signature = IMAGE_NT_SIGNATURE;
    headers->FileHeader.SizeOfOptionalHeader = sizeof headers->OptionalHeader;
    headers->OptionalHeader.SizeOfImage = imageSize;
    headers->OptionalHeader.SizeOfHeaders = headersSize;
    const HANDLE file = CreateFileW(name, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    DWORD written = 0;
    WriteFile(file, bytes, length, &written, nullptr);
    CloseHandle(file);
    LocalFree(bytes);
    const HMODULE module = LoadLibraryExW(name, nullptr, LOAD_LIBRARY_AS_DATAFILE);
    if (module) {
        FreeLibrary(module);
    }
    DeleteFileW(name);
    return module != nullptr;
}

void LoadModulesThatLie() {
    Tell(IsLoaded(0x1000, 0x200) ? L"a sound one is loaded" : L"a sound one is refused");
    Tell(IsLoaded(0, 0) ? L"an empty one is loaded" : L"an empty one is refused");
    Tell(IsLoaded(0x80000000, 0x200) ? L"a huge one is loaded" : L"a huge one is refused");
    Tell(IsLoaded(0x1000, 0x1000) ? L"headers behind the file are loaded"
                                  : L"headers behind the file are refused");
}

void IdentifyFiles() {
    const wchar_t* names[] = {L"\\Temp\\first.txt", L"\\Temp\\second.txt"};
    for (const wchar_t* name : names) {
        const HANDLE file = CreateFileW(name, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
        DWORD written = 0;
        WriteFile(file, L"12345678", 5, &written, nullptr);
        CloseHandle(file);
    }
    const Identity first = IdentityOf(names[0]);
    const Identity second = IdentityOf(names[1]);
    Tell(first.information.nFileSizeLow == 5 && first.information.nFileSizeHigh == 0 &&
                 first.information.nNumberOfLinks == 1
             ? L"a file of 5 bytes with one link"
             : L"another file");
    Tell(AreSame(first, IdentityOf(names[0])) ? L"the same as before" : L"not the same as before");
    Tell(AreSame(first, second) ? L"the same as the other" : L"not the same as the other");
    Tell(first.object && second.object ? L"with an identifier" : L"without an identifier");
    constexpr DWORD asFolder = 0x02000000;
    const HANDLE folder = CreateFileW(L"\\Temp", 0, 0, nullptr, OPEN_EXISTING, asFolder, nullptr);
    Tell(folder == INVALID_HANDLE_VALUE && GetLastError() == ERROR_ACCESS_DENIED
             ? L"a folder is refused"
             : L"a folder was opened");
    for (const wchar_t* name : names) {
        DeleteFileW(name);
    }
}

struct Mistake {
    const wchar_t* name;
    void (*function)();
};

constexpr Mistake mistakes[] = {
    {L"none", [] {}},
    {L"read-unaligned", ReadUnaligned},
    {L"write-unaligned", WriteUnaligned},
    {L"write-code", WriteCode},
    {L"use-freed-block", UseFreedBlock},
    {L"free-twice", FreeTwice},
    {L"read-behind-block", ReadBehindBlock},
    {L"pass-short-buffer", PassShortBuffer},
    {L"pass-unended-text", PassUnendedText},
    {L"use-sixty-kilobytes", UseSixtyKilobytes},
    {L"use-seventy-kilobytes", UseSeventyKilobytes},
    {L"destroy-register", DestroyRegister},
    {L"return-in-wrong-state", ReturnInWrongState},
    {L"make-window-of-nobody", MakeWindowOfNobody},
    {L"run-heap", RunHeap},
    {L"call-what-the-device-lacks", CallWhatTheDeviceLacks},
    {L"call-what-is-not-served", CallWhatIsNotServed},
    {L"free-what-the-system-has", FreeWhatTheSystemHas},
    {L"read-nothing", ReadNothing},
    {L"leave-section-twice", LeaveSectionTwice},
    {L"call-an-address", CallAnAddress},
    {L"list-partitions", ListPartitions},
    {L"look-up-what-no-list-names", LookUpWhatNoListNames},
    {L"look-up-stores", LookUpStores},
    {L"leave-search-open", LeaveSearchOpen},
    {L"identify-files", IdentifyFiles},
    {L"load-modules-that-lie", LoadModulesThatLie},
    {L"take-messages", TakeMessages},
    {L"free-message-while-waiting", FreeMessageWhileWaiting},
    {L"free-text-while-asking", FreeTextWhileAsking},
    {L"free-paint-while-erasing", FreePaintWhileErasing},
    {L"free-answer-while-sending", FreeAnswerWhileSending},
};

}  // namespace

int WINAPI wWinMain(HINSTANCE, HINSTANCE, wchar_t* commandLine, int) {
    for (const Mistake& mistake : mistakes) {
        if (std::wstring_view(commandLine) == mistake.name) {
            mistake.function();
            return 7;
        }
    }
    return 8;
}
