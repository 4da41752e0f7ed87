// The kernel, GDI, USER and shell calls in which a handheld and a PC differ. Everything else is
// called by the platform's own names.
#pragma once

#include <string>

#include "platform/windows.h"

namespace platform {

// A folder entry as the find calls give it.
#ifdef UNDER_CE
struct FindData {
    DWORD dwFileAttributes;
    FILETIME ftCreationTime;
    FILETIME ftLastAccessTime;
    FILETIME ftLastWriteTime;
    DWORD nFileSizeHigh;
    DWORD nFileSizeLow;
    DWORD dwOID;
    WCHAR cFileName[MAX_PATH];
};
static_assert(sizeof(FindData) == 560);
static_assert(sizeof(WNDCLASSW) == 40 && sizeof(MSG) == 28 && sizeof(PAINTSTRUCT) == 64);
static_assert(sizeof(LOGFONTW) == 92 && sizeof(DRAWITEMSTRUCT) == 48 && sizeof(MONITORINFO) == 40);
static_assert(sizeof(TEXTMETRICW) == 60 && sizeof(BITMAPINFOHEADER) == 40);
static_assert(sizeof(SHFILEINFOW) == 692 && sizeof(CREATESTRUCTW) == 48);
#else
using FindData = WIN32_FIND_DATAW;
#endif

// The size of MENUITEMINFOW up to the fields that a handheld knows, in bytes.
inline constexpr UINT menuItemInfoSize = offsetof(MENUITEMINFOW, hbmpItem);
#ifdef UNDER_CE
static_assert(menuItemInfoSize == 44);
#endif

// FindFirstFileW, FindNextFileW: entries "." and ".." never appear. The first returns
// INVALID_HANDLE_VALUE on failure; the handle is closed with FindClose. A folder that holds
// nothing but those two fails with ERROR_NO_MORE_FILES, as the second does at a folder's end.
HANDLE FindFirst(const wchar_t* pattern, FindData* data);
bool FindNext(HANDLE search, FindData* data);

// The arguments of this process's command line, without the program's own name
// (GetCommandLineW). Owned by the platform.
const wchar_t* CommandLineArguments();

// Starts a program without arguments (CreateProcessW; a handheld takes no start-up description).
// False on failure, with the last error.
bool StartProgram(const wchar_t* path);

// Signals an event (SetEvent; EventModify on a handheld). False on failure, with the last error.
bool SignalEvent(HANDLE event);

// GetModuleFileNameW, the path as a handheld writes it: without the letter of the current drive
// and without short names. Empty on failure, with the thread's last error.
std::wstring ModulePath(HMODULE module);

// The path of a process's executable as a handheld writes it (GetModuleFileNameW with the process's
// identifier; QueryFullProcessImageNameW on a PC, where a process whose path cannot be read has its
// name for a path). Empty on failure, with the thread's last error.
std::wstring ProcessPath(DWORD processId);

// The text of a string resource in place, not NUL-terminated, and its length in characters
// (LoadStringW without a buffer). Length 0 when there is none.
size_t ResourceString(HINSTANCE module, UINT id, const wchar_t** text);

// GetNumberFormatW in the user's locale with the locale's own format: a plain decimal text
// ("-1234.5") becomes the locale's ("-1,234.50"). Empty on failure.
std::wstring NumberFormat(const wchar_t* plain);

// SHGetFileInfo (cbFileInfo = sizeof *info) for a path as a handheld writes it.
DWORD_PTR FileInfo(const wchar_t* path, DWORD attributes, SHFILEINFOW* info, UINT flags);

// Completes drawing into bitmap sections before their pixels are read or written (GdiFlush; a
// handheld draws at once).
void FlushDrawing();

// The stock system font (GetStockObject(SYSTEM_FONT)), never deleted by the caller. A PC gets a
// readable sans-serif of a handheld's proportions in its place.
HFONT SystemFont();

// The rectangle of the device's screen in pixels (MonitorFromWindow, GetMonitorInfo). On a large
// PC screen it is a handheld's screen at the same resolution. False when it cannot be read.
bool ScreenRectangle(RECT* rectangle);

// Keys under HKEY_LOCAL_MACHINE (RegOpenKeyExW, RegCreateKeyExW); the result is the platform's
// error code. A PC whose machine key cannot be written keeps the same path under the user's key.
LONG OpenMachineKey(const wchar_t* path, REGSAM access, HKEY* key);
LONG CreateMachineKey(const wchar_t* path, REGSAM access, HKEY* key);

}  // namespace platform
