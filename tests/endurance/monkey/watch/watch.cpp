// Loaded into the program under test: says how far it has come with its messages, and counts what
// its process holds.
#include "tests/endurance/monkey/watch/channel.h"
#include "tests/support/platform_hook.h"
#include "tests/support/world.h"

namespace {

HMODULE own = nullptr;
monkey::WatchChannel* channel = nullptr;
HANDLE ask = nullptr;
HANDLE answer = nullptr;
HANDLE marked = nullptr;
UINT markMessage = 0;

bool IsInput(UINT message) {
    return (message >= WM_KEYFIRST && message <= WM_KEYLAST) ||
           (message >= WM_MOUSEFIRST && message <= WM_MOUSELAST) || message == WM_COMMAND;
}

// What a person does never comes to a window that takes no input; what was posted before it took
// none is not to come there either.
bool TakesInput(HWND window) {
    return IsWindowEnabled(window) && IsWindowEnabled(GetAncestor(window, GA_ROOT));
}

BYTE KeysHeld() {
    return static_cast<BYTE>((GetKeyState(VK_SHIFT) < 0 ? 1 : 0) +
                             (GetKeyState(VK_CONTROL) < 0 ? 2 : 0) +
                             (GetKeyState(VK_MENU) < 0 ? 4 : 0));
}

LRESULT CALLBACK WatchMessage(int code, WPARAM wParam, LPARAM lParam) {
    MSG& message = *reinterpret_cast<MSG*>(lParam);
    if (code == HC_ACTION && wParam == PM_REMOVE) {
        if (IsInput(message.message) && !TakesInput(message.hwnd)) {
            message.message = WM_NULL;
        }
        if (message.message == markMessage) {
            channel->mark = static_cast<LONG>(message.wParam);
            SetEvent(marked);
        } else {
            channel->last[channel->taken % monkey::lastMessages] = {
                message.hwnd, message.message, static_cast<WORD>(message.wParam), KeysHeld()};
            channel->taken = channel->taken + 1;
        }
    }
    return CallNextHookEx(nullptr, code, wParam, lParam);
}

constexpr DWORD anySize = 0;

unsigned CountBlocks(DWORD size) {
    constexpr DWORD mostHeaps = 64;
    HANDLE heaps[mostHeaps];
    const DWORD count = GetProcessHeaps(mostHeaps, heaps);
    unsigned blocks = 0;
    for (DWORD index = 0; index < count && index < mostHeaps; ++index) {
        PROCESS_HEAP_ENTRY entry = {};
        HeapLock(heaps[index]);
        while (HeapWalk(heaps[index], &entry)) {
            blocks += (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0 &&
                      (size == anySize || entry.cbData == size);
        }
        HeapUnlock(heaps[index]);
    }
    return blocks;
}

// Wine reads the clipboard through a buffer of this many bytes, and loses it where the process has
// the data already, as one has that put them there: so does any program that puts and reads them.
constexpr DWORD clipboardBuffer = 1024;
unsigned lostBuffers = 0;

decltype(GetClipboardData)* getClipboardData = nullptr;
HANDLE WINAPI CountLostBuffer(UINT format) {
    const unsigned before = CountBlocks(clipboardBuffer);
    const HANDLE data = getClipboardData(format);
    lostBuffers += CountBlocks(clipboardBuffer) - before;
    return data;
}

void WatchClipboard() {
    if (void** const import = test::FindImport("GetClipboardData")) {
        getClipboardData = reinterpret_cast<decltype(GetClipboardData)*>(*import);
        test::SetImport(import, reinterpret_cast<void*>(CountLostBuffer));
    }
}

// The first question comes when there is a thread to watch.
DWORD WINAPI Serve(void*) {
    HHOOK hook = nullptr;
    for (;;) {
        WaitForSingleObject(ask, INFINITE);
        if (!hook) {
            hook = SetWindowsHookExW(WH_GETMESSAGE, WatchMessage, own, channel->thread);
        }
        const test::Held held = test::CountHeld();
        channel->gdiObjects = held.gdiObjects;
        channel->handles = held.handles;
        channel->blocks = CountBlocks(anySize) - lostBuffers;
        SetEvent(answer);
    }
}

HANDLE OpenEventOf(const wchar_t* name, const wchar_t* suffix) {
    wchar_t whole[128];
    lstrcpynW(whole, name, 100);
    lstrcatW(whole, suffix);
    return OpenEventW(SYNCHRONIZE | EVENT_MODIFY_STATE, FALSE, whole);
}

}  // namespace

BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, void*) {
    if (reason != DLL_PROCESS_ATTACH) {
        return TRUE;
    }
    own = instance;
    wchar_t name[128] = {};
    GetEnvironmentVariableW(monkey::channelVariable, name, 128);
    const HANDLE mapping = OpenFileMappingW(FILE_MAP_ALL_ACCESS, FALSE, name);
    if (!mapping) {
        return FALSE;
    }
    channel = static_cast<monkey::WatchChannel*>(
        MapViewOfFile(mapping, FILE_MAP_ALL_ACCESS, 0, 0, sizeof(monkey::WatchChannel)));
    ask = OpenEventOf(name, monkey::askSuffix);
    answer = OpenEventOf(name, monkey::answerSuffix);
    marked = OpenEventOf(name, monkey::markSuffix);
    markMessage = RegisterWindowMessageW(monkey::markMessage);
    if (!channel || !ask || !answer || !marked) {
        return FALSE;
    }
    WatchClipboard();
    CloseHandle(CreateThread(nullptr, 0, Serve, nullptr, 0, nullptr));
    return TRUE;
}
