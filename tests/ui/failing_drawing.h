// Drawing functions that have nothing to give, to be hooked in the place of the system's.
#pragma once

#include "platform/windows.h"

namespace test {

inline BOOL WINAPI NoClient(HWND, RECT*) {
    return FALSE;
}
inline HDC WINAPI NoDC(HDC) {
    return nullptr;
}
inline HBITMAP WINAPI NoBitmap(HDC, int, int) {
    return nullptr;
}
inline HBITMAP WINAPI NoSection(HDC, const BITMAPINFO*, UINT, void**, HANDLE, DWORD) {
    return nullptr;
}
inline HFONT WINAPI NoFont(const LOGFONTW*) {
    return nullptr;
}

}  // namespace test
