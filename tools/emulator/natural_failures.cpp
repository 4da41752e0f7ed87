#include "natural_failures.h"

#include <windows.h>

#include <map>
#include <set>

#include "sweep_channel.h"

namespace emulator {

namespace {

constexpr Address none = 0;
// INVALID_HANDLE_VALUE, INVALID_FILE_ATTRIBUTES, WAIT_FAILED.
constexpr Address invalid = 0xFFFFFFFF;
constexpr Address noMemory = ERROR_NOT_ENOUGH_MEMORY;
constexpr Address denied = ERROR_ACCESS_DENIED;
constexpr Address notReady = ERROR_NOT_READY;
constexpr Address full = ERROR_DISK_FULL;
constexpr Address wrong = ERROR_INVALID_PARAMETER;
constexpr Address comNoMemory = 0x8007000E;

using Failures = std::map<std::string, NaturalFailure>;

// What belongs to windows, menus, dialogs and the shell.
const Failures windowFailures = {
    {"AppendMenuW", {none, noMemory, sweep::systemCalls}},
    {"CreateWindowExW", {none, noMemory, sweep::systemCalls}},
    {"DeleteMenu", {none, denied, sweep::systemCalls}},
    {"DialogBoxIndirectParamW", {invalid, noMemory, sweep::systemCalls}},
    {"EnumWindows", {none, noMemory, sweep::systemCalls}},
    {"GetClassNameW", {none, noMemory, sweep::systemCalls}},
    {"GetMenuItemInfoW", {none, noMemory, sweep::systemCalls}},
    {"GetMonitorInfo", {none, noMemory, sweep::systemCalls}},
    {"GetWindowTextW", {none, noMemory, sweep::systemCalls}},
    {"LoadMenuW", {none, noMemory, sweep::systemCalls}},
    {"MessageBoxW", {none, noMemory, sweep::systemCalls}},
    {"PostMessageW", {none, noMemory, sweep::systemCalls}},
    {"RegisterClassW", {none, noMemory, sweep::systemCalls}},
    {"SendMessageTimeout", {none, ERROR_TIMEOUT, sweep::systemCalls}},
    {"SetForegroundWindow", {none, denied, sweep::systemCalls}},
    {"SetMenuItemInfoW", {none, noMemory, sweep::systemCalls}},
    {"SetTimer", {none, noMemory, sweep::systemCalls}},
    {"SetWindowTextW", {none, noMemory, sweep::systemCalls}},
    {"SHCreateShortcut", {none, denied, sweep::systemCalls}},
    {"SHGetFileInfo", {none, noMemory, sweep::systemCalls}},
    {"SHGetShortcutTarget", {none, notReady, sweep::systemCalls}},
    {"SHGetSpecialFolderPath", {none, noMemory, sweep::systemCalls}},
    {"ShellExecuteEx", {none, noMemory, sweep::systemCalls}},
    {"SipGetInfo", {none, noMemory, sweep::systemCalls}},
    {"SipShowIM", {none, noMemory, sweep::systemCalls}},
    {"aygshell!SHFindMenuBar", {none, noMemory, sweep::systemCalls}},
    {"aygshell!SHFullScreen", {none, noMemory, sweep::systemCalls}},
    {"aygshell!SHInitDialog", {none, noMemory, sweep::systemCalls}},
    {"aygshell#188", {none, noMemory, sweep::systemCalls}},
    {"aygshell#56", {none, noMemory, sweep::systemCalls}},
};

// Resources, languages, texts.
const Failures textFailures = {
    {"FindResourceW", {none, noMemory, sweep::systemCalls}},
    {"FormatMessageW", {none, noMemory, sweep::systemCalls}},
    {"GetDateFormatW", {none, noMemory, sweep::systemCalls}},
    {"GetLocaleInfoW", {none, noMemory, sweep::systemCalls}},
    {"GetModuleFileNameW", {none, noMemory, sweep::systemCalls}},
    {"GetNumberFormatW", {none, noMemory, sweep::systemCalls}},
    {"GetProcAddressW", {none, ERROR_PROC_NOT_FOUND, sweep::systemCalls}},
    {"GetTimeFormatW", {none, noMemory, sweep::systemCalls}},
    {"LoadCursorW", {none, noMemory, sweep::systemCalls}},
    {"LoadLibraryExW", {none, noMemory, sweep::systemCalls}},
    {"LoadLibraryW", {none, noMemory, sweep::systemCalls}},
    {"LoadResource", {none, noMemory, sweep::systemCalls}},
    {"LoadStringW", {none, noMemory, sweep::systemCalls}},
    {"MultiByteToWideChar", {none, noMemory, sweep::systemCalls}},
    {"SizeofResource", {none, noMemory, sweep::systemCalls}},
    {"WideCharToMultiByte", {none, noMemory, sweep::systemCalls}},
};

// Files, the registry (whose result is the error), the clipboard.
const Failures storeFailures = {
    {"CopyFileW", {none, full, sweep::systemCalls}},
    {"CreateDirectoryW", {none, denied, sweep::systemCalls}},
    {"CreateFileW", {invalid, denied, sweep::systemCalls}},
    {"DeleteFileW", {none, denied, sweep::systemCalls}},
    {"FileTimeToLocalFileTime", {none, wrong, sweep::systemCalls}},
    {"FileTimeToSystemTime", {none, wrong, sweep::systemCalls}},
    {"FindFirstFileW", {invalid, notReady, sweep::systemCalls}},
    {"FindFirstStore", {invalid, notReady, sweep::systemCalls}},
    {"FindNextFileW", {none, notReady, sweep::systemCalls}},
    {"FindNextStore", {none, notReady, sweep::systemCalls}},
    {"FindFirstPartition", {invalid, notReady, sweep::systemCalls}},
    {"FindNextPartition", {none, notReady, sweep::systemCalls}},
    {"GetDiskFreeSpaceExW", {none, notReady, sweep::systemCalls}},
    {"GetFileAttributesExW", {none, notReady, sweep::systemCalls}},
    {"GetFileAttributesW", {invalid, notReady, sweep::systemCalls}},
    {"GetFileInformationByHandle", {none, notReady, sweep::systemCalls}},
    {"GetFileSize", {invalid, notReady, sweep::systemCalls}},
    {"MoveFileW", {none, denied, sweep::systemCalls}},
    {"ReadFile", {none, notReady, sweep::systemCalls}},
    {"RemoveDirectoryW", {none, denied, sweep::systemCalls}},
    {"SetFileAttributesW", {none, denied, sweep::systemCalls}},
    {"WriteFile", {none, full, sweep::systemCalls}},
    {"note_prj!FindFirstFlashCard", {invalid, notReady, sweep::systemCalls}},
    {"note_prj!FindNextFlashCard", {none, notReady, sweep::systemCalls}},
    {"note_prj#7", {invalid, notReady, sweep::systemCalls}},
    {"note_prj#8", {none, notReady, sweep::systemCalls}},
    {"RegCreateKeyExW", {noMemory, noMemory, sweep::systemCalls}},
    {"RegEnumValueW", {noMemory, noMemory, sweep::systemCalls}},
    {"RegOpenKeyExW", {noMemory, noMemory, sweep::systemCalls}},
    {"RegQueryValueExW", {noMemory, noMemory, sweep::systemCalls}},
    {"RegSetValueExW", {noMemory, noMemory, sweep::systemCalls}},
    {"EmptyClipboard", {none, denied, sweep::systemCalls}},
    {"GetClipboardDataAlloc", {none, noMemory, sweep::systemCalls}},
    {"OpenClipboard", {none, denied, sweep::systemCalls}},
    {"RegisterClipboardFormatW", {none, noMemory, sweep::systemCalls}},
    {"SetClipboardData", {none, noMemory, sweep::systemCalls}},
};

// Processes and what is told of them, waiting, objects, the heap.
const Failures kernelFailures = {
    {"CreateEventW", {none, noMemory, sweep::systemCalls}},
    {"CreateProcessW", {none, noMemory, sweep::systemCalls}},
    {"EventModify", {none, noMemory, sweep::systemCalls}},
    {"GetSystemPowerStatusEx2", {none, noMemory, sweep::systemCalls}},
    {"MsgWaitForMultipleObjectsEx", {invalid, ERROR_INVALID_HANDLE, sweep::systemCalls}},
    {"OpenProcess", {none, denied, sweep::systemCalls}},
    {"TerminateProcess", {none, denied, sweep::systemCalls}},
    {"VirtualQuery", {none, wrong, sweep::systemCalls}},
    {"WaitForSingleObject", {invalid, ERROR_INVALID_HANDLE, sweep::systemCalls}},
    {"toolhelp!CreateToolhelp32Snapshot", {invalid, noMemory, sweep::systemCalls}},
    {"toolhelp!Heap32First", {none, noMemory, sweep::systemCalls}},
    {"toolhelp!Heap32ListFirst", {none, noMemory, sweep::systemCalls}},
    {"toolhelp!Heap32ListNext", {none, noMemory, sweep::systemCalls}},
    {"toolhelp!Heap32Next", {none, noMemory, sweep::systemCalls}},
    {"toolhelp!Module32First", {none, noMemory, sweep::systemCalls}},
    {"toolhelp!Module32Next", {none, noMemory, sweep::systemCalls}},
    {"toolhelp!Process32First", {none, noMemory, sweep::systemCalls}},
    {"toolhelp!Process32Next", {none, noMemory, sweep::systemCalls}},
    {"toolhelp!Thread32First", {none, noMemory, sweep::systemCalls}},
    {"toolhelp!Thread32Next", {none, noMemory, sweep::systemCalls}},
    {"ole32!CLSIDFromProgID", {comNoMemory, noMemory, sweep::systemCalls}},
    {"ole32!CoCreateInstance", {comNoMemory, noMemory, sweep::systemCalls}},
    {"ole32!CoInitializeEx", {comNoMemory, noMemory, sweep::systemCalls}},
    {"oleaut32!GetErrorInfo", {S_FALSE, noMemory, sweep::systemCalls}},
    {"oleaut32!SysAllocString", {none, noMemory, sweep::systemCalls}},
    {"LocalAlloc", {none, noMemory, sweep::heapCalls}},
    {"LocalReAlloc", {none, noMemory, sweep::heapCalls}},
};

const Failures paintFailures = {
    {"BeginPaint", {none, noMemory, sweep::paintCalls}},
    {"BitBlt", {none, noMemory, sweep::paintCalls}},
    {"CreateCompatibleBitmap", {none, noMemory, sweep::paintCalls}},
    {"CreateCompatibleDC", {none, noMemory, sweep::paintCalls}},
    {"CreateDIBSection", {none, noMemory, sweep::paintCalls}},
    {"CreateFontIndirectW", {none, noMemory, sweep::paintCalls}},
    {"CreateSolidBrush", {none, noMemory, sweep::paintCalls}},
    {"DrawIconEx", {none, noMemory, sweep::paintCalls}},
    {"DrawTextW", {none, noMemory, sweep::paintCalls}},
    {"ExtTextOutW", {none, noMemory, sweep::paintCalls}},
    {"FillRect", {none, noMemory, sweep::paintCalls}},
    {"GetDC", {none, noMemory, sweep::paintCalls}},
    {"GetObjectW", {none, noMemory, sweep::paintCalls}},
    {"GetPixel", {invalid, noMemory, sweep::paintCalls}},
    {"GetSysColorBrush", {none, noMemory, sweep::paintCalls}},
    {"GetTextExtentExPointW", {none, noMemory, sweep::paintCalls}},
    {"GetTextMetricsW", {none, noMemory, sweep::paintCalls}},
    {"ImageList_Draw", {none, noMemory, sweep::paintCalls}},
    {"ImageList_GetIconSize", {none, noMemory, sweep::paintCalls}},
    {"LoadImageW", {none, noMemory, sweep::paintCalls}},
    {"SetViewportOrgEx", {none, noMemory, sweep::paintCalls}},
    {"TransparentImage", {none, noMemory, sweep::paintCalls}},
    {"aygshell!SHLoadImageResource", {none, noMemory, sweep::paintCalls}},
    {"aygshell#64", {none, noMemory, sweep::paintCalls}},
};

// They do not fail, or only for what a program must not do (a window that has gone, a handle that
// is none), or tell nobody of it. TlsCall is among them: a process gets its first slot.
const std::set<std::string> unfailing = {
    "CallWindowProcW",
    "CharUpperBuffW",
    "CheckMenuItem",
    "ClientToScreen",
    "CloseClipboard",
    "CloseHandle",
    "CompareStringW",
    "DefWindowProcW",
    "DeleteCriticalSection",
    "DeleteDC",
    "DeleteObject",
    "DestroyIcon",
    "DestroyMenu",
    "DestroyWindow",
    "DispatchMessageW",
    "EnableMenuItem",
    "EndDialog",
    "EndPaint",
    "EnterCriticalSection",
    "FindClose",
    "FindClosePartition",
    "FindCloseStore",
    "FindWindowW",
    "FreeLibrary",
    "GetActiveWindow",
    "GetAsyncKeyState",
    "GetCapture",
    "GetClassLongW",
    "GetClientRect",
    "GetCommandLineW",
    "GetCursorPos",
    "GetDlgCtrlID",
    "GetFocus",
    "GetForegroundWindow",
    "GetKeyState",
    "GetLastError",
    "GetMessagePos",
    "GetMessageW",
    "GetParent",
    "GetQueueStatus",
    "GetStockObject",
    "GetSysColor",
    "GetSystemMetrics",
    "GetTickCount",
    "GetUserDefaultLCID",
    "GetVersionExW",
    "GetWindow",
    "GetWindowLongW",
    "GetWindowRect",
    "GetWindowThreadProcessId",
    "GlobalMemoryStatus",
    "InflateRect",
    "InitializeCriticalSection",
    "InterlockedExchange",
    "InterlockedTestExchange",
    "InvalidateRect",
    "IsChild",
    "IsClipboardFormatAvailable",
    "IsWindow",
    "IsWindowEnabled",
    "IsWindowVisible",
    "KillTimer",
    "LeaveCriticalSection",
    "LocalFree",
    "LocalSize",
    "MessageBeep",
    "MonitorFromWindow",
    "MoveWindow",
    "OutputDebugStringW",
    "PeekMessageW",
    "PostQuitMessage",
    "PtInRect",
    "RegCloseKey",
    "RegisterHotKey",
    "ReleaseCapture",
    "ReleaseDC",
    "ScreenToClient",
    "SelectObject",
    "SendMessageW",
    "SetBkMode",
    "SetCapture",
    "SetCursor",
    "SetFocus",
    "SetLastError",
    "SetTextColor",
    "SetWindowLongW",
    "SetWindowPos",
    "ShowWindow",
    "Sleep",
    "TlsCall",
    "TlsGetValue",
    "TlsSetValue",
    "TranslateMessage",
    "UnregisterHotKey",
    "UpdateWindow",
    "memcpy",
    "memmove",
    "memset",
    "strcmp",
    "strlen",
    "ole32!CoUninitialize",
    "oleaut32!SysFreeString",
    "oleaut32!SysStringLen",
    "oleaut32!VariantClear",
    "oleaut32!VariantInit",
    "toolhelp!CloseToolhelp32Snapshot",
};

// The functions of objects are numbered; the first three are those that every object has.
bool IsMethod(const std::string& name) {
    return name[0] == 'I' && name.find('#') != std::string::npos;
}

bool CountsReferences(const std::string& method) {
    return method.ends_with("#1") || method.ends_with("#2");
}

}  // namespace

const NaturalFailure* NaturalFailureOf(const std::string& name) {
    for (const Failures* failures :
         {&kernelFailures, &windowFailures, &paintFailures, &storeFailures, &textFailures}) {
        if (const auto found = failures->find(name); found != failures->end()) {
            return &found->second;
        }
    }
    static constexpr NaturalFailure ofMethod = {comNoMemory, noMemory, sweep::systemCalls};
    return IsMethod(name) && !CountsReferences(name) ? &ofMethod : nullptr;
}

bool KnowsHowItFails(const std::string& name) {
    return NaturalFailureOf(name) || unfailing.count(name) != 0 || IsMethod(name);
}

}  // namespace emulator
